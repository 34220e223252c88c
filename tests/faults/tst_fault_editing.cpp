#include "faulttesting.h"

#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/ieditorfactory.h"
#include "extensionfile/limits.h"
#include "extensionsystem/pluginmanager.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QMap>
#include <QPointer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <map>
#include <memory>

using namespace FaultTesting;

// Loads the plug-in as a host does and drives it through the host's interfaces and object names alone.

namespace {

constexpr char quitOption[] = "--quit-in-mid-scan";
constexpr char useOption[] = "--use";

/// Plug-ins with these files, in a directory of its own.
class Product final
{
public:
    using Files = QMap<QString, QByteArray>;

    explicit Product(const Files &files)
    {
        for (auto file = files.begin(); file != files.end(); ++file) {
            makeDirectory(m_directory.filePath(file.key()));
            makeFile(path(file.key()), file.value());
        }
    }
    [[nodiscard]] QString path(const QString &plugin) const
    {
        return m_directory.filePath(plugin) + QLatin1String("/extension.xml");
    }

private:
    QTemporaryDir m_directory;
};

Product::Files sample()
{
    const QDir source(QStringLiteral(EXTPOINT_SOURCE_DIR "/samples/product/plugins"));
    Product::Files files;
    for (const QString &plugin : source.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        files.insert(plugin, contentsOf(source.filePath(plugin + QLatin1String("/extension.xml"))));
    return files;
}

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

/// A document with something of everything: all names, texts and lists in it are these.
QByteArray document(const QByteArray &name, const QByteArray &text, const QByteArray &list)
{
    QByteArray bytes = R"xml(<Plugin id="$t"><ExtPointSet>
<ExtPoint id="$t" name="$t" hasformat="true" description="$t" displaylabel="text">
<String key="text" name="$t" value="$t" regexp="$t"/><Enum key="e" value="$t"><Data key="1" text="$t"/></Enum>
<SubExtPoint key="$t" childtype="$l"/></ExtPoint></ExtPointSet><ExtDataSet>
<ExtData id="$t"><$n id="$t" text="$t" e="$t" icon="$t" $n="1"/></ExtData>
<ExtData id="$t"><format target="$t" title="$t" toolTip="$t"><MenuBar><$n id="$t" text="$t"/></MenuBar></format></ExtData>
</ExtDataSet></Plugin>)xml";
    return bytes.replace("$n", name).replace("$l", list).replace("$t", text);
}

/// A point with these attributes and this inside, and a record of it.
QByteArray pointWith(const QByteArray &attributes, const QByteArray &content)
{
    QByteArray bytes = R"xml(<Plugin id="p"><ExtPointSet>
<ExtPoint id="p.a" name="A" hasformat="true" displaylabel="k7"$a>$c</ExtPoint></ExtPointSet><ExtDataSet>
<ExtData id="p.a"><a id="r"$a/><Format target="t"><a id="r"/></Format></ExtData></ExtDataSet></Plugin>)xml";
    return bytes.replace("$a", attributes).replace("$c", content);
}

/// @p pattern with the numbers from 0 on for its "#", one after the other.
QByteArray numbered(int count, const QByteArray &pattern)
{
    QByteArray all;
    for (int i = 0; i < count; ++i)
        all += QByteArray(pattern).replace('#', QByteArray::number(i));
    return all;
}

QByteArray nested(int depth)
{
    const auto times = [](int count, const QByteArray &begin, const QByteArray &end) {
        return begin.repeated(count) + end.repeated(count);
    };
    return "<Plugin id=\"p\"><ExtPointSet><ExtPoint id=\"p.a\" name=\"A\" hasformat=\"true\">"
        + times(depth - 3, "<SubExtPoint key=\"s\">", "</SubExtPoint>")
        + "</ExtPoint></ExtPointSet><ExtDataSet><ExtData id=\"p.a\"><format target=\"t\">"
        + times(depth - 4, "<menu id=\"m\">", "</menu>") + "</format></ExtData></ExtDataSet></Plugin>";
}

/// Keeps what takes longer than it may.
class Watch final
{
public:
    Watch() { m_clock.start(); }
    void look(const QString &what)
    {
        QCoreApplication::processEvents();
        if (const qint64 took = m_clock.restart(); took > patienceMs())
            slow += QStringLiteral("%1 took %2 ms; ").arg(what).arg(took);
    }

