#include "realizationdesk.h"

#include <QDir>

#include <csignal>

/// Works on the realization page of the real program while it still reads the other plug-ins.
class tst_E2eScan : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void savesWhileReading();
    void aDeadNeighbour();

private:
    [[nodiscard]] bool rename(const QString &name);
    [[nodiscard]] QString problem() const { return m_desk->problem(); }
    [[nodiscard]] bool isShown(const char *widget);
    std::unique_ptr<RealizationDesk> m_desk;
};

void tst_E2eScan::cleanup()
{
    m_desk->finish();
    m_desk.reset();
}

void tst_E2eScan::savesWhileReading()
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

bool tst_E2eScan::rename(const QString &name)
{
    WorkbenchDriver &workbench = m_desk->workbench();
    return m_desk->definitionPage() && m_desk->click(Place::row(s("defintionTree"), { 0, 0 }))
        && workbench.typeIntoSheet(s("basicInfo"), s("name"), name, s("Return"))
        && workbench.waitFor(
            s("the new name"), [&] { return workbench.tree(s("defintionTree")).value(1).trimmed() == name; });
}

bool tst_E2eScan::isShown(const char *widget)
{
    return m_desk->workbench().ask(Place::widget(s(widget)).request()).value(QLatin1String("visible")).toBool();
}

/// A file of another plug-in lies on a network that has gone, and sixty more are slow: that costs nothing but what only
/// that file could tell, and a question.
void tst_E2eScan::aDeadNeighbour()
{
    const QByteArray own = R"xml(<ExtPointSet><ExtPoint id='own.shapes' name='Shapes'/></ExtPointSet>
<ExtDataSet><ExtData plugin='own' id='shell.commands' extPlugin='shell'><menu id='own.file' text="tr('File')"/></ExtData>
</ExtDataSet>)xml";
    m_desk = std::make_unique<RealizationDesk>(
        pluginFile("own", own), Product::Files { { s("a-shell"), shellFile() }, { s("z-broken"), "<Plugin" } });
    m_desk->addSiblings(60, 5);
    WorkbenchDriver &workbench = m_desk->workbench();
    workbench.program().slowDown(200);
    const QDir copies(workbench.program().stateDirectory() + s("/extpoint-workbench/recovery"));
    const auto copyCount = [&] { return copies.entryList({ s("*.recovery") }, QDir::Files).size(); };

    STEP(*m_desk, openWhileReading(s("a-shell")));
    STEP(*this, rename(s("Kept")));
    EVENTUALLY(copyCount(), 1);
    // The others pass the one that is not read.
    STEP(*m_desk, realizationPage());
    EVENTUALLY(workbench.topRows(s("realizationTree")), 60 + 1);
    QVERIFY(workbench.program().signal(SIGKILL));

    STEP(*m_desk, openWhileReading(s("a-shell")));
    STEP(*m_desk, definitionPage());
    STEP(workbench, click(Place::widget(s("restoreButton"))));
    EVENTUALLY(workbench.tree(s("defintionTree")).value(1).trimmed(), s("Kept"));
    STEP(*m_desk, realizationPage());
    EVENTUALLY(workbench.topRows(s("realizationTree")), 60 + 1);
    for (const bool anyway : { false, true }) {
        STEP(workbench, key(s("ctrl+s")));
        EVENTUALLY(isShown("saveNowButton"), true);
        const QString told
            = workbench.ask(Place::widget(s("saveBarText")).request()).value(QLatin1String("value")).toString();
        QVERIFY2(told.contains(QLatin1String("a-shell")), qPrintable(told));
        m_desk->leavePicture(s("waits"));
        STEP(workbench, click(Place::widget(s("saveNowButton"))));
        EVENTUALLY(workbench.dialogs(), QStringList { s("saveReportPrompt") });
        m_desk->leavePicture(s("asks"));
        const QString question = workbench.textOfDialog(s("saveReportPrompt"));
        QVERIFY2(question.contains(QLatin1String("\"a-shell\", \"z-broken\"")), qPrintable(question));
        STEP(workbench, click(Place::button(s("saveReportPrompt"), anyway ? s("Save Anyway") : s("Cancel"))));
        EVENTUALLY(workbench.isModified(), !anyway);
        QCOMPARE(contentOf(m_desk->file()).contains("text=\"File\""), anyway);
    }
    EVENTUALLY(copyCount(), 0);
    EVENTUALLY(isShown("saveDetailsButton"), true);

    STEP(*this, rename(s("Again")));
    QVERIFY(workbench.program().signal(SIGTERM));
    QCOMPARE(workbench.program().result().code, 0);
    QCOMPARE(copyCount(), 1);

    // Closing waits for nobody either.
    STEP(*m_desk, openWhileReading(s("a-shell")));
    STEP(workbench, key(s("alt+F4")));
    QCOMPARE(workbench.program().result().code, 0);
}

QTEST_GUILESS_MAIN(tst_E2eScan)
#include "tst_e2e_scan.moc"
