#include "core/fileiconprovider.h"
#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/ieditorfactory.h"
#include "core/recoverabledocument.h"
#include "core/viewkeeper.h"
#include "extensionsystem/iplugin.h"
#include "extensionsystem/pluginmanager.h"
#include "utils/mimedatabase.h"

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QPointer>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSplitter>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QTreeView>

#include <memory>

// Drives the plug-in as a host does: loaded from its directory, through the host's interfaces and object names alone.

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

const QString pluginDirectory = s(EXTPOINT_BINARY_DIR "/lib/extpoint/plugins");

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

/// A copy of the sample product.
class Sample final
{
public:
    Sample()
    {
        const QDir source(s(EXTPOINT_SOURCE_DIR "/samples/product/plugins"));
        for (const QString &plugin : source.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            QDir(m_directory.path()).mkpath(s("plugins/") + plugin);
            QFile::copy(source.filePath(plugin + s("/extension.xml")), path(plugin));
        }
    }
    [[nodiscard]] QString path(const QString &plugin) const
    {
        return m_directory.path() + s("/plugins/") + plugin + s("/extension.xml");
    }

private:
    QTemporaryDir m_directory;
};

/// An editor as a host holds it: it deletes the editor, then the widget.
class OpenedEditor final
{
public:
    explicit OpenedEditor(Core::IEditorFactory *factory)
        : m_editor(factory->createEditor()), m_widget(m_editor->widget())
    { }
    OpenedEditor(const OpenedEditor &) = delete;
    OpenedEditor &operator=(const OpenedEditor &) = delete;
    ~OpenedEditor()
    {
        m_editor.reset();
        delete m_widget.data();
    }

    Core::IEditor *operator->() const { return m_editor.get(); }
    [[nodiscard]] Core::IDocument *document() const { return m_editor->document(); }
    [[nodiscard]] QWidget *widget() const { return m_widget; }
    [[nodiscard]] bool busy() const { return document()->property("busy").toBool(); }
    [[nodiscard]] Core::IDocument::OpenResult open(const QString &path, QString *error = nullptr) const
    {
        return document()->open(error, path, path);
    }
    [[nodiscard]] QAbstractItemView *view(const char *name) const
    {
        return m_widget->findChild<QAbstractItemView *>(s(name));
    }

private:
    std::unique_ptr<Core::IEditor> m_editor;
    QPointer<QWidget> m_widget;
};

} // namespace

class TestExtPointEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void registration();
    void openSaveAndReopen();
    void openFails_data();
    void openFails();
    void modifiedState();
    void uncommittedTextCounts();
    void recoveryData();
    void openRecovered_data();
    void openRecovered();
    void viewIsCarriedOver();

private:
    ExtensionSystem::PluginManager m_plugins;
    Core::IEditorFactory *m_factory = nullptr;
};

void TestExtPointEditor::initTestCase()
{
    m_plugins.setPluginPaths({ pluginDirectory });
    m_plugins.loadPlugins({});
    for (const ExtensionSystem::PluginInfo &plugin : m_plugins.plugins())
        QVERIFY2(plugin.errorString.isEmpty(), qPrintable(plugin.errorString));
    m_factory = ExtensionSystem::PluginManager::getObjects<Core::IEditorFactory>().value(0);
    QVERIFY(m_factory);
}

void TestExtPointEditor::cleanupTestCase()
{
    QPointer<Core::IEditorFactory> factory = m_factory;
    m_plugins.shutdown();
    QVERIFY2(!factory, "the factory was not released at shutdown");
}

void TestExtPointEditor::registration()
{
    QCOMPARE(m_factory->id(), Core::Id("Qt4.ExtPointEditor"));
    QCOMPARE(m_factory->mimeTypes(), QStringList { s("application/vnd.qt.xml.extpoint") });
    QCOMPARE(m_factory->displayName(), s("ExtPoint Editor"));
    QCOMPARE(
        QByteArray(m_factory->metaObject()->className()), QByteArray("PointEditor::Internal::ExtPointEditorFactory"));
    QVERIFY(QByteArray(m_factory->parent()->metaObject()->className()).endsWith("::ExtPointEditorPlugin"));

    const Sample sample;
    const Utils::MimeType type = Utils::MimeDatabase().mimeTypeForFile(sample.path(s("chartdesk")));
    QCOMPARE(type.name(), s("application/vnd.qt.xml.extpoint"));
    QCOMPARE(type.comment(), s("Qt Resource file"));
    QCOMPARE(type.globPatterns(), QStringList { s("extension.xml") });
    QVERIFY(type.inherits(s("text/xml")));
    QVERIFY(Utils::MimeDatabase().mimeTypeForFile(s("my.extension.xml")).name() != type.name());

    const QImage marked = Core::FileIconProvider::icon(QFileInfo(sample.path(s("chartdesk")))).pixmap(32).toImage();
    const QImage plain = Core::FileIconProvider::icon(QFileInfo(s("other.xml"))).pixmap(32).toImage();
    QVERIFY2(marked != plain, "no overlay");
}

