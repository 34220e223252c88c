#include "realization/formattree.h"
#include "realization/sheetpane.h"
#include "realizationpage.h"
#include "seen.h"
#include "zones.h"

#include "form/drops/entrymove.h"
#include "form/drops/pointdrop.h"
#include "form/drops/recorddrop.h"
#include "form/drops/tabledrop.h"
#include "model/modeltesting.h"
#include "model/ownchange.h"
#include "model/subtree.h"

#include <QLineEdit>
#include <QRandomGenerator>
#include <QToolButton>

#include <utility>

using namespace RealizationTesting;
using Node = PointTreeWidgetItem;

namespace {

const char ownSets[]
    = R"XML(<ExtPointSet><ExtPoint id="own.p" name="P" hasformat="true"><String key="text" value="T" trans="true"/>
<Enum key="e"><Data key="1" text="one"/></Enum><Int key="n" min="1" max="9"/><SubExtPoint key="format" childtype="a|b"/>
<SubExtPoint key="a" childtype="a|b"/><SubExtPoint key="b" id="sub.b"/><x><y><ExtPoint id="deep" name="D"><Flag key="f"/></ExtPoint></y>
<SubExtPoint key="q"/></x></ExtPoint><SubExtPoint key="loose" name="L"/><ExtPoint name="nameless"/><extpoint id="small"/></ExtPointSet>
<ExtDataSet><ExtData id="own.p"><format target="own"><a id="r1"><b id="r2"/></a><menubar/></format><a id="r1" icon="i.png"/>
<b id="r2" text="tr('x')" Text="both"/><format id="x" target="own"><a id="r3"/></format><format/><a id="menu" toolTip="A" tooltip="B"/></ExtData>
<ExtData id="host.cmd"><Format target="both"><action id="x" parent="m"/><menu><action id="x"/></menu></Format><action id="x" icon="i.png"/><menu id="y" icon="j.png"/>
<Layout id="lay"><format id="in" target="inner"><menubar/></format></Layout></ExtData><ExtData id="deep"><deep id="x"/></ExtData>
<ExtData id="loose"/></ExtDataSet>)XML";

QVector<Sibling> siblings()
{
    const QByteArray points = R"(<ExtPointSet><ExtPoint id="host.cmd" name="C" hasformat="true" displaylabel="text">
<String key="text" value="New" trans="true"/><SubExtPoint key="format" childType="menubar|action"/><SubExtPoint key="menubar" childType="menu"/>
<SubExtPoint key="menu" childType="menu|action"/><SubExtPoint key="action"/></ExtPoint><ExtPoint id="host.plain" name="Q"/></ExtPointSet>)";
    return { { "aaa", points },
        { "zzz",
            "<ExtDataSet><ExtData id=\"host.cmd\"><format target=\"both\"><menubar><menu id=\"m\"><action "
            "id=\"x\"/></menu>"
            "</menubar></format><format target=\"theirs\"><menubar><menu id=\"n\"/></menubar></format></ExtData>"
            "<ExtData id=\"own.p\"><format target=\"own\"><a id=\"r1\"/><a id=\"far\"/></format></ExtData>"
            "<ExtData id=\"host.cmd\"><Layout id=\"lay\"><menu id=\"area\"/></Layout></ExtData></ExtDataSet>" },
        { "yyy",
            "<ExtDataSet><ExtData id=\"host.cmd\"><format target=\"both\"><menubar><menu id=\"k\"/></menubar><action "
            "id=\"j\"/></format><format target=\"1\"/></ExtData></ExtDataSet>" } };
}

/// What somebody else makes of the points of "aaa" meanwhile.
QByteArray otherPoints(int which)
{
    const QByteArray sets = siblings().first().sets;
    switch (which) {
    case 0:
        return sets;
    case 1:
        return QByteArray(sets).replace("value=\"New\"", "value=\"Newer\"").replace("displaylabel=\"text\"", "");
    case 2:
        return QByteArray(sets)
            .replace("<SubExtPoint key=\"menu\" childType=\"menu|action\"/>", "<Flag key=\"checkable\"/>")
            .replace("name=\"C\" hasformat=\"true\"", "name=\"D\"");
    default:
        return "<ExtPointSet><ExtPoint id=\"own.p\"><String key=\"theirs\" value=\"1\"/></ExtPoint></ExtPointSet>"
            + sets;
    }
}

