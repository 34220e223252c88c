#include "nodeattributes.h"

namespace {

QString trimmed(const QString &value)
{
    if (value.isEmpty() || !(value.at(0).isSpace() || value.at(value.size() - 1).isSpace()))
        return value;
    return value.trimmed();
}

/// The reader has seen to it that no name comes twice, and that none has a blank in it.
template <typename Value>
PropertyHash collect(const ExtensionFile::Attributes &attributes, Value value)
{
    PropertyHash properties;
    properties.reserve(attributes.size());
    for (const ExtensionFile::Attribute &attribute : attributes)
        properties.append(attribute.name, value(trimmed(attribute.value)));
    return properties;
}

} // namespace

PropertyHash NodeAttributes::asWritten(const ExtensionFile::Attributes &attributes)
{
    return collect(attributes, [](const QString &value) { return value; });
}

PropertyHash NodeAttributes::withLowerNames(const ExtensionFile::Attributes &attributes)
{
    PropertyHash properties;
    properties.reserve(attributes.size());
    for (const ExtensionFile::Attribute &attribute : attributes) {
        const QString lowered = attribute.name.toLower();
        if (attribute.name == lowered || !properties.contains(lowered))
            properties.insert(lowered, trimmed(attribute.value));
    }
    return properties;
}

PropertyHash NodeAttributes::withoutTranslationMarks(const ExtensionFile::Attributes &attributes)
{
    return collect(attributes, &ExtensionFile::withoutTranslationMarks);
}
