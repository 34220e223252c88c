// Builds the plug-in of the user guide in the real program, step by step as the guide tells it, and leaves a picture of
// each step: guidepictures DIRECTORY. It wants an X server with a window manager (tools/guide-pictures).

#include "inputdevices.h"
#include "product.h"
#include "workbenchdriver.h"

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

namespace {

class Guide final
{
public:
    explicit Guide(const QString &directory) : m_directory(directory) { }

    /// False with a line on the standard error output when a step could not be done.
    bool make();

private:
    bool prepare();
    bool declarePoint();
    bool declareSubPoint();
    bool makeRecords();
    bool makeMenus();
    bool contribute();
    bool addMeta();
    bool saveAll();

    bool click(const Place &place) { return m_workbench.click(place); }
    bool drag(const Place &from, const Place &to) { return m_workbench.drag(from, to); }
    bool choose(const Place &place, const QStringList &entries) { return m_workbench.choose(place, entries); }
    bool edit(const char *sheet, const char *row, const char *text) { return m_workbench.edit(sheet, row, s(text)); }
    bool editRecord(const char *row, const char *text) { return edit("propertyRealization", row, text); }
    bool rows(const char *table, int count)
    {
        return m_workbench.waitFor(s(table) + s(": rows"), [=] { return m_workbench.lines(table).size() == count; });
    }
    bool unfold(const char *plugin) { return m_workbench.unfold(s(plugin)); }
    bool picture(const char *name);

