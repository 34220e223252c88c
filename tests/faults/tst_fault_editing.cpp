#include "faulttesting.h"

#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/ieditorfactory.h"
#include "extensionfile/limits.h"
#include "extensionsystem/pluginmanager.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QPointer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QXmlStreamReader>

#include <memory>
#include <utility>

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

/// Goes to rows of every tree and table on both pages, and makes a point. What took longest, in ms, and where.
std::pair<qint64, QString> walk(QWidget *widget)
{
    std::pair<qint64, QString> longest;
    FaultTesting::WorkClock clock;
    clock.start();
    const auto look = [&](const QString &where) {
        QCoreApplication::processEvents();
        if (const qint64 took = clock.restart(); took > longest.first)
            longest = { took, where };
    };
    auto *pages = widget->findChild<QTabWidget *>(QStringLiteral("tabWidget"));
    for (int page = 0; page < pages->count(); ++page) {
        pages->setCurrentIndex(page);
        look(pages->tabText(page));
        const auto trees = widget->findChildren<QTreeView *>();
        for (QTreeView *tree : trees) {
            tree->expandAll();
            QModelIndex row = tree->model()->index(0, 0);
            for (int i = 0; i < 60 && row.isValid(); ++i, row = tree->indexBelow(row)) {
                tree->setCurrentIndex(row);
                look(tree->objectName());
                const auto tables = widget->findChildren<QTableView *>();
                for (QTableView *table : tables) {
                    table->setCurrentIndex(table->model()->index(0, 0));
                    look(table->objectName());
                }
            }
        }
    }
    widget->findChild<QAbstractButton *>(QStringLiteral("pushButton_add_extpoint"))->click();
    look(QStringLiteral("a new point"));
    return longest;
}

/// Opens a file, walks through it and saves it. Nothing when all went well.
QString use(Core::IEditorFactory *factory, const QString &path)
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
    if (const auto [took, where] = walk(editor.widget()); took > patienceMs())
        slow.append(QStringLiteral("%1 took %2 ms").arg(where).arg(took));
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
    const QString problem = use(ExtensionSystem::PluginManager::getObjects<Core::IEditorFactory>().value(0), path);
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
    QTest::newRow("first closes first") << true;
    QTest::newRow("second closes first") << false;
}

void TestFaultEditing::twoInOneProcess()
{
    QFETCH(const bool, closeFirst);
    const Sample sample;
    auto first = std::make_unique<OpenedEditor>(m_factory, sample.path("chartdesk"));
    auto second = std::make_unique<OpenedEditor>(m_factory, sample.path("shell"));
    QVERIFY(first->isOpened() && second->isOpened());
    QTRY_VERIFY(!first->isBusy() && !second->isBusy());
    for (const auto &editor : { first.get(), second.get() })
        walk(editor->widget());
    (closeFirst ? first : second).reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    const OpenedEditor &left = closeFirst ? *second : *first;
    walk(left.widget());
    QVERIFY(left.document()->isModified());
    const QString path = sample.path(closeFirst ? "shell" : "chartdesk");
    const QByteArray before = contentsOf(path);
    QVERIFY(left.document()->save(nullptr, path, false));
    QVERIFY(contentsOf(path) != before);
    QCOMPARE(notWellFormed(path), QString());
    const OpenedEditor again(m_factory, path);
    QVERIFY(again.isOpened());
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
        QCOMPARE(use(m_factory, pair.own()), QString());
    }
    // Nothing of it is lost by showing it.
    const Pair pair(own, sibling);
    const OpenedEditor editor(m_factory, pair.own());
    QVERIFY(editor.isOpened());
    QTRY_VERIFY_WITH_TIMEOUT(!editor.isBusy(), 60'000);
    walk(editor.widget());
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
