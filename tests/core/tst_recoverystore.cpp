#include "core/processidentity.h"
#include "core/recoverystore.h"
#include "files.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <memory>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using Core::ProcessIdentity;
using Core::RecoveryCopy;
using Core::RecoveryStore;

namespace {

/// So many writes to come are interrupted by a signal.
int interruptions = 0;

} // namespace

/// Stands before the system's.
extern "C" Q_DECL_EXPORT ssize_t write(int descriptor, const void *bytes, size_t size)
{
    if (interruptions == 0)
        return ::syscall(SYS_write, descriptor, bytes, size);
    --interruptions;
    errno = EINTR;
    return -1;
}

namespace {

const Core::RecoveryKey key = RecoveryStore::keyOf(s("/nowhere/extension.xml"));

unsigned modeOf(const QString &path)
{
    struct stat data = {};
    return ::lstat(QFile::encodeName(path).constData(), &data) == 0 ? data.st_mode & 07777u : 0;
}

} // namespace

/// The directory of the recovery copies, without a window.
class tst_RecoveryStore : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void keys();
    void rights();
    void offered_data();
    void offered();
    void replacedAtOnce();
    void writeFails_data();
    void writeFails();

private:
    /// The one copy in the directory.
    QString file() const;
    /// Gives the copy to another process.
    void changeHeader(const QString &name, const QString &value) const;

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
    QString m_error;
};

void tst_RecoveryStore::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_path = m_dir->filePath(s("state/recovery"));
    m_error.clear();
}

QString tst_RecoveryStore::file() const
{
    const QStringList names = QDir(m_path).entryList(QDir::Files | QDir::Hidden);
    return names.size() == 1 ? m_path + QLatin1Char('/') + names.first() : QString();
}

void tst_RecoveryStore::changeHeader(const QString &name, const QString &value) const
{
    const QByteArray content = contentOf(file());
    const int end = content.indexOf('\n');
    QJsonObject header = QJsonDocument::fromJson(content.left(end)).object();
    header.insert(name, value);
    writeFile(file(), QJsonDocument(header).toJson(QJsonDocument::Compact) + content.mid(end));
}

void tst_RecoveryStore::keys()
{
    const QString path = m_dir->filePath(s("a.xml"));
    const QByteArray missing = RecoveryStore::keyOf(path).hash;
    writeFile(path, "x");
    const QString link = m_dir->filePath(s("link.xml"));
    QVERIFY(QFile::link(path, link));
    QCOMPARE(RecoveryStore::keyOf(path).hash, missing);
    QCOMPARE(RecoveryStore::keyOf(link).hash, missing);
    QCOMPARE(RecoveryStore::keyOf(m_dir->filePath(s("./b/../a.xml"))).hash, missing);
    QVERIFY(RecoveryStore::keyOf(m_dir->filePath(s("b.xml"))).hash != missing);
}

void tst_RecoveryStore::rights()
{
    const mode_t mask = ::umask(0);
    const auto restore = qScopeGuard([mask] { ::umask(mask); });
    QVERIFY(QDir().mkpath(m_path));
    QVERIFY(::chmod(QFile::encodeName(m_path).constData(), 0777) == 0);
    QVERIFY(RecoveryStore(m_path).write(key, "hash", "data", &m_error));
    QCOMPARE(modeOf(m_path), 0700u);
    QCOMPARE(modeOf(file()), 0600u);
    RecoveryStore(m_path).drop(key);
    QCOMPARE(file(), QString());
}

void tst_RecoveryStore::offered_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("offered");
    QTest::addColumn<bool>("damaged");

    const auto row = [](const char *name, const char *field, const QString &value, bool offered, bool damaged = false) {
        QTest::newRow(name) << s(field) << value << offered << damaged;
    };
    const ProcessIdentity self = ProcessIdentity::current();
    QVERIFY(self.start > 0 && !self.boot.isEmpty() && self.isAlive());
    row("of this process", "pid", QString::number(self.pid), false);
    row("of a process that is gone", "pid", s("ended"), true);
    row("of a process that nobody has waited for", "pid", s("zombie"), true);
    row("of an earlier process of the same number", "start", QString::number(self.start - 1), true);
    row("of another boot", "boot", s("another"), true);
    row("of another user's process", "pid", s("1"), false);
    row("of nobody", "pid", QString(), true);
    row("of another file", "file", QString::fromLatin1(key.hash.toUpper()), false, true);
    row("with another check sum", "sha256", s("00"), false, true);
    row("without a time", "time", QString(), false, true);
    row("without a header", "", QString(), false, true);
}

