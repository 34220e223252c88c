#include "realization/formattree.h"
#include "realization/sheetpane.h"
#include "realizationpage.h"
#include "seen.h"

#include "form/drops/entrymove.h"
#include "form/drops/pointdrop.h"
#include "form/drops/recorddrop.h"
#include "form/drops/tabledrop.h"
#include "model/modeltesting.h"

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

/// Somebody who clicks, types, drags, creates and deletes on both pages without any plan.
class RandomUser final
{
public:
    RandomUser(Page &page, quint32 seed) : m_page(page), m_random(seed) { }

    void step()
    {
        switch (m_random.bounded(21)) {
        case 20:
            typeAndLeave();
            break;
        case 0:
            m_page.find<QTabWidget>("tabWidget")->setCurrentIndex(m_random.bounded(2));
            break;
        case 1:
        case 2:
            current(m_page.points());
            break;
        case 3:
        case 4:
            if (m_page.formats())
                current(m_page.formats());
            break;
        case 5:
            if (m_page.tabs()->count() > 0)
                m_page.tabs()->setCurrentIndex(m_random.bounded(m_page.tabs()->count()));
            break;
        case 6:
        case 7:
            if (m_page.table()->rowCount() > 0)
                m_page.table()->setCurrentCell(m_random.bounded(m_page.table()->rowCount()), 0);
            break;
        case 8:
            menuOfFormats();
            break;
        case 9:
            menuOfTable();
            break;
        case 10:
        case 11:
            dropIntoFormats();
            break;
        case 12:
            dropOntoTable();
            break;
        case 13:
        case 14:
            editSheet(m_page.sheet());
            break;
        case 15:
            key();
            break;
        case 16:
        case 17:
            definitions();
            break;
        case 18:
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            break;
        case 19:
            if (m_random.bounded(30) == 0)
                m_page.save();
            else if (m_random.bounded(10) == 0)
                Q_EMIT m_page.manager->scanProgressed();
            break;
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

    void menuOfFormats()
    {
        QTreeWidgetItem *item = m_page.formats() ? anyRow(m_page.formats()) : nullptr;
        if (!item || !m_page.formats()->isVisible())
            return;
        m_page.formats()->scrollToItem(item);
        QStringList offered = m_page.menu(m_page.formats(), m_page.formats()->visualItemRect(item).center());
        // The tree grows until there is a lot to do, and then stays about as large.
        const bool large = m_page.formatLines().size() > 40;
        offered = large ? offered.filter(s("Delete")) : offered.filter(QRegularExpression(s("^(Child Type >|Delete)")));
        if (!offered.isEmpty())
            m_page.menu(m_page.formats(), m_page.formats()->visualItemRect(item).center(),
                offered.at(m_random.bounded(offered.size())));
    }
    void menuOfTable()
    {
        const int rows = m_page.table()->rowCount();
        if (rows > 0 && m_page.table()->isVisible() && m_random.bounded(3) == 0)
            m_page.menuOfRecord(m_random.bounded(rows), s("Delete"));
    }

    /// What the tree does at the end of a drag.
    void announce(const DropOutcome &outcome)
    {
        RealizationTreeWidget *tree = m_page.formats();
        for (const DropOutcome::Addition &addition : outcome.additions) {
            if (addition.format)
                Q_EMIT tree->setTarget(addition.format);
            if (addition.row)
                Q_EMIT tree->dropPoint(addition.row);
        }
        if (outcome.modified)
            Q_EMIT tree->modified(true);
    }
    void dropIntoFormats()
    {
        RealizationTreeWidget *tree = m_page.formats();
        QTreeWidgetItem *target = tree ? anyRow(tree) : nullptr;
        if (!target || !tree->isVisible() || m_page.formatLines().size() > 60)
            return;
        tree->scrollToItem(target);
        const DropSite site = tree->siteAt(tree->visualItemRect(target).center());
        switch (m_random.bounded(3)) {
        case 0:
            if (Node *dragged = Node::fromRow(anyRow(tree)))
                announce(EntryMove::perform(site, dragged));
            break;
        case 1: {
            Node *dragged = Node::fromRow(anyRow(m_page.points()));
            OwnSlots::FirstFound found;
            if (PointDrop::takes(dragged))
                announce(PointDrop::perform(site, dragged, &found));
            break;
        }
        default:
            if (m_page.table()->currentRow() >= 0) {
                const QString id = m_page.table()->item(m_page.table()->currentRow(), 0)->text();
                if (Node *dragged = m_page.manager->ownRealizations().record(id))
                    announce(RecordDrop::perform(site, dragged));
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
        const TableDrop::Outcome outcome = TableDrop::perform(dragged);
        if (outcome.record)
            Q_EMIT m_page.table()->addTableRealization(outcome.parent, outcome.record, outcome.isSubPoint);
        Q_EMIT m_page.table()->modified(true);
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
            auto *basic = m_page.find<GroupPropertyBrowser>("basicInfo");
            const QList<PropertyItem> records = basic->properties();
            if (!records.isEmpty())
                field = basic->editorFor(records.at(m_random.bounded(records.size())).name());
        } else {
            TreePropertyBrowser *sheet
                = m_random.bounded(3) ? m_page.sheet() : m_page.find<TreePropertyBrowser>("editInfoWidget");
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
        static const Qt::Key keys[]
            = { Qt::Key_Delete, Qt::Key_F2, Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End };
        QWidget *const targets[] = { m_page.points(), m_page.formats(), m_page.table() };
        QWidget *target = targets[m_random.bounded(3)];
        if (!target || !target->isVisible())
            return;
        target->setFocus();
        QTest::keyClick(target, keys[m_random.bounded(6)]);
    }

    void definitions()
    {
        auto *tree = m_page.find<QTreeWidget>("defintionTree");
        tree->setCurrentItem(anyRow(tree));
        auto *attributes = m_page.find<QTableWidget>("defintionTable");
        const bool large = tree->topLevelItem(0)->childCount() > 6;
        switch (m_random.bounded(large ? 4 : 6)) {
        case 0:
            tree->setFocus();
            QTest::keyClick(tree, Qt::Key_Delete);
            break;
        case 1:
            editSheet(m_page.find<GroupPropertyBrowser>("basicInfo"));
            break;
        case 2:
            m_page.find<QPushButton>("pushButton_add_attr")->click();
            break;
        case 3:
            if (attributes->rowCount() > 0) {
                attributes->setCurrentCell(m_random.bounded(attributes->rowCount()), 0);
                editSheet(m_page.find<TreePropertyBrowser>("editInfoWidget"));
                if (m_random.bounded(3) == 0)
                    m_page.find<QPushButton>("pushButton_del_attr")->click();
            }
            break;
        case 4:
            m_page.find<QPushButton>("pushButton_add_extpoint")->click();
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

} // namespace

class TestReopen : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingShownIsOld();
};

/// Somebody uses both pages at random. Every few steps what is on the screen is what showing it anew shows, and what
/// the file, opened in a fresh manager with fresh pages, shows and does is what this one does. EXTPOINT_RANDOM_STEPS in
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
            page.find<QTabWidget>("tabWidget")->setCurrentIndex(shown);
        RandomUser user(page, quint32(seed));
        bool isArriving = true;
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
            const QStringList now = shownNow(page);
            QString differs = difference(now, shownAnew(page), isOfADrop);
            QVERIFY2(differs.isEmpty(), where(differs).constData());
            if (step % (stepsPerLook * looksPerReopening) != 0)
                continue;
            const QByteArray bytes = ModelTesting::written(*page.manager);
            const QStringList here = everything(page);
            {
                Page fresh(page, bytes);
                differs = difference(here, everything(fresh), [](const QString &, const QString &) { return false; });
                QVERIFY2(differs.isEmpty(), where(differs).constData());
            }
        }
    }
}

QTEST_MAIN(TestReopen)
#include "tst_reopen.moc"
