#include "clippedtexts.h"
#include "openededitor.h"

#include "core/fileiconprovider.h"
#include "core/reportingdocument.h"
#include "core/undoabledocument.h"
#include "extensionsystem/iplugin.h"
#include "extensionsystem/pluginmanager.h"
#include "shownwords.h"
#include "utils/mimedatabase.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QDirIterator>
#include <QImage>
#include <QLineEdit>
#include <QPointer>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSplitter>
#include <QTest>
#include <QTreeView>

#include <algorithm>
#include <memory>

// Drives the plug-in as a host does: loaded from its directory, through the host's interfaces and object names alone.

class TestExtPointEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void registration();
    void openSaveAndReopen();
    void openOtherwise_data();
    void openOtherwise();
    void uncommittedTextCounts_data();
    void uncommittedTextCounts();
    void pointsThatOthersChange();
    void changesAreNamedAndUndone_data();
    void changesAreNamedAndUndone();
    void textsAreWhole();
    void onlyKnownWordsAreEnglish();
    void viewIsCarriedOver();
    void resultsLeadTo_data();
    void resultsLeadTo();
    void usersAreFound_data();
    void usersAreFound();

private:
    ExtensionSystem::PluginManager m_plugins;
    Core::IEditorFactory *m_factory = nullptr;
};

void TestExtPointEditor::initTestCase()
{
    m_plugins.setPluginPaths({ s(EXTPOINT_BINARY_DIR "/lib/extpoint/plugins") });
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
    const Utils::MimeType type = Utils::MimeDatabase().mimeTypeForFile(sample.path("chartdesk"));
    QCOMPARE(type.name(), s("application/vnd.qt.xml.extpoint"));
    QCOMPARE(type.comment(), s("Qt Resource file"));
    QCOMPARE(type.globPatterns(), QStringList { s("extension.xml") });
    QVERIFY(type.inherits(s("text/xml")));
    QVERIFY(Utils::MimeDatabase().mimeTypeForFile(s("my.extension.xml")).name() != type.name());

    const QImage marked = Core::FileIconProvider::icon(QFileInfo(sample.path("chartdesk"))).pixmap(32).toImage();
    const QImage plain = Core::FileIconProvider::icon(QFileInfo(s("other.xml"))).pixmap(32).toImage();
    QVERIFY2(marked != plain, "no overlay");
}

void TestExtPointEditor::openSaveAndReopen()
{
    const Sample sample;
    const QString path = sample.path("chartdesk");
    QByteArray saved[2];
    for (QByteArray &bytes : saved) {
        const OpenedEditor editor(m_factory);
        const QSignalSpy loaded(editor.document(), SIGNAL(loaded(bool)));
        QCOMPARE(editor.open(path), Core::IDocument::OpenResult::Success);
        QCOMPARE(editor.document()->filePath().toString(), path);
        QVERIFY(!editor.document()->isModified() && editor.busy());
        QTRY_VERIFY(!editor.busy());
        const QAbstractItemModel *points = editor.view("realizationTree")->model();
        QCOMPARE(points->rowCount(points->index(0, 0)), 12);
        QVERIFY(editor.tabs("formatTab")->count() >= 4);
        const QByteArray unsaved = editor.recoverable()->recoveryData();
        QVERIFY(editor.document()->contents().isEmpty());
        // Under another name it is the opened file that is written.
        QVERIFY(editor.document()->save(nullptr, path + s(".copy"), false));
        QVERIFY(!QFile::exists(path + s(".copy")));
        QCOMPARE(loaded.count(), 0);
        bytes = read(path);
        QCOMPARE(unsaved, bytes);
    }
    QVERIFY(saved[0].startsWith("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Plugin id=\"saltmere.chartdesk\""));
    QCOMPARE(saved[1], saved[0]);
    QVERIFY(saved[0].contains("tr('"));
}

