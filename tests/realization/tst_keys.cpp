// What can be done with the keys alone, on both pages.

#include "accessiblewalk.h"
#include "keyboard.h"
#include "realizationpage.h"
#include "tabcycle.h"

#include "form/drops/entrymove.h"
#include "form/drops/pointdrop.h"
#include "form/drops/recorddrop.h"
#include "form/filterline.h"
#include "model/ownchange.h"

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidgetItemIterator>

#include <functional>

using namespace RealizationTesting;
using Node = PointTreeWidgetItem;
using Action = std::function<void(Page &)>;

Q_DECLARE_METATYPE(Action)

namespace {

const Sibling host { "host",
    R"(<ExtPointSet><ExtPoint id="host.cmd" name="Commands" hasformat="true"><String key="text" value="New"/>
<SubExtPoint key="format" childType="menubar|menu|action"/><SubExtPoint key="menubar" childType="menu"/>
<SubExtPoint key="menu" name="Menu" childType="menu|action"/><SubExtPoint key="action" name="Action"/></ExtPoint>
<ExtPoint name="Nameless"/></ExtPointSet>)" };

const Sibling menus { "menus",
    data("<format target='theirs'><menubar><menu id='t1'/></menubar></format>"
         "<format target='both'><menubar><menu id='b1'/><menu id='b2'/></menubar></format>",
        "host.cmd") };

const QByteArray ownSets = points("<ExtPoint id='own.p' name='Point'><String key='text' name='Text'/>"
                                  "<Enum key='e' value='two'><Data key='1' text='one'/><Data key='2' text='two'/>"
                                  "<Data key='3' text='three'/></Enum><Int key='n'/><SubExtPoint key='sub' name='Sub'/>"
                                  "</ExtPoint>")
    + data("<format target='mine'><menubar><menu id='m1'><action id='a1'/><action id='a2' text='Own'/></menu>"
           "<menu id='m2'/></menubar></format><Format target='both'><action id='a1' parent='b1'/>"
           "<action id='a2' parent='b2'/><menu id='m1' parent='b1'/></Format><action id='a1' text='One'/>"
           "<action id='a2'/><menu id='m1'/>",
        "host.cmd");

/// The numbers of generated ids are left out.
QString masked(QString text)
{
    static const QRegularExpression number(s("(own\\.[A-Za-z]+)[0-9]{1,4}\\b"));
    return text.replace(number, s("\\1#"));
}

QString shown(const Page &page)
{
    return page.formatLines().join(QLatin1Char(';')).remove(QLatin1Char(' '));
}

} // namespace

class TestKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tabComesRound_data();
    void tabComesRound();
    void menuComesUpAtTheRow_data();
    void menuComesUpAtTheRow();
    void createsRecords_data();
    void createsRecords();
    void pastesAsDropped();
    void copiesAnEntry();
    void sheetFollowsTab();
    void hiddenRowsAreLeftAlone();
    void movesByOne_data();
    void movesByOne();
    void movesRows_data();
    void movesRows();
    void smallThings();
};

void TestKeys::tabComesRound_data()
{
    QTest::addColumn<Action>("prepare");
    QTest::addColumn<int>("least"); ///< as many controls at least, so that the row is about what it says
    const auto row
        = [](const char *name, int least, const Action &prepare) { QTest::newRow(name) << prepare << least; };
    row("plug-in", 4, [](Page &page) { page.define(); });
    row("point", 8, [](Page &page) { page.define("Point"); });
    row("attribute", 10, [](Page &page) {
        page.define("Point");
        page.clickAttribute(0);
    });
    row("enumeration", 11, [](Page &page) {
        page.define("Point");
        page.clickAttribute(1);
    });
    row("entry of an enumeration", 12, [](Page &page) {
        page.define("Point");
        page.clickAttribute(1);
        page.entries()->setCurrentCell(1, 0);
    });
    row("sub point", 8, [](Page &page) { page.define("Sub"); });
    row("nothing selected", 3, [](Page &page) { page.showPage(1); });
    row("point without records", 4, [](Page &page) { page.clickPoint("Point"); });
    row("point with formats", 5, [](Page &page) { page.clickPoint(); });
    row("record", 6, [](Page &page) {
        page.clickPoint();
        page.clickRecord(1);
    });
    row("format entry", 6, [](Page &page) {
        showTab(page, "both");
        showTab(page, "mine");
        page.clickEntry("a2");
    });
    row("after a sheet was typed into", 6, [](Page &page) {
        page.clickPoint();
        page.clickRecord(1);
        page.sheet()->openEditor(s("text"));
        page.showPage(0);
        page.showPage(1);
    });
}

