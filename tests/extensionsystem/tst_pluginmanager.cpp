#include "extensionsystem/pluginmanager.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <memory>

#include <sys/stat.h>

using namespace ExtensionSystem;

/// Runs real shared objects, copied for each case into a directory of its own, and compares what they and the manager
/// recorded as lists of lines.
class TestPluginManager final : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void lifeCycle();
    void outcomes_data();
    void outcomes();
    void onlyTheGivenDirectories();
    void pool();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    void copy(const QString &plugin, const QString &as = {}) const;

    std::unique_ptr<QTemporaryDir> m_dir;
};

namespace {

QString s(const char *text)
{
    return QString::fromLatin1(text);
}

QStringList takeCalls()
{
    const QStringList calls = qApp->property("calls").toStringList();
    qApp->setProperty("calls", QStringList());
    return calls;
}

QStringList words(const char *text)
{
    return s(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QStringList lines(const char *text)
{
    return s(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// One line for each file: its name, the state, and the reason when there is one. Where a line of @p expected ends in
/// "..." (what follows there is the system's wording), the actual line is cut likewise.
QStringList pictureOf(const PluginManager &manager, const QStringList &expected = {})
{
    static const char *const states[]
        = { "Invalid", "Read", "Resolved", "Loaded", "Initialized", "Running", "Stopped" };
    QStringList result;
    const QVector<PluginInfo> plugins = manager.plugins();
    for (const PluginInfo &info : plugins) {
        QString line = QFileInfo(info.filePath).completeBaseName() + QLatin1Char(' ')
            + QLatin1String(states[info.state]) + (info.hasError() ? s(": ") : QString()) + info.errorString;
        line.replace(QFileInfo(info.filePath).path(), s("DIR"));
        const QString model = expected.value(result.size());
        if (model.endsWith(QLatin1String("...")))
            line = line.left(model.size() - 3) + s("...");
        result.append(line);
    }
    return result;
}

QStringList names(const QVector<QObject *> &objects)
{
    QStringList result;
    for (const QObject *obj : objects)
        result.append(obj->objectName());
    return result;
}

} // namespace

void TestPluginManager::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    takeCalls();
}

void TestPluginManager::cleanup()
{
    const QObjectList children = qApp->children();
    for (QObject *child : children) {
        if (child->objectName().contains(QLatin1Char('.')))
            delete child;
    }
}

/// What is wrong with a file is told by its name.
void TestPluginManager::copy(const QString &plugin, const QString &as) const
{
    QFile original(s(TEST_PLUGIN_DIR "/") + plugin + s(".so"));
    QVERIFY(original.open(QIODevice::ReadOnly));
    QByteArray bytes = original.readAll();
    if (as == s("half"))
        bytes.truncate(bytes.size() / 2);
    else if (as == s("script"))
        bytes = "INPUT(libother.so)\n";
    else if (as == s("foreign"))
        bytes[18] = char(~bytes.at(18));
    QFile file(path((as.isEmpty() ? plugin : as) + s(as.contains(s(".so.")) ? "" : ".so")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

void TestPluginManager::lifeCycle()
{
    // Found in the opposite order of what they need.
    copy(s("c"), s("1"));
    copy(s("b"), s("2"));
    copy(s("a"), s("3"));
    PluginManager manager;
    manager.setPluginPaths({ m_dir->path() });
    QCOMPARE(pictureOf(manager), lines("1 Read\n2 Read\n3 Read"));
    QCOMPARE(takeCalls(), QStringList());

    manager.loadPlugins({ s("-x"), s("y") });
    QCOMPARE(takeCalls(),
        words("a.loaded b.loaded c.loaded a.initialize(-x,y) b.initialize(-x,y) c.initialize(-x,y) "
              "c.extensionsInitialized b.extensionsInitialized a.extensionsInitialized"));
    QCOMPARE(pictureOf(manager), lines("1 Running\n2 Running\n3 Running"));
    QCOMPARE(names(PluginManager::allObjects()), words("a.first a.second a.kept b.first b.second b.kept"));

    QStringList delayed;
    QTRY_COMPARE((delayed += takeCalls()), words("c.delayedInitialize b.delayedInitialize a.delayedInitialize"));

    manager.shutdown();
    QCOMPARE(takeCalls(),
        words("c.aboutToShutdown b.aboutToShutdown a.aboutToShutdown c.destroyed "
              "b.second.deleted b.first.deleted b.destroyed a.second.deleted a.first.deleted a.destroyed"));
    QCOMPARE(PluginManager::allObjects(), QVector<QObject *>());
    QCOMPARE(pictureOf(manager), lines("1 Stopped\n2 Stopped\n3 Stopped"));
    // The code is still in memory: nothing can be loaded once more.
    manager.setPluginPaths({});
    manager.loadPlugins();
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(manager.plugins().size(), 3);
}

void TestPluginManager::outcomes_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("picture");
    QTest::addColumn<QStringList>("initialized");
    const auto row = [](const char *tag, const char *files, const char *expected, const char *initialized) {
        QTest::newRow(tag) << words(files) << lines(expected) << words(initialized);
    };
    row("cycle", "a cycle1 cycle2 needscycle",
        "a Running\n"
        "cycle1 Read: dependency cycle: cycle1 -> cycle2 -> cycle1\n"
        "cycle2 Read: dependency cycle: cycle1 -> cycle2 -> cycle1\n"
        "needscycle Read: \"cycle2\" is needed and could not be started",
        "a");
    row("unfit versions", "a needsnewer needsolder",
        "a Running\n"
        "needsnewer Read: \"a\" 1.2.1 is needed, but the one found serves versions 1.0.0 to 1.2.0\n"
        "needsolder Read: \"a\" 0.9.0 is needed, but the one found serves versions 1.0.0 to 1.2.0",
        "a");
    row("optional dependencies", "a fails needsmissing wantsmissing",
        "a Running\n"
        "fails Loaded: initializing failed: no paper\n"
        "needsmissing Read: \"nowhere\" 1.0.0 is needed and was not found\n"
        "wantsmissing Running",
        "a fails fails.second.deleted fails.first.deleted wantsmissing");
    row("defective metadata", "badversion needsbadversion",
        "badversion Invalid: the \"Version\" \"1.x\" of the plug-in is not of the form \"1.2.3\" or \"1.2.3_4\"\n"
        "needsbadversion Read: \"badversion\" is needed and could not be started",
        "");
    row("initialize returns false", "fails needsfails",
        "fails Loaded: initializing failed: no paper\n"
        "needsfails Loaded: \"fails\" is needed and could not be started",
        "fails fails.second.deleted fails.first.deleted");
    row("another root object", "a norootplugin",
        "a Running\n"
        "norootplugin Resolved: the root object is not a plug-in",
        "a");
    row("symbol that is nowhere", "a unresolved",
        "a Running\n"
        "unresolved Resolved: Cannot load library DIR/unresolved.so: ...",
        "a");
    row("repeated name", "a a:also_a b",
        "a Running\n"
        "also_a Invalid: \"a\" was found before, in DIR/a.so\n"
        "b Running",
        "a b");
    row("no file of a plug-in", "a plain a:half a:script",
        "a Running\n"
        "half Invalid: the metadata can't be read: ...\n"
        "plain Invalid: the metadata can't be read: ...\n"
        "script Invalid: the metadata can't be read: ...",
        "a");
    row("another machine", "a:foreign", "foreign Resolved: the file was built for another machine", "");
    row("other suffix", "a a:older.so.1", "a Running", "a");
}

void TestPluginManager::outcomes()
{
    QFETCH(QStringList, files);
    QFETCH(QStringList, picture);
    for (const QString &file : qAsConst(files))
        copy(file.section(QLatin1Char(':'), 0, 0), file.section(QLatin1Char(':'), 1));
    PluginManager manager;
    manager.setPluginPaths({ m_dir->path() });
    manager.loadPlugins();
    QCOMPARE(pictureOf(manager, picture), picture);
    // Of one that failed nothing stays behind.
    const QStringList calls = takeCalls().filter(QRegularExpression(s("initialize\\(|deleted$")));
    QTEST(QStringList(calls).replaceInStrings(s(".initialize()"), QString()), "initialized");
    QCOMPARE(names(PluginManager::allObjects()).filter(s("fails")), QStringList());
}

void TestPluginManager::onlyTheGivenDirectories()
{
    QVERIFY(QDir(m_dir->path()).mkpath(s("given/sub.so")));
    QVERIFY(QDir(m_dir->path()).mkpath(s("second")));
    copy(s("c"));
    copy(s("b"), s("given/b"));
    copy(s("b"), s("given/sub.so/nested"));
    copy(s("a"), s("second/a"));
    QCOMPARE(::mkfifo(QFile::encodeName(path(s("given/fifo.so"))).constData(), 0600), 0);
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_dir->path()));
    PluginManager manager;
    manager.setPluginPaths(
        { QString(), path(s("second")), path(s("absent")), path(s("given")), path(s("given/../second")) });
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(pictureOf(manager), lines("a Read\nb Read"));
}

void TestPluginManager::pool()
{
    QObject plain;
    PluginManager::addObject(&plain);
    PluginManager::removeObject(&plain);
    QCOMPARE(PluginManager::allObjects(), QVector<QObject *>());

    PluginManager manager;
    QTimer first;
    auto second = std::make_unique<QTimer>();
    for (QObject *obj : { static_cast<QObject *>(&first), &plain, static_cast<QObject *>(second.get()),
             static_cast<QObject *>(&first), static_cast<QObject *>(nullptr) })
        PluginManager::addObject(obj);
    QCOMPARE(PluginManager::allObjects(), (QVector<QObject *> { &first, &plain, second.get() }));
    QCOMPARE(PluginManager::getObjects<QTimer>(), (QVector<QTimer *> { &first, second.get() }));
    PluginManager::removeObject(&plain);
    second.reset();
    QCOMPARE(PluginManager::allObjects(), QVector<QObject *> { &first });
    manager.shutdown();
    QCOMPARE(PluginManager::allObjects(), QVector<QObject *>());
}

QTEST_GUILESS_MAIN(TestPluginManager)
#include "tst_pluginmanager.moc"
