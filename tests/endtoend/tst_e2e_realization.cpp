#include "realizationdesk.h"

#include <algorithm>

namespace {

const QString definitionTree = s("defintionTree");

/// Plug-ins of others that declare the points and fill a tab.
Product::Files others()
{
    return {
        { s("shell"), shellFile() },
        { s("desk"), pluginFile("desk", R"xml(<ExtDataSet><ExtData plugin='desk' id='shell.commands' extPlugin='shell'>
<Layout id='desk.main' title='Main'><area id='desk.left'><action id='desk.print'/></area><area id='desk.right'/></Layout>
<format target='both.window'><menubar><menu id='desk.extras'><action id='desk.print'/></menu></menubar></format>
<menu id='desk.extras' text='Extras'/><action id='desk.print' text='Print' icon='green.svg'/></ExtData></ExtDataSet>)xml") },
        { s("desk/green.svg"), colouredIcon("#208040") },
    };
}

} // namespace

/// A person's work on the realization page of the real program, and what is saved of it: records that are changed where
/// they are used, contributions to the layouts of others, points of one's own.
class tst_E2eRealization : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void editsReachEverything();
    void recordsGoIntoFormats();
    void pointIsMadeUsedAndDeleted();

private:
    [[nodiscard]] bool showCommands();
    void makesPoint();
    [[nodiscard]] bool typeInto(const char *sheet, const char *row, const char *text);
    [[nodiscard]] bool deletePoint(const QVariantList &path);
    /// What the realization page shows under the plug-in that is edited.
    [[nodiscard]] QStringList ownPoints();

    std::unique_ptr<RealizationDesk> m_desk;
};

void tst_E2eRealization::cleanup()
{
    m_desk->finish();
    m_desk.reset();
}

bool tst_E2eRealization::showCommands()
{
    return m_desk->open() && m_desk->unfold(s("shell"))
        && m_desk->click(RealizationDesk::point({ s("shell"), s("Commands") }));
}

void tst_E2eRealization::editsReachEverything()
{
    const QByteArray own = R"xml(<ExtDataSet><ExtData plugin='own' id='shell.commands' extPlugin='shell'>
<format target='own.window' title='Window'><menubar><menu id='own.file'><action id='own.open'/>
<action id='own.open' text="tr('Mine')"/></menu></menubar></format>
<format target='own.tools' title='Tools'><menubar><menu id='own.file'><action id='own.open'/></menu></menubar></format>
<menu id='own.file' text="tr('File')"/><action id='own.open' text="tr('Open')" icon='red.svg'/>
</ExtData></ExtDataSet>)xml";
    const auto window = [](const char *id, const char *text) {
        return QStringList { s("format | Window"), s("    menubar | "), s("        own.file | File"),
            s("            ") + s(id) + s(" | ") + s(text), s("            ") + s(id) + s(" | Mine") };
    };
    const QString red = s("#c02020");
    const QString blue = s("#2040c0");
    Product::Files files { { s("shell"), shellFile() } };
    files.insert(s("own/red.svg"), colouredIcon("#c02020"));
    files.insert(s("own/blue.svg"), colouredIcon("#2040c0"));
    m_desk = std::make_unique<RealizationDesk>(pluginFile("own", own), files);
    STEP(*m_desk, open());
    STEP(*m_desk, unfold(s("shell")));
    STEP(*m_desk, click(RealizationDesk::point({ s("shell"), s("Commands") })));
    STEP(*m_desk, showTab(s("Window")));
    EVENTUALLY(m_desk->records(),
        (QStringList { s("own.file | File |  | 2 | true"), s("own.open | Open | red.svg | 3 | true") }));
    QCOMPARE(m_desk->formats(), window("own.open", "Open"));
    QCOMPARE(m_desk->formatIcons(), (QStringList { QString(), QString(), QString(), red, red }));
    QCOMPARE(m_desk->recordIcons(), (QStringList { QString(), red }));

    STEP(*m_desk, click(RealizationDesk::record(1)));
    // What it lacked has its default.
    EVENTUALLY(m_desk->sheet().value(3), s("checkable = false"));
    STEP(*m_desk, edit(s("text"), s("Load")));
    EVENTUALLY(m_desk->records().value(1), s("own.open | Load | red.svg | 3 | true"));
    EVENTUALLY(m_desk->formats(), window("own.open", "Load"));
    STEP(*m_desk, edit(s("icon"), s("blue.svg")));
    EVENTUALLY(m_desk->recordIcons(), (QStringList { QString(), blue }));
    EVENTUALLY(m_desk->formatIcons(), (QStringList { QString(), QString(), QString(), blue, blue }));
    STEP(*m_desk, edit(s("id"), s("own.load")));
    EVENTUALLY(m_desk->records().value(1), s("own.load | Load | blue.svg | 3 | true"));
    EVENTUALLY(m_desk->formats(), window("own.load", "Load"));
    STEP(*m_desk, save());
    QCOMPARE(m_desk->saved(), savedFile(R"xml(
    <ExtDataSet>
        <ExtData plugin="own" id="shell.commands" extPlugin="shell" text="">
            <format target="own.window" title="Window">
                <menubar>
                    <menu id="own.file">
                        <action id="own.load"/>
                        <action id="own.load" text="tr('Mine')"/>
                    </menu>
                </menubar>
            </format>
            <format target="own.tools" title="Tools">
                <menubar>
                    <menu id="own.file">
                        <action id="own.load"/>
                    </menu>
                </menubar>
            </format>
            <menu id="own.file" text="tr('File')"/>
            <action id="own.load" text="tr('Load')" icon="blue.svg" checkable="false"/>
        </ExtData>
    </ExtDataSet>
)xml"));
    // An icon is shown with the whole path of its file once the record is shown anew.
    STEP(*m_desk, click(RealizationDesk::record(0)));
    STEP(*m_desk, click(RealizationDesk::record(1)));
    EVENTUALLY(m_desk->sheet().value(2), s("icon = ") + m_desk->file().replace(s("extension.xml"), s("blue.svg")));
    const QStringList picture = m_desk->picture();
    m_desk->leavePicture(s("story-3"));
    STEP(*m_desk, close());

    STEP(*m_desk, open());
    STEP(*m_desk, unfold(s("shell")));
    STEP(*m_desk, click(RealizationDesk::point({ s("shell"), s("Commands") })));
    STEP(*m_desk, showTab(s("Window")));
    STEP(*m_desk, click(RealizationDesk::record(1)));
    EVENTUALLY(m_desk->picture(), picture);
    STEP(*m_desk, showTab(s("Tools")));
    EVENTUALLY(m_desk->formats().last(), s("            own.load | Load"));
    STEP(*m_desk, close());
}

