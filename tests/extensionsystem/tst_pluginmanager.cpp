#include "extensionsystem/pluginmanager.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QtEndian>
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
    void delayedInitializing();
    void outcomes_data();
    void outcomes();
    void files_data();
    void files();
    void onlyTheGivenDirectories();
    void objectsOfAFailedPlugin();
    void asynchronousShutdown_data();
    void asynchronousShutdown();
    void delayedInitializingThatThrows();
    void shutdownByDestructor();
    void afterShutdown();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    void copy(const QString &plugin, const QString &as = {}) const;
    void write(const QString &name, const QByteArray &bytes) const;

    std::unique_ptr<QTemporaryDir> m_dir;
};

namespace {

QStringList takeCalls()
{
    const QStringList calls = qApp->property("calls").toStringList();
    qApp->setProperty("calls", QStringList());
    return calls;
}

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QStringList lines(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QByteArray pluginBytes(const QString &plugin)
{
    QFile file(QStringLiteral(TEST_PLUGIN_DIR) + QLatin1Char('/') + plugin + QStringLiteral(".so"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// One line for each file: its name, the state, and the reason when there is one. Where a line of \a expected ends in
/// "..." (what follows there is the system's wording), the actual line is cut likewise.
QStringList pictureOf(const PluginManager &manager, const QStringList &expected = {})
{
    static const char *const states[]
        = { "Invalid", "Read", "Resolved", "Loaded", "Initialized", "Running", "Stopped" };
    QStringList result;
    const QVector<PluginInfo> plugins = manager.plugins();
    for (const PluginInfo &info : plugins) {
        QString line = QFileInfo(info.filePath).completeBaseName() + QLatin1Char(' ')
            + QLatin1String(states[info.state]) + (info.hasError() ? QStringLiteral(": ") : QString())
            + info.errorString;
        line.replace(QFileInfo(info.filePath).path(), QStringLiteral("DIR"));
        const QString model = expected.value(result.size());
        if (model.endsWith(QLatin1String("...")))
            line = line.left(model.size() - 3) + QStringLiteral("...");
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

void TestPluginManager::copy(const QString &plugin, const QString &as) const
{
    const QByteArray bytes = pluginBytes(plugin);
    QVERIFY2(!bytes.isEmpty(), qPrintable(plugin));
    write((as.isEmpty() ? plugin : as) + QStringLiteral(".so"), bytes);
}

void TestPluginManager::write(const QString &name, const QByteArray &bytes) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), static_cast<qint64>(bytes.size()));
}

void TestPluginManager::lifeCycle()
{
    // Found in the opposite order of what they need.
    copy(QStringLiteral("c"), QStringLiteral("1"));
    copy(QStringLiteral("b"), QStringLiteral("2"));
    copy(QStringLiteral("a"), QStringLiteral("3"));
    PluginManager manager;
    manager.setPluginPaths({ m_dir->path() });
    QCOMPARE(pictureOf(manager), lines("1 Read\n2 Read\n3 Read"));
    QCOMPARE(takeCalls(), QStringList());

    QSignalSpy done(&manager, &PluginManager::initializationDone);
    connect(&manager, &PluginManager::librariesLoaded, this,
        [] { qApp->setProperty("calls", qApp->property("calls").toStringList() << QStringLiteral("all")); });
    manager.loadPlugins({ QStringLiteral("-x"), QStringLiteral("y") });
    QCOMPARE(takeCalls(),
        words("a.loaded b.loaded c.loaded all a.initialize(-x,y) b.initialize(-x,y) c.initialize(-x,y) "
              "c.extensionsInitialized b.extensionsInitialized a.extensionsInitialized"));
    QCOMPARE(pictureOf(manager), lines("1 Running\n2 Running\n3 Running"));
    QVERIFY(!manager.hasErrors());
    QCOMPARE(
        names(PluginManager::allObjects()), words("a.first a.second a.kept a.pooled b.first b.second b.kept b.pooled"));

    QVERIFY(done.wait());
    QCOMPARE(takeCalls(), words("c.delayedInitialize b.delayedInitialize a.delayedInitialize"));

    QStringList removed;
    connect(&manager, &PluginManager::aboutToRemoveObject, this, [&](QObject *obj) { removed << obj->objectName(); });
    manager.shutdown();
    QCOMPARE(takeCalls(),
        words("c.aboutToShutdown b.aboutToShutdown a.aboutToShutdown c.destroyed "
              "b.second.deleted b.first.deleted b.destroyed a.second.deleted a.first.deleted a.destroyed"));
    QCOMPARE(removed, words("b.second b.first b.pooled b.kept a.second a.first a.pooled a.kept"));
    QCOMPARE(PluginManager::allObjects(), QVector<QObject *>());
    QCOMPARE(pictureOf(manager), lines("1 Stopped\n2 Stopped\n3 Stopped"));
}

void TestPluginManager::delayedInitializing()
{
    for (const char *name : { "a", "b", "c" })
        copy(QString::fromLatin1(name));
    PluginManager manager;
    manager.setPluginPaths({ m_dir->path() });
    manager.loadPlugins();
    takeCalls();
    QSignalSpy done(&manager, &PluginManager::initializationDone);
    QTimer turns;
    connect(&turns, &QTimer::timeout, this, [] {
        QStringList calls = qApp->property("calls").toStringList();
        if (!calls.isEmpty() && calls.constLast() != QLatin1String("turn"))
            qApp->setProperty("calls", calls << QStringLiteral("turn"));
    });
    turns.start(0);
    QVERIFY(done.wait());
    turns.stop();
    QCOMPARE(takeCalls().mid(0, 5), words("c.delayedInitialize turn b.delayedInitialize turn a.delayedInitialize"));
}

void TestPluginManager::outcomes_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("picture");
    QTest::addColumn<QStringList>("initialized");
    const auto row = [](const char *tag, const char *files, const char *expected, const char *initialized) {
        QTest::newRow(tag) << words(files) << lines(expected) << words(initialized);
    };
    row("cycle", "a cycle1 cycle2 cycle3 needscycle",
        "a Running\n"
        "cycle1 Read: dependency cycle: cycle1 -> cycle2 -> cycle3 -> cycle1\n"
        "cycle2 Read: dependency cycle: cycle1 -> cycle2 -> cycle3 -> cycle1\n"
        "cycle3 Read: dependency cycle: cycle1 -> cycle2 -> cycle3 -> cycle1\n"
        "needscycle Read: \"cycle2\" is needed and could not be started",
        "a");
    row("missing dependency", "a needsmissing needsneedy",
        "a Running\n"
        "needsmissing Read: \"nowhere\" 1.0.0 is needed and was not found\n"
        "needsneedy Read: \"needsmissing\" is needed and could not be started",
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
        "a fails wantsmissing");
    row("wrong interface id", "a foreign needsforeign",
        "a Running\n"
        "foreign Invalid: the interface id is \"org.extpoint.host.Plugin/0.9\", "
        "not \"org.extpoint.host.Plugin/1.0\"\n"
        "needsforeign Read: \"foreign\" 1.0.0 is needed and was not found",
        "a");
    row("defective metadata", "badversion needsbadversion",
        "badversion Invalid: the \"Version\" \"1.x\" of the plug-in is not of the form \"1.2.3\" or \"1.2.3_4\"\n"
        "needsbadversion Read: \"badversion\" is needed and could not be started",
        "");
    row("initialize returns false", "fails failssilently needsfails",
        "fails Loaded: initializing failed: no paper\n"
        "failssilently Loaded: initializing failed for a reason that the plug-in did not tell\n"
        "needsfails Loaded: \"fails\" is needed and could not be started",
        "fails failssilently");
    row("initialize throws", "a throws",
        "a Running\n"
        "throws Loaded: initializing threw: out of ink",
        "a throws");
    row("constructor throws", "a noconstructor",
        "a Running\n"
        "noconstructor Resolved: creating the plug-in threw: no constructor",
        "a");
    row("extensionsInitialized throws", "a extensionsthrow",
        "a Running\n"
        "extensionsthrow Initialized: taking up extensions threw: something unknown",
        "a extensionsthrow");
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
    QCOMPARE(manager.hasErrors(), !picture.filter(QLatin1String(":")).isEmpty());
    QStringList initialized;
    const QStringList calls = takeCalls().filter(QStringLiteral(".initialize("));
    for (const QString &call : calls)
        initialized.append(call.section(QLatin1Char('.'), 0, 0));
    QTEST(initialized, "initialized");
}

void TestPluginManager::files_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("picture");
    const QByteArray whole = pluginBytes(QStringLiteral("b"));
    QByteArray otherClass = whole;
    otherClass[4] = static_cast<char>(3 - otherClass.at(4));
    QByteArray otherMachine = whole;
    otherMachine[18] = static_cast<char>(~whole.at(18));
    QByteArray noSections = whole;
    noSections.replace(40, 8, QByteArray(8, '\0'));
    QByteArray farSections = whole;
    farSections.replace(40, 8, QByteArray(8, '\xff'));
    QByteArray badNames = whole;
    badNames.replace(62, 2, QByteArray(2, '\xff'));
    QByteArray bigSection = whole;
    const auto secondHeader = qFromLittleEndian<quint64>(whole.constData() + 40) + 64;
    bigSection.replace(static_cast<int>(secondHeader) + 32, 8, QByteArray(4, '\xff') + QByteArray(4, '\0'));
    QByteArray garbledMetaData = whole;
    garbledMetaData.replace("QTMETADATA", "QTMETADOTO");
    QVERIFY(garbledMetaData != whole);
    const auto row = [](const char *tag, const char *name, const QByteArray &bytes, const char *expected) {
        QTest::newRow(tag) << QString::fromLatin1(name) << bytes << lines(expected);
    };
    row("whole", "p.so", whole, "p Read");
    row("other suffix", "p.so.1", whole, "");
    row("library without metadata", "p.so", pluginBytes(QStringLiteral("plain")), "");
    row("linker script", "p.so", "INPUT(libother.so)\n", "");
    row("shorter than a magic number", "p.so", "\x7f", "");
    row("empty", "p.so", "", "p Invalid: the file is empty");
    row("magic number only", "p.so", whole.left(4), "p Invalid: the file is truncated");
    row("header only", "p.so", whole.left(64), "p Invalid: the file is truncated");
    row("half", "p.so", whole.left(whole.size() / 2), "p Invalid: the file is truncated");
    row("one byte missing", "p.so", whole.left(whole.size() - 1), "p Invalid: the file is truncated");
    row("another word size", "p.so", otherClass, "p Invalid: the file was built for another machine");
    row("another machine", "p.so", otherMachine, "p Invalid: the file was built for another machine");
    row("no sections", "p.so", noSections, "");
    row("sections out of reach", "p.so", farSections, "p Invalid: the file is truncated");
    row("section too big", "p.so", bigSection, "p Invalid: the file is truncated");
    row("section names out of reach", "p.so", badNames, "p Invalid: the section headers are damaged");
    row("garbled metadata", "p.so", garbledMetaData, "p Invalid: the metadata can't be read: ...");
}

void TestPluginManager::files()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, picture);
    write(name, bytes);
    PluginManager manager;
    manager.setPluginPaths({ m_dir->path() });
    QCOMPARE(pictureOf(manager, picture), picture);
    QCOMPARE(takeCalls(), QStringList());
}