void TestKeys::tabComesRound()
{
    QFETCH(const Action, prepare);
    QFETCH(const int, least);
    Page page(ownSets, { host, menus });
    prepare(page);
    const TabCycle cycle(page.widget.get());
    QVERIFY2(cycle.size() >= least, QByteArray::number(cycle.size()).constData());
    QVERIFY2(cycle.complaint(false).isEmpty(), qPrintable(cycle.complaint(false)));
    QVERIFY2(cycle.complaint(true).isEmpty(), qPrintable(cycle.complaint(true)));
    QCOMPARE(AccessibleWalk::complaints(page.widget.get()), QString());
    QCOMPARE(page.modified, 0);
}

void TestKeys::menuComesUpAtTheRow_data()
{
    QTest::addColumn<QByteArray>("view");
    QTest::addColumn<Action>("prepare");
    QTest::addColumn<QString>("offered");
    const auto row = [](const char *name, const char *view, const char *offered, const Action &prepare) {
        QTest::newRow(name) << QByteArray(view) << prepare << s(offered);
    };
    row("point of the file", "defintionTree", "Create Sub Point;Delete Point",
        [](Page &page) { page.define("Point"); });
    row("point", "realizationTree", "Create Record;Copy", [](Page &page) { page.clickPoint(); });
    row("plug-in", "realizationTree", "-Create Record;-Copy", [](Page &page) { page.clickPoint("host"); });
    row("point without id", "realizationTree", "-Create Record;Copy", [](Page &page) { page.clickPoint("Nameless"); });
    row("entry", "formatTree", "Child Type;Delete;Copy;Cut;-Paste", [](Page &page) {
        showTab(page, "mine");
        page.clickEntry("m2");
    });
    row("record", "realizTable", "Delete;Meta;Create Record;Copy;-Paste", [](Page &page) {
        page.clickPoint();
        page.clickRecord(2);
    });
    row("no record", "realizTable", "-Delete;Meta;Create Record;-Copy;Paste", [](Page &page) {
        page.clickPoint("Sub");
        keyWith(page.points(), Qt::Key_C, Qt::ControlModifier);
    });
}

void TestKeys::menuComesUpAtTheRow()
{
    QFETCH(const QByteArray, view);
    QFETCH(const Action, prepare);
    Page page(ownSets, { host, menus });
    // So that there is room for the menu below it.
    page.widget->move(0, 0);
    page.widget->resize(700, 500);
    prepare(page);
    auto *shownView = page.find<QAbstractItemView>(view.constData());
    // Far from everything.
    QCursor::setPos(page.widget->mapToGlobal(page.widget->rect().bottomRight()));
    for (const bool shiftF10 : { false, true }) {
        QPoint at;
        const QPersistentModelIndex current(shownView->currentIndex());
        const QString offered = menuByKey(page, shownView, shiftF10, &at).join(QLatin1Char(';'));
        QTEST(offered, "offered");
        if (current.isValid())
            QCOMPARE(at, shownView->visualRect(current).bottomLeft());
    }
}