/// Somebody who clicks, types, drags, creates and deletes on both pages without any plan.
class RandomUser final
{
public:
    RandomUser(Page &page, quint32 seed) : m_page(page), m_random(seed) { }

    void step()
    {
        // The second of each pair is how often, in twenty-twos.
        const std::pair<void (RandomUser::*)(), int> actions[]
            = { { &RandomUser::pageOrTab, 2 }, { &RandomUser::anyCurrent, 6 }, { &RandomUser::menuOfFormats, 1 },
                  { &RandomUser::menuOfTable, 1 }, { &RandomUser::dropIntoFormats, 2 },
                  { &RandomUser::dropOntoTable, 1 }, { &RandomUser::editRecord, 2 }, { &RandomUser::typeAndLeave, 1 },
                  { &RandomUser::key, 2 }, { &RandomUser::definitions, 2 }, { &RandomUser::waitOrSave, 2 } };
        int left = m_random.bounded(22);
        for (const auto &action : actions) {
            left -= action.second;
            if (left < 0)
                return (this->*action.first)();
        }
    }

private:
    QTreeWidgetItem *anyRow(QTreeWidget *tree)
    {
        if (tree->topLevelItemCount() == 0)
            return nullptr;
        QTreeWidgetItem *item = tree->topLevelItem(0);
        while (item->childCount() > 0 && m_random.bounded(4) != 0)
            item = item->child(m_random.bounded(item->childCount()));
        return item;
    }
    void current(QTreeWidget *tree)
    {
        QTreeWidgetItem *item = anyRow(tree);
        if (!item)
            return;
        if (m_random.bounded(2))
            tree->setCurrentItem(item);
        else
            Q_EMIT tree->itemClicked(item, 0);
    }

    void pageOrTab()
    {
        if (m_random.bounded(2))
            m_page.showPage(m_random.bounded(2));
        else if (m_page.tabs()->count() > 0)
            m_page.tabs()->setCurrentIndex(m_random.bounded(m_page.tabs()->count()));
    }
    void anyCurrent()
    {
        const int which = m_random.bounded(3);
        if (which == 0)
            current(m_page.points());
        else if (which == 1 && m_page.formats())
            current(m_page.formats());
        else if (m_page.table()->rowCount() > 0)
            m_page.table()->setCurrentCell(m_random.bounded(m_page.table()->rowCount()), 0);
    }
    void editRecord() { editSheet(m_page.sheet()); }
    void waitOrSave()
    {
        if (m_random.bounded(2))
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        else if (m_random.bounded(30) == 0)
            m_page.save();
        else if (m_random.bounded(10) == 0)
            Q_EMIT m_page.manager->scanProgressed();
    }

    void menuOfFormats()
    {
        QTreeWidgetItem *item = m_page.formats() ? anyRow(m_page.formats()) : nullptr;
        if (!item || !m_page.formats()->isVisible())
            return;
        QStringList offered = m_page.menu(m_page.formats(), item);
        // The tree grows until there is a lot to do, and then stays about as large.
        const bool large = m_page.formatLines().size() > 40;
        offered = large ? offered.filter(s("Delete")) : offered.filter(QRegularExpression(s("^(Child Type >|Delete)")));
        if (!offered.isEmpty())
            m_page.menu(m_page.formats(), item, qPrintable(offered.at(m_random.bounded(offered.size()))));
    }
    void menuOfTable()
    {
        const int rows = m_page.table()->rowCount();
        if (rows > 0 && m_page.table()->isVisible() && m_random.bounded(3) == 0)
            m_page.menuOfRecord(m_random.bounded(rows), "Delete");
    }