void tst_E2eRealization::recordsGoIntoFormats()
{
    const QByteArray own = R"xml(<ExtDataSet><ExtData plugin='own' id='shell.commands' extPlugin='shell'>
<format target='own.window' title='Window'><menubar><menu id='own.file'><action id='own.open'/></menu></menubar></format>
<menu id='own.file' text="tr('File')"/><action id='own.open' text="tr('Open')"/><action id='own.shut' text="tr('Shut')"/>
</ExtData></ExtDataSet>)xml";
    m_desk = std::make_unique<RealizationDesk>(pluginFile("own", own), others());
    QVERIFY2(showCommands(), qPrintable(m_desk->problem()));
    const QStringList untouched { s("format | Window"), s("    menubar | "), s("        own.file | File"),
        s("            own.open | Open") };
    EVENTUALLY(m_desk->formats(), untouched);
    // A bar takes menus and nothing else, and a sibling's area takes no menu.
    const Place menu = RealizationDesk::entry({ 0, 0, 0 });
    STEP(*m_desk, drag(RealizationDesk::record(2), RealizationDesk::entry({ 0, 0 })));
    STEP(*m_desk, drag(RealizationDesk::record(2), RealizationDesk::entry({ 0, 0, 0, 0 })));
    STEP(*m_desk, showTab(s("Main")));
    const QStringList foreign { s("desk.main | Main"), s("    desk.left | "), s("        desk.print | Print"),
        s("    desk.right | ") };
    EVENTUALLY(m_desk->formats(), foreign);
    STEP(*m_desk, drag(RealizationDesk::record(0), RealizationDesk::entry({ 0, 1 })));
    EVENTUALLY(m_desk->formats(), foreign);
    STEP(*m_desk, showTab(s("Window")));
    EVENTUALLY(m_desk->formats(), untouched);
    QVERIFY(!m_desk->workbench().isModified());

    STEP(*m_desk, drag(RealizationDesk::record(2), menu));
    const QStringList window = untouched + QStringList { s("            own.shut | Shut") };
    EVENTUALLY(m_desk->formats(), window);
    EVENTUALLY(m_desk->records().value(2), s("own.shut | Shut |  | 1 | true"));
    STEP(*m_desk, showTab(s("Main")));
    EVENTUALLY(m_desk->formats(), foreign);
    STEP(*m_desk, drag(RealizationDesk::record(2), RealizationDesk::entry({ 0, 0 })));
    const QStringList main { s("desk.main | Main"), s("    desk.left | "), s("        desk.print | Print"),
        s("        own.shut | Shut"), s("    desk.right | ") };
    EVENTUALLY(m_desk->formats(), main);
    EVENTUALLY(m_desk->records().value(2), s("own.shut | Shut |  | 2 | true"));
    STEP(*m_desk, save());
    QCOMPARE(m_desk->saved(), savedFile(R"xml(
    <ExtDataSet>
        <ExtData plugin="own" id="shell.commands" extPlugin="shell" text="">
            <Format target="desk.main">
                <action id="own.shut" parent="desk.left"/>
            </Format>
            <format target="own.window" title="Window">
                <menubar>
                    <menu id="own.file">
                        <action id="own.open"/>
                        <action id="own.shut"/>
                    </menu>
                </menubar>
            </format>
            <menu id="own.file" text="tr('File')"/>
            <action id="own.open" text="tr('Open')"/>
            <action id="own.shut" text="tr('Shut')" icon="" checkable="false"/>
        </ExtData>
    </ExtDataSet>
)xml"));
    m_desk->leavePicture(s("story-4"));
    const QStringList icons = m_desk->formatIcons();
    const QStringList records = m_desk->records();
    STEP(*m_desk, close());

    QVERIFY2(showCommands(), qPrintable(m_desk->problem()));
    EVENTUALLY(m_desk->records(), records);
    STEP(*m_desk, showTab(s("Main")));
    EVENTUALLY(m_desk->formats(), main);
    QCOMPARE(m_desk->formatIcons(), icons);
    STEP(*m_desk, showTab(s("Window")));
    EVENTUALLY(m_desk->formats(), window);
    STEP(*m_desk, close());
}

