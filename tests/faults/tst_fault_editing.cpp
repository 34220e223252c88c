#include "curioususer.h"
#include "faulttesting.h"

#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/ieditorfactory.h"
#include "extensionfile/limits.h"
#include "extensionsystem/pluginmanager.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QLineEdit>
#include <QPointer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QTimer>
#include <QTreeView>
#include <QXmlStreamReader>

#include <memory>

using namespace FaultTesting;

// Loads the plug-in as a host does and drives it through the host's interfaces and object names alone.

namespace {

constexpr char quitOption[] = "--quit-in-mid-scan";
constexpr char useOption[] = "--use";

/// A copy of the sample product, with as many siblings more as are asked for.
class Sample final
{
public:
    explicit Sample(int more = 0)
    {
        const QDir source(QStringLiteral(EXTPOINT_SOURCE_DIR "/samples/product/plugins"));
        const QStringList plugins = source.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QDir().mkpath(m_directory.path() + QLatin1String("/plugins"));
        for (const QString &plugin : plugins)
            add(plugin, contentsOf(source.filePath(plugin + QLatin1String("/extension.xml"))));
        for (int i = 0; i < more; ++i)
            add(QStringLiteral("more%1").arg(i), documentOf(2'000));
    }
    [[nodiscard]] QString path(const char *plugin) const
    {
        return m_directory.path() + QLatin1String("/plugins/") + QLatin1String(plugin)
            + QLatin1String("/extension.xml");
    }

private:
    void add(const QString &plugin, const QByteArray &bytes) const
    {
        const QString directory = m_directory.path() + QLatin1String("/plugins/") + plugin;
        makeDirectory(directory);
        makeFile(directory + QLatin1String("/extension.xml"), bytes);
    }

    QTemporaryDir m_directory;
};

/// An editor as a host holds it: it deletes the editor, then the widget.
class OpenedEditor final
{
public:
    OpenedEditor(Core::IEditorFactory *factory, const QString &path)
        : m_editor(factory->createEditor()), m_widget(m_editor->widget())
    {
        m_opened = m_editor->document()->open(nullptr, path, path) == Core::IDocument::OpenResult::Success;
        m_widget->resize(1200, 800);
        m_widget->show();
    }
    OpenedEditor(const OpenedEditor &) = delete;
    OpenedEditor &operator=(const OpenedEditor &) = delete;
    ~OpenedEditor()
    {
        m_editor.reset();
        delete m_widget.data();
    }
    [[nodiscard]] Core::IDocument *document() const { return m_editor->document(); }
    [[nodiscard]] QWidget *widget() const { return m_widget; }
    [[nodiscard]] bool isOpened() const { return m_opened; }
    [[nodiscard]] bool isBusy() const { return document()->property("busy").toBool(); }

private:
    std::unique_ptr<Core::IEditor> m_editor;
    QPointer<QWidget> m_widget;
    bool m_opened = false;
};

/// Two plug-ins, "own" and "sibling", with these files.
class Pair final
{
public:
    Pair(const QByteArray &own, const QByteArray &sibling)
    {
        add("own", own);
        add("sibling", sibling);
    }
    [[nodiscard]] QString own() const { return pathOf("own"); }

private:
    void add(const char *name, const QByteArray &bytes) const
    {
        makeDirectory(m_directory.filePath(QLatin1String(name)));
        makeFile(pathOf(name), bytes);
    }
    [[nodiscard]] QString pathOf(const char *name) const
    {
        return m_directory.path() + QLatin1Char('/') + QLatin1String(name) + QLatin1String("/extension.xml");
    }

    QTemporaryDir m_directory;
};

/// A document with something of everything; @p text gives each of its names and values.
QByteArray documentWith(const std::function<QByteArray(const char *)> &text)
{
    const QByteArray point = text("point");
    const QByteArray option = text("option");
    const QByteArray record = "<" + text("kind") + " id=\"" + text("record") + "\" text=\"" + text("text") + "\" e=\""
        + option + "\" icon=\"" + text("icon") + "\" " + text("attribute") + "=\"1\"/>";
    return "<Plugin id=\"" + text("plugin") + "\"><ExtPointSet><ExtPoint id=\"" + point + "\" name=\"" + text("name")
        + "\" hasformat=\"true\" description=\"" + text("description") + "\" displaylabel=\"text\"><String key=\"text\""
        + " name=\"" + text("name") + "\" value=\"" + text("value") + "\" regexp=\"" + text("pattern")
        + "\"/><Enum key=\"e\" value=\"" + option + "\"><Data key=\"1\" text=\"" + option
        + "\"/></Enum><SubExtPoint key=\"" + text("key") + "\" childtype=\"" + text("types")
        + "\"/></ExtPoint></ExtPointSet><ExtDataSet><ExtData id=\"" + point + "\">" + record
        + "</ExtData><ExtData id=\"" + point + "\"><format target=\"" + text("target") + "\" title=\"" + text("title")
        + "\" toolTip=\"" + text("title") + "\"><MenuBar>" + record
        + "</MenuBar></format></ExtData></ExtDataSet></Plugin>";
}

QByteArray ordinaryDocument(const char *plugin)
{
    return documentWith([plugin](const char *what) { return QByteArray(plugin) + what; });
}

/// A point with this inside, and a record of it.
QByteArray pointWith(const QByteArray &attributes, const QByteArray &content)
{
    return "<Plugin id=\"p\"><ExtPointSet><ExtPoint id=\"p.a\" name=\"A\" hasformat=\"true\" displaylabel=\"k7\" "
        + attributes + ">" + content + "</ExtPoint></ExtPointSet><ExtDataSet><ExtData id=\"p.a\"><a id=\"r\" "
        + attributes + "/><Format target=\"t\"><a id=\"r\"/></Format></ExtData></ExtDataSet></Plugin>";
}

QByteArray numbered(int count, const std::function<QByteArray(const QByteArray &)> &make)
{
    QByteArray all;
    for (int i = 0; i < count; ++i)
        all += make(QByteArray::number(i));
    return all;
}

QByteArray nested(int depth)
{
    const QByteArray begin = "<Plugin id=\"p\"><ExtPointSet><ExtPoint id=\"p.a\" name=\"A\" hasformat=\"true\">";
    const QByteArray middle = "</ExtPoint></ExtPointSet><ExtDataSet><ExtData id=\"p.a\"><format target=\"t\">";
    const QByteArray end = "</format></ExtData></ExtDataSet></Plugin>";
    return begin + QByteArray("<SubExtPoint key=\"s\">").repeated(depth - 3)
        + QByteArray("</SubExtPoint>").repeated(depth - 3) + middle + QByteArray("<menu id=\"m\">").repeated(depth - 4)
        + QByteArray("</menu>").repeated(depth - 4) + end;
}

/// Opens a file, tries everything on it and saves it. Nothing when all went well.
QString use(Core::IEditorFactory *factory, const QString &path, bool everything)
{
    FaultTesting::WorkClock clock;
    clock.start();
    const OpenedEditor editor(factory, path);
    if (!editor.isOpened())
        return QStringLiteral("not opened");
    QStringList slow;
    const auto look = [&](const QString &what) {
        const qint64 took = clock.restart();
        if (took > patienceMs())
            slow.append(QStringLiteral("%1 took %2 ms").arg(what).arg(took));
    };
    look(QStringLiteral("opening"));
    while (editor.isBusy()) {
        QCoreApplication::processEvents();
        look(QStringLiteral("a turn of the scan"));
    }
    CuriousUser user(editor.widget(), 1);
    if (everything)
        user.tryEverything();
    else
        user.tryAnything(100);
    if (user.longest() > patienceMs())
        slow.append(QStringLiteral("%1 took %2 ms").arg(user.longestDeed()).arg(user.longest()));
    const QByteArray before = contentsOf(path);
    clock.restart();
    if (!editor.document()->save(nullptr, path, false) || contentsOf(path) == before)
        return QStringLiteral("not saved");
    look(QStringLiteral("saving"));
    return slow.join(QLatin1String("; "));
}

bool loadPlugins(ExtensionSystem::PluginManager *plugins)
{
    plugins->setPluginPaths({ QStringLiteral(EXTPOINT_BINARY_DIR "/lib/extpoint/plugins") });
    plugins->loadPlugins({});
    return ExtensionSystem::PluginManager::getObjects<Core::IEditorFactory>().size() == 1;
}

/// What a child of this test does: it opens a file and quits as a host does, so many ms later.
int quitInMidScan(QApplication &application, const QString &path, int delay)
{
    ExtensionSystem::PluginManager plugins;
    if (!loadPlugins(&plugins))
        return 2;
    auto editor = std::make_unique<OpenedEditor>(
        ExtensionSystem::PluginManager::getObjects<Core::IEditorFactory>().value(0), path);
    if (!editor->isOpened() || !editor->isBusy())
        return 3;
    QTimer::singleShot(delay, &application, &QApplication::quit);
    application.exec();
    // Said only when the moment was the right one.
    if (editor->isBusy())
        std::puts("in mid-scan");
    editor.reset();
    plugins.shutdown();
    return 0;
}

int useInChild(const QString &path)
{
    ExtensionSystem::PluginManager plugins;
    if (!loadPlugins(&plugins))
        return 2;
    const QString problem
        = use(ExtensionSystem::PluginManager::getObjects<Core::IEditorFactory>().value(0), path, true);
    std::puts(qPrintable(problem));
    plugins.shutdown();
    return problem.isEmpty() ? 0 : 1;
}

QString notWellFormed(const QString &path)
{
    QXmlStreamReader xml(contentsOf(path));
    while (!xml.atEnd())
        xml.readNext();
    return xml.hasError() ? QStringLiteral("%1:%2: %3").arg(path).arg(xml.lineNumber()).arg(xml.errorString())
                          : QString();
}

} // namespace

class TestFaultEditing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void twoInOneProcess_data();
    void twoInOneProcess();
    void pastedIntoASheet_data();
    void pastedIntoASheet();
    void quitsInMidScan();
    void muchOfSomething_data();
    void muchOfSomething();
    void littleStack();

private:
    ExtensionSystem::PluginManager m_plugins;
    Core::IEditorFactory *m_factory = nullptr;
};

void TestFaultEditing::initTestCase()
{
    QVERIFY(loadPlugins(&m_plugins));
    m_factory = ExtensionSystem::PluginManager::getObjects<Core::IEditorFactory>().value(0);
}

void TestFaultEditing::cleanupTestCase()
{
    m_plugins.shutdown();
}

void TestFaultEditing::twoInOneProcess_data()
{
    QTest::addColumn<bool>("closeFirst");
    QTest::addColumn<bool>("usedBefore");
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : { 1u, 2u, 3u }) {
        for (const bool used : { false, true }) {
            const char *const what = used ? "used together" : "opened together";
            QTest::addRow("%s, first closes first, seed %u", what, seed) << true << used << seed;
            QTest::addRow("%s, second closes first, seed %u", what, seed) << false << used << seed;
        }
    }
}