    void dropIntoFormats()
    {
        RealizationTreeWidget *tree = m_page.formats();
        QTreeWidgetItem *target = tree ? anyRow(tree) : nullptr;
        if (!target || !tree->isVisible() || m_page.formatLines().size() > 60)
            return;
        DropSite site = m_page.site(target);
        site.eighth = m_random.bounded(8);
        switch (m_random.bounded(3)) {
        case 0:
            if (Node *dragged = Node::fromRow(anyRow(tree)))
                m_page.drop(EntryMove::perform(site, dragged));
            break;
        case 1: {
            Node *dragged = Node::fromRow(anyRow(m_page.points()));
            OwnSlots::FirstFound found;
            if (PointDrop::takes(dragged))
                m_page.drop(PointDrop::perform(site, dragged, &found));
            break;
        }
        default:
            if (const QTableWidgetItem *cell = m_page.table()->item(m_page.table()->currentRow(), 0)) {
                if (Node *dragged = m_page.manager->ownRealizations().record(cell->text()))
                    m_page.drop(RecordDrop::perform(site, dragged));
            }
            break;
        }
    }
    void dropOntoTable()
    {
        Node *dragged = Node::fromRow(anyRow(m_page.points()));
        if (!TableDrop::takes(dragged) || m_page.table()->rowCount() > 30)
            return;
        m_page.points()->setCurrentItem(dragged);
        m_page.dropOnTable(dragged);
    }

    QVariant anyValue()
    {
        static const char *const values[] = { "", "r1", "m", "both", "own", "new", "own.p", "host.cmd",
            "a<b&\"c\" \xc3\xbc\n", "menubar", "a|b", "7", "lay", "x", "action", "menu", " b ", "inner" };
        return m_random.bounded(8) == 0 ? QVariant(m_random.bounded(2) == 0)
                                        : QVariant(s(values[m_random.bounded(int(std::size(values)))]));
    }
    template <typename Sheet>
    void editSheet(Sheet *sheet)
    {
        const QList<PropertyItem> records = sheet->properties();
        if (records.isEmpty() || !sheet->isEnabled())
            return;
        Q_EMIT sheet->propertyChanged(records.at(m_random.bounded(records.size())).name(), anyValue());
    }

    /// Text is left standing in a field; what is done next has to take care of it.
    void typeAndLeave()
    {
        QWidget *field = nullptr;
        if (m_random.bounded(2)) {
            GroupPropertyBrowser *basic = m_page.basicInfo();
            const QList<PropertyItem> records = basic->properties();
            if (!records.isEmpty())
                field = basic->editorFor(records.at(m_random.bounded(records.size())).name());
        } else {
            TreePropertyBrowser *sheet = m_random.bounded(3) ? m_page.sheet() : m_page.editInfo();
            const QList<PropertyItem> records = sheet->properties();
            const QString name = records.isEmpty() ? QString() : records.at(m_random.bounded(records.size())).name();
            if (!name.isEmpty() && sheet->isEnabled() && sheet->openEditor(name))
                field = sheet->editorFor(name);
        }
        if (auto *line = field ? field->findChild<QLineEdit *>() : nullptr)
            line->setText(anyValue().toString());
    }

    void key()
    {
        static const int keys[] = { Qt::Key_Delete, Qt::Key_F2, Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End,
            Qt::CTRL + Qt::Key_C, Qt::CTRL + Qt::Key_X, Qt::CTRL + Qt::Key_V, Qt::CTRL + Qt::Key_V,
            Qt::ALT + Qt::Key_Up, Qt::ALT + Qt::Key_Down, Qt::Key_Insert };
        QWidget *const targets[] = { m_page.points(), m_page.formats(), m_page.table() };
        QWidget *target = targets[m_random.bounded(3)];
        if (!target || !target->isVisible())
            return;
        const int key = keys[m_random.bounded(int(std::size(keys)))];
        // Where it would open a menu, or make more than anybody can look through.
        if ((key == Qt::Key_Insert && target == m_page.formats())
            || ((key == Qt::Key_Insert || key == Qt::CTRL + Qt::Key_V)
                && (m_page.table()->rowCount() > 30 || m_page.formatLines().size() > 60)))
            return;
        target->setFocus();
        QTest::keyClick(target, Qt::Key(key & ~Qt::KeyboardModifierMask),
            Qt::KeyboardModifiers(key & int(Qt::KeyboardModifierMask)));
    }

