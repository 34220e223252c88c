#include "faulttesting.h"

#include "extensionfile/backup.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace FaultTesting;

namespace {

/// "kind key=value ...", one line per node.
void append(const PointObject *node, int depth, QString *text)
{
    for (PointObject *child : node->children()) {
        *text += QString(depth, QLatin1Char(' ')) + child->item()->kind();
        for (const PropertyHash::Entry &entry : child->properties())
            *text += QLatin1Char(' ') + entry.key + QLatin1Char('=') + entry.value.toString();
        *text += QLatin1Char('\n');
        append(child, depth + 1, text);
    }
}

QString printed(const SourceDataManager &manager)
{
    QString text = manager.pluginId() + QLatin1Char('\n');
    append(manager.definitionRoot(), 1, &text);
    append(manager.realizationRoot(), 1, &text);
    return text;
}

} // namespace

/// What damaged files do to the model. What the reader says of each kind of damage is its own test's.
class TestFaultReading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void interruptedSaveIsNamed();
    void cutAtEveryByte();
};

/// What an interrupted save leaves is half a file or none at all, and the backup is no use to who does not know of it.
void TestFaultReading::interruptedSaveIsNamed()
{
    QTemporaryDir directory;
    qputenv("XDG_STATE_HOME", QFile::encodeName(directory.path()));
    const QString path = directory.filePath(QStringLiteral("extension.xml"));
    makeFile(path, documentOf(5'000));
    {
        ExtensionFile::Backup backup(QFile::encodeName(path));
        QString reason;
        QVERIFY2(backup.make(documentOf(9'000), &reason), qPrintable(reason));
        // Somebody is saving; it is no news that there is a backup.
        const Log log;
        QVERIFY(SourceDataManager().load(path));
        QCOMPARE(log.lines(), QStringList());
    }
    const QStringList kept = ExtensionFile::Backup::keptOf(path);
    QCOMPARE(kept.size(), 1);
    for (const int size : { 5'000, 3'000 }) {
        QVERIFY(::truncate(QFile::encodeName(path).constData(), size) == 0);
        const Log log;
        QCOMPARE(SourceDataManager().load(path), size == 5'000);
        QCOMPARE(log.lines().size(), size == 5'000 ? 1 : 2);
        QVERIFY2(log.lines().first().startsWith(path + QLatin1Char(':')) && log.lines().first().endsWith(kept.first()),
            qPrintable(log.lines().first()));
    }
}

void TestFaultReading::cutAtEveryByte()
{
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("extension.xml"));
    const QByteArray whole
        = contentsOf(QStringLiteral(EXTPOINT_SOURCE_DIR "/samples/product/plugins/chartdesk/extension.xml"));
    const int end = whole.lastIndexOf('>') + 1;
    QVERIFY(whole.size() > 10'000 && end > 0);
    makeFile(path, whole);
    SourceDataManager manager;
    QVERIFY(manager.load(path));
    const QString tree = printed(manager);

    const QRegularExpression named(
        QLatin1Char('^') + QRegularExpression::escape(path) + QStringLiteral(":[1-9][0-9]*:[1-9][0-9]*: ."));
    FaultTesting::WorkClock clock;
    for (int size = whole.size(); size >= 0; --size) {
        QVERIFY(::truncate(QFile::encodeName(path).constData(), size) == 0);
        const Log log;
        clock.start();
        const bool read = manager.load(path);
        QVERIFY2(clock.elapsed() < patienceMs(), qPrintable(QString::number(size)));
        QVERIFY2(read == (size >= end), qPrintable(QString::number(size)));
        const QStringList lines = log.lines();
        QCOMPARE(lines.size(), read ? 0 : 1);
        QVERIFY2(read || named.match(lines.first()).hasMatch(), qPrintable(lines.join(QLatin1Char('|'))));
        if (read || size % 500 != 0)
            continue;
        // What was open before is still there, and nothing half-read beside it. Whatever the host does with what could
        // not be read, nothing is written over it.
        QCOMPARE(printed(manager), tree);
        SourceDataManager fresh;
        QVERIFY(!fresh.load(path) && !fresh.save());
        QCOMPARE(contentsOf(path), whole.left(size));
    }
}

QTEST_GUILESS_MAIN(TestFaultReading)
#include "tst_fault_reading.moc"