void TestExtPointEditor::openSaveAndReopen()
{
    const Sample sample;
    const QString path = sample.path(s("chartdesk"));
    QByteArray saved[2];
    for (QByteArray &bytes : saved) {
        const OpenedEditor editor(m_factory);
        const QSignalSpy loaded(editor.document(), SIGNAL(loaded(bool)));
        QString error = s("untouched");
        QCOMPARE(editor.open(path, &error), Core::IDocument::OpenResult::Success);
        QCOMPARE(error, s("untouched"));
        QCOMPARE(editor.document()->filePath().toString(), path);
        QVERIFY(!editor.document()->isModified());
        QVERIFY(editor.busy());
        QTRY_VERIFY(!editor.busy());
        QCOMPARE(
            editor.view("realizationTree")->model()->rowCount(editor.view("realizationTree")->model()->index(0, 0)),
            12);
        QCOMPARE(editor.widget()->findChild<QTabWidget *>(s("formatTab"))->count() >= 4, true);
        // Under another name it is the opened file that is written.
        const QString elsewhere = path + s(".copy");
        QVERIFY(editor.document()->save(nullptr, elsewhere, false));
        QVERIFY(!QFile::exists(elsewhere));
        QCOMPARE(loaded.count(), 0);
        bytes = read(path);
    }
    QVERIFY(saved[0].startsWith("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Plugin id=\"saltmere.chartdesk\""));
    QCOMPARE(saved[1], saved[0]);
    QVERIFY(saved[0].contains("tr('"));
}

void TestExtPointEditor::openFails_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("malformed") << QByteArray("<P id=\"x\"><ExtPointSet></P>");
}

void TestExtPointEditor::openFails()
{
    QFETCH(const QByteArray, content);
    const Sample sample;
    const QString path = sample.path(s("branding"));
    if (!content.isNull()) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    const OpenedEditor editor(m_factory);
    QString error;
    QCOMPARE(editor.open(path, &error), Core::IDocument::OpenResult::ReadError);
    QCOMPARE(error, QString());
    QVERIFY(!editor.busy());
    // Whatever a host does then, what could not be read stays.
    QVERIFY(editor.document()->save(nullptr, QString(), false));
    QCOMPARE(QFile::exists(path), !content.isNull());
    if (!content.isNull())
        QCOMPARE(read(path), content);
}

void TestExtPointEditor::modifiedState()
{
    const Sample sample;
    const OpenedEditor editor(m_factory);
    QCOMPARE(editor.open(sample.path(s("units"))), Core::IDocument::OpenResult::Success);
    QSignalSpy changed(editor.document(), &Core::IDocument::changed);
    for (const bool flag : { false, true }) {
        QVERIFY(QMetaObject::invokeMethod(editor.widget(), "modified", Q_ARG(bool, flag)));
        QVERIFY(editor.document()->isModified());
        QCOMPARE(changed.count(), 1);
        QVERIFY(editor.document()->save(nullptr, QString(), false));
        QVERIFY(!editor.document()->isModified());
        QCOMPARE(changed.count(), 2);
        changed.clear();
    }
}