    void definitions()
    {
        QTreeWidget *tree = m_page.definitions();
        tree->setCurrentItem(anyRow(tree));
        QTableWidget *attributes = m_page.attributes();
        const bool large = tree->topLevelItem(0)->childCount() > 6;
        switch (m_random.bounded(large ? 4 : 6)) {
        case 0:
            tree->setFocus();
            QTest::keyClick(tree, Qt::Key_Delete);
            break;
        case 1:
            editSheet(m_page.basicInfo());
            break;
        case 2:
            m_page.press("pushButton_add_attr");
            break;
        case 3:
            if (attributes->rowCount() > 0) {
                attributes->setCurrentCell(m_random.bounded(attributes->rowCount()), 0);
                if (m_random.bounded(2)) {
                    attributes->setFocus();
                    QTest::keyClick(attributes, m_random.bounded(2) ? Qt::Key_Up : Qt::Key_Down, Qt::AltModifier);
                }
                editSheet(m_page.editInfo());
                if (m_random.bounded(3) == 0)
                    m_page.press("pushButton_del_attr");
            }
            break;
        case 4:
            m_page.press("pushButton_add_extpoint");
            break;
        default:
            tree->setFocus();
            QTest::keyClick(tree, Qt::Key_Insert);
            break;
        }
    }

    Page &m_page;
    QRandomGenerator m_random;
};

/// Rows made by a drop show the declared default as their label, and a bar its kind, until they are shown anew.
bool isOfADrop(const QString &now, const QString &anew)
{
    const QStringList left = now.trimmed().split(QLatin1Char('|'));
    const QStringList right = anew.trimmed().split(QLatin1Char('|'));
    if (left.size() != 3 || right.size() != 3)
        return false;
    const bool label = left.at(1) == right.at(1) || (right.at(1).isEmpty() && left.at(1) == s("New"));
    const bool text = left.at(0) == right.at(0) || left.at(0).compare(s("menubar"), Qt::CaseInsensitive) == 0;
    return label && text;
}

/// Where the two differ first, with the lines before it.
QString difference(const QStringList &left, const QStringList &right, bool (*allowed)(const QString &, const QString &))
{
    for (int i = 0; i < qMax(left.size(), right.size()); ++i) {
        if (left.value(i) != right.value(i) && !allowed(left.value(i), right.value(i)))
            return left.mid(qMax(0, i - 12), qMin(i, 12)).join(QLatin1Char('\n')) + s("\n< ")
                + left.value(i, s("(end)")) + s("\n> ") + right.value(i, s("(end)"));
    }
    return {};
}

/// All that the opened file's nodes say, in their order, also what no file holds.
QStringList ownNodes(const Page &page)
{
    QStringList lines;
    for (Node *root : { page.manager->definitionRoot(), page.manager->realizationRoot() }) {
        QString indent;
        walkSubtree(
            root,
            [&](Node *node) {
                QString line = indent + node->kind();
                for (const PropertyHash::Entry &entry : node->properties())
                    line += s(" %1=%2/%3").arg(entry.key, entry.value.toString()).arg(int(entry.origin));
                lines.append(line);
                indent += QLatin1Char(' ');
            },
            [&](Node *) { indent.chop(1); });
    }
    return lines;
}

bool differsInOrigin(const QString &left, const QString &right)
{
    static const QRegularExpression origin(s("/[0-9](?= |$)"));
    return QString(left).remove(origin) == QString(right).remove(origin);
}

bool isNever(const QString &, const QString &)
{
    return false;
}

} // namespace

class TestReopen : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingShownIsOld();
    void zonesOfRows_data();
    void zonesOfRows();
};