void TestKeys::createsRecords_data()
{
    QTest::addColumn<QByteArray>("point");
    QTest::addColumn<Action>("create");
    for (const char *point : { "Commands", "Action", "Point", "Sub" }) {
        const auto row = [point](const char *name, const Action &create) {
            QTest::addRow("%s, %s", point, name) << QByteArray(point) << create;
        };
        row("Insert in the tree", [](Page &page) { keyWith(page.points(), Qt::Key_Insert); });
        row("Insert in the table", [](Page &page) { keyWith(page.table(), Qt::Key_Insert); });
        row("menu of the tree", [point](Page &page) { page.menu(page.points(), page.point(point), "Create Record"); });
        row("menu of the table", [](Page &page) {
            page.menu(page.table(), QPoint(5, page.table()->viewport()->height() - 2), s("Create Record"));
        });
        row("pasted", [](Page &page) {
            keyWith(page.points(), Qt::Key_C, Qt::ControlModifier);
            page.clickPoint("Nameless");
            keyWith(page.table(), Qt::Key_V, Qt::ControlModifier);
        });
    }
}

/// What is made, shown and announced is what a drop onto the table makes.
void TestKeys::createsRecords()
{
    QFETCH(const QByteArray, point);
    QFETCH(const Action, create);
    Page dropped(ownSets, { host });
    dropped.dropOnTable(point.constData());
    const QStringList records = dropped.records();
    const QStringList sheet = sheetLines(dropped.sheet()->properties());
    const int row = dropped.table()->currentRow();
    const int modified = dropped.modified;
    const QString saved = masked(QString::fromUtf8(dropped.save()));

    Page page(ownSets, { host });
    page.clickPoint(point.constData());
    create(page);
    QCOMPARE(masked(page.records().join(QLatin1Char(';'))), masked(records.join(QLatin1Char(';'))));
    QCOMPARE(
        masked(sheetLines(page.sheet()->properties()).join(QLatin1Char(';'))), masked(sheet.join(QLatin1Char(';'))));
    QCOMPARE(page.table()->currentRow(), row);
    QCOMPARE(page.points()->currentItem(), static_cast<QTreeWidgetItem *>(page.point(point.constData())));
    QCOMPARE(page.modified, modified);
    QCOMPARE(masked(QString::fromUtf8(page.save())), saved);
}

/// Each thing that can be dragged, pasted onto each row of each tab.
void TestKeys::pastesAsDropped()
{
    struct Dragged
    {
        const char *name;
        enum { Record, Point, Entry } what;
    };
    int done = 0;
    int refused = 0;
    for (const char *tab : { "mine", "theirs", "both" }) {
        for (const Dragged &dragged : { Dragged { "a2", Dragged::Record }, Dragged { "m1", Dragged::Record },
                 Dragged { "Action", Dragged::Point }, Dragged { "Menu", Dragged::Point },
                 Dragged { "a2", Dragged::Entry }, Dragged { "m1", Dragged::Entry } }) {
            for (int row = 0;; ++row) {
                const auto open = [&](Page &page) -> Node * {
                    showTab(page, tab);
                    QTreeWidgetItemIterator it(page.formats());
                    it += row;
                    return Node::fromRow(*it);
                };
                Page left(ownSets, { host, menus });
                Node *target = open(left);
                if (!target)
                    break;
                if (dragged.what == Dragged::Entry && !left.entry(dragged.name))
                    break;
                const DropSite site = left.site(target);
                Node *moved = dragged.what == Dragged::Record ? left.record(dragged.name)
                    : dragged.what == Dragged::Point          ? left.point(dragged.name)
                                                              : left.entry(dragged.name);
                const auto source = dragged.what == Dragged::Record ? RealizationTreeWidget::Source::Table
                                                                    : RealizationTreeWidget::Source::Tree;
                const bool fits = bool(RealizationTreeWidget::planFor(site, moved, source));
                OwnSlots::FirstFound found;
                if (fits) {
                    left.drop(dragged.what == Dragged::Record ? RecordDrop::perform(site, moved)
                            : dragged.what == Dragged::Point  ? PointDrop::perform(site, moved, &found)
                                                              : EntryMove::perform(site, moved));
                }

                Page right(ownSets, { host, menus });
                target = open(right);
                if (dragged.what == Dragged::Point) {
                    right.points()->setCurrentItem(right.point(dragged.name));
                    keyWith(right.points(), Qt::Key_C, Qt::ControlModifier);
                    target = open(right);
                } else if (dragged.what == Dragged::Record) {
                    for (int i = 0; i < right.table()->rowCount(); ++i) {
                        if (right.table()->item(i, 0)->text() == s(dragged.name))
                            right.clickRecord(i);
                    }
                    keyWith(right.table(), Qt::Key_C, Qt::ControlModifier);
                    QCOMPARE(QGuiApplication::clipboard()->text(), s(dragged.name));
                } else {
                    right.clickEntry(dragged.name);
                    keyWith(right.formats(), Qt::Key_X, Qt::ControlModifier);
                }
                right.formats()->setCurrentItem(target);
                const int before = right.modified;
                keyWith(right.formats(), Qt::Key_V, Qt::ControlModifier);
                const auto where
                    = [&] { return s("%1 on row %2 of %3").arg(s(dragged.name)).arg(row).arg(s(tab)).toUtf8(); };
                QVERIFY2(masked(shown(right)) == masked(shown(left)),
                    where() + "\n" + shown(right).toUtf8() + "\n" + shown(left).toUtf8());
                QVERIFY2((right.modified > before) == fits, where());
                QVERIFY2(masked(QString::fromUtf8(right.save())) == masked(QString::fromUtf8(left.save())), where());
                ++(fits ? done : refused);
            }
        }
    }
    QVERIFY2(done >= 10 && refused >= 10, qPrintable(s("%1 %2").arg(done).arg(refused)));
}