void TestExtPointEditor::uncommittedTextCounts()
{
    const Sample sample;
    const OpenedEditor editor(m_factory);
    QCOMPARE(editor.open(sample.path(s("units"))), Core::IDocument::OpenResult::Success);
    editor.widget()->findChild<QTabWidget *>(s("tabWidget"))->setCurrentIndex(0);
    editor.widget()->show();
    auto *tree = editor.view("defintionTree");
    const QModelIndex point = tree->model()->index(0, 0, tree->model()->index(0, 0));
    tree->setCurrentIndex(point);
    QLineEdit *name = nullptr;
    for (auto *line : editor.widget()->findChild<QWidget *>(s("basicInfo"))->findChildren<QLineEdit *>()) {
        if (line->accessibleName() == s("name"))
            name = line;
    }
    QVERIFY(name);
    name->selectAll();
    QTest::keyClicks(name, s("Typed only"));
    QVERIFY(editor.document()->isModified());
    QVERIFY(editor.document()->save(nullptr, QString(), false));
    QVERIFY(read(sample.path(s("units"))).contains("name=\"Typed only\""));
    QCOMPARE(point.data().toString(), s("Typed only"));
}

void TestExtPointEditor::recoveryData()
{
    const Sample sample;
    const QString path = sample.path(s("chartdesk"));
    const QByteArray original = read(path);
    const OpenedEditor editor(m_factory);
    const auto *recoverable = dynamic_cast<Core::RecoverableDocument *>(editor.document());
    QVERIFY(recoverable);
    QCOMPARE(recoverable->recoveryData(), QByteArray());
    QCOMPARE(editor.open(path), Core::IDocument::OpenResult::Success);
    // What is translatable is not known yet; the marks are kept as they were read.
    QVERIFY(editor.busy());
    const auto markedValues = [](const QByteArray &file) {
        return QString::fromUtf8(file).count(QRegularExpression(s("=\"[^\"]*tr\\('")));
    };
    QVERIFY(markedValues(recoverable->recoveryData()) >= markedValues(original));
    QTRY_VERIFY(!editor.busy());
    QVERIFY(QMetaObject::invokeMethod(editor.widget(), "modified", Q_ARG(bool, true)));
    const QByteArray data = recoverable->recoveryData();
    QCOMPARE(read(path), original);
    QVERIFY(editor.document()->isModified() && editor.document()->contents().isEmpty());
    QVERIFY(editor.document()->save(nullptr, QString(), false));
    QCOMPARE(data, read(path));
    QVERIFY(data.contains("tr('"));
}

void TestExtPointEditor::openRecovered_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<bool>("fileExists");
    QTest::addColumn<bool>("opened");
    const QByteArray data = "<Plugin id=\"x\"><ExtPointSet><ExtPoint id=\"x.p\" name=\"Kept\"/></ExtPointSet></Plugin>";
    QTest::newRow("over the file") << data << true << true;
    QTest::newRow("without the file") << data << false << true;
    QTest::newRow("no document") << QByteArray("<Plugin id=\"x\"><ExtPointSet>") << true << false;
    QTest::newRow("nothing") << QByteArray() << true << false;
}

void TestExtPointEditor::openRecovered()
{
    QFETCH(const QByteArray, data);
    QFETCH(const bool, fileExists);
    QFETCH(const bool, opened);
    const Sample sample;
    const QString path = sample.path(s("units"));
    if (!fileExists)
        QVERIFY(QFile::remove(path));
    const QByteArray original = read(path);
    const OpenedEditor editor(m_factory);
    auto *recoverable = dynamic_cast<Core::RecoverableDocument *>(editor.document());
    if (!opened)
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression(QLatin1Char('^') + QRegularExpression::escape(path) + s(":.+")));
    QString error;
    QCOMPARE(recoverable->openRecovered(&error, path, data), opened);
    QCOMPARE(error, QString());
    QCOMPARE(read(path), original);
    QCOMPARE(editor.document()->isModified(), opened);
    if (!opened)
        return;
    QCOMPARE(editor.document()->filePath().toString(), path);
    const QAbstractItemModel *points = editor.view("defintionTree")->model();
    QCOMPARE(points->index(0, 0, points->index(0, 0)).data().toString(), s("Kept"));
    QTRY_VERIFY(!editor.busy());
    QVERIFY(editor.document()->save(nullptr, QString(), false));
    QVERIFY(read(path).contains("name=\"Kept\""));
    QVERIFY(!editor.document()->isModified());
}