/// Somebody uses both pages at random, and now and then goes back to what the file was some steps ago, or forth again.
/// Every few steps what is on the screen is what showing it anew shows, and what the file, opened in a fresh manager
/// with fresh pages, shows and does is what this one does. EXTPOINT_RANDOM_STEPS in
/// the environment asks for more steps than the usual 5,000, EXTPOINT_RANDOM_SEED for another beginning.
void TestReopen::nothingShownIsOld()
{
    const int wanted = qEnvironmentVariableIntValue("EXTPOINT_RANDOM_STEPS");
    const int first = qMax(1, qEnvironmentVariableIntValue("EXTPOINT_RANDOM_SEED"));
    const int steps = wanted > 0 ? wanted : 5000;
    constexpr int stepsPerSeed = 100;
    constexpr int stepsPerLook = 5;
    constexpr int looksPerReopening = 5;
    for (int seed = first; seed < first + steps / stepsPerSeed; ++seed) {
        Page page(ownSets, siblings(), false);
        page.manager->startScan(page.path());
        // The definition page fills itself when it is first seen.
        for (const int shown : { 0, 1 })
            page.showPage(shown);
        RandomUser user(page, quint32(seed));
        bool isArriving = true;
        QVector<QPair<std::shared_ptr<const OwnState>, QStringList>> states;
        QRandomGenerator travel { quint32(seed) };
        for (int step = 1; step <= stepsPerSeed; ++step) {
            user.step();
            if (step % stepsPerLook != 0)
                continue;
            const auto where
                = [&](const QString &what) { return s("seed %1, step %2\n%3").arg(seed).arg(step).arg(what).toUtf8(); };
            page.widget->commitEditors();
            page.manager->changes().flush();
            if (std::exchange(isArriving, false)) {
                // What siblings bring to the tab in sight is shown a moment later, unless something that was refused is
                // still being typed.
                page.manager->completeScan();
                page.builder()->findChild<SheetPane *>()->showAfresh();
                QTRY_VERIFY(!page.builder()->findChild<FormatTree *>()->isOutdated());
            }
            states.append({ page.manager->ownStates().take(), ownNodes(page) });
            // Whatever is different can be taken back by its name, but what a save has learned of the file.
            if (states.size() > 1) {
                const auto &before = states.at(states.size() - 2);
                QString differs = difference(before.second, states.last().second, differsInOrigin);
                const bool isNamed
                    = OwnChange::between(*before.first, *states.last().first).what != OwnChange::What::Nothing;
                QVERIFY2(differs.isEmpty() || isNamed, where(differs));
            }
            if (travel.bounded(4) == 0) {
                page.write("aaa", otherPoints(travel.bounded(4)));
                page.manager->siblings().lookAgain();
                QTRY_VERIFY(!page.manager->siblings().isLooking());
            }
            if (travel.bounded(3) == 0) {
                const auto &state = states.at(travel.bounded(states.size()));
                page.manager->ownStates().restore(*state.first);
                const QString undone = difference(ownNodes(page), state.second, isNever);
                QVERIFY2(undone.isEmpty(), where(undone).constData());
                page.manager->changes().flush();
            }
            const QStringList now = shownNow(page);
            QString differs = difference(now, shownAnew(page), isOfADrop);
            QVERIFY2(differs.isEmpty(), where(differs).constData());
            if (step % (stepsPerLook * looksPerReopening) != 0)
                continue;
            const QByteArray bytes = ModelTesting::written(*page.manager);
            const QStringList here = everything(page);
            {
                Page fresh(page, bytes);
                differs = difference(here, everything(fresh), isNever);
                QVERIFY2(differs.isEmpty(), where(differs).constData());
            }
        }
    }
}

void TestReopen::zonesOfRows_data()
{
    QTest::addColumn<bool>("isOwn");
    QTest::addColumn<bool>("isSiblings");
    QTest::newRow("a tab of the opened file") << true << false;
    QTest::newRow("a tab of a sibling") << false << true;
    QTest::newRow("a tab of both") << true << true;
}

