#include "nodeattributes.h"

namespace {

template <typename Name, typename Value>
PropertyHash collect(const ExtensionFile::Attributes &attributes, Name name, Value value)
{
    PropertyHash properties;
    properties.reserve(attributes.size());
    for (const ExtensionFile::Attribute &attribute : attributes)
        properties.insert(name(attribute.name.trimmed()), value(attribute.value.trimmed()));
    return properties;
}

const auto unchanged = [](const QString &text) { return text; };

} // namespace

PropertyHash NodeAttributes::asWritten(const ExtensionFile::Attributes &attributes)
{
    return collect(attributes, unchanged, unchanged);
}

PropertyHash NodeAttributes::withLowerNames(const ExtensionFile::Attributes &attributes)
{
    PropertyHash properties;
    properties.reserve(attributes.size());
    for (const ExtensionFile::Attribute &attribute : attributes) {
        const QString name = attribute.name.trimmed();
        const QString lowered = name.toLower();
        if (name == lowered || !properties.contains(lowered))
            properties.insert(lowered, attribute.value.trimmed());
    }
    return properties;
}

PropertyHash NodeAttributes::withoutTranslationMarks(const ExtensionFile::Attributes &attributes)
{
    return collect(attributes, unchanged, &ExtensionFile::withoutTranslationMarks);
}
