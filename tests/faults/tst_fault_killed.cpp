#include "faulttesting.h"

#include "extensionfile/backup.h"
#include "extensionfile/safesave.h"
#include "extensionfile/unfinishedfile.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

using namespace ExtensionFile;
using namespace FaultTesting;

/// Kills a process in the middle of a save, again and again.
class TestFaultKilled : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void killed_data();
    void killed();
};

void TestFaultKilled::killed_data()
{
    QTest::addColumn<bool>("linked");
    QTest::newRow("replaced") << false;
    QTest::newRow("written in place") << true;
}

void TestFaultKilled::killed()
{
    QFETCH(bool, linked);
    QTemporaryDir directory;
    const QString place = directory.filePath(QStringLiteral("plugin"));
    makeDirectory(place);
    qputenv("XDG_STATE_HOME", QFile::encodeName(directory.path()));
    const QString path = place + QLatin1String("/extension.xml");
    const QByteArray first = documentOf(60 * 1024, 'a');
    const QByteArray second = documentOf(400 * 1024, 'b');
    makeFile(path, first);
    if (linked)
        makeHardLink(path, place + QLatin1String("/other"));

    // What another process is writing, or what a person has made, is nothing that a killed one has left behind.
    const UnfinishedFile living(QFile::encodeName(place), 0600);
    QVERIFY(living.isOpen());
    for (const char *name : { ".extpoint-editor-notes.unfinished", "extension.xml.a1B2c3" })
        makeFile(place + QLatin1Char('/') + QLatin1String(name), "mine");
    const QStringList names = namesIn(place);

    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 10; ++i)
        QVERIFY(saveFile(path, i % 2 ? first : second, nullptr));
    const qint64 oneSaveUs = qMax<qint64>(50, clock.nsecsElapsed() / 10'000);

    QRandomGenerator random(20);
    int interrupted = 0;
    int seen[2] = {};
    for (int kill = 0; kill < 200; ++kill) {
        int begun[2];
        QVERIFY(::pipe(begun) == 0);
        const pid_t child = ::fork();
        if (child == 0) {
            for (int i = 0;; ++i) {
                (void)saveFile(path, i % 2 ? first : second, nullptr);
                if (i == 0)
                    (void)!::write(begun[1], "x", 1);
            }
        }
        char byte;
        QVERIFY(::read(begun[0], &byte, 1) == 1);
        ::close(begun[0]);
        ::close(begun[1]);
        // Over the length of three saves; the moment is what the test is about, not something that it waits for.
        ::usleep(useconds_t(random.bounded(quint32(3 * oneSaveUs))));
        ::kill(child, SIGKILL);
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);

        const QByteArray found = contentsOf(path);
        const bool whole = found == first || found == second;
        const QStringList kept = Backup::keptOf(path);
        if (!linked) {
            QVERIFY2(whole, qPrintable(QStringLiteral("kill %1: a mixture of %2 bytes").arg(kill).arg(found.size())));
            QVERIFY(kept.isEmpty());
        } else if (!whole) {
            QVERIFY2(!kept.isEmpty(), qPrintable(QStringLiteral("kill %1: no backup").arg(kill)));
            const QByteArray backup = contentsOf(kept.last());
            QVERIFY(backup == first || backup == second);
        }
        seen[0] += found == first;
        seen[1] += found == second;
        interrupted += !whole || !kept.isEmpty() || namesIn(place) != names ? 1 : 0;

        for (const QString &name : kept)
            QFile::remove(name);
        // The next save after a crash works as if nothing had been, and leaves nothing of it.
        QVERIFY(saveFile(path, first, nullptr));
        QCOMPARE(contentsOf(path), first);
        QCOMPARE(namesIn(place), names);
        QVERIFY(!linked || namesIn(Backup::directory()).isEmpty());
    }
    qInfo("%d of 200 kills left something of an unfinished save", interrupted);
    QVERIFY2(seen[0] > 10 && seen[1] > 10, "the kills all came at the same moment");
    if (linked)
        QVERIFY2(interrupted > 3, "the kills came at moments when nothing was being written");
}

QTEST_GUILESS_MAIN(TestFaultKilled)
#include "tst_fault_killed.moc"