void tst_RecoveryStore::offered()
{
    QFETCH(QString, field);
    QFETCH(QString, value);
    QFETCH(bool, offered);
    QFETCH(bool, damaged);
    const RecoveryStore store(m_path);
    QVERIFY(store.write(key, "hash", QByteArray("da\0ta\n", 6), &m_error));

    QProcess child;
    pid_t zombie = 0;
    if (value == s("zombie")) {
        zombie = ::fork();
        if (zombie == 0)
            ::_exit(0);
        siginfo_t info = {};
        QVERIFY(::waitid(P_PID, id_t(zombie), &info, WEXITED | WNOWAIT) == 0);
        value = QString::number(zombie);
    } else if (value == s("ended")) {
        child.start(s("true"), QStringList());
        QVERIFY(child.waitForStarted());
        value = QString::number(child.processId());
        QVERIFY(child.waitForFinished());
    }
    // The start belongs to the process; without one the number alone is compared.
    if (field == s("pid") && value != QString::number(ProcessIdentity::current().pid))
        changeHeader(s("start"), QString());
    if (field.isEmpty())
        writeFile(file(), "no header\ndata");
    else
        changeHeader(field, value);
    if (damaged) {
        changeHeader(s("boot"), s("another"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QRegularExpression::escape(file()) + s(".*damaged")));
    }

    const std::vector<RecoveryCopy> copies = store.abandoned(key);
    if (zombie != 0)
        ::waitpid(zombie, nullptr, 0);
    QCOMPARE(!copies.empty(), offered);
    const std::vector<RecoveryCopy> listed = store.abandoned();
    QCOMPARE(listed.size(), std::size_t(offered || damaged ? 1 : 0));
    QVERIFY(listed.empty() || (listed.front().damaged == damaged && listed.front().key.hash == key.hash));
    QVERIFY(store.abandoned(RecoveryStore::keyOf(s("/another"))).empty());
    if (offered) {
        QCOMPARE(copies.front().originalHash, QByteArray("hash"));
        QCOMPARE(copies.front().data, QByteArray("da\0ta\n", 6));
        store.remove(copies.front());
    }
    QCOMPARE(file().isEmpty(), offered);
}

void tst_RecoveryStore::replacedAtOnce()
{
    const RecoveryStore store(m_path);
    QVERIFY(store.write(key, "hash", "first", &m_error));
    QFile open(file());
    QVERIFY(open.open(QIODevice::ReadOnly));
    // Left behind by a process of the same number that was killed while it wrote.
    writeFile(file() + s(".unfinished"), "half");
    interruptions = 3;
    QVERIFY2(store.write(key, "hash", "second", &m_error), qPrintable(m_error));
    QVERIFY(open.readAll().endsWith("first"));
    QVERIFY(contentOf(file()).endsWith("\nsecond"));

    // Of a process that nobody will come after, unlike the one that still writes.
    const QString others = m_path + QLatin1Char('/') + QString::fromLatin1(key.hash) + s("-%1.recovery.unfinished");
    writeFile(others.arg(2'000'000'000), "half");
    writeFile(others.arg(1), "half");
    QVERIFY(store.abandoned(key).empty());
    QVERIFY(!QFile::exists(others.arg(2'000'000'000)));
    QVERIFY(QFile::remove(others.arg(1)));
    QVERIFY(contentOf(file()).endsWith("\nsecond"));
}

void tst_RecoveryStore::writeFails_data()
{
    QTest::addColumn<QString>("inThePlace");
    QTest::addColumn<QString>("reason");

    QTest::newRow("a file in the place of the directory") << s("file") << s("Permission denied");
    QTest::newRow("a link in the place of the directory") << s("link") << s("Permission denied");
    QTest::newRow("interrupted for ever") << s("copy") << s("Interrupted");
}

void tst_RecoveryStore::writeFails()
{
    QFETCH(QString, inThePlace);
    QFETCH(QString, reason);
    const RecoveryStore store(m_path);
    const QString elsewhere = m_dir->filePath(s("elsewhere"));
    QVERIFY(QDir().mkpath(QFileInfo(m_path).path()) && QDir().mkdir(elsewhere));
    if (inThePlace == s("file"))
        writeFile(m_path, "mine");
    else if (inThePlace == s("link"))
        QVERIFY(QFile::link(elsewhere, m_path));
    else
        QVERIFY(store.write(key, "hash", "earlier", &m_error));
    interruptions = inThePlace == s("copy") ? 1'000'000 : 0;
    const bool written = store.write(key, "hash", "data", &m_error);
    interruptions = 0;
    QVERIFY(!written);
    QVERIFY2(m_error.startsWith(m_path) && m_error.contains(reason), qPrintable(m_error));
    QVERIFY(QDir(elsewhere).isEmpty());
    if (inThePlace == s("file"))
        QCOMPARE(contentOf(m_path), QByteArray("mine"));
    else if (inThePlace == s("copy"))
        QVERIFY(contentOf(file()).endsWith("earlier"));
}

QTEST_GUILESS_MAIN(tst_RecoveryStore)
#include "tst_recoverystore.moc"
