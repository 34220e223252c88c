#include "faulttesting.h"

#include "extensionfile/backup.h"
#include "extensionfile/safesave.h"

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

#include <sys/syscall.h>
#include <unistd.h>

using namespace ExtensionFile;
using namespace FaultTesting;

// A disk that fails in the middle, and then fails again or lies, can't be made of anything that every machine has. This
// program's own pwrite() stands before the system's.

namespace {

enum class Disk { Works, FailsOnce, FailsFromThen, Lies, LiesFromThen };

Disk disk = Disk::Works;
/// Only what is written to this file is touched; the backup goes to another disk.
ino_t faultyFile = 0;
qint64 roomLeft = 0;

ssize_t faultyWrite(int descriptor, const void *bytes, size_t size, off_t offset)
{
    struct stat status = {};
    if (disk == Disk::Works || ::fstat(descriptor, &status) != 0 || status.st_ino != faultyFile)
        return ::syscall(SYS_pwrite64, descriptor, bytes, size, offset);
    if (disk == Disk::Lies || disk == Disk::LiesFromThen) {
        if (disk == Disk::Lies)
            disk = Disk::Works;
        const QByteArray noise(int(size), '#');
        return ::syscall(SYS_pwrite64, descriptor, noise.constData(), size, offset);
    }
    if (roomLeft == 0) {
        if (disk == Disk::FailsOnce)
            disk = Disk::Works;
        errno = EIO;
        return -1;
    }
    const auto part = size_t(qMin<qint64>(qint64(size), roomLeft));
    roomLeft -= qint64(part);
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

Q_DECLARE_METATYPE(Disk)

class TestFaultInPlace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void brokenDisk_data();
    void brokenDisk();
    void earlierBackupStays();
};

void TestFaultInPlace::brokenDisk_data()
{
    QTest::addColumn<Disk>("kind");
    QTest::addColumn<qint64>("room");
    QTest::addColumn<int>("newSize");
    QTest::addColumn<bool>("putBack");
    QTest::addColumn<QString>("reason");

    const QString failed = QStringLiteral("Input/output error");
    const QString lied = QStringLiteral("does not hold what was written");
    for (const int size : { 5'000, 20'000, 60'000 }) {
        const auto row = [size](const char *what) -> QTestData & { return QTest::addRow("%s, %d bytes", what, size); };
        row("fails at the first byte") << Disk::FailsOnce << qint64(0) << size << true << failed;
        row("fails in the middle") << Disk::FailsOnce << qint64(4'000) << size << true << failed;
        row("fails for good") << Disk::FailsFromThen << qint64(4'000) << size << false << failed;
        row("keeps something else") << Disk::Lies << qint64(0) << size << true << lied;
        row("keeps something else for good") << Disk::LiesFromThen << qint64(0) << size << false << lied;
    }
}

void TestFaultInPlace::brokenDisk()
{
    QFETCH(Disk, kind);
    QFETCH(qint64, room);
    QFETCH(int, newSize);
    QFETCH(bool, putBack);
    QFETCH(QString, reason);
    QTemporaryDir directory;
    qputenv("XDG_STATE_HOME", QFile::encodeName(directory.filePath(QStringLiteral("a/state"))));
    const QString path = directory.filePath(QStringLiteral("extension.xml"));
    const QByteArray old = documentOf(20'000, 'o');
    makeFile(path, old);
    makeHardLink(path, directory.filePath(QStringLiteral("other")));

    faultyFile = statusOf(path).st_ino;
    roomLeft = room;
    disk = kind;
    const Log log;
    SaveError error;
    const bool saved = saveFile(path, documentOf(newSize), &error);
    disk = Disk::Works;

    QVERIFY(!saved);
    QVERIFY2(error.reason.contains(reason), qPrintable(error.reason));
    QCOMPARE(log.lines(), QStringList(error.toString()));
    const QStringList kept = Backup::keptOf(path);
    QCOMPARE(kept.size(), putBack ? 0 : 1);
    QCOMPARE(namesIn(Backup::directory()).size(), kept.size());
    if (putBack) {
        QCOMPARE(contentsOf(path), old);
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
    faultyFile = statusOf(path).st_ino;
    roomLeft = 4'000;
    disk = Disk::FailsFromThen;
    QVERIFY(!saveFile(path, documentOf(20'000, 'n'), nullptr));
    const QByteArray damaged = contentsOf(path);
    roomLeft = 4'000;
    QVERIFY(!saveFile(path, documentOf(20'000, 'm'), nullptr));
    disk = Disk::Works;

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