void TestPluginManager::onlyTheGivenDirectories()
{
    QVERIFY(QDir(m_dir->path()).mkpath(QStringLiteral("given/sub.so")));
    QVERIFY(QDir(m_dir->path()).mkpath(QStringLiteral("second")));
    copy(QStringLiteral("c"), QStringLiteral("c"));
    copy(QStringLiteral("b"), QStringLiteral("given/b"));
    copy(QStringLiteral("b"), QStringLiteral("given/sub.so/nested"));
    copy(QStringLiteral("a"), QStringLiteral("second/a"));
    QCOMPARE(::mkfifo(QFile::encodeName(path(QStringLiteral("given/fifo.so"))).constData(), 0600), 0);
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_dir->path()));
    PluginManager manager;
    manager.setPluginPaths({ QString(), path(QStringLiteral("second")), path(QStringLiteral("absent")),
        path(QStringLiteral("given")), path(QStringLiteral("given/../second")) });
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(pictureOf(manager), lines("a Read\nb Read"));
    QCOMPARE(manager.pluginPaths(),
        (QStringList { QDir(path(QStringLiteral("second"))).canonicalPath(),
            QDir(path(QStringLiteral("given"))).canonicalPath() }));
}

void TestPluginManager::objectsOfAFailedPlugin()
{
    for (const char *name : { "a", "fails", "throws" })
        copy(QString::fromLatin1(name));
    PluginManager manager;
    manager.setPluginPaths({ m_dir->path() });
    manager.loadPlugins();
    QCOMPARE(names(PluginManager::allObjects()), words("a.first a.second a.kept a.pooled"));
    const QStringList calls = takeCalls();
    QCOMPARE(calls.filter(QStringLiteral("fails.")),
        words("fails.loaded fails.initialize() fails.second.deleted fails.first.deleted fails.destroyed"));
    manager.shutdown();
    QCOMPARE(takeCalls().filter(QRegularExpression(QStringLiteral("^(fails|throws)"))), QStringList());
}

