#include "product.h"
#include "workbenchdriver.h"

#include <QRegularExpression>
#include <QThread>

#include <algorithm>
#include <csignal>

namespace {

QStringList linesOf(const QString &text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// The text with "#" for the numbers of generated ids of the plug-in "own".
QString masked(QString text)
{
    static const QRegularExpression generated(s("\\b(own\\.[A-Za-z]+\\.?)\\d{1,4}\\b"));
    return text.replace(generated, s("\\1#"));
}

/// What is saved of the plug-in "own" when its file holds these elements, each line indented as in the file.
QStringList savedFile(const char *lines)
{
    return linesOf(
        s("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Plugin id=\"own\" name=\"own\">") + s(lines) + s("</Plugin>"));
}

QByteArray colouredIcon(const QString &colour)
{
    return s("<svg xmlns='http://www.w3.org/2000/svg'><rect width='16' height='16' fill='%1'/></svg>")
        .arg(colour)
        .toUtf8();
}

/// Plug-ins of others that declare the points and fill a tab.
Product::Files others()
{
    return {
        { s("shell/extension.xml"), shellFile() },
        { s("desk/extension.xml"),
            pluginFile("desk", R"xml(<ExtDataSet><ExtData plugin='desk' id='shell.commands' extPlugin='shell'>
<Layout id='desk.main' title='Main'><area id='desk.left'><action id='desk.print'/></area><area id='desk.right'/></Layout>
<format target='both.window'><menubar><menu id='desk.extras'><action id='desk.print'/></menu></menubar></format>
<menu id='desk.extras' text='Extras'/><action id='desk.print' text='Print' icon='green.svg'/></ExtData></ExtDataSet>)xml") },
        { s("desk/green.svg"), colouredIcon(s("#208040")) },
    };
}

} // namespace

/// A person's work on the realization page of the real program, and what is saved of it: records that are changed where
/// they are used, contributions to the layouts of others, points of one's own, also while the other plug-ins are being
/// read.
class tst_E2eRealization : public QObject, private WorkbenchDriver
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup();
    void editsReachEverything();
    void recordsGoIntoFormats();
    void pointIsMadeUsedAndDeleted();
    void withoutAMouse();
    void savesWhileReading();
    void aDeadNeighbour();

private:
    /// A product of these files and the plug-in "own", which is the one to work on.
    void make(const QByteArray &own, Product::Files others);
    [[nodiscard]] bool openPage(bool waitForReading = true)
    {
        return open(file(), waitForReading) && realizationPage();
    }
    [[nodiscard]] bool showCommands();
    [[nodiscard]] bool showTab(const char *label) { return click(Place::tab(s("formatTab"), s(label))); }
    [[nodiscard]] bool dragToTable(const QVariantList &point)
    {
        return dragToWhatAppears(Place::point(point), Place::table());
    }
    [[nodiscard]] bool editRecord(const char *row, const char *text)
    {
        return edit("propertyRealization", row, s(text));
    }
    [[nodiscard]] bool makePoint();
    [[nodiscard]] bool rename(const char *name);

    [[nodiscard]] QString file() const { return m_product->fileOf(s("own")); }
    [[nodiscard]] QStringList saved() const { return linesOf(masked(QString::fromUtf8(contentOf(file())))); }
    [[nodiscard]] QStringList shown(const char *widget)
    {
        return linesOf(masked(lines(widget).join(QLatin1Char('\n'))));
    }
    [[nodiscard]] QStringList formats() { return shown("formatTree"); }
    [[nodiscard]] QStringList records() { return shown("realizTable"); }
    [[nodiscard]] QStringList sheet() { return shown("propertyRealization"); }
    /// Everything that the page shows.
    [[nodiscard]] QStringList picture();
    /// What the realization page shows under the plug-in that is edited.
    [[nodiscard]] QStringList ownPoints();
    /// The number of plug-ins that the realization page shows.
    [[nodiscard]] int plugins();

    std::unique_ptr<Product> m_product;
    Product::Files m_others;
};

void tst_E2eRealization::make(const QByteArray &own, Product::Files others)
{
    m_others = others;
    others.insert(s("own/extension.xml"), pluginFile("own", own));
    m_product = std::make_unique<Product>(others);
}

void tst_E2eRealization::cleanup()
{
    finish();
    QVERIFY(m_product->filesWithout(s("own")) == m_others);
}

bool tst_E2eRealization::showCommands()
{
    return openPage() && unfold(s("shell")) && click(Place::point({ s("shell"), s("Commands") }));
}

bool tst_E2eRealization::rename(const char *name)
{
    return definitionPage() && click(Place::row(s("defintionTree"), { 0, 0 })) && edit("basicInfo", "name", s(name))
        && waitFor(s("the new name"), [&] { return lines("defintionTree").value(1).trimmed() == s(name); });
}

QStringList tst_E2eRealization::picture()
{
    return lines("realizationTree") + lines("formatTab") + formats() + icons("formatTree") + records()
        + icons("realizTable") + sheet();
}

QStringList tst_E2eRealization::ownPoints()
{
    const QStringList points = lines("realizationTree");
    const int first = points.indexOf(s("    own")) + 1;
    const auto isBelow = [](const QString &line) { return line.startsWith(s("        ")); };
    const auto end = std::find_if_not(points.begin() + first, points.end(), isBelow);
    return first == 0 ? QStringList() : points.mid(first, int(std::distance(points.begin() + first, end)));
}

int tst_E2eRealization::plugins()
{
    return lines("realizationTree").filter(QRegularExpression(s("^ {4}[^ ]"))).size();
}

void tst_E2eRealization::editsReachEverything()
{
    const QByteArray own = R"xml(<ExtDataSet><ExtData plugin='own' id='shell.commands' extPlugin='shell'>
<format target='own.window' title='Window'><menubar><menu id='own.file'><action id='own.open'/>
<action id='own.open' text="tr('Mine')"/></menu></menubar></format>
<menu id='own.file' text="tr('File')"/><action id='own.open' text="tr('Open')" icon='c02020.svg'/>
</ExtData></ExtDataSet>)xml";
    const auto window = [](const char *id, const char *text) {
        return QStringList { s("format | Window"), s("    menubar | "), s("        own.file | File"),
            s("            ") + s(id) + s(" | ") + s(text), s("            ") + s(id) + s(" | Mine") };
    };
    const QString red = s("#c02020");
    const QString blue = s("#2040c0");
    make(own, { { s("shell/extension.xml"), shellFile() } });
    for (const QString &colour : { red, blue })
        writeFile(m_product->plugins() + s("/own/") + colour.mid(1) + s(".svg"), colouredIcon(colour));
    STEP(showCommands());
    STEP(showTab("Window"));
    EVENTUALLY(
        records(), (QStringList { s("own.file | File |  | 1 | true"), s("own.open | Open | c02020.svg | 2 | true") }));
    QCOMPARE(formats(), window("own.open", "Open"));
    QCOMPARE(icons("formatTree"), (QStringList { QString(), QString(), QString(), red, red }));
    QCOMPARE(icons("realizTable"), (QStringList { QString(), red }));