void TestExtPointEditor::openOtherwise_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("recovered");
    QTest::addColumn<bool>("opened");
    const QByteArray file = "<Plugin id=\"x\"/>";
    const QByteArray data = "<Plugin id=\"x\"><ExtPointSet><ExtPoint id=\"x.p\" name=\"Kept\"/></ExtPointSet></Plugin>";
    QTest::newRow("a missing file") << QByteArray() << QByteArray() << false;
    QTest::newRow("a malformed file") << QByteArray("<P id=\"x\"><ExtPointSet></P>") << QByteArray() << false;
    QTest::newRow("recovered over the file") << file << data << true;
    QTest::newRow("recovered without the file") << QByteArray() << data << true;
    QTest::newRow("recovered, no document") << file << data.left(30) << false;
    QTest::newRow("recovered, nothing") << file << QByteArray("") << false;
}

void TestExtPointEditor::openOtherwise()
{
    QFETCH(const QByteArray, file);
    QFETCH(const QByteArray, recovered);
    QFETCH(const bool, opened);
    const Sample sample;
    const QString path = sample.path("units");
    write(path, file);
    const QByteArray original = read(path);
    const OpenedEditor editor(m_factory);
    QString error;
    if (recovered.isNull()) {
        QCOMPARE(editor.open(path, &error), Core::IDocument::OpenResult::ReadError);
        QCOMPARE(editor.document()->filePath().toString(), path);
    } else {
        QCOMPARE(editor.recoverable()->recoveryData(), QByteArray());
        QCOMPARE(editor.recoverable()->openRecovered(&error, path, recovered), opened);
    }
    QCOMPARE(error, QString());
    QCOMPARE(read(path), original);
    QCOMPARE(editor.document()->isModified(), opened);
    QCOMPARE(editor.busy(), opened);
    QTRY_VERIFY(!editor.busy());
    // Whatever a host does then, what could not be read stays.
    const QSignalSpy changed(editor.document(), &Core::IDocument::changed);
    // The flag says nothing.
    QVERIFY(QMetaObject::invokeMethod(editor.widget(), "modified", Q_ARG(bool, false)));
    QVERIFY(editor.document()->isModified());
    QVERIFY(editor.document()->save(nullptr, QString(), false));
    QVERIFY(!editor.document()->isModified());
    QCOMPARE(changed.count(), 2);
    if (!opened) {
        QCOMPARE(read(path), original);
        return;
    }
    QCOMPARE(editor.document()->filePath().toString(), path);
    QCOMPARE(editor.row(editor.view("defintionTree"), { 0, 0 }).data().toString(), s("Kept"));
    QVERIFY(read(path).contains("name=\"Kept\""));
}

void TestExtPointEditor::uncommittedTextCounts_data()
{
    QTest::addColumn<QStringList>("places");
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QByteArray>("written");
    for (const char *asked : { "save", "saveNow", "saveReport", "isModified" }) {
        // The views and their rows that lead to the sheet, and the row that is typed into.
        const auto row = [asked](const char *places, const char *written) {
            const QStringList all = s(places).split(QLatin1Char(' '));
            QTest::addRow("%s, %s", qPrintable(all.at(4)), asked) << all << s(asked) << QByteArray(written);
        };
        row("defintionTree P defintionTable text basicInfo name", " name=\"Typed\">");
        row("defintionTree P defintionTable text editInfoWidget key", "<String key=\"Typed\" ");
        row("realizationTree P realizTable r propertyRealization text", "<p id=\"r\" text=\"Typed\"/>");
    }
}