bool tst_E2eRealization::typeInto(const char *sheet, const char *row, const char *text)
{
    return m_desk->workbench().typeIntoSheet(s(sheet), s(row), s(text), s("Return"));
}

QStringList tst_E2eRealization::ownPoints()
{
    const QStringList points = m_desk->points();
    const int first = points.indexOf(s("    own")) + 1;
    const auto isBelow = [](const QString &line) { return line.startsWith(s("        ")); };
    const auto end = std::find_if_not(points.begin() + first, points.end(), isBelow);
    return first == 0 ? QStringList() : points.mid(first, int(std::distance(points.begin() + first, end)));
}

void tst_E2eRealization::makesPoint()
{
    WorkbenchDriver &workbench = m_desk->workbench();
    STEP(*m_desk, definitionPage());
    STEP(*m_desk, choose(Place::row(definitionTree, { 0 }), { s("Create Point") }));
    EVENTUALLY(workbench.tree(definitionTree).size(), 2);
    QVERIFY2(typeInto("basicInfo", "id", "own.shapes"), qPrintable(m_desk->problem()));
    QVERIFY2(typeInto("basicInfo", "name", "Shapes"), qPrintable(m_desk->problem()));
    EVENTUALLY(workbench.tree(definitionTree).last(), s("    Shapes"));
    STEP(*m_desk, click(Place::widget(s("pushButton_add_attr"))));
    EVENTUALLY(workbench.table(s("defintionTable")).size(), 1);
    QVERIFY2(typeInto("editInfoWidget", "key", "label"), qPrintable(m_desk->problem()));
    QVERIFY2(typeInto("editInfoWidget", "value", "Circle"), qPrintable(m_desk->problem()));
    EVENTUALLY(workbench.table(s("defintionTable")), QStringList { s("label |  | String | Circle") });
}