    STEP(click(Place::record(1)));
    // What it lacked has its default.
    EVENTUALLY(sheet().value(3), s("checkable = false"));
    STEP(editRecord("text", "Load"));
    EVENTUALLY(records().value(1), s("own.open | Load | c02020.svg | 2 | true"));
    EVENTUALLY(formats(), window("own.open", "Load"));
    STEP(editRecord("icon", "2040c0.svg"));
    EVENTUALLY(icons("realizTable"), (QStringList { QString(), blue }));
    EVENTUALLY(icons("formatTree"), (QStringList { QString(), QString(), QString(), blue, blue }));
    STEP(editRecord("id", "own.load"));
    EVENTUALLY(records().value(1), s("own.load | Load | 2040c0.svg | 2 | true"));
    EVENTUALLY(formats(), window("own.load", "Load"));
    STEP(save());
    QCOMPARE(saved(), savedFile(R"xml(
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
            <menu id="own.file" text="tr('File')"/>
            <action id="own.load" text="tr('Load')" icon="2040c0.svg" checkable="false"/>
        </ExtData>
    </ExtDataSet>
)xml"));
    // An icon is shown with the whole path of its file once the record is shown anew.
    STEP(click(Place::record(0)));
    STEP(click(Place::record(1)));
    EVENTUALLY(sheet().value(2), s("icon = ") + m_product->plugins() + s("/own/2040c0.svg"));
    const QStringList before = picture();
    STEP(close());

    STEP(showCommands());
    STEP(showTab("Window"));
    STEP(click(Place::record(1)));
    EVENTUALLY(picture(), before);
    STEP(close());
}

void tst_E2eRealization::recordsGoIntoFormats()
{
    const QByteArray own = R"xml(<ExtDataSet><ExtData plugin='own' id='shell.commands' extPlugin='shell'>
<format target='own.window' title='Window'><menubar><menu id='own.file'><action id='own.open'/></menu></menubar></format>
<menu id='own.file' text="tr('File')"/><action id='own.open' text="tr('Open')"/><action id='own.shut' text="tr('Shut')"/>
</ExtData></ExtDataSet>)xml";
    make(own, others());
    STEP(showCommands());
    const QStringList untouched { s("format | Window"), s("    menubar | "), s("        own.file | File"),
        s("            own.open | Open") };
    EVENTUALLY(formats(), untouched);
    // A bar takes menus and nothing else, and a sibling's area takes no menu.
    const Place menu = Place::entry({ 0, 0, 0 });
    STEP(drag(Place::record(2), Place::entry({ 0, 0 })));
    STEP(drag(Place::record(2), Place::entry({ 0, 0, 0, 0 })));
    STEP(showTab("Main"));
    const QStringList foreign { s("desk.main | Main"), s("    desk.left | "), s("        desk.print | Print"),
        s("    desk.right | ") };
    EVENTUALLY(formats(), foreign);
    STEP(drag(Place::record(0), Place::entry({ 0, 1 })));
    EVENTUALLY(formats(), foreign);
    STEP(showTab("Window"));
    EVENTUALLY(formats(), untouched);
    QVERIFY(!isModified());

