#include "realizationdesk.h"

#include <QRegularExpression>

namespace {

const QString pointTree = QStringLiteral("realizationTree");
const QString formatTree = QStringLiteral("formatTree");
const QString formatTab = QStringLiteral("formatTab");
const QString recordTable = QStringLiteral("realizTable");
const QString sheetName = QStringLiteral("propertyRealization");

Product::Files withOwn(const QByteArray &own, const Product::Files &others)
{
    Product::Files files;
    for (auto file = others.begin(); file != others.end(); ++file)
        files.insert(
            file.key().contains(QLatin1Char('/')) ? file.key() : file.key() + s("/extension.xml"), file.value());
    files.insert(s("own/extension.xml"), own);
    return files;
}

QStringList masked(QStringList lines)
{
    for (QString &line : lines)
        line = ::masked(line);
    return lines;
}

QStringList withPrefix(const char *prefix, QStringList lines)
{
    for (QString &line : lines)
        line.prepend(s(prefix));
    return lines;
}

} // namespace

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

QString masked(QString text)
{
    static const QRegularExpression generated(QStringLiteral("\\b(own\\.[A-Za-z]+\\.?)\\d{1,4}\\b"));
    return text.replace(generated, QStringLiteral("\\1#"));
}

QByteArray pluginFile(const char *id, const QByteArray &sets)
{
    return "<Plugin id=\"" + QByteArray(id) + "\" name=\"" + id + "\">" + sets + "</Plugin>\n";
}

QStringList linesOf(const QString &text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList savedFile(const char *lines)
{
    return linesOf(
        s("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Plugin id=\"own\" name=\"own\">") + s(lines) + s("</Plugin>"));
}

QByteArray colouredIcon(const char *colour)
{
    return QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"16\"><rect x=\"1\" y=\"1\" "
                      "width=\"14\" height=\"14\" rx=\"3\" fill=\"")
        + colour + "\"/></svg>\n";
}

QByteArray shellFile()
{
    return pluginFile("shell", R"(
<ExtPointSet>
    <ExtPoint id="shell.commands" name="Commands" displaylabel="text" displayicon="icon" hasformat="true">
        <String key="text" name="Text" value="" trans="true"/>
        <SubExtPoint key="format" name="Window"/>
        <SubExtPoint key="menubar" name="Menu bar" childType="menu"/>
        <SubExtPoint key="toolbars" name="Tool bars" childType="toolbar"/>
        <SubExtPoint key="toolbar" name="Tool bar" childType="action"/>
        <SubExtPoint key="menu" name="Menu" childType="menu|action">
            <String key="text" name="Text" value="Menu" trans="true"/>
        </SubExtPoint>
        <SubExtPoint key="action" name="Action">
            <String key="text" name="Text" value="Action" trans="true"/>
            <File key="icon" name="Icon" value=""/>
            <Bool key="checkable" name="Checkable" value="false"/>
        </SubExtPoint>
        <SubExtPoint key="area" name="Area" childType="action"/>
    </ExtPoint>
    <ExtPoint id="shell.panel" name="Panels" displaylabel="title">
        <String key="title" name="Title" value="Panel"/>
        <Int key="width" name="Width" value="200"/>
    </ExtPoint>
</ExtPointSet>)");
}

RealizationDesk::RealizationDesk(const QByteArray &own, const Product::Files &others)
    : m_product(withOwn(own, others)), m_others(m_product.fingerprintWithout(s("own")))
{ }

bool RealizationDesk::open(const QStringList &options)
{
    return m_workbench.open(file(), options) && realizationPage();
}

void RealizationDesk::addSiblings(int count, int points)
{
    m_product.addSiblings(count, points);
    m_others = m_product.fingerprintWithout(s("own"));
}

bool RealizationDesk::openWhileReading(const QString &last, const QStringList &options)
{
    m_workbench.program().holdBack(m_product.fileOf(last));
    return m_workbench.openWhileReading(file(), options) && realizationPage();
}

bool RealizationDesk::readOn()
{
    m_workbench.program().readOn();
    return m_workbench.waitFor(s("the end of the reading"), [this] { return !m_workbench.isBusy(); });
}

bool RealizationDesk::showPage(const QString &page)
{
    return click(Place::tab(s("tabWidget"), page));
}

bool RealizationDesk::unfold(const QString &plugin)
{
    return click(point({ plugin })) && m_workbench.key(s("asterisk"));
}

bool RealizationDesk::showTab(const QString &label)
{
    return click(Place::tab(formatTab, label));
}

bool RealizationDesk::edit(const QString &row, const QString &text)
{
    return m_workbench.typeIntoSheet(sheetName, row, text, s("Return"));
}

bool RealizationDesk::save()
{
    return m_workbench.key(s("ctrl+s"))
        && m_workbench.waitFor(s("the save"), [this] { return !m_workbench.isModified(); });
}

Place RealizationDesk::point(const QVariantList &path)
{
    return Place::row(pointTree, QVariantList { s("Realization") } + path);
}

Place RealizationDesk::entry(const QVariantList &path)
{
    return Place::row(formatTree, path);
}

Place RealizationDesk::record(int row)
{
    return Place::cell(recordTable, row, 0);
}

Place RealizationDesk::table()
{
    return Place::widget(recordTable);
}

QStringList RealizationDesk::saved() const
{
    return linesOf(::masked(QString::fromUtf8(contentOf(file()))));
}

QStringList RealizationDesk::tabs()
{
    return masked(m_workbench.tabs(formatTab));
}

QStringList RealizationDesk::formats()
{
    return masked(m_workbench.tree(formatTree));
}

QStringList RealizationDesk::formatIcons()
{
    return m_workbench.icons("tree", formatTree);
}

QStringList RealizationDesk::records()
{
    return masked(m_workbench.table(recordTable));
}

QStringList RealizationDesk::recordIcons()
{
    return m_workbench.icons("table", recordTable);
}

QStringList RealizationDesk::sheet()
{
    return masked(m_workbench.sheet(sheetName));
}

QStringList RealizationDesk::points()
{
    return m_workbench.tree(pointTree);
}

QStringList RealizationDesk::picture()
{
    return withPrefix("point: ", points()) + withPrefix("tab: ", tabs()) + withPrefix("entry: ", formats())
        + withPrefix("icon: ", formatIcons()) + withPrefix("record: ", records()) + withPrefix("icon: ", recordIcons())
        + withPrefix("property: ", sheet());
}

bool RealizationDesk::othersAreUntouched() const
{
    return m_product.fingerprintWithout(s("own")) == m_others;
}

void RealizationDesk::finish()
{
    m_workbench.finish();
    QVERIFY(othersAreUntouched());
}