/// Whatever is dropped onto whichever part of a row stands where the mark says, and there again when the saved file is
/// opened.
void TestReopen::zonesOfRows()
{
    QFETCH(bool, isOwn);
    QFETCH(bool, isSiblings);
    constexpr int trees = 6;
    constexpr int drops = 30;
    for (int seed = 1; seed <= trees; ++seed) {
        QRandomGenerator random { quint32(seed) };
        int number = 0;
        const QByteArray start = "<ExtDataSet><ExtData id='own.p'>";
        const QByteArray end = "</ExtData></ExtDataSet>";
        const QByteArray theirs
            = "<format target='bench'><a id='ta0'/>" + randomEntries(random, "t", &number, 2) + "</format>";
        QByteArray own;
        if (isOwn)
            own = "<format target='bench'>" + randomEntries(random, "n", &number, 2)
                + (isSiblings ? randomEntries(random, "n", &number, 1, "ta0") : QByteArray()) + "</format>";
        Page page(points("<ExtPoint id='own.p' name='P' hasformat='true'><SubExtPoint key='format' childtype='a|b'/>"
                         "<SubExtPoint key='a' childtype='a|b'/><SubExtPoint key='b'/></ExtPoint>")
                + start + own + "<a id='ra'/><b id='rb'/>" + end,
            isSiblings ? QVector<Sibling> { { "kit", start + theirs + end } } : QVector<Sibling>());
        page.clickPoint("P");
        page.showTab("bench");
        QTRY_VERIFY(!page.builder()->findChild<FormatTree *>()->isOutdated());
        bool editable = isOwn;
        for (int drop = 0; drop < drops; ++drop) {
            RealizationTreeWidget *tree = page.formats();
            tree->expandAll();
            QCoreApplication::processEvents();
            QVector<QTreeWidgetItem *> rows;
            for (QTreeWidgetItemIterator it(tree); *it; ++it)
                rows.append(*it);
            const Zones::Lines before = Zones::of(page);
            QCOMPARE(rows.size(), before.size());
            const int onto = random.bounded(rows.size());
            const int eighth = random.bounded(8);
            tree->scrollToItem(rows.at(onto));
            const QRect rect = tree->visualItemRect(rows.at(onto));
            const DropSite site
                = tree->siteAt({ rect.center().x(), rect.top() + (2 * eighth + 1) * rect.height() / 16 });
            QCOMPARE(static_cast<QTreeWidgetItem *>(site.row), rows.at(onto));

            const int sort = random.bounded(3);
            const int from = sort == 0 ? random.bounded(rows.size()) : -1;
            const QString kind = s(random.bounded(2) ? "a" : "b");
            const QString id = sort == 0 ? before.at(from).id : (sort == 1 ? s("r") : s("n")) + kind;
            const Zones zones(before, from, id, sort == 2, onto, eighth, editable);
            DropPlan plan;
            OwnSlots::FirstFound found;
            if (sort == 0) {
                plan = EntryMove::plan(site, Node::fromRow(rows.at(from)));
                page.drop(EntryMove::perform(site, Node::fromRow(rows.at(from))));
            } else if (sort == 1) {
                plan = RecordDrop::plan(site, page.record(qPrintable(id)));
                page.drop(RecordDrop::perform(site, page.record(qPrintable(id))));
            } else {
                Node *point = Controller::instance()->definitions().first(kind);
                plan = PointDrop::plan(site, point);
                page.drop(PointDrop::perform(site, point, &found));
            }
            const QByteArray where = s("seed %1, drop %2: %3 onto %4, eighth %5")
                                         .arg(seed)
                                         .arg(drop)
                                         .arg(id, before.at(onto).id)
                                         .arg(eighth)
                                         .toUtf8();
            QVERIFY2(plan.place == zones.place, where.constData());
            QVERIFY2(plan.reason.isEmpty() == bool(plan), where.constData());
            const Zones::Lines after = Zones::of(page);
            if (!plan)
                QVERIFY2(after == before, where.constData());
            else if (plan.place == DropPlan::Place::Into)
                QVERIFY2(Zones::unordered(after) == Zones::unordered(zones.expected), where.constData());
            else
                QVERIFY2(after == zones.expected, where.constData());
            editable = editable || plan;
            if (drop % 5 == 4) {
                Page fresh(page, ModelTesting::written(*page.manager));
                fresh.clickPoint("P");
                fresh.showTab("bench");
                QTRY_VERIFY(!fresh.builder()->findChild<FormatTree *>()->isOutdated());
                QVERIFY2(Zones::of(fresh) == after, where.constData());
            }
        }
    }
}

QTEST_MAIN(TestReopen)
#include "tst_reopen.moc"
