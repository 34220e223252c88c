#include "realizationdesk.h"

namespace {

/// The two that fill one tab come first in the listing, one that adds to it comes last.
Product::Files others()
{
    const auto data = [](const char *plugin, const char *content) {
        return pluginFile(plugin,
            "<ExtDataSet><ExtData plugin='" + QByteArray(plugin) + "' id='shell.commands' extPlugin='shell'>" + content
                + "</ExtData></ExtDataSet>");
    };
    return {
        { s("a-shell"), shellFile() },
        { s("b-one"),
            data("one",
                R"xml(<format target='shared'><menubar><menu id='one.file'><action id='one.open'/></menu></menubar></format>
<menu id='one.file' text='File'/><action id='one.open' text='Open' icon='red.svg'/>)xml") },
        { s("b-one/red.svg"), colouredIcon("#c02020") },
        { s("c-two"),
            data("two",
                R"xml(<format target='shared'><menubar><menu id='two.view'><action id='two.zoom'/></menu></menubar>
<toolbars><toolbar id='two.bar'><action id='two.zoom'/></toolbar></toolbars></format>
<Layout id='two.layout' title='Plan' icon='blue.svg'><area id='two.left'/></Layout>
<menu id='two.view' text='View'/><action id='two.zoom' text='Zoom' icon='blue.svg'/>)xml") },
        { s("c-two/blue.svg"), colouredIcon("#2040c0") },
        { s("z-late"), data("late", R"xml(<format target='shared'><menubar><menu id='late.help'/></menubar></format>
<format target='late.window'><menubar/></format>)xml") },
    };
}

bool isInOrderWithin(const QStringList &some, const QStringList &all)
{
    int found = 0;
    for (const QString &line : all)
        if (found < some.size() && some.at(found) == line)
            ++found;
    return found == some.size();
}

} // namespace

/// Works on the realization page of the real program while it still reads the other plug-ins.
class tst_E2eRealizationScan : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void mergesTheSameEveryTime_data();
    void mergesTheSameEveryTime();
    void savesWhileReading();

private:
    std::unique_ptr<RealizationDesk> m_desk;
};

void tst_E2eRealizationScan::cleanup()
{
    m_desk->finish();
    m_desk.reset();
}

void tst_E2eRealizationScan::mergesTheSameEveryTime_data()
{
    QTest::addColumn<QStringList>("options");

    QTest::newRow("once") << QStringList();
    QTest::newRow("again") << QStringList();
    QTest::newRow("in the dark") << QStringList { s("--dark") };
}

void tst_E2eRealizationScan::mergesTheSameEveryTime()
{
    QFETCH(QStringList, options);
    const QByteArray own = "<ExtDataSet><ExtData plugin='own' id='shell.commands' extPlugin='shell'>"
                           "<format target='own.window' title='Window'/></ExtData></ExtDataSet>";
    const QString none;
    const QString red = s("#c02020");
    const QString blue = s("#2040c0");
    const QStringList early { s("format | "), s("    menubar | "), s("        one.file | File"),
        s("            one.open | Open"), s("        two.view | View"), s("            two.zoom | Zoom"),
        s("    toolbars | "), s("        two.bar | "), s("            two.zoom | Zoom") };
    const QStringList icons { none, none, none, red, none, blue, none, none, blue };
    const QStringList tabs { s("Window"), s("shared"), s("Plan") };

    m_desk = std::make_unique<RealizationDesk>(pluginFile("own", own), others());
    m_desk->addSiblings(40, 20);
    STEP(*m_desk, openWhileReading(s("z-late"), options));
    STEP(*m_desk, unfold(s("shell")));
    STEP(*m_desk, click(RealizationDesk::point({ s("shell"), s("Commands") })));
    STEP(*m_desk, showTab(s("shared")));
    // What is there already is in the place that it will keep.
    QStringList shown;
    waitUntil([&] {
        shown = m_desk->formats();
        return !isInOrderWithin(shown, early) || shown == early;
    });
    QCOMPARE(shown, early);
    EVENTUALLY(m_desk->formatIcons(), icons);
    EVENTUALLY(m_desk->tabs(), tabs);
    QVERIFY(m_desk->workbench().isBusy());

    STEP(*m_desk, readOn());
    QStringList all = early;
    all.insert(6, s("        late.help | "));
    EVENTUALLY(m_desk->formats(), all);
    QCOMPARE(m_desk->formatIcons(), icons.mid(0, 6) + QStringList { none } + icons.mid(6));
    QCOMPARE(m_desk->tabs(), tabs + QStringList { s("late.window") });
    m_desk->leavePicture(s("story-6-") + s(QTest::currentDataTag()));
    STEP(*m_desk, close());
}

void tst_E2eRealizationScan::savesWhileReading()
{
    const QByteArray own = R"xml(<ExtPointSet><ExtPoint id='own.shapes' name='Shapes'/></ExtPointSet>
<ExtDataSet><ExtData plugin='own' id='shell.commands' extPlugin='shell'>
<format target='own.window' title='Window'><menubar><menu id='own.file'><action id='own.open' text="tr('Mine')"/></menu></menubar>
</format><menu id='own.file' text="tr('File')"/><action id='own.open' text="tr('Open')" icon='open.svg'>
<Meta value='1.4'/></action></ExtData></ExtDataSet>)xml";
    // What makes the texts translatable is the last to be read.
    m_desk
        = std::make_unique<RealizationDesk>(pluginFile("own", own), Product::Files { { s("z-shell"), shellFile() } });
    m_desk->addSiblings(600, 40);
    WorkbenchDriver &workbench = m_desk->workbench();
    STEP(*m_desk, openWhileReading(s("z-shell")));
    STEP(*m_desk, definitionPage());
    STEP(*m_desk, click(Place::row(s("defintionTree"), { 0, 0 })));
    STEP(workbench, typeIntoSheet(s("basicInfo"), s("name"), s("Figures"), s("Return")));
    EVENTUALLY(workbench.tree(s("defintionTree")), (QStringList { s("own"), s("    Figures") }));
    EVENTUALLY(workbench.isModified(), true);
    QVERIFY(workbench.isBusy());
    // A save takes in what is still to be read, and answers nobody until then.
    STEP(workbench, key(s("ctrl+s")));
    QThread::msleep(300);
    STEP(*m_desk, readOn());
    EVENTUALLY(workbench.isModified(), false);
    QCOMPARE(m_desk->saved(), savedFile(R"xml(
    <ExtPointSet>
        <ExtPoint id="own.shapes" name="Figures"/>
    </ExtPointSet>
    <ExtDataSet>
        <ExtData plugin="own" id="shell.commands" extPlugin="shell">
            <format target="own.window" title="Window">
                <menubar>
                    <menu id="own.file">
                        <action id="own.open" text="tr('Mine')"/>
                    </menu>
                </menubar>
            </format>
            <menu id="own.file" text="tr('File')"/>
            <action id="own.open" text="tr('Open')" icon="open.svg">
                <Meta value="1.4"/>
            </action>
        </ExtData>
    </ExtDataSet>
)xml"));
    STEP(*m_desk, realizationPage());
    // One row for each plug-in, and all of them.
    EVENTUALLY(workbench.topRows(s("realizationTree")), 600 + 2);
    m_desk->leavePicture(s("story-10"));
    STEP(*m_desk, close());
}

QTEST_GUILESS_MAIN(tst_E2eRealizationScan)
#include "tst_e2e_realization_scan.moc"