void TestExtPointEditor::uncommittedTextCounts()
{
    QFETCH(const QStringList, places);
    QFETCH(const QString, asked);
    QFETCH(const QByteArray, written);
    const Sample sample;
    const QString path = sample.path("units");
    write(path,
        "<Plugin id=\"u\"><ExtPointSet><ExtPoint id=\"u.p\" name=\"P\"><String key=\"text\" value=\"v\"/></ExtPoint>"
        "</ExtPointSet><ExtDataSet><ExtData id=\"u.p\"><p id=\"r\" text=\"t\"/></ExtData></ExtDataSet></Plugin>");
    const OpenedEditor editor(m_factory);
    QCOMPARE(editor.open(path), Core::IDocument::OpenResult::Success);
    editor.tabs("tabWidget")->setCurrentIndex(places.first() == s("realizationTree") ? 1 : 0);
    editor.widget()->show();
    QTRY_VERIFY(!editor.busy());
    for (const int view : { 0, 2 })
        editor.choose(editor.view(qPrintable(places.at(view))), places.at(view + 1));
    const auto *sheet = editor.widget()->findChild<QWidget *>(places.at(4));
    if (auto *tree = sheet->findChild<QAbstractItemView *>()) {
        editor.choose(tree, places.at(5));
        QTest::keyClick(tree, Qt::Key_F2);
    }
    const auto lines = sheet->findChildren<QLineEdit *>();
    const auto line = std::find_if(
        lines.cbegin(), lines.cend(), [&](const QLineEdit *each) { return each->accessibleName() == places.at(5); });
    QVERIFY(line != lines.cend());
    (*line)->selectAll();
    QTest::keyClicks(*line, s("Typed"));

    auto *reporting = dynamic_cast<Core::ReportingDocument *>(editor.document());
    QByteArray bytes;
    if (asked == s("save") || asked == s("saveNow")) {
        QVERIFY(asked == s("save") ? editor.document()->save(nullptr, QString(), false) : reporting->saveNow(nullptr));
        bytes = read(path);
    } else {
        asked == s("isModified") ? void(editor.document()->isModified()) : void(reporting->saveReport());
        bytes = editor.recoverable()->recoveryData();
    }
    QVERIFY2(bytes.contains(written), bytes.constData());
}

/// They are read when the program comes to the front, and seen once nobody is typing.
void TestExtPointEditor::pointsThatOthersChange()
{
    const Sample sample;
    const QByteArray theirs
        = "<Plugin id=\"fog\"><ExtPointSet><ExtPoint id=\"fog.p\" name=\"Before\"/></ExtPointSet></Plugin>";
    QVERIFY(QDir(sample.dir.path() + s("/plugins")).mkdir(s("fog")));
    write(sample.path("fog"), theirs);
    const OpenedEditor editor(m_factory);
    QCOMPARE(editor.open(sample.path("units")), Core::IDocument::OpenResult::Success);
    editor.widget()->show();
    editor.widget()->activateWindow();
    QTRY_VERIFY(!editor.busy());
    const QAbstractItemModel *points = editor.view("realizationTree")->model();
    const auto shows = [&](const char *name) {
        return !points->match(points->index(0, 0), Qt::DisplayRole, s(name), 1, Qt::MatchRecursive).isEmpty();
    };
    QVERIFY(shows("Before"));
    QAbstractItemView *definitions = editor.view("defintionTree");
    definitions->setCurrentIndex(OpenedEditor::row(definitions, { 0 }));
    QTest::keyClick(definitions, Qt::Key_Insert);
    const auto lines = editor.widget()->findChild<QWidget *>(s("basicInfo"))->findChildren<QLineEdit *>();
    QVERIFY(!lines.isEmpty());
    lines.last()->setFocus();
    QTest::keyClicks(lines.last(), s("typed"));
    write(sample.path("fog"), QByteArray(theirs).replace("Before", "After"));
    Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
    constexpr int longEnoughMs = 500;
    QTest::qWait(longEnoughMs);
    QVERIFY(shows("Before") && lines.last()->text().contains(s("typed")));
    QTest::keyClick(lines.last(), Qt::Key_Return);
    QTRY_VERIFY(shows("After"));
    QVERIFY(!shows("Before"));
}

void TestExtPointEditor::changesAreNamedAndUndone_data()
{
    QTest::addColumn<QString>("view"); // empty for the format tree
    QTest::addColumn<QString>("row");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("sentence");
    const auto row = [](const char *view, const char *rowText, Qt::Key key, const char *sentence) {
        QTest::newRow(sentence) << s(view) << s(rowText) << int(key) << s(sentence);
    };
    row("defintionTree", "P", Qt::Key_Delete, "Deleted point 'u.p' with 3 entries");
    row("defintionTree", "M", Qt::Key_Delete, "Deleted sub point 'menu'");
    row("defintionTree", "u", Qt::Key_Insert, "Added point '\\d+'");
    row("defintionTree", "P", Qt::Key_Insert, "Added sub point 'SubPoint'");
    row("defintionTable", "e", Qt::Key_Delete, "Deleted attribute 'e' with one entry");
    row("realizTable", "r", Qt::Key_Delete, "Deleted p 'r'");
    row("", "m", Qt::Key_Delete, "Deleted menu 'm' with one entry");
    row("", "chart", Qt::Key_Delete, "Deleted format 'chart' with 2 entries");
}