    QString m_directory;
    QString m_file;
    WorkbenchDriver m_workbench;
};

const Place newPlugin = Place::row(s("defintionTree"), { 0 });
const Place newPoint = Place::row(s("defintionTree"), { 0, 0 });

/// A point or sub point of the plug-in that has the window.
Place shell(const char *name)
{
    return Place::point({ s("saltmere.shell"), s("Commands"), s(name) });
}

bool Guide::make()
{
    const bool made = prepare() && declarePoint() && declareSubPoint() && makeRecords() && makeMenus() && contribute()
        && addMeta() && saveAll();
    if (!made)
        QTextStream(stderr) << m_workbench.problem() << '\n';
    return made;
}

bool Guide::picture(const char *name)
{
    // A record with an icon is not to be selected: its sheet shows the whole path of the file.
    // What the pointer rests on looks different, and a tool tip may come up.
    return InputDevices::move({ 998, 30 })
        && m_workbench.waitFor(s("a picture"), [this] { return !m_workbench.isBusy(); })
        && InputDevices::takePicture(m_directory + s("/guide-") + s(name) + s(".png"));
}

bool Guide::prepare()
{
    const QString product = m_workbench.program().homeDirectory() + s("/product/plugins");
    writeFiles(product, sampleFiles());
    m_file = product + s("/soundings/extension.xml");
    if (!QDir().mkpath(product + s("/soundings/images")))
        return false;
    writeFile(product + s("/soundings/images/buoy.svg"), contentOf(product + s("/chartdesk/images/buoy.svg")));
    writeFile(m_file, "<Plugin id=\"saltmere.soundings\" name=\"Soundings\"/>\n");
    return m_workbench.open(m_file) && m_workbench.chooseFromMenu(s("View"), s("Plug-ins"))
        && m_workbench.definitionPage();
}

bool Guide::declarePoint()
{
    constexpr int RightButton = 3;
    return m_workbench.click(newPlugin, RightButton) && picture("create-point")
        && click(Place::menuEntry(s("Create Point"))) && edit("basicInfo", "id", "saltmere.soundings.sounder")
        && edit("basicInfo", "name", "Echo sounders") && click(Place::widget(s("pushButton_add_attr")))
        && rows("defintionTable", 1) && edit("editInfoWidget", "key", "text") && edit("editInfoWidget", "name", "Name")
        && edit("editInfoWidget", "value", "New sounder") && click(Place::widget(s("pushButton_add_attr")))
        && rows("defintionTable", 2) && edit("editInfoWidget", "key", "range")
        && edit("editInfoWidget", "name", "Range in metres") && click(Place::sheetRow(s("editInfoWidget"), s("type")))
        && click(Place::listEntry(s("Int"))) && edit("editInfoWidget", "value", "50")
        && edit("editInfoWidget", "max", "500") && picture("attributes");
}

bool Guide::declareSubPoint()
{
    return choose(newPoint, { s("Create Sub Point") }) && edit("basicInfo", "key", "transducer")
        && edit("basicInfo", "name", "Transducer") && click(Place::widget(s("pushButton_add_attr")))
        && rows("defintionTable", 1) && edit("editInfoWidget", "key", "frequency")
        && edit("editInfoWidget", "name", "Frequency in kHz") && edit("editInfoWidget", "value", "200")
        && picture("sub-point");
}

bool Guide::makeRecords()
{
    const QVariantList sounders { s("saltmere.soundings"), s("Echo sounders") };
    return m_workbench.realizationPage() && unfold("saltmere.soundings")
        && m_workbench.dragToWhatAppears(Place::point(sounders), Place::table()) && rows("realizTable", 1)
        && editRecord("id", "soundings.harbour") && editRecord("text", "Harbour") && picture("record");
}

bool Guide::makeMenus()
{
    constexpr int RightButton = 3;
    const Place root = Place::entry({ 0 });
    const auto showFormat = [this] {
        return m_workbench.waitFor(s("the new tab"), [this] {
            return m_workbench.lines("formatTab").contains(s("soundings.window"));
        }) && click(Place::tab(s("formatTab"), s("soundings.window")));
    };
    return unfold("saltmere.shell") && m_workbench.dragToWhatAppears(shell("Action"), Place::table())
        && rows("realizTable", 1) && editRecord("id", "soundings.show") && editRecord("text", "Show soundings")
        && editRecord("icon", "images/buoy.svg") && m_workbench.dragToWhatAppears(shell("Action"), Place::table())
        && rows("realizTable", 2) && editRecord("id", "soundings.sweep") && editRecord("text", "Sweep")
        && m_workbench.dragToWhatAppears(shell("Format"), Place::table()) && editRecord("id", "soundings.window")
        && showFormat() && m_workbench.click(root, RightButton) && click(Place::menuEntry(s("Child Type")))
        && picture("child-type") && click(Place::menuEntry(s("menubar")))
        && choose(Place::entry({ 0, 0 }), { s("Child Type"), s("menu") }) && editRecord("id", "soundings.menu")
        && editRecord("text", "Soundings") && click(shell("Action")) && rows("realizTable", 2)
        && drag(Place::record(0), Place::entry({ 0, 0, 0 })) && drag(Place::record(1), Place::entry({ 0, 0, 0 }))
        && picture("menu-bar");
}

bool Guide::contribute()
{
    const QVariantList extras { 0, s("MenuBar"), s("shell.menu.extras") };
    return click(Place::tab(s("formatTab"), s("What the product opens with")))
        && drag(Place::record(1), Place::entry(extras)) && picture("contribution");
}

bool Guide::addMeta()
{
    return choose(Place::record(1), { s("Meta") }) && click(Place::button(s("MetaDialog"), s("Add")))
        && rows("tableWidget", 1) && edit("metaProperty", "key", "since") && edit("metaProperty", "value", "1.4")
        && picture("meta") && click(Place::button(s("MetaDialog"), s("Close")))
        && m_workbench.waitFor(s("the dialog to close"), [this] { return m_workbench.dialogs().isEmpty(); });
}

bool Guide::saveAll()
{
    const bool saved = m_workbench.save() && m_workbench.close();
    QTextStream(stdout) << contentOf(m_file);
    return saved;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        QTextStream(stderr) << "usage: guidepictures DIRECTORY\n";
        return 2;
    }
    return Guide(application.arguments().at(1)).make() ? 0 : 1;
}