    STEP(drag(Place::record(2), menu));
    const QStringList window = untouched + QStringList { s("            own.shut | Shut") };
    EVENTUALLY(formats(), window);
    EVENTUALLY(records().value(2), s("own.shut | Shut |  | 1 | true"));
    STEP(showTab("Main"));
    EVENTUALLY(formats(), foreign);
    STEP(drag(Place::record(2), Place::entry({ 0, 0 })));
    const QStringList main { s("desk.main | Main"), s("    desk.left | "), s("        desk.print | Print"),
        s("        own.shut | Shut"), s("    desk.right | ") };
    EVENTUALLY(formats(), main);
    EVENTUALLY(records().value(2), s("own.shut | Shut |  | 2 | true"));
    STEP(save());
    QCOMPARE(saved(), savedFile(R"xml(
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
            <action id="own.shut" text="tr('Shut')"/>
        </ExtData>
    </ExtDataSet>
)xml"));
    const QStringList icons = this->icons("formatTree");
    const QStringList records = this->records();
    STEP(close());

    STEP(showCommands());
    EVENTUALLY(this->records(), records);
    STEP(showTab("Main"));
    EVENTUALLY(formats(), main);
    QCOMPARE(this->icons("formatTree"), icons);
    STEP(showTab("Window"));
    EVENTUALLY(formats(), window);
    STEP(close());
}

bool tst_E2eRealization::makePoint()
{
    return definitionPage() && choose(Place::row(s("defintionTree"), { 0 }), { s("Create Point") })
        && edit("basicInfo", "id", s("own.shapes")) && edit("basicInfo", "name", s("Shapes"))
        && click(Place::widget(s("pushButton_add_attr"))) && edit("editInfoWidget", "key", s("label"))
        && edit("editInfoWidget", "value", s("Circle")) && waitFor(s("the attribute"), [this] {
               return lines("defintionTable") == QStringList { s("label |  | String | Circle") };
           });
}

void tst_E2eRealization::pointIsMadeUsedAndDeleted()
{
    make("", { { s("shell/extension.xml"), shellFile() } });
    STEP(openPage());
    STEP(makePoint());

    STEP(realizationPage());
    EVENTUALLY(ownPoints(), QStringList { s("        Shapes") });
    STEP(unfold(s("own")));
    STEP(dragToTable({ s("own"), s("Shapes") }));
    EVENTUALLY(records(), QStringList { s("own.shapes# |  | ") });
    EVENTUALLY(sheet(), (QStringList { s("id = own.shapes#"), s("label = Circle") }));
    STEP(editRecord("label", "Ring"));

    // Another name and id, with the record selected; and a sub point.
    STEP(definitionPage());
    STEP(click(Place::row(s("defintionTree"), { 0, 0 })));
    STEP(edit("basicInfo", "name", s("Figures")));
    STEP(edit("basicInfo", "id", s("own.figures")));
    STEP(choose(Place::row(s("defintionTree"), { 0, 0 }), { s("Create Sub Point") }));
    EVENTUALLY(lines("defintionTree").size(), 3);
    STEP(edit("basicInfo", "key", s("corner")));
    STEP(realizationPage());
    EVENTUALLY(ownPoints(), (QStringList { s("        Figures"), s("            SubPoint") }));
    EVENTUALLY(records(), QStringList { s("own.shapes# |  | ") });
    EVENTUALLY(sheet(), (QStringList { s("id = own.shapes#"), s("label = Ring") }));
    STEP(unfold(s("own")));
    STEP(dragToTable({ s("own"), s("Figures"), s("SubPoint") }));
    EVENTUALLY(records(), QStringList { s("own.corner# |  | ") });
    STEP(save());
    QCOMPARE(saved(), savedFile(R"xml(
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

    // With its record selected.
    STEP(click(Place::record(0)));
    STEP(definitionPage());
    STEP(click(Place::row(s("defintionTree"), { 0, 0 })));
    STEP(key(s("Delete")));
    EVENTUALLY(lines("defintionTree"), QStringList { s("own") });
    STEP(realizationPage());
    EVENTUALLY(lines("realizationTree").filter(s("Figures")), QStringList());
    EVENTUALLY(records(), QStringList());
    STEP(save());
    // What realized the point stays for whoever declares it again.
    QCOMPARE(saved(), savedFile(R"xml(
    <ExtPointSet/>
    <ExtDataSet>
        <ExtData plugin="own" id="own.figures" extPlugin="own">
            <shapes id="own.shapes#" label="Ring"/>
            <corner id="own.corner#"/>
        </ExtData>
    </ExtDataSet>
)xml"));
    QCOMPARE(lines("realizationTree").filter(s("    own")).size(), 1);
    STEP(close());

    STEP(openPage());
    EVENTUALLY(lines("realizationTree").filter(s("    own")).size(), 1);
    QCOMPARE(ownPoints(), QStringList());
    STEP(close());
}

/// A point, a record of it, an action, and the action in a layout of others, by the keys alone.
void tst_E2eRealization::withoutAMouse()
{
    make("", others());
    STEP(open(file()));
    STEP(tabTo("tabWidget") && keys("Left") && tabTo("defintionTree"));
    STEP(keys("Insert F2 ctrl+a") && enter("Shapes"));
    EVENTUALLY(lines("defintionTree").value(1), s("    Shapes"));
    STEP(keys("shift+Tab ctrl+a") && enter("own.shapes"));
    STEP(tabTo("defintionTable") && keys("Insert") && enter("text") && tabTo("defintionTable"));
    STEP(keys("Insert") && enter("label"));
    // The last attribute comes first.
    STEP(tabTo("defintionTable") && keys("alt+Up"));
    EVENTUALLY(lines("defintionTable"), (QStringList { s("label |  | String | "), s("text |  | String | ") }));

    STEP(tabTo("tabWidget") && keys("Right") && tabTo("realizationTree"));
    STEP(keys("Home asterisk End Insert F2 ctrl+a") && enter("Ring"));
    EVENTUALLY(records(), QStringList { s("own.shapes# | Ring | ") });
    STEP(tabTo("realizationTree") && downTo("Action") && keys("Insert F2 ctrl+a") && enter("Go"));
    EVENTUALLY(records(), QStringList { s("own.action# | Go |  | 0 | false") });
    STEP(tabTo("realizTable") && keys("ctrl+c"));
    STEP(tabTo("formatTab") && keys("Home") && tabTo("formatTree"));
    EVENTUALLY(formats().value(0), s("desk.main | Main"));
    STEP(downTo("desk.left") && keys("ctrl+v"));
    EVENTUALLY(formats().value(3), s("        own.action# | Go"));
    STEP(save());
    QCOMPARE(saved(), savedFile(R"xml(
    <ExtPointSet>
        <ExtPoint id="own.shapes" name="Shapes">
            <String key="label" name="" value="" regexp="" tips="" trans=""/>
            <String key="text" name="" value="" regexp="" tips="" trans=""/>
        </ExtPoint>
    </ExtPointSet>
    <ExtDataSet>
        <ExtData plugin="own" id="own.shapes" extPlugin="own">
            <shapes id="own.shapes#" label="" text="Ring"/>
        </ExtData>
        <ExtData plugin="own" id="shell.commands" extPlugin="shell">
            <Format target="desk.main">
                <action id="own.action#" parent="desk.left"/>
            </Format>
            <action id="own.action#" text="tr('Go')" icon="" checkable="false"/>
        </ExtData>
    </ExtDataSet>
)xml"));
    STEP(close());
}

void tst_E2eRealization::savesWhileReading()
{
    const QByteArray own = R"xml(<ExtPointSet><ExtPoint id='own.shapes' name='Shapes'/></ExtPointSet>
<ExtDataSet><ExtData plugin='own' id='shell.commands' extPlugin='shell'><menu id='own.file' text="tr('File')"/>
<action id='own.open' text="tr('Open')" icon='open.svg'><Meta value='1.4'/></action></ExtData></ExtDataSet>)xml";
    // What makes the texts translatable is the last to be read.
    Product::Files others { { s("z-shell/extension.xml"), shellFile() } };
    addSiblings(&others, 200, 5);
    make(own, others);
    program().holdBack(m_product->fileOf(s("z-shell")));
    STEP(openPage(false));
    STEP(rename("Figures"));
    EVENTUALLY(isModified(), true);
    QVERIFY(isBusy());
    // A save takes in what is still to be read, and answers nobody until then.
    STEP(key(s("ctrl+s")));
    QThread::msleep(300);
    program().readOn();
    EVENTUALLY(isModified(), false);
    QCOMPARE(saved(), savedFile(R"xml(
    <ExtPointSet>
        <ExtPoint id="own.shapes" name="Figures"/>
    </ExtPointSet>
    <ExtDataSet>
        <ExtData plugin="own" id="shell.commands" extPlugin="shell">
            <menu id="own.file" text="tr('File')"/>
            <action id="own.open" text="tr('Open')" icon="open.svg">
                <Meta value="1.4"/>
            </action>
        </ExtData>
    </ExtDataSet>
)xml"));
    STEP(realizationPage());
    // One row for each plug-in, and all of them.
    EVENTUALLY(plugins(), 200 + 2);
    STEP(close());
}

/// A file of another plug-in lies on a network that has gone, and sixty more are slow: that costs nothing but what only
/// that file could tell, and a question.
void tst_E2eRealization::aDeadNeighbour()
{
    const QByteArray own = R"xml(<ExtPointSet><ExtPoint id='own.shapes' name='Shapes'/></ExtPointSet>
<ExtDataSet><ExtData plugin='own' id='shell.commands' extPlugin='shell'><menu id='own.file' text="tr('File')"/></ExtData>
</ExtDataSet>)xml";
    Product::Files others { { s("a-shell/extension.xml"), shellFile() }, { s("z-broken/extension.xml"), "<Plugin" } };
    addSiblings(&others, 60, 5);
    make(own, others);
    program().slowDown(200);
    program().holdBack(m_product->fileOf(s("a-shell")));

    STEP(openPage(false));
    STEP(rename("Kept"));
    EVENTUALLY(program().recoveryCopies().size(), 1);
    // The others pass the one that is not read.
    STEP(realizationPage());
    EVENTUALLY(plugins(), 60 + 1);
    QVERIFY(program().signal(SIGKILL));

    STEP(openPage(false));
    STEP(definitionPage());
    STEP(click(Place::widget(s("restoreButton"))));
    EVENTUALLY(lines("defintionTree").value(1).trimmed(), s("Kept"));
    STEP(realizationPage());
    EVENTUALLY(plugins(), 60 + 1);
    for (const bool anyway : { false, true }) {
        STEP(key(s("ctrl+s")));
        EVENTUALLY(isShown("saveNowButton"), true);
        QVERIFY2(textOf("saveBarText").contains(s("a-shell")), qPrintable(textOf("saveBarText")));
        STEP(click(Place::widget(s("saveNowButton"))));
        EVENTUALLY(dialogs(), QStringList { s("saveReportPrompt") });
        QVERIFY2(textOfDialog().contains(s("\"a-shell\", \"z-broken\"")), qPrintable(textOfDialog()));
        STEP(click(Place::button(s("saveReportPrompt"), anyway ? s("Save Anyway") : s("Cancel"))));
        EVENTUALLY(isModified(), !anyway);
        QCOMPARE(contentOf(file()).contains("text=\"File\""), anyway);
    }
    EVENTUALLY(program().recoveryCopies().size(), 0);
    EVENTUALLY(isShown("saveDetailsButton"), true);

    STEP(rename("Again"));
    QVERIFY(program().signal(SIGTERM));
    QCOMPARE(program().result().code, 0);
    QCOMPARE(program().recoveryCopies().size(), 1);

    // Closing waits for nobody either.
    STEP(openPage(false));
    STEP(key(s("alt+F4")));
    QCOMPARE(program().result().code, 0);
}

QTEST_GUILESS_MAIN(tst_E2eRealization)
#include "tst_e2e_realization.moc"
