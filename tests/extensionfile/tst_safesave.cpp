#include "extensionfile/safesave.h"

#include "extensionfile/writer.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace ExtensionFile;

namespace {

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
    void paths();
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
    rows("an ordinary one", "<new a=\"1\"/>\n", {});
    rows("the instruction alone", Writer::instructionAlone(), {});
    rows("instruction and a blank", Writer::instructionAlone() + ' ', QStringLiteral("2:2: No element found."));
    rows("cut", "<a><b/>", QStringLiteral("1:8: No element found."));
}

/// As root a file can be given back to its owner; without root the owner is the same anyway.
void TestSafeSave::documents()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    QFETCH(bool, linked);
    QTemporaryDir directory;
    qputenv("XDG_STATE_HOME", QFile::encodeName(directory.filePath(QStringLiteral("state"))));
    const QString path = directory.filePath(QStringLiteral("file"));
    const QByteArray name = QFile::encodeName(path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.write("<old/>\n") > 0 && file.flush());
    const uid_t nobody = 65534;
    QVERIFY(::geteuid() != 0 || ::chown(name.constData(), nobody, nobody) == 0);
    QVERIFY(::chmod(name.constData(), 02664) == 0);
    if (linked)
        QVERIFY(::link(name.constData(), (name + '2').constData()) == 0);
    const struct stat before = statusOf(path);
    QString error;
    QCOMPARE(saveFile(path, bytes, &error), reason.isEmpty());
    QCOMPARE(error,
        reason.isEmpty() ? QString() : path + QStringLiteral(": The new contents could not be read again: ") + reason);
    QFile saved(path);
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QCOMPARE(saved.readAll(), reason.isEmpty() ? bytes : QByteArray("<old/>\n"));
    const struct stat after = statusOf(path);
    QVERIFY(after.st_uid == before.st_uid && after.st_gid == before.st_gid && after.st_mode == before.st_mode);
    QCOMPARE(after.st_ino != before.st_ino, reason.isEmpty() && !linked);
}

void TestSafeSave::paths()
{
    QTemporaryDir directory;
    const QString fresh = directory.filePath(QStringLiteral("new"));
    const mode_t mask = ::umask(027);
    for (const QString &path : { fresh, QString(), directory.filePath(QStringLiteral("a") + QChar(0)),
             directory.filePath(QStringLiteral("none/file")), fresh + QStringLiteral("/file") }) {
        QString error;
        QCOMPARE(saveFile(path, "<a/>", &error), path == fresh);
        QCOMPARE(error.isEmpty(), path == fresh);
        QCOMPARE(statusOf(path).st_mode & 0777, mode_t(path == fresh ? 0640 : 0));
    }
    ::umask(mask);
    QVERIFY(!QFile::exists(directory.filePath(QStringLiteral("a"))));
}

QTEST_GUILESS_MAIN(TestSafeSave)
#include "tst_safesave.moc"
