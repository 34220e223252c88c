#include "product.h"

#include <QDir>
#include <QDirIterator>

#include <sys/stat.h>

namespace {

/// By their names below the directory.
Product::Files filesIn(const QString &directory)
{
    Product::Files files;
    QDirIterator entries(directory, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        files.insert(path.mid(directory.size() + 1), contentOf(path));
    }
    return files;
}

} // namespace

Product::Product() : Product(sampleFiles()) { }

Product::Product(const Files &files)
{
    setMode(m_directory.path(), 0755);
    writeFiles(plugins(), files);
}

Product::~Product()
{
    QDirIterator entries(m_directory.path(), QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (entries.hasNext())
        setMode(entries.next(), 0755);
}

QString Product::fileOf(const QString &plugin) const
{
    return plugins() + QLatin1Char('/') + plugin + s("/extension.xml");
}

Product::Files Product::filesWithout(const QString &plugin) const
{
    Files files = filesIn(plugins());
    const QStringList names = files.keys();
    for (const QString &name : names)
        if (name.startsWith(plugin + QLatin1Char('/')))
            files.remove(name);
    return files;
}

void writeFiles(const QString &directory, const Product::Files &files)
{
    for (auto file = files.begin(); file != files.end(); ++file) {
        const QString path = directory + QLatin1Char('/') + file.key();
        if (!QDir().mkpath(QFileInfo(path).absolutePath()))
            qFatal("%s cannot be created", qPrintable(path));
        writeFile(path, file.value());
    }
}

Product::Files sampleFiles()
{
    return filesIn(s(EXTPOINT_SOURCE_DIR "/samples/product/plugins"));
}

void addSiblings(Product::Files *files, int count, int points)
{
    for (int i = 0; i < count; ++i) {
        const QByteArray id = "generated.p" + QByteArray::number(10'000 + i);
        QByteArray declared;
        for (int point = 0; point < points; ++point)
            declared += "<ExtPoint id=\"" + id + ".e" + QByteArray::number(point)
                + "\" name=\"Point\"><String key=\"text\" name=\"Text\" value=\"\"/>"
                  "<SubExtPoint key=\"entry\" name=\"Entry\"/></ExtPoint>\n";
        files->insert(s(id) + s("/extension.xml"), pluginFile(id, "<ExtPointSet>" + declared + "</ExtPointSet>"));
    }
}

QByteArray pluginFile(const char *id, const QByteArray &sets)
{
    return "<Plugin id=\"" + QByteArray(id) + "\" name=\"" + id + "\">" + sets + "</Plugin>\n";
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

void setMode(const QString &path, unsigned mode)
{
    if (::chmod(QFile::encodeName(path).constData(), mode) != 0)
        qFatal("the mode of %s cannot be changed", qPrintable(path));
}
