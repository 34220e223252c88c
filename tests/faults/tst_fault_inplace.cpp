#include "faulttesting.h"

#include "extensionfile/backup.h"
#include "extensionfile/safesave.h"

#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <limits>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace ExtensionFile;
using namespace FaultTesting;

// A disk that fails in the middle, and then fails again or lies, can't be made of anything that every machine has. This
// program's own calls stand before the system's.

namespace {

enum class Call { Write, Cut, Sync, Read };

/// What one call does on the faulty disk.
struct Fault
{
    Call call = Call::Write;
    int error = EIO;     ///< 0: it writes something else
    int times = 1;       ///< so often, then all is well again
    qint64 roomLeft = 0; ///< bytes that can be written before
};

constexpr int forGood = std::numeric_limits<int>::max();

/// Only what lies in this directory is touched; backups go to another disk.
QByteArray faultyPlace;
QVector<Fault> faults;

Fault *faultOf(Call call, int descriptor)
{
    char path[4096];
    const QByteArray link = "/proc/self/fd/" + QByteArray::number(descriptor);
    const ssize_t length = faultyPlace.isEmpty() ? -1 : ::readlink(link.constData(), path, sizeof(path));
    if (length < 0 || !QByteArray::fromRawData(path, int(length)).startsWith(faultyPlace))
        return nullptr;
    const auto fault
        = std::find_if(faults.begin(), faults.end(), [call](const Fault &f) { return f.call == call && f.times > 0; });
    return fault == faults.end() ? nullptr : &*fault;
}

int fail(Fault *fault)
{
    if (fault->times != forGood)
        --fault->times;
    errno = fault->error;
    return -1;
}

ssize_t faultyWrite(int descriptor, const void *bytes, size_t size, off_t offset)
{
    Fault *const fault = faultOf(Call::Write, descriptor);
    if (!fault)
        return ::syscall(SYS_pwrite64, descriptor, bytes, size, offset);
    if (fault->error == 0) {
        fail(fault);
        const QByteArray noise(int(size), '#');
        return ::syscall(SYS_pwrite64, descriptor, noise.constData(), size, offset);
    }
    if (fault->roomLeft == 0)
        return fail(fault);
    const auto part = size_t(qMin<qint64>(qint64(size), fault->roomLeft));
    fault->roomLeft -= qint64(part);
    return ::syscall(SYS_pwrite64, descriptor, bytes, part, offset);
}

} // namespace

extern "C" Q_DECL_EXPORT ssize_t pwrite(int descriptor, const void *bytes, size_t size, off_t offset)
{
    return faultyWrite(descriptor, bytes, size, offset);
}

extern "C" Q_DECL_EXPORT ssize_t pwrite64(int descriptor, const void *bytes, size_t size, off64_t offset)
{
    return faultyWrite(descriptor, bytes, size, off_t(offset));
}

extern "C" Q_DECL_EXPORT ssize_t write(int descriptor, const void *bytes, size_t size)
{
    Fault *const fault = faultOf(Call::Write, descriptor);
    return fault && fault->error != 0 ? fail(fault) : ::syscall(SYS_write, descriptor, bytes, size);
}

extern "C" Q_DECL_EXPORT ssize_t read(int descriptor, void *bytes, size_t size)
{
    Fault *const fault = faultOf(Call::Read, descriptor);
    return fault ? fail(fault) : ::syscall(SYS_read, descriptor, bytes, size);
}

extern "C" Q_DECL_EXPORT int ftruncate(int descriptor, off_t size) noexcept
{
    Fault *const fault = faultOf(Call::Cut, descriptor);
    return fault ? fail(fault) : int(::syscall(SYS_ftruncate, descriptor, size));
}

extern "C" Q_DECL_EXPORT int fsync(int descriptor)
{
    Fault *const fault = faultOf(Call::Sync, descriptor);
    return fault ? fail(fault) : int(::syscall(SYS_fsync, descriptor));
}