void tst_E2eRealization::pointIsMadeUsedAndDeleted()
{
    m_desk = std::make_unique<RealizationDesk>(pluginFile("own", ""), Product::Files { { s("shell"), shellFile() } });
    WorkbenchDriver &workbench = m_desk->workbench();
    STEP(*m_desk, open());
    makesPoint();
    if (QTest::currentTestFailed())
        return;

    STEP(*m_desk, realizationPage());
    EVENTUALLY(ownPoints(), QStringList { s("        Shapes") });
    STEP(*m_desk, unfold(s("own")));
    STEP(*m_desk, dragToTable(RealizationDesk::point({ s("own"), s("Shapes") })));
    EVENTUALLY(m_desk->records(), QStringList { s("own.shapes# |  | ") });
    EVENTUALLY(m_desk->sheet(), (QStringList { s("id = own.shapes#"), s("label = Circle") }));
    STEP(*m_desk, edit(s("label"), s("Ring")));

    // Another name and id, with the record selected; and a sub point.
    STEP(*m_desk, definitionPage());
    STEP(*m_desk, click(Place::row(definitionTree, { 0, 0 })));
    QVERIFY2(typeInto("basicInfo", "name", "Figures"), qPrintable(m_desk->problem()));
    QVERIFY2(typeInto("basicInfo", "id", "own.figures"), qPrintable(m_desk->problem()));
    STEP(*m_desk, choose(Place::row(definitionTree, { 0, 0 }), { s("Create Sub Point") }));
    EVENTUALLY(workbench.tree(definitionTree).size(), 3);
    QVERIFY2(typeInto("basicInfo", "key", "corner"), qPrintable(m_desk->problem()));
    STEP(*m_desk, realizationPage());
    EVENTUALLY(ownPoints(), (QStringList { s("        Figures"), s("            SubPoint") }));
    EVENTUALLY(m_desk->records(), QStringList { s("own.shapes# |  | ") });
    EVENTUALLY(m_desk->sheet(), (QStringList { s("id = own.shapes#"), s("label = Ring") }));
    STEP(*m_desk, unfold(s("own")));
    STEP(*m_desk, dragToTable(RealizationDesk::point({ s("own"), s("Figures"), s("SubPoint") })));
    EVENTUALLY(m_desk->records(), QStringList { s("own.corner# |  | ") });
    STEP(*m_desk, save());
    QCOMPARE(m_desk->saved(), savedFile(R"xml(
    <ExtPointSet>
        <ExtPoint id="own.figures" name="Figures">
            <String key="label" name="" value="Circle" regexp="" tips="" trans=""/>
            <SubExtPoint key="corner" name="SubPoint"/>
        </ExtPoint>
    </ExtPointSet>
    <ExtDataSet>
        <ExtData plugin="own" id="own.figures" extPlugin="own">
            <shapes id="own.shapes#" label="Ring"/>
            <corner id="own.corner#"/>
        </ExtData>
    </ExtDataSet>
)xml"));
    m_desk->leavePicture(s("story-7"));

    QVERIFY2(deletePoint({ 0, 0, 0 }), qPrintable(m_desk->problem()));
    EVENTUALLY(workbench.tree(definitionTree).size(), 2);
    STEP(*m_desk, realizationPage());
    EVENTUALLY(m_desk->points().filter(s("SubPoint")), QStringList());
    // Deleting it has gone to nothing else there.
    EVENTUALLY(m_desk->records(), QStringList());
    STEP(*m_desk, click(RealizationDesk::point({ s("own"), s("Figures") })));
    EVENTUALLY(m_desk->records(), (QStringList { s("own.shapes# |  | "), s("own.corner# |  | ") }));
    STEP(*m_desk, click(RealizationDesk::record(0)));
    QVERIFY2(deletePoint({ 0, 0 }), qPrintable(m_desk->problem()));
    EVENTUALLY(workbench.tree(definitionTree), QStringList { s("own") });
    STEP(*m_desk, realizationPage());
    EVENTUALLY(m_desk->points().filter(s("Figures")), QStringList());
    EVENTUALLY(m_desk->records(), QStringList());
    STEP(*m_desk, save());
    // What realized the point stays for whoever declares it again.
    QCOMPARE(m_desk->saved(), savedFile(R"xml(
    <ExtPointSet/>
    <ExtDataSet>
        <ExtData plugin="own" id="own.figures" extPlugin="own" label="Circle">
            <shapes id="own.shapes#" label="Ring"/>
            <corner id="own.corner#"/>
        </ExtData>
    </ExtDataSet>
)xml"));
    QCOMPARE(m_desk->points().filter(s("    own")).size(), 1);
    STEP(*m_desk, close());

    STEP(*m_desk, open());
    EVENTUALLY(m_desk->points().filter(s("    own")).size(), 1);
    QCOMPARE(ownPoints(), QStringList());
    STEP(*m_desk, close());
}

bool tst_E2eRealization::deletePoint(const QVariantList &path)
{
    return m_desk->definitionPage() && m_desk->click(Place::row(definitionTree, path))
        && m_desk->workbench().key(s("Delete"));
}

QTEST_GUILESS_MAIN(tst_E2eRealization)
#include "tst_e2e_realization.moc"