void TestExtPointEditor::changesAreNamedAndUndone()
{
    QFETCH(const QString, view);
    QFETCH(const QString, row);
    QFETCH(const int, key);
    QFETCH(const QString, sentence);
    const Sample sample;
    const QString path = sample.path("units");
    write(path,
        "<Plugin id=\"u\"><ExtPointSet><ExtPoint id=\"u.p\" name=\"P\" hasformat=\"true\"><Enum key=\"e\"><Data "
        "key=\"1\"/></Enum><SubExtPoint key=\"menu\" name=\"M\"/></ExtPoint></ExtPointSet><ExtDataSet><ExtData "
        "id=\"u.p\"><format id=\"chart\"><menu id=\"m\"><menu id=\"n\"/></menu></format><p id=\"r\" e=\"1\"/></ExtData>"
        "</ExtDataSet></Plugin>");
    const OpenedEditor editor(m_factory);
    QCOMPARE(editor.open(path), Core::IDocument::OpenResult::Success);
    const bool isDefinition = view.startsWith(s("defintion"));
    editor.tabs("tabWidget")->setCurrentIndex(isDefinition ? 0 : 1);
    editor.widget()->show();
    QVERIFY(QTest::qWaitForWindowActive(editor.widget()));
    QTRY_VERIFY(!editor.busy());
    editor.choose(editor.view(isDefinition ? "defintionTree" : "realizationTree"), s("P"));
    auto *undoable = dynamic_cast<Core::UndoableDocument *>(editor.document());
    QAbstractItemView *shown = view.isEmpty()
        ? editor.tabs("formatTab")->currentWidget()->findChild<QAbstractItemView *>()
        : editor.view(qPrintable(view));
    editor.choose(shown, row);
    const QByteArray bytes = editor.recoverable()->recoveryData();
    const Core::UndoableDocument::State before = undoable->documentState();
    shown->setFocus();
    QSignalSpy told(editor.document(), &Core::IDocument::changed);
    QTest::keyClick(shown, Qt::Key(key));
    const QByteArray changed = editor.recoverable()->recoveryData();
    QVERIFY(changed != bytes);
    QVERIFY(!told.isEmpty());
    const Core::UndoableDocument::State after = undoable->documentState();
    const auto change = undoable->changeBetween(before, after);
    QVERIFY2(QRegularExpression(QRegularExpression::anchoredPattern(sentence)).match(change.text).hasMatch(),
        qPrintable(change.text));
    QCOMPARE(change.isDeletion, sentence.startsWith(s("Deleted")));
    undoable->setDocumentState(before);
    QCOMPARE(editor.recoverable()->recoveryData(), bytes);
    undoable->setDocumentState(after);
    QCOMPARE(editor.recoverable()->recoveryData(), changed);
    QVERIFY(editor.document()->isModified());
    QVERIFY(undoable->changeBetween(after, undoable->documentState()).text.isEmpty());
}

/// Both pages with an enumeration and its choices, in the least window that is asked for.
void TestExtPointEditor::textsAreWhole()
{
    const Sample sample;
    const OpenedEditor editor(m_factory);
    QCOMPARE(editor.open(sample.path("chartdesk")), Core::IDocument::OpenResult::Success);
    editor.widget()->resize(1024, 640);
    editor.widget()->show();
    QTRY_VERIFY(!editor.busy());
    for (int page = 0; page < 2; ++page) {
        editor.tabs("tabWidget")->setCurrentIndex(page);
        for (QAbstractItemView *view : editor.tabs("tabWidget")->widget(page)->findChildren<QAbstractItemView *>()) {
            if (view->model()->rowCount() == 0)
                continue;
            view->setCurrentIndex(view->model()->index(0, 0));
            QCoreApplication::processEvents();
            const QStringList clipped = ClippedTexts::in(editor.widget());
            QVERIFY2(clipped.isEmpty(), qPrintable(clipped.join(s("\n"))));
        }
    }
    const QString picture = qEnvironmentVariable("EXTPOINT_TEST_PICTURE");
    if (!picture.isEmpty())
        editor.widget()->grab().save(picture);
}