void TestExtPointEditor::viewIsCarriedOver()
{
    const Sample sample;
    const QString path = sample.path(s("chartdesk"));
    const auto pathTo = [](const QModelIndex &index) {
        QStringList texts;
        for (QModelIndex step = index; step.isValid(); step = step.parent())
            texts.prepend(step.data().toString());
        return texts;
    };
    const auto rowUnder = [](const QTreeView *tree, int first, int second) {
        return tree->model()->index(second, 0, tree->model()->index(first, 0, tree->model()->index(0, 0)));
    };
    QVariantMap view;
    QStringList currentPoint;
    QStringList currentAvailable;
    QList<int> sizes;
    int scroll = 0;
    QString tab;
    {
        const OpenedEditor editor(m_factory);
        editor.widget()->resize(900, 420);
        editor.widget()->show();
        QCOMPARE(editor.open(path), Core::IDocument::OpenResult::Success);
        QTRY_VERIFY(!editor.busy());
        auto *formats = editor.widget()->findChild<QTabWidget *>(s("formatTab"));
        formats->setCurrentIndex(2);
        tab = formats->currentWidget()->objectName();
        auto *available = qobject_cast<QTreeView *>(editor.view("realizationTree"));
        available->expandAll();
        available->collapse(available->model()->index(0, 0, available->model()->index(0, 0)));
        available->setCurrentIndex(rowUnder(available, 5, 0));
        currentAvailable = pathTo(available->currentIndex());
        available->verticalScrollBar()->setValue(available->verticalScrollBar()->maximum() / 2);
        scroll = available->verticalScrollBar()->value();
        QVERIFY(scroll > 0);
        editor.widget()->findChild<QTabWidget *>(s("tabWidget"))->setCurrentIndex(0);
        auto *points = qobject_cast<QTreeView *>(editor.view("defintionTree"));
        points->setCurrentIndex(points->model()->index(1, 0, points->model()->index(0, 0)));
        currentPoint = pathTo(points->currentIndex());
        points->collapse(points->currentIndex());
        editor.view("defintionTable")->setCurrentIndex(editor.view("defintionTable")->model()->index(1, 0));
        auto *splitter = editor.widget()->findChild<QSplitter *>(s("splitter_3"));
        splitter->setSizes({ 300, 500 });
        sizes = splitter->sizes();
        view = dynamic_cast<Core::ViewKeeper *>(editor.operator->())->viewState();
    }
    // There is one more row before the current one.
    QByteArray changed = read(path);
    changed.replace("<ExtPointSet>", "<ExtPointSet><ExtPoint id=\"new\" name=\"New\"/>");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(changed) == changed.size());
    file.close();

    const OpenedEditor editor(m_factory);
    editor.widget()->resize(900, 420);
    editor.widget()->show();
    QCOMPARE(editor.open(path), Core::IDocument::OpenResult::Success);
    dynamic_cast<Core::ViewKeeper *>(editor.operator->())->setViewState(view);
    // The own page needs no scan.
    QCOMPARE(editor.widget()->findChild<QTabWidget *>(s("tabWidget"))->currentIndex(), 0);
    auto *points = qobject_cast<QTreeView *>(editor.view("defintionTree"));
    QCOMPARE(pathTo(points->currentIndex()), currentPoint);
    QCOMPARE(points->currentIndex().row(), 2);
    QVERIFY(points->selectionModel()->isSelected(points->currentIndex()));
    QVERIFY(!points->isExpanded(points->currentIndex()));
    QVERIFY(points->isExpanded(points->model()->index(0, 0)));
    QCOMPARE(editor.view("defintionTable")->currentIndex().row(), 1);
    QCOMPARE(editor.widget()->findChild<QSplitter *>(s("splitter_3"))->sizes(), sizes);
    QTRY_VERIFY(!editor.busy());
    QCOMPARE(editor.widget()->findChild<QTabWidget *>(s("formatTab"))->currentWidget()->objectName(), tab);
    auto *available = qobject_cast<QTreeView *>(editor.view("realizationTree"));
    QCOMPARE(pathTo(available->currentIndex()), currentAvailable);
    QVERIFY(available->isExpanded(available->currentIndex().parent()));
    QVERIFY(!available->isExpanded(available->model()->index(0, 0, available->model()->index(0, 0))));
    editor.widget()->findChild<QTabWidget *>(s("tabWidget"))->setCurrentIndex(1);
    QTRY_COMPARE(available->verticalScrollBar()->value(), scroll);
    QVERIFY(!editor.document()->isModified());
}

QTEST_MAIN(TestExtPointEditor)
#include "tst_extpointeditor.moc"
