#include "extensionfile/safesave.h"

#include "extensionfile/writer.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace ExtensionFile;

namespace {

const uid_t nobody = 65534;
const QByteArray oldBytes = "<old/>\n";
const QByteArray newBytes = "<new a=\"1\"/>\n";

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable/>");
}

struct stat statusOf(const QString &path)
{
    struct stat status = {};
    ::lstat(QFile::encodeName(path).constData(), &status);
    return status;
}

} // namespace

/// What a path and a document must be. What happens on disks and to links, rights and other processes is the fault
/// table's.
class TestSafeSave : public QObject
{
    Q_OBJECT

private slots:
    void documents_data();
    void documents();
    void paths_data();
    void paths();
    void ownerStays();
};

void TestSafeSave::documents_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<bool>("linked");

    const auto rows = [](const char *name, const QByteArray &bytes, const QString &reason) {
        QTest::addRow("%s, replaced", name) << bytes << reason << false;
        QTest::addRow("%s, in place", name) << bytes << reason << true;
    };
    rows("an ordinary one", newBytes, {});
    rows("the instruction alone", Writer::instructionAlone(), {});
    rows("instruction and a blank", Writer::instructionAlone() + ' ', QStringLiteral("2:2: No element found."));
    rows("cut", "<a><b/>", QStringLiteral("1:8: No element found."));
    rows("deeper than can be read", QByteArray("<a>").repeated(3'000) + QByteArray("</a>").repeated(3'000),
        QStringLiteral("1:3073: Elements are nested more than 1024 deep."));
}

void TestSafeSave::documents()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    QFETCH(bool, linked);
    QTemporaryDir directory;
    qputenv("XDG_STATE_HOME", QFile::encodeName(directory.filePath(QStringLiteral("state"))));
    const QString path = directory.filePath(QStringLiteral("file"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(oldBytes) > 0 && file.flush());
    if (linked)
        QVERIFY(
            ::link(QFile::encodeName(path).constData(), QFile::encodeName(path + QLatin1Char('2')).constData()) == 0);
    QString error;
    QCOMPARE(saveFile(path, bytes, &error), reason.isEmpty());
    QCOMPARE(error,
        reason.isEmpty() ? QString() : path + QStringLiteral(": The new contents could not be read again: ") + reason);
    QCOMPARE(contents(path), reason.isEmpty() ? bytes : oldBytes);
}

void TestSafeSave::paths_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("saved");

    QTest::newRow("new") << QStringLiteral("new") << true;
    QTest::newRow("none") << QString() << false;
    QTest::newRow("nul in it") << QStringLiteral("a") + QChar(0) << false;
    QTest::newRow("missing directory") << QStringLiteral("none/file") << false;
    QTest::newRow("file as directory") << QStringLiteral("file/file") << false;
}

void TestSafeSave::paths()
{
    QFETCH(QString, name);
    QFETCH(bool, saved);
    QTemporaryDir directory;
    const QStringList files { QStringLiteral("file") };
    QFile file(directory.filePath(files.first()));
    QVERIFY(file.open(QIODevice::WriteOnly));
    static QStringList messages;
    messages.clear();
    const QtMessageHandler before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { messages.append(text); });
    const QString path = name.isEmpty() ? QString() : directory.filePath(name);
    QString error;
    const mode_t mask = ::umask(027);
    const bool done = saveFile(path, newBytes, &error);
    ::umask(mask);
    qInstallMessageHandler(before);
    QCOMPARE(done, saved);
    QCOMPARE(error.isEmpty(), saved);
    QCOMPARE(statusOf(path).st_mode & 0777, mode_t(saved ? 0640 : 0));
    QCOMPARE(messages, saved ? QStringList() : QStringList(error));
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden), saved ? files + QStringList(name) : files);
}

/// As root a file can be given back to its owner; without root the owner is the same anyway.
void TestSafeSave::ownerStays()
{
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("file"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QByteArray name = QFile::encodeName(path);
    QVERIFY(::geteuid() != 0 || ::chown(name.constData(), nobody, nobody) == 0);
    QVERIFY(::chmod(name.constData(), 02664) == 0);
    const struct stat before = statusOf(path);
    QVERIFY(saveFile(path, newBytes, nullptr));
    const struct stat after = statusOf(path);
    QCOMPARE(after.st_uid, before.st_uid);
    QCOMPARE(after.st_gid, before.st_gid);
    QCOMPARE(after.st_mode, before.st_mode);
    QVERIFY(after.st_ino != before.st_ino);
}

QTEST_GUILESS_MAIN(TestSafeSave)
#include "tst_safesave.moc"