/// In a language of brackets, with menus and sheets as they come: only what is data of the files, or is known.
void TestExtPointEditor::onlyKnownWordsAreEnglish()
{
    ShownWords::Brackets brackets;
    QVERIFY(QCoreApplication::installTranslator(&brackets));
    const auto removed = qScopeGuard([&] { QCoreApplication::removeTranslator(&brackets); });
    const Sample sample;
    QString data;
    for (QDirIterator it(sample.dir.path(), { s("extension.xml") }, QDir::Files, QDirIterator::Subdirectories);
         it.hasNext();)
        data += QString::fromUtf8(read(it.next()));
    const QWidgetList earlier = QApplication::topLevelWidgets();
    const OpenedEditor editor(m_factory);
    QCOMPARE(editor.open(sample.path("chartdesk")), Core::IDocument::OpenResult::Success);
    editor.widget()->show();
    QTRY_VERIFY(!editor.busy());
    QSet<QString> english;
    for (int page = 0; page < 2; ++page) {
        editor.tabs("tabWidget")->setCurrentIndex(page);
        for (QAbstractItemView *view : editor.tabs("tabWidget")->widget(page)->findChildren<QAbstractItemView *>()) {
            editor.choose(view, s("Chart layers"));
            QCoreApplication::processEvents();
            // Menus are windows of their own.
            for (QWidget *window : QApplication::topLevelWidgets()) {
                if (earlier.contains(window))
                    continue;
                const QStringList found = ShownWords::untranslated(window, data);
                english += QSet<QString>(found.cbegin(), found.cend());
            }
        }
    }
    QStringList known;
    for (const QByteArray &line : read(s(EXTPOINT_SOURCE_DIR "/translations/untranslated.txt")).split('\n')) {
        if (!line.isEmpty() && !line.startsWith('#'))
            known.append(QString::fromUtf8(line));
    }
    known.sort();
    QStringList seen = english.values();
    seen.sort();
    QCOMPARE(seen.join(s(", ")), known.join(s(", ")));
}

void TestExtPointEditor::viewIsCarriedOver()
{
    const Sample sample;
    const QString path = sample.path("chartdesk");
    const auto show = [&path](const OpenedEditor &editor) {
        editor.widget()->resize(900, 420);
        editor.widget()->show();
        return QTest::qWaitForWindowActive(editor.widget())
            && editor.open(path) == Core::IDocument::OpenResult::Success;
    };
    const QString splitter = s("splitter_3");
    QVariantMap view;
    QString tab;
    QList<int> sizes;
    int scroll = 0;
    {
        const OpenedEditor editor(m_factory);
        QVERIFY(show(editor));
        QTRY_VERIFY(!editor.busy());
        editor.tabs("formatTab")->setCurrentIndex(2);
        tab = editor.tabs("formatTab")->currentWidget()->objectName();
        auto *available = qobject_cast<QTreeView *>(editor.view("realizationTree"));
        available->expandAll();
        available->collapse(editor.row(available, { 0, 0 }));
        available->setCurrentIndex(editor.row(available, { 0, 5, 0 }));
        available->verticalScrollBar()->setValue(available->verticalScrollBar()->maximum() / 2);
        scroll = available->verticalScrollBar()->value();
        editor.tabs("tabWidget")->setCurrentIndex(0);
        auto *points = qobject_cast<QTreeView *>(editor.view("defintionTree"));
        points->setCurrentIndex(editor.row(points, { 0, 1 }));
        points->collapse(points->currentIndex());
        editor.view("defintionTable")->setCurrentIndex(editor.row(editor.view("defintionTable"), { 1 }));
        editor.widget()->findChild<QSplitter *>(splitter)->setSizes({ 300, 500 });
        sizes = editor.widget()->findChild<QSplitter *>(splitter)->sizes();
        points->setFocus();
        view = editor.keeper()->viewState();
    }
    // There is one more row before the current one.
    write(path, read(path).replace("<ExtPointSet>", "<ExtPointSet><ExtPoint id=\"new\" name=\"New\"/>"));

    const OpenedEditor editor(m_factory);
    QVERIFY(show(editor));
    editor.keeper()->setViewState(view);
    // The own page needs no scan.
    QCOMPARE(editor.tabs("tabWidget")->currentIndex(), 0);
    const auto *points = qobject_cast<QTreeView *>(editor.view("defintionTree"));
    QCOMPARE(points->currentIndex(), editor.row(points, { 0, 2 }));
    QVERIFY(points->selectionModel()->isSelected(points->currentIndex()));
    QVERIFY(!points->isExpanded(points->currentIndex()) && points->isExpanded(editor.row(points, { 0 })));
    QCOMPARE(editor.view("defintionTable")->currentIndex().row(), 1);
    QCOMPARE(editor.widget()->findChild<QSplitter *>(splitter)->sizes(), sizes);
    QVERIFY(points->hasFocus());
    QTRY_VERIFY(!editor.busy());
    QCOMPARE(editor.tabs("formatTab")->currentWidget()->objectName(), tab);
    const auto *available = qobject_cast<QTreeView *>(editor.view("realizationTree"));
    QCOMPARE(available->currentIndex(), editor.row(available, { 0, 5, 0 }));
    QVERIFY(available->isExpanded(editor.row(available, { 0, 5 })));
    QVERIFY(!available->isExpanded(editor.row(available, { 0, 0 })));
    editor.tabs("tabWidget")->setCurrentIndex(1);
    QVERIFY(scroll > 0);
    QTRY_COMPARE(available->verticalScrollBar()->value(), scroll);
    QVERIFY(!editor.document()->isModified());
}

