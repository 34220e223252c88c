// Edits whose effect reaches further than the node that is shown: names of tabs, ids that go and come back, links to
// siblings, letter case.

#include "realizationpage.h"

#include "form/drops/pointdrop.h"

using namespace RealizationTesting;
using Node = PointTreeWidgetItem;

namespace {

const Sibling host { "host", R"(<ExtPointSet><ExtPoint id="host.cmd" name="Commands" hasformat="true">
<SubExtPoint key="format" childType="menu|action"/><SubExtPoint key="menu" childType="menu|action"/>
<SubExtPoint key="action" name="Action"><String key="toolTip" value="tip"/></SubExtPoint></ExtPoint>
<ExtPoint id="host.plain" name="Plain" hasformat="true"/></ExtPointSet>)" };

QByteArray inHolder(const char *content, const char *point = "host.cmd")
{
    return QByteArray("<ExtDataSet><ExtData id=\"") + point + "\">" + content + "</ExtData></ExtDataSet>";
}

} // namespace

class TestPageEdits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ownFormatsOfOneName();
    void rootKeepsItsLastName();
    void keysActOnWhatIsSelected();
    void letterCaseOfTheFile();
    void parentsFollowIds();
    void recordOfARecordedPointIsShown();
};

void TestPageEdits::ownFormatsOfOneName()
{
    Page page(
        inHolder("<format id='x' target='t'><action id='a'/></format><Format target='x'><action id='b'/></Format>"),
        { host });
    page.clickPoint("Commands");
    page.showTab("x");
    QCOMPARE(page.formatLines().mid(1), (QStringList { s("  a"), s("  b") }));
}

void TestPageEdits::rootKeepsItsLastName()
{
    Page page(inHolder("<format target='t'/>"), { host });
    page.clickPoint("Commands");
    page.clickEntry("format");
    page.edit("target", QString());
    QCOMPARE(page.tabNames(), QStringList { s("t|t") });
    QCOMPARE(page.modified, 0);
    QCOMPARE(page.sheet()->properties().first().value().toString(), s("t"));
}

void TestPageEdits::keysActOnWhatIsSelected()
{
    Page page(inHolder("<format target='t'><action id='a'/><action id='b'/></format><action id='a'/><action id='b'/>"
                       "<action id='c'/>"),
        { host });
    page.clickPoint("Commands");
    page.clickEntry("a");
    page.clickRecord(1);
    page.press(page.formats(), Qt::Key_Delete);
    QCOMPARE(page.formatLines(), (QStringList { s("format"), s("  a") }));
    // Nothing is highlighted: nothing is deleted.
    page.clickRecord(2);
    page.press(page.formats(), Qt::Key_Delete);
    QCOMPARE(page.formatLines(), (QStringList { s("format"), s("  a") }));
}

void TestPageEdits::letterCaseOfTheFile()
{
    Page page(inHolder("<format target='t'><action id='a' tooltip='old'/></format>"), { host });
    page.clickPoint("Commands");
    page.clickEntry("a");
    page.edit("toolTip", s("new"));
    QVERIFY2(page.save().contains("<action id=\"a\" tooltip=\"new\"/>"), page.save().constData());
}

void TestPageEdits::parentsFollowIds()
{
    Page page(
        inHolder("<format target='t'><menu id='m'/></format><Format target='t'><action id='a' parent='m'/></Format>"
                 "<menu id='m'/>"),
        { host });
    const QStringList rows { s("format"), s("  n"), s("    a") };
    page.clickPoint("Commands");
    page.clickRecord(0);
    page.edit("id", s("n"));
    QTRY_COMPARE(page.formatLines(), rows);
    page.clickEntry("n");
    page.edit("id", s("o"));
    QVERIFY(page.save().contains("<action id=\"a\" parent=\"o\"/>"));
    page.clickEntry("a");
    page.edit("parent", s("nobody"));
    QTRY_COMPARE(page.formatLines(), (QStringList { s("format"), s("  o"), s("  a") }));
}

void TestPageEdits::recordOfARecordedPointIsShown()
{
    Page page("<ExtPointSet/>", { host, { "s1", inHolder("<format target='t'><menu id='m'/></format>") } });
    page.clickPoint("Action");
    QCOMPARE(page.tableLines(), QStringList());
    QTRY_VERIFY(page.entry("m"));
    OwnSlots::FirstFound found;
    const DropOutcome outcome = PointDrop::perform(
        page.formats()->siteAt(page.formats()->visualItemRect(page.entry("m")).center()), page.point("Action"), &found);
    Q_EMIT page.formats()->setTarget(outcome.additions.first().format);
    Q_EMIT page.formats()->dropPoint(outcome.additions.first().row);
    QCOMPARE(page.tableLines().size(), 1);
    QVERIFY(page.tableLines().first().endsWith(s("|1|[x]")));
    QTRY_COMPARE(page.formats()->directDrop(), true);
    QCOMPARE(page.formats()->currentItem()->QTreeWidgetItem::parent()->text(0), s("m"));
}

QTEST_MAIN(TestPageEdits)
#include "tst_pageedits.moc"
