#include "nodeattributes.h"

namespace {

QString trimmed(const QString &value)
{
    if (value.isEmpty() || !(value.at(0).isSpace() || value.at(value.size() - 1).isSpace()))
        return value;
    return value.trimmed();
}

} // namespace

// The reader has seen to it that no name comes twice, and that none has a blank in it.

PropertyHash NodeAttributes::asWritten(const ExtensionFile::Attributes &attributes)
{
    PropertyHash properties;
    properties.reserve(attributes.size());
    for (const ExtensionFile::Attribute &attribute : attributes)
        properties.append(attribute.name, trimmed(attribute.value), PropertyHash::Origin::Read);
    return properties;
}

PropertyHash NodeAttributes::withLowerNames(const ExtensionFile::Attributes &attributes)
{
    PropertyHash properties;
    properties.reserve(attributes.size());
    for (const ExtensionFile::Attribute &attribute : attributes) {
        const QString lowered = attribute.name.toLower();
        if (!properties.contains(lowered)) {
            properties.append(lowered, trimmed(attribute.value), PropertyHash::Origin::Read);
        } else if (attribute.name == lowered) {
            properties.insert(lowered, trimmed(attribute.value));
        }
    }
    return properties;
}

PropertyHash NodeAttributes::withoutTranslationMarks(const ExtensionFile::Attributes &attributes)
{
    PropertyHash properties;
    properties.reserve(attributes.size());
    for (const ExtensionFile::Attribute &attribute : attributes) {
        const QString written = trimmed(attribute.value);
        const QString value = ExtensionFile::withoutTranslationMarks(written);
        properties.append(attribute.name, value,
            value.size() == written.size() ? PropertyHash::Origin::Read : PropertyHash::Origin::ReadWithMarks);
    }
    return properties;
}
