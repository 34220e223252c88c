#include "realizationdesk.h"

namespace {

const Product::Files others { { s("shell"), shellFile() } };

} // namespace

/// Fills the table of records in the real program: drops, edits, meta data, deletion; and what is saved of it.
class tst_E2eRealizationRecords : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void pointBecomesRecords_data();
    void pointBecomesRecords();
    void subPointBecomesRecord_data();
    void subPointBecomesRecord();
    void editsReachEverything();
    void metaIsSaved();
    void deletionLeavesReferences();

private:
    std::unique_ptr<RealizationDesk> m_desk;
};

void tst_E2eRealizationRecords::cleanup()
{
    m_desk->finish();
    m_desk.reset();
}

void tst_E2eRealizationRecords::pointBecomesRecords_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QString>("before");

    QTest::newRow("no data set") << QByteArray("<ExtPointSet/>") << s("    <ExtPointSet/>\n    <ExtDataSet>\n");
    QTest::newRow("a data set with another point's")
        << QByteArray("<ExtDataSet><ExtData id='shell.other' extPlugin='shell'><x id='own.x'/></ExtData></ExtDataSet>")
        << s("    <ExtDataSet>\n        <ExtData id=\"shell.other\" extPlugin=\"shell\">\n"
             "            <x id=\"own.x\"/>\n        </ExtData>\n");
}

void tst_E2eRealizationRecords::pointBecomesRecords()
{
    QFETCH(QByteArray, own);
    QFETCH(QString, before);
    const QString beginning = s("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Plugin id=\"own\" name=\"own\">\n")
        + before + s("        <ExtData plugin=\"own\" id=\"shell.panel\" extPlugin=\"shell\">\n");
    const QString record = s("            <panel id=\"own.panel#\" title=\"Panel\" width=\"200\"/>\n");
    const QString end = s("        </ExtData>\n    </ExtDataSet>\n</Plugin>\n");
    const Place panels = RealizationDesk::point({ s("shell"), s("Panels") });
    const QString row = s("own.panel# | Panel | ");

    m_desk = std::make_unique<RealizationDesk>(pluginFile("own", own), others);
    STEP(*m_desk, open());
    STEP(*m_desk, unfold(s("shell")));
    STEP(*m_desk, dragToTable(panels));
    EVENTUALLY(m_desk->records(), QStringList { row });
    EVENTUALLY(m_desk->sheet(), (QStringList { s("id = own.panel#"), s("title = Panel"), s("width = 200") }));
    STEP(*m_desk, save());
    QCOMPARE(m_desk->saved(), linesOf(beginning + record + end));

    STEP(*m_desk, dragToTable(panels));
    EVENTUALLY(m_desk->records(), (QStringList { row, row }));
    STEP(*m_desk, save());
    QCOMPARE(m_desk->saved(), linesOf(beginning + record + record + end));
    const QStringList picture = m_desk->picture();
    m_desk->leavePicture(s("story-1-") + s(QTest::currentDataTag()));
    STEP(*m_desk, close());

    STEP(*m_desk, open());
    STEP(*m_desk, unfold(s("shell")));
    STEP(*m_desk, click(panels));
    EVENTUALLY(m_desk->records(), (QStringList { row, row }));
    STEP(*m_desk, click(RealizationDesk::record(1)));
    EVENTUALLY(m_desk->picture(), picture);
    STEP(*m_desk, close());
}

void tst_E2eRealizationRecords::subPointBecomesRecord_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QString>("other");

    QTest::newRow("the first record of its point") << QByteArray("<ExtPointSet/>") << QString();
    QTest::newRow("beside records of other kinds")
        << QByteArray("<ExtDataSet><ExtData plugin='own' id='shell.commands' extPlugin='shell'>"
                      "<menu id='own.menu' text=\"tr('File')\"/></ExtData></ExtDataSet>")
        << s("            <menu id=\"own.menu\" text=\"tr('File')\"/>\n");
}

void tst_E2eRealizationRecords::subPointBecomesRecord()
{
    QFETCH(QByteArray, own);
    QFETCH(QString, other);
    const Place action = RealizationDesk::point({ s("shell"), s("Commands"), s("Action") });
    const QStringList rows { s("own.action# | Action |  | 0 | false") };

    m_desk = std::make_unique<RealizationDesk>(pluginFile("own", own), others);
    STEP(*m_desk, open());
    STEP(*m_desk, unfold(s("shell")));
    STEP(*m_desk, dragToTable(action));
    EVENTUALLY(m_desk->records(), rows);
    EVENTUALLY(m_desk->sheet(),
        (QStringList { s("id = own.action#"), s("text = Action"), s("icon = "), s("checkable = false") }));
    STEP(*m_desk, save());
    const QStringList saved = m_desk->saved();
    QCOMPARE(saved.mid(saved.indexOf(s("    <ExtDataSet>"))),
        linesOf(s("    <ExtDataSet>\n        <ExtData plugin=\"own\" id=\"shell.commands\" extPlugin=\"shell\">\n")
            + other
            + s("            <action id=\"own.action#\" text=\"tr('Action')\" icon=\"\" checkable=\"false\"/>\n"
                "        </ExtData>\n    </ExtDataSet>\n</Plugin>\n")));
    const QStringList picture = m_desk->picture();
    m_desk->leavePicture(s("story-2-") + s(QTest::currentDataTag()));
    STEP(*m_desk, close());

    STEP(*m_desk, open());
    STEP(*m_desk, unfold(s("shell")));
    STEP(*m_desk, click(action));
    EVENTUALLY(m_desk->records(), rows);
    STEP(*m_desk, click(RealizationDesk::record(0)));
    EVENTUALLY(m_desk->picture(), picture);
    STEP(*m_desk, close());
}

