#include "extensionsystem/pluginmetadata.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace ExtensionSystem {

namespace {

/// Reads one metadata object key by key and collects a sentence for everything that is wrong. Lives for one reading.
class MetaDataReader final
{
    Q_DECLARE_TR_FUNCTIONS(ExtensionSystem::PluginMetaData)
public:
    PluginMetaData::Result read(const QJsonObject &loaderMetaData)
    {
        PluginMetaData &metaData = m_result.metaData;
        metaData.iid = loaderMetaData.value(QLatin1String("IID")).toString();
        const QString neededIid = QStringLiteral(EXTENSIONSYSTEM_PLUGIN_IID);
        if (metaData.iid != neededIid) {
            // The keys of another interface mean something else: nothing more can be said about this one.
            defect(tr("the interface id is \"%1\", not \"%2\"").arg(metaData.iid, neededIid));
            return m_result;
        }
        const QJsonValue object = loaderMetaData.value(QLatin1String("MetaData"));
        if (!object.isObject()) {
            defect(tr("the metadata is not a JSON object"));
            return m_result;
        }
        readPlugin(object.toObject());
        return m_result;
    }

private:
    void defect(const QString &sentence) { m_result.defects.append(sentence); }

    QString text(const QJsonObject &object, const QString &key)
    {
        const QJsonValue value = object.value(key);
        if (!value.isUndefined() && !value.isString())
            defect(tr("\"%1\" is not a string").arg(key));
        return value.toString();
    }

    QString filledText(const QJsonObject &object, const QString &key, const QString &where)
    {
        const QString value = object.value(key).toString();
        if (value.trimmed().isEmpty())
            defect(tr("%1 has no \"%2\"").arg(where, key));
        return value;
    }

    PluginVersion version(const QJsonObject &object, const QString &key, const QString &where)
    {
        const QString value = filledText(object, key, where);
        const std::optional<PluginVersion> result = PluginVersion::fromString(value);
        if (!result && !value.trimmed().isEmpty())
            defect(tr("the \"%1\" \"%2\" of %3 is not of the form \"1.2.3\" or \"1.2.3_4\"").arg(key, value, where));
        return result.value_or(PluginVersion());
    }

    void readPlugin(const QJsonObject &object)
    {
        PluginMetaData &metaData = m_result.metaData;
        const QString where = tr("the plug-in");
        metaData.name = filledText(object, QStringLiteral("Name"), where);
        metaData.version = version(object, QStringLiteral("Version"), where);
        const QString compatKey = QStringLiteral("CompatVersion");
        metaData.compatVersion = object.contains(compatKey) ? version(object, compatKey, where) : metaData.version;
        if (m_result.isValid() && metaData.version < metaData.compatVersion)
            defect(tr("\"CompatVersion\" %1 is newer than \"Version\" %2")
                       .arg(metaData.compatVersion.toString(), metaData.version.toString()));
        metaData.category = text(object, QStringLiteral("Category"));
        metaData.description = text(object, QStringLiteral("Description"));
        readDependencies(object.value(QLatin1String("Dependencies")));
    }

    void readDependencies(const QJsonValue &value)
    {
        if (!value.isUndefined() && !value.isArray())
            defect(tr("\"Dependencies\" is not an array"));
        const QJsonArray array = value.toArray();
        for (int i = 0; i < array.size(); ++i) {
            const QString where = tr("dependency %1").arg(i + 1);
            if (array.at(i).isObject())
                readDependency(array.at(i).toObject(), where);
            else
                defect(tr("%1 is not a JSON object").arg(where));
        }
    }

    void readDependency(const QJsonObject &object, const QString &where)
    {
        PluginMetaData &metaData = m_result.metaData;
        PluginDependency dependency;
        dependency.name = filledText(object, QStringLiteral("Name"), where);
        dependency.version = version(object, QStringLiteral("Version"), where);
        const QString type = object.value(QLatin1String("Type")).toString(QStringLiteral("required"));
        dependency.optional = type == QLatin1String("optional");
        if (!dependency.optional && type != QLatin1String("required"))
            defect(tr("the \"Type\" \"%1\" of %2 is neither \"required\" nor \"optional\"").arg(type, where));
        if (!dependency.name.isEmpty() && dependency.name.compare(metaData.name, Qt::CaseInsensitive) == 0)
            defect(tr("%1 is the plug-in itself").arg(where));
        for (const PluginDependency &earlier : qAsConst(metaData.dependencies)) {
            if (earlier.name.compare(dependency.name, Qt::CaseInsensitive) == 0)
                defect(tr("%1 names \"%2\" once more").arg(where, dependency.name));
        }
        metaData.dependencies.append(dependency);
    }

    PluginMetaData::Result m_result;
};

/// One to nine decimal digits.
bool readNumber(const QStringRef &text, int *number)
{
    const auto isDigit = [](QChar letter) { return letter >= QLatin1Char('0') && letter <= QLatin1Char('9'); };
    if (text.isEmpty() || text.size() > 9 || !std::all_of(text.cbegin(), text.cend(), isDigit))
        return false;
    *number = text.toInt();
    return true;
}

} // namespace

std::optional<PluginVersion> PluginVersion::fromString(const QString &text)
{
    // By hand: the versions of all plug-ins are read before anything is on screen.
    int numbers[4] = { 0, 0, 0, 0 };
    const int build = text.indexOf(QLatin1Char('_'));
    const QVector<QStringRef> parts = text.leftRef(build).split(QLatin1Char('.'));
    if (parts.size() != 3 || (build >= 0 && !readNumber(text.midRef(build + 1), &numbers[3])))
        return std::nullopt;
    for (int i = 0; i < parts.size(); ++i) {
        if (!readNumber(parts.at(i), &numbers[i]))
            return std::nullopt;
    }
    return PluginVersion { numbers[0], numbers[1], numbers[2], numbers[3] };
}

QString PluginVersion::toString() const
{
    const QString text = QStringLiteral("%1.%2.%3").arg(majorNumber).arg(minorNumber).arg(patchNumber);
    return buildNumber == 0 ? text : text + QStringLiteral("_%1").arg(buildNumber);
}

int PluginVersion::compare(const PluginVersion &left, const PluginVersion &right)
{
    // Each number is below 10^9, so no difference overflows.
    if (left.majorNumber != right.majorNumber)
        return left.majorNumber - right.majorNumber;
    if (left.minorNumber != right.minorNumber)
        return left.minorNumber - right.minorNumber;
    if (left.patchNumber != right.patchNumber)
        return left.patchNumber - right.patchNumber;
    return left.buildNumber - right.buildNumber;
}

PluginMetaData::Result PluginMetaData::fromJson(const QJsonObject &loaderMetaData)
{
    return MetaDataReader().read(loaderMetaData);
}

bool PluginMetaData::provides(const QString &neededName, const PluginVersion &neededVersion) const
{
    return name.compare(neededName, Qt::CaseInsensitive) == 0 && compatVersion <= neededVersion
        && neededVersion <= version;
}

} // namespace ExtensionSystem