void TestFaultEditing::twoInOneProcess()
{
    QFETCH(const bool, closeFirst);
    QFETCH(const bool, usedBefore);
    QFETCH(const quint32, seed);
    const Sample sample;
    auto first = std::make_unique<OpenedEditor>(m_factory, sample.path("chartdesk"));
    auto second = std::make_unique<OpenedEditor>(m_factory, sample.path("shell"));
    QVERIFY(first->isOpened() && second->isOpened());
    QTRY_VERIFY(!first->isBusy() && !second->isBusy());
    if (usedBefore) {
        for (const auto &editor : { first.get(), second.get() }) {
            CuriousUser user(editor->widget(), seed);
            user.tryAnything(60);
            QVERIFY2(user.strayRow().isEmpty(), qPrintable(user.strayRow()));
        }
    }
    (closeFirst ? first : second).reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    const OpenedEditor &left = closeFirst ? *second : *first;
    CuriousUser user(left.widget(), seed);
    user.tryEverything();
    user.tryAnything(200);
    qInfo("%d deeds, the longest took %lld ms (%s)", user.count(), user.longest(), qPrintable(user.longestDeed()));
    QVERIFY(user.count() > 300);
    QVERIFY2(user.strayRow().isEmpty(), qPrintable(user.strayRow()));
    QVERIFY2(user.longest() < patienceMs(), qPrintable(user.longestDeed()));

    QVERIFY(left.document()->isModified());
    const QString path = sample.path(closeFirst ? "shell" : "chartdesk");
    const QByteArray before = contentsOf(path);
    QVERIFY(left.document()->save(nullptr, path, false));
    QVERIFY(contentsOf(path) != before);
    QCOMPARE(notWellFormed(path), QString());
    const OpenedEditor again(m_factory, path);
    QVERIFY(again.isOpened());
}

