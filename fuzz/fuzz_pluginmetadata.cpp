#include "fuzzing.h"

#include "extensionsystem/iplugin.h"
#include "extensionsystem/pluginmetadata.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define FUZZING_WITH_LEAK_CHECK
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define FUZZING_WITH_LEAK_CHECK
#endif
#ifdef FUZZING_WITH_LEAK_CHECK
#include <sanitizer/lsan_interface.h>
#endif

using namespace ExtensionSystem;

namespace {

void checkVersion(const PluginVersion &version)
{
    const auto again = PluginVersion::fromString(version.toString());
    Fuzzing::demand(again && *again == version, "a version that can't be read again", version.toString());
}

void checkMetaData(const QJsonObject &object)
{
    const PluginMetaData::Result result = PluginMetaData::fromJson(object);
    for (const QString &defect : result.defects)
        Fuzzing::demand(!defect.isEmpty(), "a defect without a word");
    if (!result.isValid())
        return;
    const PluginMetaData &metaData = result.metaData;
    Fuzzing::demand(!metaData.name.trimmed().isEmpty(), "a plug-in without a name");
    checkVersion(metaData.version);
    checkVersion(metaData.compatVersion);
    Fuzzing::demand(metaData.provides(metaData.name, metaData.version), "a plug-in that does not provide itself");
    Fuzzing::demand(metaData.provides(metaData.name.toLower(), metaData.compatVersion)
            || metaData.name.compare(metaData.name.toLower(), Qt::CaseInsensitive) != 0,
        "a plug-in that is not as compatible as it says");
    for (const PluginDependency &dependency : metaData.dependencies) {
        checkVersion(dependency.version);
        Fuzzing::demand(!metaData.provides(dependency.name, dependency.version), "a plug-in that needs itself");
    }
}

/// Most inputs are to get beyond the first question.
QJsonObject asLoaderSays(const QJsonObject &object)
{
    if (object.contains(QLatin1String("IID")))
        return object;
    return { { QStringLiteral("IID"), QStringLiteral(EXTENSIONSYSTEM_PLUGIN_IID) },
        { QStringLiteral("className"), QStringLiteral("Plugin") }, { QStringLiteral("MetaData"), object } };
}

QJsonDocument parsed(const QByteArray &bytes)
{
#ifdef FUZZING_WITH_LEAK_CHECK
    // The parser of this Qt leaks the values of keys that stand in an object twice; no fault of what is tested here.
    const __lsan::ScopedDisabler disabler;
#endif
    return QJsonDocument::fromJson(bytes);
}

} // namespace

/// The input is the metadata of a plug-in.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QJsonDocument json = parsed(Fuzzing::bytesOf(data, size));
    if (json.isObject())
        checkMetaData(asLoaderSays(json.object()));
    return 0;
}