void TestPluginManager::asynchronousShutdown_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<int>("timeout");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QString>("warning");
    const auto row = [](const char *tag, const char *files, int timeout, const char *calls, const char *warning) {
        QTest::newRow(tag) << words(files) << timeout << words(calls) << QString::fromLatin1(warning);
    };
    row("later", "later", 30000, "later.aboutToShutdown later.finished later.destroyed", "");
    row("before it returns", "atonce", 30000, "atonce.aboutToShutdown atonce.destroyed", "");
    row("all are asked before one is awaited", "a later atonce", 30000,
        "atonce.aboutToShutdown later.aboutToShutdown a.aboutToShutdown later.finished atonce.destroyed "
        "later.destroyed a.second.deleted a.first.deleted a.destroyed",
        "");
    row("never", "never", 30, "never.aboutToShutdown never.destroyed", "never.so: did not shut down within 30 ms$");
}

void TestPluginManager::asynchronousShutdown()
{
    QFETCH(QStringList, files);
    QFETCH(int, timeout);
    QFETCH(QStringList, calls);
    QFETCH(QString, warning);
    // The found order is the reverse of the order that shutting down takes.
    for (int i = 0; i < files.size(); ++i)
        copy(files.at(i), files.at(i) == QLatin1String("never") ? QString() : QString::number(i));
    PluginManager manager;
    manager.setPluginPaths({ m_dir->path() });
    manager.loadPlugins();
    takeCalls();
    manager.setShutdownTimeout(timeout);
    // The user may well close the window once more while a plug-in is awaited.
    QTimer::singleShot(0, &manager, &PluginManager::shutdown);
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
    manager.shutdown();
    QCOMPARE(takeCalls(), calls);
}