namespace {

/// The sample's own plug-in in a window, with all others read.
bool showRead(const OpenedEditor &editor, const Sample &sample)
{
    if (editor.open(sample.path("chartdesk")) != Core::IDocument::OpenResult::Success)
        return false;
    editor.widget()->resize(1200, 800);
    editor.widget()->show();
    editor.widget()->activateWindow();
    return QTest::qWaitForWindowActive(editor.widget()) && QTest::qWaitFor([&editor] { return !editor.busy(); });
}

QStringList linesOf(Core::ProductSearch *search, int most)
{
    while (search->advance(1)) { }
    QStringList lines;
    const auto results = search->results(most);
    for (const Core::SearchResult &result : results)
        lines.append(QStringList { result.what, result.id, result.label, result.plugin, result.place }.join(s("|")));
    return lines;
}

} // namespace

void TestExtPointEditor::resultsLeadTo_data()
{
    QTest::addColumn<QString>("needle");
    QTest::addColumn<QString>("first");   ///< of the lines
    QTest::addColumn<QString>("place");   ///< where it leads
    QTest::addColumn<QByteArray>("text"); ///< where it begins in the file, and leads there as well
    const auto row
        = [](const char *name, const char *needle, const char *first, const char *place, const char *text = "") {
              QTest::newRow(name) << s(needle) << s(first) << s(place) << QByteArray(text);
          };
    row("own plug-in", "saltmere.CHARTDESK", "plug-in|saltmere.chartdesk|Chart Desk|saltmere.chartdesk|",
        "0 defintionTree saltmere.chartdesk", "<Plugin ");
    row("own point, though others have the word earlier", "saltmere.chart.layers",
        "point|saltmere.chart.layers|Chart layers|saltmere.chartdesk|", "0 defintionTree Chart layers",
        "description=\"Everything");
    row("own sub point", "legend", "sub point|legend|Legend entry|saltmere.chartdesk|saltmere.chart.layers",
        "0 defintionTree Legend entry", "<SubExtPoint key=\"legend");
    row("own attribute", "opacity", "attribute|opacity|Opacity|saltmere.chartdesk|saltmere.chart.layers",
        "0 defintionTable opacity", "<Double key=\"opacity");
    row("choice of an own attribute", "raster", "choice|2|Raster|saltmere.chartdesk|saltmere.chart.layers > source",
        "0 enumTable 2", "<Data key=\"2\" text=\"Raster");
    row("a text that is no label", "Leuchtfeuer", "", "");
    row("own entry", "chart.layer.lights",
        "entry|chart.layer.lights|Lights and sectors|saltmere.chartdesk|saltmere.layout.layers, in chart.group.marks",
        "1 formatTree saltmere.layout.layers chart.layer.lights", "<layer id=\"chart.layer.lights\" text=\"Li");
    row("own record by its label", "Coast line",
        "record|chart.layer.land|Coast line|saltmere.chartdesk|saltmere.chart.layers", "1 realizTable chart.layer.land",
        "source=\"Vector\" order=\"1\"");
    row("record of a sibling's point", "chart.panel.tools",
        "record|chart.panel.tools|Tool box|saltmere.chartdesk|saltmere.shell.panel", "1 realizTable chart.panel.tools",
        "<panel id=\"chart.panel.tools");
    row("sibling's point by what holds its records", "saltmere.shell.panel",
        "point|saltmere.shell.panel|Panels|saltmere.shell|", "1 realizationTree Panels", "id=\"saltmere.shell.panel");
    row("sibling", "saltmere.tides", "plug-in|saltmere.tides|Tide Tables|saltmere.tides|",
        "1 realizationTree saltmere.tides");
}