void TestFaultEditing::pastedIntoASheet_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("kept");

    const auto row
        = [](const char *name, const QString &text, const QString &kept) { QTest::newRow(name) << text << kept; };
    const QString emoji = QString::fromUtf8("\xf0\x9f\x98\x80");
    row("plain", QStringLiteral("Chart"), QStringLiteral("Chart"));
    row("NUL", QStringLiteral("Cha") + QChar(0) + QStringLiteral("rt"), QStringLiteral("Chart"));
    row("control characters", QStringLiteral("C\x01ha\x1frt"), QStringLiteral("Chart"));
    // What the pattern of a name can't match is not taken at all.
    const QString old = QStringLiteral("Quantities");
    row("lone surrogate", QStringLiteral("Cha") + QChar(0xd83d) + QStringLiteral("rt"), old);
    row("surrogates the wrong way round", QStringLiteral("C") + emoji.at(1) + emoji.at(0), old);
    row("markup", QStringLiteral("\"<&>'"), old);
    row("no character", QStringLiteral("Cha") + QChar(0xffff) + QStringLiteral("rt"), QStringLiteral("Chart"));
    row("far plane", emoji, emoji);
}

void TestFaultEditing::pastedIntoASheet()
{
    QFETCH(const QString, text);
    QFETCH(const QString, kept);
    const Sample sample;
    const QString path = sample.path("units");
    {
        const OpenedEditor editor(m_factory, path);
        QVERIFY(editor.isOpened());
        QTRY_VERIFY(!editor.isBusy());
        editor.widget()->findChild<QTabWidget *>(QStringLiteral("tabWidget"))->setCurrentIndex(0);
        auto *tree = editor.widget()->findChild<QAbstractItemView *>(QStringLiteral("defintionTree"));
        tree->setCurrentIndex(tree->model()->index(0, 0, tree->model()->index(0, 0)));
        QPointer<QLineEdit> name;
        const auto lines
            = editor.widget()->findChild<QWidget *>(QStringLiteral("basicInfo"))->findChildren<QLineEdit *>();
        for (QLineEdit *line : lines) {
            if (line->accessibleName() == QLatin1String("name"))
                name = line;
        }
        QVERIFY(name);
        QApplication::clipboard()->setText(text);
        name->selectAll();
        name->paste();
        QVERIFY(editor.document()->save(nullptr, path, false));
        QCOMPARE(notWellFormed(path), QString());
    }
    const OpenedEditor again(m_factory, path);
    QVERIFY(again.isOpened());
    auto *tree = again.widget()->findChild<QAbstractItemView *>(QStringLiteral("defintionTree"));
    QString found = tree->model()->index(0, 0, tree->model()->index(0, 0)).data().toString();
    // A line edit shows a blank in the place of some of them.
    QCOMPARE(found.remove(QLatin1Char(' ')), kept);
}

