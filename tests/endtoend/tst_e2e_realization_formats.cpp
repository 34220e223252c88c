#include "realizationdesk.h"

namespace {

/// Plug-ins of others that fill tabs.
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

const QStringList childMenu { s("Child Type"), s("menu") };

} // namespace

/// Builds menus, tool bars and contributions to the layouts of others in the real program.
class tst_E2eRealizationFormats : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void recordsGoIntoFormats();
    void buildsBars();
    void subPointsGoIntoFormats();

private:
    [[nodiscard]] bool showCommands();

    std::unique_ptr<RealizationDesk> m_desk;
};

void tst_E2eRealizationFormats::cleanup()
{
    m_desk->finish();
    m_desk.reset();
}

bool tst_E2eRealizationFormats::showCommands()
{
    return m_desk->open() && m_desk->unfold(s("shell"))
        && m_desk->click(RealizationDesk::point({ s("shell"), s("Commands") }));
}

void tst_E2eRealizationFormats::recordsGoIntoFormats()
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

void tst_E2eRealizationFormats::buildsBars()
{
    const QByteArray own = R"xml(<ExtDataSet><ExtData plugin='own' id='shell.commands' extPlugin='shell'>
<format target='own.window' title='Window'/><action id='own.open' text="tr('Open')"/>
<action id='own.save' text="tr('Save')"/><action id='own.shut' text="tr('Shut')"/></ExtData></ExtDataSet>)xml";
    const auto uses = [](int open, int save, int shut) {
        const auto row = [](const char *id, const char *text, int number) {
            return s("%1 | %2 |  | %3 | %4")
                .arg(s(id), s(text), QString::number(number), number > 0 ? s("true") : s("false"));
        };
        return QStringList { row("own.open", "Open", open), row("own.save", "Save", save),
            row("own.shut", "Shut", shut) };
    };
    const auto entries = [](const char *lines) { return linesOf(s(lines)); };
    m_desk = std::make_unique<RealizationDesk>(pluginFile("own", own), others());
    QVERIFY2(showCommands(), qPrintable(m_desk->problem()));
    EVENTUALLY(m_desk->formats(), QStringList { s("format | Window") });
    QCOMPARE(m_desk->records(), uses(0, 0, 0));

    // The bars, and in them two menus and a tool bar.
    STEP(*m_desk, choose(RealizationDesk::entry({ 0 }), { s("Child Type"), s("menubar") }));
    EVENTUALLY(m_desk->formats().size(), 2);
    STEP(*m_desk, choose(RealizationDesk::entry({ 0 }), { s("Child Type"), s("toolbars") }));
    EVENTUALLY(m_desk->formats().size(), 3);
    STEP(*m_desk, choose(RealizationDesk::entry({ 0, 0 }), childMenu));
    EVENTUALLY(m_desk->formats().size(), 4);
    STEP(*m_desk, edit(s("id"), s("own.file")));
    STEP(*m_desk, edit(s("text"), s("File")));
    EVENTUALLY(m_desk->formats().value(2), s("        own.file | File"));
    STEP(*m_desk, click(RealizationDesk::entry({ 0, 0 })));
    STEP(m_desk->workbench(), key(s("Insert")));
    STEP(m_desk->workbench(), click(Place::menuEntry(s("menu"))));
    EVENTUALLY(m_desk->formats().size(), 5);
    STEP(*m_desk, edit(s("id"), s("own.more")));
    STEP(*m_desk, choose(RealizationDesk::entry({ 0, 1 }), { s("Child Type"), s("toolbar") }));
    EVENTUALLY(m_desk->formats(), entries(R"xml(
format | Window
    menubar | 
        own.file | File
        own.more | 
    toolbars | 
        own.toolbar.# | 
)xml"));
    QCOMPARE(m_desk->records(), uses(0, 0, 0));

    // Records into them.
    STEP(*m_desk, drag(RealizationDesk::record(0), RealizationDesk::entry({ 0, 0, 0 })));
    EVENTUALLY(m_desk->records(), uses(1, 0, 0));
    STEP(*m_desk, drag(RealizationDesk::record(1), RealizationDesk::entry({ 0, 0, 0 })));
    EVENTUALLY(m_desk->records(), uses(1, 1, 0));
    STEP(*m_desk, drag(RealizationDesk::record(2), RealizationDesk::entry({ 0, 0, 1 })));
    EVENTUALLY(m_desk->records(), uses(1, 1, 1));
    STEP(*m_desk, drag(RealizationDesk::record(0), RealizationDesk::entry({ 0, 1, 0 })));
    EVENTUALLY(m_desk->records(), uses(2, 1, 1));
    EVENTUALLY(m_desk->formats(), entries(R"xml(
format | Window
    menubar | 
        own.file | File
            own.open | Open
            own.save | Save
        own.more | 
            own.shut | Shut
    toolbars | 
        own.toolbar.# | 
            own.open | Open
)xml"));

    // Before another entry; a menu with its entry into another one, and before an entry of it.
    STEP(*m_desk, drag(RealizationDesk::entry({ 0, 0, 0, 1 }), RealizationDesk::entry({ 0, 0, 0, 0 })));
    EVENTUALLY(m_desk->formats().value(3), s("            own.save | Save"));
    STEP(*m_desk, drag(RealizationDesk::entry({ 0, 0, 1 }), RealizationDesk::entry({ 0, 0, 0 })));
    EVENTUALLY(m_desk->formats().value(5), s("            own.more | "));
    STEP(*m_desk, drag(RealizationDesk::entry({ 0, 0, 0, 2 }), RealizationDesk::entry({ 0, 0, 0, 1 })));
    const QStringList moved = entries(R"xml(
format | Window
    menubar | 
        own.file | File
            own.save | Save
            own.more | 
                own.shut | Shut
            own.open | Open
    toolbars | 
        own.toolbar.# | 
            own.open | Open
)xml");
    EVENTUALLY(m_desk->formats(), moved);
    QCOMPARE(m_desk->records(), uses(2, 1, 1));
    // Nothing goes into itself.
    STEP(*m_desk, drag(RealizationDesk::entry({ 0, 0, 0 }), RealizationDesk::entry({ 0, 0, 0, 1 })));
    EVENTUALLY(m_desk->formats(), moved);

    STEP(*m_desk, choose(RealizationDesk::entry({ 0, 1, 0, 0 }), { s("Delete") }));
    EVENTUALLY(m_desk->records(), uses(1, 1, 1));
    STEP(*m_desk, click(RealizationDesk::entry({ 0, 0, 0, 0 })));
    STEP(m_desk->workbench(), key(s("Delete")));
    EVENTUALLY(m_desk->records(), uses(1, 0, 1));
    const QStringList left = entries(R"xml(
format | Window
    menubar | 
        own.file | File
            own.more | 
                own.shut | Shut
            own.open | Open
    toolbars | 
        own.toolbar.# | 
)xml");
    EVENTUALLY(m_desk->formats(), left);
    m_desk->leavePicture(s("story-5"));
    STEP(*m_desk, save());
    QCOMPARE(m_desk->saved(), savedFile(R"xml(
    <ExtDataSet>
        <ExtData plugin="own" id="shell.commands" extPlugin="shell" text="">
            <format target="own.window" title="Window">
                <menubar>
                    <menu id="own.file" text="tr('File')">
                        <menu id="own.more">
                            <action id="own.shut"/>
                        </menu>
                        <action id="own.open"/>
                    </menu>
                </menubar>
                <toolbars>
                    <toolbar id="own.toolbar.#"/>
                </toolbars>
            </format>
            <action id="own.open" text="tr('Open')" icon="" checkable="false"/>
            <action id="own.save" text="tr('Save')" icon="" checkable="false"/>
            <action id="own.shut" text="tr('Shut')" icon="" checkable="false"/>
        </ExtData>
    </ExtDataSet>
)xml"));
    STEP(*m_desk, close());

    QVERIFY2(showCommands(), qPrintable(m_desk->problem()));
    EVENTUALLY(m_desk->formats(), left);
    EVENTUALLY(m_desk->records(), uses(1, 0, 1));
    STEP(*m_desk, close());
}

void tst_E2eRealizationFormats::subPointsGoIntoFormats()
{
    const QByteArray own = R"xml(<ExtDataSet><ExtData plugin='own' id='shell.commands' extPlugin='shell'>
<format target='own.window' title='Window'><menubar><menu id='own.file'/></menubar></format>
<format target='both.window' title='Both'><menubar><menu id='own.help'/></menubar></format>
<menu id='own.file' text="tr('File')"/><menu id='own.help' text="tr('Help')"/></ExtData></ExtDataSet>)xml";
    const Place action = RealizationDesk::point({ s("shell"), s("Commands"), s("Action") });
    m_desk = std::make_unique<RealizationDesk>(pluginFile("own", own), others());
    QVERIFY2(showCommands(), qPrintable(m_desk->problem()));
    STEP(*m_desk, showTab(s("Window")));
    STEP(*m_desk, drag(action, RealizationDesk::entry({ 0, 0, 0 })));
    EVENTUALLY(m_desk->formats().size(), 4);
    STEP(*m_desk, showTab(s("Main")));
    EVENTUALLY(m_desk->formats().value(3), s("    desk.right | "));
    STEP(*m_desk, drag(action, RealizationDesk::entry({ 0, 1 })));
    EVENTUALLY(m_desk->formats().size(), 5);
    STEP(*m_desk, showTab(s("Both")));
    EVENTUALLY(m_desk->formats().value(3), s("        desk.extras | Extras"));
    STEP(*m_desk, drag(action, RealizationDesk::entry({ 0, 0, 1 })));
    EVENTUALLY(m_desk->formats().size(), 6);
    STEP(*m_desk, drag(action, RealizationDesk::entry({ 0, 0, 0 })));
    const QList<QPair<QString, QStringList>> tabs {
        { s("Window"),
            { s("format | Window"), s("    menubar | "), s("        own.file | File"),
                s("            own.action# | ") } },
        { s("Main"),
            { s("desk.main | Main"), s("    desk.left | "), s("        desk.print | Print"), s("    desk.right | "),
                s("        own.action# | ") } },
        { s("Both"),
            { s("format | Both"), s("    menubar | "), s("        own.help | Help"), s("            own.action# | "),
                s("        desk.extras | Extras"), s("            desk.print | Print"),
                s("            own.action# | ") } },
    };
    for (const auto &tab : tabs) {
        STEP(*m_desk, showTab(tab.first));
        EVENTUALLY(m_desk->formats(), tab.second);
    }
    STEP(*m_desk, save());
    QCOMPARE(m_desk->saved(), savedFile(R"xml(
    <ExtDataSet>
        <ExtData plugin="own" id="shell.commands" extPlugin="shell" text="">
            <Format target="desk.main">
                <action id="own.action#" parent="desk.right"/>
            </Format>
            <format target="own.window" title="Window">
                <menubar>
                    <menu id="own.file">
                        <action id="own.action#"/>
                    </menu>
                </menubar>
            </format>
            <format target="both.window" title="Both">
                <menubar>
                    <menu id="own.help">
                        <action id="own.action#"/>
                    </menu>
                </menubar>
                <action id="own.action#" parent="desk.extras"/>
            </format>
            <menu id="own.file" text="tr('File')"/>
            <menu id="own.help" text="tr('Help')"/>
            <action id="own.action#"/>
            <action id="own.action#"/>
        </ExtData>
    </ExtDataSet>
)xml"));
    m_desk->leavePicture(s("story-9"));
    STEP(*m_desk, close());

    QVERIFY2(showCommands(), qPrintable(m_desk->problem()));
    QVERIFY(m_desk->tabs().contains(s("Both")));
    for (const auto &tab : tabs) {
        STEP(*m_desk, showTab(tab.first));
        EVENTUALLY(m_desk->formats(), tab.second);
    }
    STEP(*m_desk, close());
}

QTEST_GUILESS_MAIN(tst_E2eRealizationFormats)
#include "tst_e2e_realization_formats.moc"