void TestExtPointEditor::resultsLeadTo()
{
    QFETCH(const QString, needle);
    const Sample sample;
    const OpenedEditor editor(m_factory);
    QVERIFY(showRead(editor, sample));
    const auto search = editor.searchable()->search(needle);
    QTEST(linesOf(search.get(), 1).value(0), "first");
    QVERIFY(search->count() >= search->results(1000).size());
    const auto results = search->results(1);
    if (results.isEmpty())
        return;
    QVERIFY(editor.searchable()->goTo(results.first()));
    QTEST(editor.place(), "place");

    QFETCH(const QByteArray, text);
    if (text.isEmpty())
        return;
    const QByteArray content = read(sample.path("chartdesk"));
    const int offset = content.indexOf(text);
    QVERIFY(offset > 0);
    // Asked for before the siblings have been read.
    const OpenedEditor fresh(m_factory);
    QCOMPARE(fresh.open(sample.path("chartdesk")), Core::IDocument::OpenResult::Success);
    fresh->gotoLine(1 + content.left(offset).count('\n'));
    QTRY_VERIFY(!fresh.busy());
    QTEST(fresh.place(), "place");
}

void TestExtPointEditor::usersAreFound_data()
{
    QTest::addColumn<QString>("needle");
    QTest::addColumn<QString>("users"); ///< plug-ins, with what they use it for
    QTest::newRow("point") << s("saltmere.chart.layers")
                           << s("saltmere.chartdesk format; saltmere.chartdesk record; saltmere.harbourpack format; "
                                "saltmere.harbourpack record; saltmere.tides format; saltmere.tides record; "
                                "saltmere.weather format; saltmere.weather record");
    QTest::newRow("record") << s("Coast line") << s("saltmere.chartdesk entry");
}

void TestExtPointEditor::usersAreFound()
{
    QFETCH(const QString, needle);
    const Sample sample;
    const OpenedEditor editor(m_factory);
    QVERIFY(showRead(editor, sample));
    auto *action = editor.widget()->findChild<QAction *>(s("findUsersAction"));
    QVERIFY(!action->isVisible());
    std::shared_ptr<Core::ProductSearch> presented;
    editor.searchable()->setPresenter([&presented](const QString &, auto search) { presented = search; });
    QVERIFY(action->isVisible());
    const auto search = editor.searchable()->search(needle);
    (void)linesOf(search.get(), 1);
    QVERIFY(editor.searchable()->goTo(search->results(1).value(0)));
    action->trigger();
    QVERIFY(presented);
    QStringList users;
    for (const QString &line : linesOf(presented.get(), 1000))
        users.append(line.section(QLatin1Char('|'), 3, 3) + s(" ") + line.section(QLatin1Char('|'), 0, 0));
    users.removeDuplicates();
    QTEST(users.join(s("; ")), "users");
}

QTEST_MAIN(TestExtPointEditor)
#include "tst_extpointeditor.moc"
