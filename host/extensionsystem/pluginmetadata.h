#pragma once

#include "extensionsystem/extensionsystem_global.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

class QJsonObject;

namespace ExtensionSystem {

/// A version "major.minor.patch" or "major.minor.patch_build", compared number by number; no build counts as build 0.
/// Each number has at most nine digits.
struct EXTENSIONSYSTEM_EXPORT PluginVersion
{
    int majorNumber = 0;
    int minorNumber = 0;
    int patchNumber = 0;
    int buildNumber = 0;

    /// Nothing when @p text is not exactly a version.
    static std::optional<PluginVersion> fromString(const QString &text);
    QString toString() const;

    /// Less than, equal to or greater than 0 like the versions.
    static int compare(const PluginVersion &left, const PluginVersion &right);
};

inline bool operator==(const PluginVersion &l, const PluginVersion &r)
{
    return PluginVersion::compare(l, r) == 0;
}
inline bool operator!=(const PluginVersion &l, const PluginVersion &r)
{
    return PluginVersion::compare(l, r) != 0;
}
inline bool operator<(const PluginVersion &l, const PluginVersion &r)
{
    return PluginVersion::compare(l, r) < 0;
}
inline bool operator<=(const PluginVersion &l, const PluginVersion &r)
{
    return PluginVersion::compare(l, r) <= 0;
}

/// One plug-in that another needs (or, being optional, wants to come after when it is there).
struct EXTENSIONSYSTEM_EXPORT PluginDependency
{
    QString name;
    PluginVersion version;
    bool optional = false;
};

/// What a plug-in tells about itself without any of its code being loaded: a plain record read from the JSON object
/// that is embedded in the shared object. The plug-in's author writes
///
///     { "Name": "...", "Version": "1.2.3", "CompatVersion": "1.0.0", "Category": "...", "Description": "...",
///       "Dependencies": [ { "Name": "...", "Version": "1.0.0", "Type": "required" } ] }
///
/// "Name" and "Version" must be there. "CompatVersion", the oldest version whose users still work with this one,
/// defaults to "Version". "Type" is "required" (the default) or "optional". Other keys are ignored.
struct EXTENSIONSYSTEM_EXPORT PluginMetaData
{
    struct Result;

    QString iid;
    QString name;
    PluginVersion version;
    PluginVersion compatVersion;
    QString category;
    QString description;
    QVector<PluginDependency> dependencies;

    /// Reads what QPluginLoader::metaData() returned: @p loaderMetaData with "IID" and "MetaData".
    static Result fromJson(const QJsonObject &loaderMetaData);

    /// True when this plug-in can serve one that needs @p neededName at @p neededVersion: the same name in any letter
    /// case, and a version from compatVersion to version, both included.
    bool provides(const QString &neededName, const PluginVersion &neededVersion) const;
};

/// The outcome of reading: what could be read, and one readable sentence for every defect.
struct EXTENSIONSYSTEM_EXPORT PluginMetaData::Result
{
    PluginMetaData metaData;
    QStringList defects;

    bool isValid() const { return defects.isEmpty(); }
};

} // namespace ExtensionSystem