void TestFaultEditing::quitsInMidScan()
{
    const Sample sample(2'000);
    QRandomGenerator random(11);
    int inMidScan = 0;
    for (int round = 0; round < 12; ++round) {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(),
            { QLatin1String(quitOption), sample.path("chartdesk"), QString::number(random.bounded(60)) });
        QVERIFY(child.waitForFinished(30'000));
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QCOMPARE(child.exitCode(), 0);
        inMidScan += child.readAllStandardOutput().contains("in mid-scan");
    }
    QVERIFY2(inMidScan > 2, qPrintable(QString::number(inMidScan)));
}

void TestFaultEditing::muchOfSomething_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QByteArray>("sibling");
    const auto row = [](const char *name, const QByteArray &bytes) {
        QTest::addRow("%s in the opened file", name) << bytes << ordinaryDocument("s");
        QTest::addRow("%s in a sibling", name) << ordinaryDocument("o") << bytes;
    };
    row("texts of a megabyte", documentWith([](const char *what) {
        // The parser takes no longer ones.
        if (qstrcmp(what, "attribute") == 0 || qstrcmp(what, "kind") == 0)
            return what + QByteArray(4'000, 'x');
        return what + (qstrcmp(what, "types") == 0 ? QByteArray("t|").repeated(500'000) : QByteArray(1'000'000, 'x'));
    }));
    row("20,000 declarations", pointWith({}, numbered(20'000, [](const QByteArray &i) {
        return "<String key=\"k" + i + "\" name=\"n" + i + "\" value=\"" + i + "\"/>";
    })));
    row("400 attributes of 10,000 characters",
        pointWith(
            numbered(400, [](const QByteArray &i) { return " b" + i + "=\"" + QByteArray(10'000, 'x') + '"'; }), {}));
}

void TestFaultEditing::muchOfSomething()
{
    QFETCH(const QByteArray, own);
    QFETCH(const QByteArray, sibling);
    {
        const Pair pair(own, sibling);
        QCOMPARE(use(m_factory, pair.own(), true), QString());
    }
    // Nothing of it is lost by showing it.
    const Pair pair(own, sibling);
    const OpenedEditor editor(m_factory, pair.own());
    QVERIFY(editor.isOpened());
    QTRY_VERIFY_WITH_TIMEOUT(!editor.isBusy(), 60'000);
    auto *pages = editor.widget()->findChild<QTabWidget *>(QStringLiteral("tabWidget"));
    pages->setCurrentIndex(1);
    auto *points = editor.widget()->findChild<QTreeView *>(QStringLiteral("realizationTree"));
    auto *records = editor.widget()->findChild<QAbstractItemView *>(QStringLiteral("realizTable"));
    points->expandAll();
    for (QModelIndex point = points->model()->index(0, 0); point.isValid(); point = points->indexBelow(point)) {
        points->setCurrentIndex(point);
        records->setCurrentIndex(records->model()->index(0, 0));
    }
    QVERIFY(editor.document()->save(nullptr, pair.own(), false));
    const QByteArray saved = contentsOf(pair.own());
    QVERIFY(saved != own);
    // The record has got its defaults.
    QVERIFY(saved.count(QByteArray(100, 'x')) >= own.count(QByteArray(100, 'x')));
    QCOMPARE(saved.count("key="), own.count("key="));
}

/// In a process of its own, whose stack is as small as any is.
void TestFaultEditing::littleStack()
{
    const Pair pair(nested(ExtensionFile::Limits().maximumDepth), nested(ExtensionFile::Limits().maximumDepth));
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QStringLiteral("/bin/sh"),
        { QStringLiteral("-c"), QStringLiteral("ulimit -s 512 && exec \"$0\" \"$@\""),
            QCoreApplication::applicationFilePath(), QLatin1String(useOption), pair.own() });
    QVERIFY(child.waitForFinished(300'000));
    QCOMPARE(child.readAllStandardOutput().trimmed(), QByteArray());
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments.at(1) == QLatin1String(quitOption))
        return quitInMidScan(application, arguments.at(2), arguments.at(3).toInt());
    if (arguments.size() == 3 && arguments.at(1) == QLatin1String(useOption))
        return useInChild(arguments.at(2));
    TestFaultEditing test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_fault_editing.moc"