void tst_E2eRealizationRecords::editsReachEverything()
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
    Product::Files files = others;
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

void tst_E2eRealizationRecords::metaIsSaved()
{
    const QByteArray own = "<ExtDataSet><ExtData plugin='own' id='shell.panel' extPlugin='shell'>"
                           "<panel id='own.charts' title='Charts' width='300'/></ExtData></ExtDataSet>";
    m_desk = std::make_unique<RealizationDesk>(pluginFile("own", own), others);
    STEP(*m_desk, open());
    STEP(*m_desk, unfold(s("shell")));
    STEP(*m_desk, click(RealizationDesk::point({ s("shell"), s("Panels") })));
    STEP(*m_desk, choose(RealizationDesk::record(0), { s("Meta") }));
    WorkbenchDriver &workbench = m_desk->workbench();
    EVENTUALLY(workbench.dialogs(), QStringList { s("MetaDialog") });
    QVERIFY(!workbench.isModified());
    STEP(workbench, click(Place::button(s("MetaDialog"), s("Add"))));
    EVENTUALLY(workbench.table(s("tableWidget")).size(), 1);
    EVENTUALLY(workbench.isModified(), true);
    STEP(workbench, typeIntoSheet(s("metaProperty"), s("key"), s("since"), s("Return")));
    STEP(workbench, typeIntoSheet(s("metaProperty"), s("value"), s("1.4"), s("Return")));
    m_desk->leavePicture(s("story-8-meta"));
    STEP(workbench, click(Place::button(s("MetaDialog"), s("Close"))));
    EVENTUALLY(workbench.dialogs(), QStringList());
    STEP(*m_desk, save());
    QCOMPARE(m_desk->saved(), savedFile(R"xml(
    <ExtDataSet>
        <ExtData plugin="own" id="shell.panel" extPlugin="shell" title="Panel" width="200">
            <panel id="own.charts" title="Charts" width="300">
                <Meta value="1.4"/>
            </panel>
        </ExtData>
    </ExtDataSet>
)xml"));
    STEP(*m_desk, close());

    STEP(*m_desk, open());
    STEP(*m_desk, unfold(s("shell")));
    STEP(*m_desk, click(RealizationDesk::point({ s("shell"), s("Panels") })));
    STEP(*m_desk, choose(RealizationDesk::record(0), { s("Meta") }));
    EVENTUALLY(workbench.table(s("tableWidget")).size(), 1);
    QVERIFY2(workbench.table(s("tableWidget")).first().contains(s("1.4")),
        qPrintable(workbench.table(s("tableWidget")).first()));
    STEP(workbench, click(Place::button(s("MetaDialog"), s("Close"))));
    EVENTUALLY(workbench.dialogs(), QStringList());
    QVERIFY(!workbench.isModified());
    STEP(*m_desk, close());
}

void tst_E2eRealizationRecords::deletionLeavesReferences()
{
    const QByteArray own = R"xml(<ExtDataSet><ExtData plugin='own' id='shell.commands' extPlugin='shell'>
<format target='own.window' title='Window'><menubar><menu id='own.file'><action id='own.open'/></menu></menubar></format>
<menu id='own.file' text="tr('File')"/><action id='own.open' text="tr('Open')"/><action id='own.shut' text="tr('Shut')"/>
</ExtData></ExtDataSet>)xml";
    m_desk = std::make_unique<RealizationDesk>(pluginFile("own", own), others);
    STEP(*m_desk, open());
    STEP(*m_desk, unfold(s("shell")));
    STEP(*m_desk, click(RealizationDesk::point({ s("shell"), s("Commands") })));
    STEP(*m_desk, choose(RealizationDesk::record(1), { s("Delete") }));
    const QStringList rows { s("own.file | File |  | 1 | true"), s("own.shut | Shut |  | 0 | false") };
    EVENTUALLY(m_desk->records(), rows);
    const QStringList entries { s("format | Window"), s("    menubar | "), s("        own.file | File"),
        s("            own.open | ") };
    EVENTUALLY(m_desk->formats(), entries);
    m_desk->leavePicture(s("story-8-delete"));
    STEP(*m_desk, save());
    QCOMPARE(m_desk->saved(), savedFile(R"xml(
    <ExtDataSet>
        <ExtData plugin="own" id="shell.commands" extPlugin="shell" text="">
            <format target="own.window" title="Window">
                <menubar>
                    <menu id="own.file">
                        <action id="own.open"/>
                    </menu>
                </menubar>
            </format>
            <menu id="own.file" text="tr('File')"/>
            <action id="own.shut" text="tr('Shut')" icon="" checkable="false"/>
        </ExtData>
    </ExtDataSet>
)xml"));
    STEP(*m_desk, close());

    STEP(*m_desk, open());
    STEP(*m_desk, unfold(s("shell")));
    STEP(*m_desk, click(RealizationDesk::point({ s("shell"), s("Commands") })));
    EVENTUALLY(m_desk->records(), rows);
    EVENTUALLY(m_desk->formats(), entries);
    STEP(*m_desk, close());
}

QTEST_GUILESS_MAIN(tst_E2eRealizationRecords)
#include "tst_e2e_realization_records.moc"
