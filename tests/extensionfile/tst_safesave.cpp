#include "extensionfile/safesave.h"

#include "extensionfile/writer.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

#include <grp.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace ExtensionFile;

using Preparation = std::function<void(const QString &directory)>;
Q_DECLARE_METATYPE(Preparation)

namespace {

const uid_t nobody = 65534;
const QByteArray oldBytes = "<old/>\n";
const QByteArray newBytes = "<new a=\"1\"/>\n";

QByteArray documentOf(int size)
{
    return "<a b='" + QByteArray(size - 10, 'x') + "'/>\n";
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable/>");
}

/// False if the bytes are not all there afterwards.
bool makeFile(const QString &path, const QByteArray &bytes = oldBytes, mode_t mode = 0644)
{
    QFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
    file.close();
    return written && ::chmod(QFile::encodeName(path).constData(), mode) == 0;
}

struct stat statusOf(const QString &path)
{
    struct stat status = {};
    ::lstat(QFile::encodeName(path).constData(), &status);
    return status;
}

QString in(const QString &directory, const char *name)
{
    return directory + QLatin1Char('/') + QLatin1String(name);
}

/// Runs `body` in a child process as a user who is not root, so that permission bits count; what it returns is the exit
/// code. A process started without root is an unprivileged one already.
int asNobody(const std::function<bool()> &body)
{
    const pid_t child = ::fork();
    if (child == 0) {
        const bool changed = ::geteuid() != 0
            || (::setgroups(0, nullptr) == 0 && ::setresgid(nobody, nobody, nobody) == 0
                && ::setresuid(nobody, nobody, nobody) == 0);
        ::_exit(changed && body() ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// Gives a tree to the user of asNobody().
void giveAway(const QString &path)
{
    if (::geteuid() == 0) {
        const QByteArray name = QFile::encodeName(path);
        QVERIFY(::lchown(name.constData(), nobody, nobody) == 0);
    }
}

QStringList filesIn(const QString &directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace

class TestSafeSave : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void writes_data();
    void writes();
    void refuses_data();
    void refuses();
    void deviceIsRefused();
    void unreadableDocuments_data();
    void unreadableDocuments();
    void linksStay();
    void modesStay_data();
    void modesStay();
    void newFileHasUsualMode();
    void ownerStays();
    void unprivileged_data();
    void unprivileged();

private:
    static QStringList s_messages;
    std::unique_ptr<QTemporaryDir> m_state;
    QtMessageHandler m_before = nullptr;
};

QStringList TestSafeSave::s_messages;

void TestSafeSave::init()
{
    // A fresh one each time: what root has made there is closed to others.
    m_state = std::make_unique<QTemporaryDir>();
    QVERIFY(::chmod(QFile::encodeName(m_state->path()).constData(), 0777) == 0);
    qputenv("XDG_STATE_HOME", QFile::encodeName(m_state->path()));
    s_messages.clear();
    m_before = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &text) {
        if (type != QtDebugMsg && qstrcmp(context.category, "extpoint.file") == 0)
            s_messages.append(text);
    });
}

void TestSafeSave::cleanup()
{
    qInstallMessageHandler(m_before);
}

void TestSafeSave::writes_data()
{
    QTest::addColumn<Preparation>("prepare");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("over an old file") << Preparation([](const QString &d) { makeFile(in(d, "file")); }) << newBytes;
    QTest::newRow("a missing file") << Preparation([](const QString &) {}) << newBytes;
    QTest::newRow("over an empty file") << Preparation([](const QString &d) { makeFile(in(d, "file"), ""); })
                                        << newBytes;
    QTest::newRow("the instruction alone")
        << Preparation([](const QString &d) { makeFile(in(d, "file")); }) << Writer::instructionAlone();
    QTest::newRow("a hard-linked file, longer") << Preparation([](const QString &d) {
        makeFile(in(d, "other"));
        QVERIFY(
            ::link(QFile::encodeName(in(d, "other")).constData(), QFile::encodeName(in(d, "file")).constData()) == 0);
    }) << newBytes;
    QTest::newRow("a hard-linked file, shorter") << Preparation([](const QString &d) {
        makeFile(in(d, "other"), documentOf(100'000));
        QVERIFY(
            ::link(QFile::encodeName(in(d, "other")).constData(), QFile::encodeName(in(d, "file")).constData()) == 0);
    }) << newBytes;
}

void TestSafeSave::writes()
{
    QFETCH(Preparation, prepare);
    QFETCH(QByteArray, bytes);
    QTemporaryDir directory;
    prepare(directory.path());
    const QString path = in(directory.path(), "file");
    const bool linked = QFile::exists(in(directory.path(), "other"));
    SaveError error;
    QVERIFY2(saveFile(path, bytes, &error), qPrintable(error.toString()));
    QCOMPARE(contents(path), bytes);
    QCOMPARE(error.reason, QString());
    QCOMPARE(s_messages, QStringList());
    QCOMPARE(filesIn(directory.path()).size(), linked ? 2 : 1);
    if (linked) {
        QCOMPARE(contents(in(directory.path(), "other")), bytes);
        QCOMPARE(statusOf(path).st_ino, statusOf(in(directory.path(), "other")).st_ino);
    }
}

void TestSafeSave::refuses_data()
{
    QTest::addColumn<Preparation>("prepare");
    QTest::addColumn<QString>("name");

    const auto link = [](const char *aim) {
        return Preparation(
            [aim](const QString &d) { QVERIFY(::symlink(aim, QFile::encodeName(in(d, "file")).constData()) == 0); });
    };
    const QString file = QStringLiteral("file");
    QTest::newRow("no path") << Preparation([](const QString &) {}) << QString();
    QTest::newRow("no directory") << Preparation([](const QString &) {}) << QStringLiteral("none/file");
    QTest::newRow("file as directory") << Preparation([](const QString &d) { makeFile(in(d, "file")); })
                                       << QStringLiteral("file/file");
    QTest::newRow("directory") << Preparation([](const QString &d) { QVERIFY(QDir(d).mkdir(QStringLiteral("file"))); })
                               << file;
    QTest::newRow("pipe") << Preparation([](const QString &d) {
        QVERIFY(::mkfifo(QFile::encodeName(in(d, "file")).constData(), 0600) == 0);
    }) << file;
    QTest::newRow("socket") << Preparation([](const QString &d) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, QFile::encodeName(in(d, "file")).constData(), sizeof(address.sun_path));
        const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
        QVERIFY(::bind(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof(address)) == 0);
        ::close(descriptor);
    }) << file;
    QTest::newRow("link to itself") << link("file") << file;
    QTest::newRow("link in a circle") << Preparation([](const QString &d) {
        QVERIFY(::symlink("other", QFile::encodeName(in(d, "file")).constData()) == 0);
        QVERIFY(::symlink("file", QFile::encodeName(in(d, "other")).constData()) == 0);
    }) << file;
    QTest::newRow("link into a missing directory") << link("none/file") << file;
}

void TestSafeSave::refuses()
{
    QFETCH(Preparation, prepare);
    QFETCH(QString, name);
    QTemporaryDir directory;
    prepare(directory.path());
    const QStringList before = filesIn(directory.path());
    const mode_t typeBefore = statusOf(in(directory.path(), "file")).st_mode;
    const QString path = name.isEmpty() ? QString() : directory.filePath(name);
    SaveError error;
    QVERIFY(!saveFile(path, newBytes, &error));
    QCOMPARE(error.path, path);
    QVERIFY(!error.reason.isEmpty());
    QCOMPARE(s_messages, QStringList(error.toString()));
    QCOMPARE(filesIn(directory.path()), before);
    QCOMPARE(statusOf(in(directory.path(), "file")).st_mode, typeBefore);
}

/// Never as root: a fault in the code under test would put a file in the place of the device, for the whole machine.
void TestSafeSave::deviceIsRefused()
{
    QTemporaryDir directory;
    const QString path = in(directory.path(), "file");
    QVERIFY(::symlink("/dev/null", QFile::encodeName(path).constData()) == 0);
    giveAway(directory.path());
    QCOMPARE(asNobody([&] {
        SaveError error;
        return !saveFile(path, newBytes, &error) && error.reason.contains(QLatin1String("regular file"));
    }),
        0);
    QVERIFY(S_ISCHR(statusOf(QStringLiteral("/dev/null")).st_mode));
    QVERIFY(S_ISLNK(statusOf(path).st_mode));
}

void TestSafeSave::unreadableDocuments_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("cut") << QByteArray("<a><b/>");
    QTest::newRow("instruction and a blank") << Writer::instructionAlone() + ' ';
    QTest::newRow("bad utf-8") << QByteArray("<a b='\xff'/>");
    QTest::newRow("deeper than can be read") << QByteArray("<a>").repeated(3'000) + QByteArray("</a>").repeated(3'000);
}

void TestSafeSave::unreadableDocuments()
{
    QFETCH(QByteArray, bytes);
    QTemporaryDir directory;
    const QString path = in(directory.path(), "file");
    QVERIFY(makeFile(path));
    SaveError error;
    QVERIFY(!saveFile(path, bytes, &error));
    QCOMPARE(contents(path), oldBytes);
    QVERIFY2(error.reason.contains(QLatin1String("could not be read again")), qPrintable(error.reason));
}

void TestSafeSave::linksStay()
{
    QTemporaryDir directory;
    const QDir inside(directory.path());
    QVERIFY(inside.mkdir(QStringLiteral("real")) && makeFile(inside.filePath(QStringLiteral("real/old"))));
    const auto link = [&](const char *aim, const char *name) {
        return ::symlink(aim, QFile::encodeName(inside.filePath(QLatin1String(name))).constData()) == 0;
    };
    QVERIFY(link("real/old", "one") && link("one", "two") && link("real/made", "dangling"));
    QVERIFY(saveFile(inside.filePath(QStringLiteral("two")), newBytes, nullptr));
    QVERIFY(saveFile(inside.filePath(QStringLiteral("dangling")), newBytes, nullptr));
    for (const char *name : { "one", "two", "dangling" })
        QVERIFY2(S_ISLNK(statusOf(inside.filePath(QLatin1String(name))).st_mode), name);
    QVERIFY(S_ISREG(statusOf(inside.filePath(QStringLiteral("real/made"))).st_mode));
    QCOMPARE(contents(inside.filePath(QStringLiteral("real/old"))), newBytes);
    QCOMPARE(contents(inside.filePath(QStringLiteral("real/made"))), newBytes);
    QCOMPARE(filesIn(inside.filePath(QStringLiteral("real"))),
        QStringList({ QStringLiteral("made"), QStringLiteral("old") }));
}

void TestSafeSave::modesStay_data()
{
    QTest::addColumn<uint>("mode");
    for (const uint mode : { 0600u, 0640u, 0644u, 0664u, 0666u, 0755u, 02664u })
        QTest::addRow("%o", mode) << mode;
}

void TestSafeSave::modesStay()
{
    QFETCH(uint, mode);
    QTemporaryDir directory;
    const QString path = in(directory.path(), "file");
    QVERIFY(makeFile(path, oldBytes, mode));
    QVERIFY(saveFile(path, newBytes, nullptr));
    QCOMPARE(statusOf(path).st_mode & 07777, mode_t(mode));
    QCOMPARE(contents(path), newBytes);
}

void TestSafeSave::newFileHasUsualMode()
{
    QTemporaryDir directory;
    const QString path = in(directory.path(), "file");
    const mode_t before = ::umask(027);
    const bool saved = saveFile(path, newBytes, nullptr);
    ::umask(before);
    QVERIFY(saved);
    QCOMPARE(statusOf(path).st_mode & 0777, mode_t(0640));
}

/// As root a file can be given back to its owner; without root the owner is the same anyway.
void TestSafeSave::ownerStays()
{
    QTemporaryDir directory;
    const QString path = in(directory.path(), "file");
    QVERIFY(makeFile(path, oldBytes, 0640));
    giveAway(path);
    const struct stat before = statusOf(path);
    QVERIFY(saveFile(path, newBytes, nullptr));
    const struct stat after = statusOf(path);
    QCOMPARE(after.st_uid, before.st_uid);
    QCOMPARE(after.st_gid, before.st_gid);
    QCOMPARE(after.st_mode, before.st_mode);
    QVERIFY(after.st_ino != before.st_ino);
}

void TestSafeSave::unprivileged_data()
{
    QTest::addColumn<uint>("directoryMode");
    QTest::addColumn<uint>("fileMode");
    QTest::addColumn<bool>("ownFile"); // otherwise it belongs to whoever runs the tests
    QTest::addColumn<bool>("exists");
    QTest::addColumn<bool>("saved");
    QTest::addColumn<bool>("inPlace");

    QTest::newRow("ordinary") << 0755u << 0644u << true << true << true << false;
    QTest::newRow("read-only file") << 0755u << 0444u << true << true << false << false;
    QTest::newRow("read-only directory") << 0555u << 0644u << true << true << true << true;
    QTest::newRow("read-only both") << 0555u << 0444u << true << true << false << false;
    QTest::newRow("missing in read-only directory") << 0555u << 0u << true << false << false << false;
    // Rows about somebody else's file need two users.
    if (::geteuid() == 0) {
        QTest::newRow("somebody else's, writable") << 0755u << 0666u << false << true << true << true;
        QTest::newRow("somebody else's, read-only") << 0755u << 0644u << false << true << false << false;
    }
}

void TestSafeSave::unprivileged()
{
    QFETCH(uint, directoryMode);
    QFETCH(uint, fileMode);
    QFETCH(bool, ownFile);
    QFETCH(bool, exists);
    QFETCH(bool, saved);
    QFETCH(bool, inPlace);
    QTemporaryDir directory;
    const QString path = in(directory.path(), "file");
    if (exists)
        QVERIFY(makeFile(path, oldBytes, fileMode));
    giveAway(directory.path());
    if (exists && ownFile)
        giveAway(path);
    QVERIFY(::chmod(QFile::encodeName(directory.path()).constData(), directoryMode) == 0);
    const struct stat before = statusOf(path);
    const int code = asNobody([&] { return saveFile(path, newBytes, nullptr) == saved; });
    QVERIFY(::chmod(QFile::encodeName(directory.path()).constData(), 0755) == 0);
    QCOMPARE(code, 0);
    QCOMPARE(QFile::exists(path), exists);
    if (!exists)
        return;
    const struct stat after = statusOf(path);
    QCOMPARE(after.st_mode, before.st_mode);
    QCOMPARE(after.st_uid, before.st_uid);
    QCOMPARE(contents(path), saved ? newBytes : oldBytes);
    QCOMPARE(after.st_ino == before.st_ino, !saved || inPlace);
    QCOMPARE(filesIn(directory.path()).size(), 1);
}

QTEST_GUILESS_MAIN(TestSafeSave)
#include "tst_safesave.moc"