namespace {

enum class Outcome { Saved, PutBack, Kept };

} // namespace

Q_DECLARE_METATYPE(QVector<Fault>)
Q_DECLARE_METATYPE(Outcome)

class TestFaultInPlace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { faultyPlace.clear(); }
    void brokenDisk_data();
    void brokenDisk();
    void earlierBackupStays();
};

void TestFaultInPlace::brokenDisk_data()
{
    QTest::addColumn<QVector<Fault>>("kinds");
    QTest::addColumn<bool>("linked");
    QTest::addColumn<int>("newSize");
    QTest::addColumn<Outcome>("outcome");
    QTest::addColumn<QString>("reason");

    using Faults = QVector<Fault>;
    const QString failed = QStringLiteral("Input/output error");
    const QString lied = QStringLiteral("does not hold what was written");
    const QString interrupted = QStringLiteral("Interrupted");
    for (const int size : { 5'000, 20'000, 60'000 }) {
        const bool grows = size > 20'000;
        const bool shrinks = size < 20'000;
        const auto row = [&](const char *what) -> QTestData & { return QTest::addRow("%s, %d bytes", what, size); };
        const auto inPlace = [&](const char *what, const Faults &kinds, Outcome outcome, const QString &reason) {
            row(what) << kinds << true << size << outcome << reason;
        };
        inPlace("fails at the first byte", { { Call::Write, EIO, 1 } }, Outcome::PutBack, failed);
        inPlace("fails in the middle", { { Call::Write, EIO, 1, 4'000 } }, Outcome::PutBack, failed);
        // What a file grows by comes first, so that nothing is lost of the old bytes yet.
        inPlace("fails for good", { { Call::Write, EIO, forGood, 4'000 } }, grows ? Outcome::PutBack : Outcome::Kept,
            failed);
        inPlace("keeps something else", { { Call::Write, 0, 1 } }, Outcome::PutBack, lied);
        inPlace("keeps something else for good", { { Call::Write, 0, forGood } }, Outcome::Kept, lied);
        inPlace("does not reach the disk", { { Call::Sync, EIO, 1 } }, Outcome::PutBack, failed);
        inPlace("does not reach the disk for good", { { Call::Sync, EIO, forGood } }, Outcome::Kept, failed);
        inPlace("fails, and so does the first try to put back",
            { { Call::Write, ENOSPC, 1, 4'000 }, { Call::Cut, EIO, shrinks ? 2 : 1 } }, Outcome::PutBack,
            QStringLiteral("No space left"));
        inPlace("can't be cut", { { Call::Cut, EIO, 1 } }, shrinks ? Outcome::PutBack : Outcome::Saved,
            shrinks ? failed : QString());
    }
    for (const bool linked : { false, true }) {
        const auto row = [&](const char *what, const Fault &fault, Outcome outcome, const QString &reason) {
            QTest::addRow("%s, %s", what, linked ? "in place" : "replaced")
                << Faults { fault } << linked << 5'000 << outcome << reason;
        };
        row("writing interrupted thrice", { Call::Write, EINTR, 3 }, Outcome::Saved, {});
        row("writing interrupted for ever", { Call::Write, EINTR, forGood }, Outcome::PutBack, interrupted);
        row("synchronising interrupted for ever", { Call::Sync, EINTR, forGood },
            linked ? Outcome::Kept : Outcome::PutBack, interrupted);
        row("reading interrupted for ever", { Call::Read, EINTR, forGood }, linked ? Outcome::PutBack : Outcome::Saved,
            linked ? interrupted : QString());
    }
    QTest::newRow("keeps something else, replaced")
        << Faults { { Call::Write, 0, forGood } } << false << 5'000 << Outcome::PutBack << lied;
}

void TestFaultInPlace::brokenDisk()
{
    QFETCH(QVector<Fault>, kinds);
    QFETCH(bool, linked);
    QFETCH(int, newSize);
    QFETCH(Outcome, outcome);
    QFETCH(QString, reason);
    QTemporaryDir directory;
    qputenv("XDG_STATE_HOME", QFile::encodeName(directory.filePath(QStringLiteral("a/state"))));
    const QString place = directory.filePath(QStringLiteral("plugin"));
    makeDirectory(place);
    const QString path = place + QLatin1String("/extension.xml");
    const QByteArray old = documentOf(20'000, 'o');
    makeFile(path, old);
    const timespec longAgo[] = { { 1'000'000'000, 0 }, { 1'000'000'000, 0 } };
    QVERIFY(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), longAgo, 0) == 0);
    if (linked)
        makeHardLink(path, place + QLatin1String("/other"));

    faults = kinds;
    faultyPlace = QFile::encodeName(place);
    const Log log;
    QString error;
    const bool saved = saveFile(path, documentOf(newSize), &error);
    faultyPlace.clear();

    QCOMPARE(saved, outcome == Outcome::Saved);
    QCOMPARE(namesIn(place).size(), linked ? 2 : 1);
    const QStringList kept = Backup::keptOf(path);
    QCOMPARE(kept.size(), outcome == Outcome::Kept ? 1 : 0);
    QCOMPARE(namesIn(Backup::directory()).size(), kept.size());
    if (saved) {
        QCOMPARE(contentsOf(path), documentOf(newSize));
        return;
    }
    QVERIFY2(error.contains(reason), qPrintable(error));
    QCOMPARE(log.lines(), QStringList(error));
    if (outcome == Outcome::PutBack) {
        QCOMPARE(contentsOf(path), old);
        QCOMPARE(statusOf(path).st_mtim.tv_sec, longAgo[1].tv_sec);
        return;
    }
    QCOMPARE(contentsOf(kept.first()), old);
    QVERIFY2(log.lines().first().contains(kept.first()), qPrintable(log.lines().first()));
    QCOMPARE(statusOf(kept.first()).st_mode & 0777, mode_t(0600));
    QCOMPARE(statusOf(Backup::directory()).st_mode & 0777, mode_t(0700));
}

/// What a first failure has left behind is the last good copy; the next save must not write over it.
void TestFaultInPlace::earlierBackupStays()
{
    QTemporaryDir directory;
    qputenv("XDG_STATE_HOME", QFile::encodeName(directory.path()));
    const QString path = directory.filePath(QStringLiteral("extension.xml"));
    const QString other = directory.filePath(QStringLiteral("other"));
    makeFile(path, documentOf(20'000, 'o'));
    makeHardLink(path, other);
    faults = { { Call::Write, EIO, forGood, 4'000 } };
    faultyPlace = QFile::encodeName(path);
    QVERIFY(!saveFile(path, documentOf(20'000, 'n'), nullptr));
    const QByteArray damaged = contentsOf(path);
    faults = { { Call::Write, EIO, forGood, 4'000 } };
    QVERIFY(!saveFile(path, documentOf(20'000, 'm'), nullptr));
    faultyPlace.clear();

    const QStringList kept = Backup::keptOf(path);
    QCOMPARE(kept.size(), 2);
    QCOMPARE(contentsOf(kept.at(0)), documentOf(20'000, 'o'));
    QCOMPARE(contentsOf(kept.at(1)), damaged);

    const Log log;
    QVERIFY(saveFile(path, documentOf(20'000, 'n'), nullptr));
    QCOMPARE(contentsOf(other), documentOf(20'000, 'n'));
    QCOMPARE(Backup::keptOf(path), kept);
    QCOMPARE(log.lines().size(), 2);
    for (int i = 0; i < 2; ++i)
        QVERIFY2(log.lines().at(i).contains(kept.at(i)), qPrintable(log.lines().at(i)));
}

QTEST_GUILESS_MAIN(TestFaultInPlace)
#include "tst_fault_inplace.moc"