void TestPluginManager::delayedInitializingThatThrows()
{
    for (const char *name : { "a", "delayedthrows" })
        copy(QString::fromLatin1(name));
    PluginManager manager;
    manager.setPluginPaths({ m_dir->path() });
    manager.loadPlugins();
    takeCalls();
    QSignalSpy done(&manager, &PluginManager::initializationDone);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("delayed initializing threw: too late$")));
    QVERIFY(done.wait());
    QCOMPARE(takeCalls(), words("delayedthrows.delayedInitialize a.delayedInitialize"));
}

void TestPluginManager::shutdownByDestructor()
{
    copy(QStringLiteral("c"));
    copy(QStringLiteral("b"));
    copy(QStringLiteral("a"));
    {
        PluginManager manager;
        manager.setPluginPaths({ m_dir->path() });
        manager.loadPlugins();
        takeCalls();
    }
    QCOMPARE(PluginManager::instance(), nullptr);
    QCOMPARE(takeCalls().filter(QStringLiteral("destroyed")), words("c.destroyed b.destroyed a.destroyed"));
    // The delayed calls that were still to come are gone with the manager.
    QTest::qWait(0);
    QCOMPARE(takeCalls(), QStringList());
}

void TestPluginManager::afterShutdown()
{
    copy(QStringLiteral("a"));
    PluginManager manager;
    manager.setPluginPaths({ m_dir->path() });
    manager.loadPlugins();
    manager.loadPlugins();
    QCOMPARE(takeCalls().filter(QStringLiteral("initialize")).size(), 1);
    QSignalSpy done(&manager, &PluginManager::initializationDone);
    manager.shutdown();
    takeCalls();
    manager.shutdown();
    manager.setPluginPaths({});
    manager.loadPlugins();
    // Anything that was still to come would come before a timer started now.
    bool turned = false;
    QTimer::singleShot(0, &manager, [&turned] { turned = true; });
    QTRY_VERIFY(turned);
    QCOMPARE(done.size(), 0);
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(pictureOf(manager), lines("a Stopped"));
}

QTEST_GUILESS_MAIN(TestPluginManager)
#include "tst_pluginmanager.moc"
