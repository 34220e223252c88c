#include "extensionsystem/plugindirectory.h"

#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QJsonObject>
#include <QPluginLoader>

namespace ExtensionSystem {

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ExtensionSystem::PluginManager)
};

PluginInfo invalid(const QString &filePath, const QString &reason)
{
    PluginInfo info;
    info.filePath = filePath;
    info.errorString = reason;
    return info;
}

PluginInfo readMetaData(const QString &filePath)
{
    const QPluginLoader loader(filePath);
    const QJsonObject json = loader.metaData();
    if (json.isEmpty())
        return invalid(filePath, Text::tr("the metadata can't be read: %1").arg(loader.errorString()));
    const PluginMetaData::Result result = PluginMetaData::fromJson(json);
    PluginInfo info = invalid(filePath, result.defects.join(QLatin1String("; ")));
    info.metaData = result.metaData;
    if (result.isValid())
        info.state = PluginInfo::Read;
    return info;
}

void refuseRepeatedNames(QVector<PluginInfo> &plugins)
{
    QHash<QString, QString> fileByName;
    for (PluginInfo &info : plugins) {
        if (info.state != PluginInfo::Read)
            continue;
        const QString name = info.metaData.name.toLower();
        const auto first = fileByName.constFind(name);
        if (first == fileByName.constEnd()) {
            fileByName.insert(name, info.filePath);
            continue;
        }
        info.state = PluginInfo::Invalid;
        info.errorString = Text::tr("\"%1\" was found before, in %2").arg(info.metaData.name, *first);
    }
}

} // namespace

QStringList pluginDirectories(const QStringList &paths)
{
    QStringList result;
    for (const QString &path : paths) {
        if (path.isEmpty())
            continue;
        const QString directory = QDir(path).canonicalPath();
        if (!directory.isEmpty() && !result.contains(directory))
            result.append(directory);
    }
    return result;
}

QVector<PluginInfo> readPluginDirectories(const QStringList &directories)
{
    QVector<PluginInfo> result;
    for (const QString &directory : directories) {
        const QStringList files = QDir(directory).entryList(QDir::Files, QDir::Name);
        for (const QString &file : files) {
            // Not by a name filter, which is a regular expression to Qt.
            if (!file.endsWith(QLatin1String(".so"), Qt::CaseInsensitive))
                continue;
            result.append(readMetaData(directory + QLatin1Char('/') + file));
        }
    }
    refuseRepeatedNames(result);
    return result;
}

} // namespace ExtensionSystem