void TestKeys::copiesAnEntry()
{
    Page page(ownSets, { host, menus });
    showTab(page, "mine");
    page.clickEntry("m1");
    keyWith(page.formats(), Qt::Key_C, Qt::ControlModifier);
    page.clickEntry("m2");
    keyWith(page.formats(), Qt::Key_V, Qt::ControlModifier);
    const QString twice = s("format;menubar;m1;a1=One;a2=Own;m2;m1;a1=One;a2=Own");
    QCOMPARE(shown(page), twice);
    QCOMPARE(page.formats()->currentItem()->parent()->text(0), s("m2"));
    QCOMPARE(page.modified, 1);
    // The copy is an entry of its own.
    page.formats()->setCurrentItem(page.formats()->currentItem()->child(1));
    page.edit("text", "Copy");
    QCOMPARE(shown(page), s("format;menubar;m1;a1=One;a2=Own;m2;m1;a1=One;a2=Copy"));
    // Also from one tab to another, where a directly following place has a "parent".
    showTab(page, "both");
    page.formats()->setCurrentItem(page.entry("a2"));
    QCOMPARE(page.menuOf("a2").filter(s("Paste")), list({ "Paste" }));
    keyWith(page.formats(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(shown(page), s("Format;menubar;b1;a1=One;m1;b2;m1;a1=One;a2=Own;a2"));
    page.save();
    page.reopen();
    showTab(page, "mine");
    QCOMPARE(shown(page), s("format;menubar;m1;a1=One;a2=Own;m2;m1;a1=One;a2=Copy"));
    showTab(page, "both");
    QCOMPARE(shown(page), s("Format;menubar;b1;a1=One;m1;b2;m1;a1=One;a2=Own;a2"));
    // What is gone is not pasted.
    page.clickEntry("a2");
    keyWith(page.formats(), Qt::Key_C, Qt::ControlModifier);
    keyWith(page.formats(), Qt::Key_Delete);
    QCOMPARE(page.menuOf("m1").filter(s("Paste")), list({ "-Paste" }));
    page.clickRecord(1);
    keyWith(page.table(), Qt::Key_C, Qt::ControlModifier);
    showTab(page, "mine");
    QCOMPARE(page.menuOf("m2").filter(s("Paste")), list({ "Paste" }));
    page.menuOfRecord(1, "Delete");
    QCOMPARE(page.menuOf("m2").filter(s("Paste")), list({ "-Paste" }));
}

/// A filter hides the current rows, and no key acts on them; what is made comes into sight. A tab keeps its root's
/// name.
/// What Tab comes to is what the sheet is about, and what F2 edits; a moved entry is selected alone, and Escape in the
/// rows shows all of them again.
void TestKeys::sheetFollowsTab()
{
    Page page(ownSets, { host, menus });
    QVERIFY(QTest::qWaitForWindowActive(page.widget.get()));
    page.clickPoint();
    page.clickRecord(0);
    showTab(page, "mine");
    const auto heading = [&] { return page.sheet()->findChild<QLabel *>(s("sheetHeading"))->accessibleName(); };
    page.clickEntry("a1");
    QVERIFY(heading().contains(s("entry")));
    page.table()->setFocus(Qt::BacktabFocusReason);
    QTRY_VERIFY(heading().contains(s("record")));
    page.formats()->setFocus(Qt::TabFocusReason);
    QTRY_VERIFY(heading().contains(s("entry")));

    const int modified = page.modified;
    for (const Qt::Key key : { Qt::Key_Down, Qt::Key_Up }) {
        page.clickEntry("a1");
        keyWith(page.formats(), key, Qt::AltModifier);
    }
    QCOMPARE(page.modified, modified + 2);
    QCOMPARE(page.formats()->selectedItems(), QList<QTreeWidgetItem *> { page.formats()->currentItem() });

    FilterLine *line = FilterLine::of(page.table());
    line->open();
    line->findChild<QLineEdit *>()->setText(s("nothing has this"));
    QVERIFY(page.table()->isRowHidden(0));
    QTest::keyClick(page.table(), Qt::Key_Escape);
    QVERIFY(!page.table()->isRowHidden(0));
}

void TestKeys::hiddenRowsAreLeftAlone()
{
    Page page(ownSets, { host, menus });
    page.clickPoint();
    page.clickRecord(0);
    showTab(page, "mine");
    page.clickEntry("a1");
    const QByteArray before = ModelTesting::written(*page.manager);
    for (QAbstractItemView *view : { static_cast<QAbstractItemView *>(page.table()),
             static_cast<QAbstractItemView *>(page.formats()), static_cast<QAbstractItemView *>(page.points()) }) {
        FilterLine::of(view)->findChild<QLineEdit *>()->setText(s("nothing has this"));
        QCoreApplication::processEvents();
        for (const auto &key : QVector<QPair<Qt::Key, Qt::KeyboardModifier>> { { Qt::Key_Delete, Qt::NoModifier },
                 { Qt::Key_Up, Qt::AltModifier }, { Qt::Key_Down, Qt::AltModifier }, { Qt::Key_X, Qt::ControlModifier },
                 { Qt::Key_V, Qt::ControlModifier } })
            keyWith(view, key.first, key.second);
        QCOMPARE(ModelTesting::written(*page.manager), before);
    }
    QCOMPARE(page.modified, 0);
    FilterLine::of(page.points())->close();
    keyWith(page.table(), Qt::Key_Insert);
    QCOMPARE(page.modified, 1);
    QCoreApplication::processEvents();
    QVERIFY(!page.table()->isRowHidden(page.table()->currentRow()));

    // A bar is copied as text, but a format has one.
    FilterLine::of(page.formats())->close();
    const QStringList lines = page.formatLines();
    page.formats()->setCurrentItem(page.formats()->topLevelItem(0)->child(0));
    keyWith(page.formats(), Qt::Key_C, Qt::ControlModifier);
    page.formats()->setCurrentItem(page.formats()->topLevelItem(0));
    keyWith(page.formats(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(page.formatLines(), lines);
    // What somebody else copies meanwhile is not the entry.
    page.clickEntry("a2");
    keyWith(page.formats(), Qt::Key_C, Qt::ControlModifier);
    QGuiApplication::clipboard()->setText(s("something else"));
    page.clickEntry("m2");
    keyWith(page.formats(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(page.formatLines(), lines);

    page.formats()->setCurrentItem(page.formats()->topLevelItem(0));
    Q_EMIT page.sheet()->resetRequested(s("target"));
    QVERIFY(ModelTesting::written(*page.manager).contains("<format target=\"mine\">"));
}

void TestKeys::movesByOne_data()
{
    QTest::addColumn<QByteArray>("tab");
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<int>("step");
    QTest::addColumn<QString>("rows"); ///< empty for no change
    const auto row = [](const char *name, const char *tab, const char *entry, int step, const char *rows) {
        QTest::newRow(name) << QByteArray(tab) << QByteArray(entry) << step << s(rows);
    };
    row("down", "mine", "a1", 1, "format;menubar;m1;a2=Own;a1=One;m2");
    row("up", "mine", "a2", -1, "format;menubar;m1;a2=Own;a1=One;m2");
    row("up at the top", "mine", "a1", -1, "");
    row("down at the end", "mine", "a2", 1, "");
    row("with what stands under it", "mine", "m1", 1, "format;menubar;m2;m1;a1=One;a2=Own");
    row("the root", "mine", "format", 1, "");
    row("recorded beside a sibling's", "both", "m1", -1, "Format;menubar;b1;m1;a1=One;b2;a2");
    row("recorded, down", "both", "a1", 1, "Format;menubar;b1;m1;a1=One;b2;a2");
    row("recorded, alone under its row", "both", "a2", 1, "");
    row("a sibling's", "both", "b1", 1, "");
}

void TestKeys::movesByOne()
{
    QFETCH(const QByteArray, tab);
    QFETCH(const QByteArray, entry);
    QFETCH(const int, step);
    QFETCH(QString, rows);
    Page page(ownSets, { host, menus });
    showTab(page, tab);
    const QString before = shown(page);
    page.clickEntry(entry);
    keyWith(page.formats(), step < 0 ? Qt::Key_Up : Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(page.modified, rows.isEmpty() ? 0 : 1);
    if (rows.isEmpty())
        rows = before;
    QCOMPARE(shown(page), rows);
    QCOMPARE(page.formats()->currentItem()->text(0), s(entry));
    QVERIFY(page.formats()->currentItem()->isSelected());
    page.save();
    page.reopen();
    showTab(page, tab);
    QCOMPARE(shown(page), rows);
}

void TestKeys::movesRows_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("keys"); ///< "u" and "d"
    QTest::addColumn<QString>("rows"); ///< of the attributes, then of the choices
    const auto row = [](const char *name, int from, const char *keys, const char *rows) {
        QTest::newRow(name) << from << s(keys) << s(rows);
    };
    row("down", 0, "d", "e text n|1 2 3");
    row("down twice", 0, "dd", "e n text|1 2 3");
    row("down beyond the end", 0, "ddd", "e n text|1 2 3");
    row("up beyond the top", 1, "uu", "e text n|1 2 3");
    row("there and back", 1, "du", "text e n|1 2 3");
    row("a choice down", 100, "d", "text e n|2 1 3");
    row("a choice up", 102, "uu", "text e n|3 1 2");
    row("a choice at the end", 102, "d", "text e n|1 2 3");
}

void TestKeys::movesRows()
{
    QFETCH(const int, row);
    QFETCH(const QString, keys);
    QFETCH(const QString, rows);
    Page page(ownSets, { host });
    page.define("Point");
    const bool isChoice = row >= 100;
    page.clickAttribute(isChoice ? 1 : row);
    if (isChoice)
        page.entries()->setCurrentCell(row - 100, 0);
    QTableWidget *table = isChoice ? page.entries() : page.attributes();
    const QString moved = table->item(table->currentRow(), 0)->text();
    const auto keysOf = [](const QTableWidget *shownTable) {
        QStringList texts;
        for (const QString &line : Page::lines(shownTable).mid(1))
            texts.append(line.section(QLatin1Char('|'), 0, 0));
        return texts.join(QLatin1Char(' '));
    };
    const QList<PropertyItem> sheet = page.editInfo()->properties();
    const bool changes = rows != s("text e n|1 2 3") || keys == s("du");
    for (const QChar key : keys)
        keyWith(table, key == QLatin1Char('u') ? Qt::Key_Up : Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(page.modified > 0, changes);
    QCOMPARE(table->item(table->currentRow(), 0)->text(), moved);
    QCOMPARE(page.editInfo()->properties(), sheet);
    // The sheet edits what it shows.
    page.editAttribute(isChoice ? "icon" : "name", s("edited"));
    const QStringList edited = Page::lines(table).filter(s("edited"));
    QVERIFY(edited.size() == 1 && edited.first().startsWith(moved + s("|")));
    // A record has its attributes in that order at once.
    page.showPage(1);
    page.dropOnTable("Point");
    const QStringList keysOfRecord = page.sheetKeys().mid(1);
    QCOMPARE(keysOfRecord.join(QLatin1Char(' ')), rows.section(QLatin1Char('|'), 0, 0));
    for (const bool again : { false, true }) {
        if (again) {
            page.save();
            page.reopen();
        }
        page.define("Point");
        const QString attributes = keysOf(page.attributes());
        page.clickAttribute(attributes.split(QLatin1Char(' ')).indexOf(s("e")));
        QCOMPARE(attributes + s("|") + keysOf(page.entries()), rows);
    }
}

void TestKeys::smallThings()
{
    Page page(ownSets, { host, menus });
    const auto focusedKey
        = [&] { return QApplication::focusWidget() ? QApplication::focusWidget()->accessibleName() : QString(); };
    // The default choice keeps its entry, unless somebody else has its text as well.
    page.define("Point");
    page.clickAttribute(1);
    page.entries()->setCurrentCell(0, 0);
    page.editAttribute("text", s("eins"));
    QCOMPARE(Page::lines(page.attributes()).at(2), s("e||Enum|two"));
    page.entries()->setCurrentCell(1, 0);
    page.editAttribute("text", s("zwei"));
    QCOMPARE(Page::lines(page.attributes()).at(2), s("e||Enum|zwei"));
    page.entries()->setCurrentCell(2, 0);
    page.editAttribute("text", s("zwei"));
    page.editAttribute("text", s("drei"));
    QCOMPARE(Page::lines(page.attributes()).at(2), s("e||Enum|zwei"));
    // What is new begins with its key.
    page.press(page.entries(), Qt::Key_Insert);
    QCOMPARE(page.entries()->currentRow(), 3);
    QCOMPARE(focusedKey(), s("key"));
    // Behind a sub point a click on the new row shows that, whose key is not typed over.
    page.press(page.attributes(), Qt::Key_Insert);
    QCOMPARE(page.attributes()->currentRow(), 3);
    QVERIFY(focusedKey() != s("key"));
    page.define("Sub");
    page.press(page.attributes(), Qt::Key_Insert);
    QCOMPARE(focusedKey(), s("key"));
    // The keys start at the root of a tab, which nobody has gone to.
    page.showPage(1);
    page.clickPoint();
    page.clickRecord(0);
    const QStringList sheet = page.sheetKeys();
    page.showTab("mine");
    QCOMPARE(page.formats()->currentItem(), page.formats()->topLevelItem(0));
    QVERIFY(page.formats()->selectedItems().isEmpty());
    QCOMPARE(page.sheetKeys(), sheet);
    // From the tabs Tab goes into what they show.
    focus(page.tabs()->tabBar());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(page.formats()->hasFocus());

    // Another type is a change of its own, also where no attribute comes with it.
    Page typed(ownSets, { host });
    typed.define("Point");
    typed.clickAttribute(0);
    OwnStates &states = typed.manager->ownStates();
    const auto before = states.take();
    Q_EMIT typed.editInfo()->propertyChanged(s("type"), s("ShortCut"));
    const OwnChange change = OwnChange::between(*before, *states.take());
    QVERIFY(change.what == OwnChange::What::Edited && change.key == s("type"));
}

QTEST_MAIN(TestKeys)
#include "tst_keys.moc"