    QString slow;

private:
    FaultTesting::WorkClock m_clock;
};

/// Goes to rows of every tree and table on both pages, and makes a point.
void walk(QWidget *widget, Watch *watch)
{
    auto *pages = widget->findChild<QTabWidget *>(QStringLiteral("tabWidget"));
    for (int page = 0; page < pages->count(); ++page) {
        pages->setCurrentIndex(page);
        watch->look(pages->tabText(page));
        const auto trees = widget->findChildren<QTreeView *>();
        for (QTreeView *tree : trees) {
            tree->expandAll();
            QModelIndex row = tree->model()->index(0, 0);
            for (int i = 0; i < 60 && row.isValid(); ++i, row = tree->indexBelow(row)) {
                tree->setCurrentIndex(row);
                watch->look(tree->objectName());
                const auto tables = widget->findChildren<QTableView *>();
                for (QTableView *table : tables) {
                    table->setCurrentIndex(table->model()->index(0, 0));
                    watch->look(table->objectName());
                }
            }
        }
    }
    widget->findChild<QAbstractButton *>(QStringLiteral("pushButton_add_extpoint"))->click();
    watch->look(QStringLiteral("a new point"));
}

/// Opens a file, walks through it and saves it. Nothing when all went well.
QString use(Core::IEditorFactory *factory, const QString &path)
{
    Watch watch;
    const OpenedEditor editor(factory, path);
    if (!editor.isOpened())
        return QStringLiteral("not opened");
    watch.look(QStringLiteral("opening"));
    while (editor.isBusy())
        watch.look(QStringLiteral("a turn of the scan"));
    walk(editor.widget(), &watch);
    const QByteArray before = contentsOf(path);
    if (!editor.document()->save(nullptr, path, false) || contentsOf(path) == before)
        return QStringLiteral("not saved");
    watch.look(QStringLiteral("saving"));
    return watch.slow;
}

Core::IEditorFactory *factory()
{
    return ExtensionSystem::PluginManager::getObjects<Core::IEditorFactory>().value(0);
}

void loadPlugins(ExtensionSystem::PluginManager *plugins)
{
    plugins->setPluginPaths({ QStringLiteral(EXTPOINT_BINARY_DIR "/lib/extpoint/plugins") });
    plugins->loadPlugins({});
}

/// What a child of this test does: it opens a file and quits as a host does, so many ms later.
QString quitInMidScan(QApplication &application, const QString &path, int delay)
{
    const OpenedEditor editor(factory(), path);
    if (!editor.isOpened() || !editor.isBusy())
        return QStringLiteral("no scan");
    QTimer::singleShot(delay, &application, &QApplication::quit);
    application.exec();
    return editor.isBusy() ? QStringLiteral("in mid-scan") : QStringLiteral("too late");
}

/// Runs this program with the arguments after the words of @p wrapper. What it prints, when it ends as it should.
QString outputOfChild(QStringList wrapper, const QStringList &arguments)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    wrapper.append(QCoreApplication::applicationFilePath());
    const QString program = wrapper.takeFirst();
    child.start(program, wrapper + arguments);
    const bool ended = child.waitForFinished(300'000) && child.exitStatus() == QProcess::NormalExit;
    return ended && child.exitCode() == 0 ? QString::fromUtf8(child.readAllStandardOutput()).trimmed()
                                          : QStringLiteral("it ended otherwise");
}

} // namespace

class TestFaultEditing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void twoInOneProcess_data();
    void twoInOneProcess();
    void quitsInMidScan();
    void muchOfSomething_data();
    void muchOfSomething();
    void littleStack();
};

void TestFaultEditing::twoInOneProcess_data()
{
    QTest::addColumn<QString>("closed");
    QTest::addColumn<QString>("left");
    QTest::newRow("first closes first") << QStringLiteral("chartdesk") << QStringLiteral("shell");
    QTest::newRow("second closes first") << QStringLiteral("shell") << QStringLiteral("chartdesk");
}

void TestFaultEditing::twoInOneProcess()
{
    QFETCH(QString, closed);
    QFETCH(QString, left);
    const Product product(sample());
    std::map<QString, std::unique_ptr<OpenedEditor>> editors;
    for (const char *name : { "chartdesk", "shell" })
        editors[QString::fromLatin1(name)]
            = std::make_unique<OpenedEditor>(factory(), product.path(QString::fromLatin1(name)));
    Watch watch;
    for (const auto &[name, editor] : editors) {
        QVERIFY(editor->isOpened());
        QTRY_VERIFY(!editor->isBusy());
        walk(editor->widget(), &watch);
    }
    editors.erase(closed);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    walk(editors[left]->widget(), &watch);
    QVERIFY(editors[left]->document()->isModified());
    const QString path = product.path(left);
    const QByteArray before = contentsOf(path);
    QVERIFY(editors[left]->document()->save(nullptr, path, false));
    QVERIFY(contentsOf(path) != before);
    QVERIFY(OpenedEditor(factory(), path).isOpened());
}

void TestFaultEditing::quitsInMidScan()
{
    Product::Files files = sample();
    for (int i = 0; i < 2'000; ++i)
        files.insert(QStringLiteral("more%1").arg(i), documentOf(2'000));
    const Product product(files);
    QRandomGenerator random(11);
    int inMidScan = 0;
    for (int round = 0; round < 12; ++round) {
        const QString said = outputOfChild({},
            { QLatin1String(quitOption), product.path(QStringLiteral("chartdesk")),
                QString::number(random.bounded(60)) });
        QVERIFY2(said == QLatin1String("in mid-scan") || said == QLatin1String("too late"), qPrintable(said));
        inMidScan += said == QLatin1String("in mid-scan");
    }
    QVERIFY2(inMidScan > 2, qPrintable(QString::number(inMidScan)));
}

void TestFaultEditing::muchOfSomething_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QByteArray>("sibling");
    const QByteArray ordinary = document("kind", "ordinary", "menu|action");
    const auto row = [&](const char *name, const QByteArray &bytes) {
        QTest::addRow("%s in the opened file", name) << bytes << ordinary;
        QTest::addRow("%s in a sibling", name) << ordinary << bytes;
    };
    // The parser takes no longer names.
    row("texts of a megabyte",
        document(QByteArray(4'000, 'x'), QByteArray(1'000'000, 'x'), QByteArray("t|").repeated(500'000)));
    row("20,000 declarations", pointWith({}, numbered(20'000, "<String key='k#' name='n#' value='#'/>")));
    row("400 attributes of 10,000 characters", pointWith(numbered(400, " b#='" + QByteArray(10'000, 'x') + '\''), {}));
}

void TestFaultEditing::muchOfSomething()
{
    QFETCH(const QByteArray, own);
    QFETCH(const QByteArray, sibling);
    const Product product({ { QStringLiteral("own"), own }, { QStringLiteral("sibling"), sibling } });
    QCOMPARE(use(factory(), product.path(QStringLiteral("own"))), QString());
    // Nothing of it is lost by showing it. The record has got its defaults.
    const QByteArray saved = contentsOf(product.path(QStringLiteral("own")));
    QVERIFY(saved.count(QByteArray(100, 'x')) >= own.count(QByteArray(100, 'x')));
    QCOMPARE(saved.count("key="), own.count("key="));
}

/// In a process of its own, whose stack is as small as any is.
void TestFaultEditing::littleStack()
{
    const QByteArray bytes = nested(ExtensionFile::Limits().maximumDepth);
    const Product product({ { QStringLiteral("own"), bytes }, { QStringLiteral("sibling"), bytes } });
    QCOMPARE(outputOfChild({ QStringLiteral("/bin/sh"), QStringLiteral("-c"),
                               QStringLiteral("ulimit -s 512 && exec \"$0\" \"$@\"") },
                 { QLatin1String(useOption), product.path(QStringLiteral("own")) }),
        QString());
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString mode = arguments.value(1);
    int result = 0;
    ExtensionSystem::PluginManager plugins;
    loadPlugins(&plugins);
    if (mode == QLatin1String(quitOption) || mode == QLatin1String(useOption)) {
        const QString said = mode == QLatin1String(useOption)
            ? use(factory(), arguments.at(2))
            : quitInMidScan(application, arguments.at(2), arguments.at(3).toInt());
        std::puts(qPrintable(said));
    } else {
        TestFaultEditing test;
        result = QTest::qExec(&test, argc, argv);
    }
    plugins.shutdown();
    return result;
}

#include "tst_fault_editing.moc"
