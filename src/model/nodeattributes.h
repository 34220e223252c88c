#pragma once

#include "extensionfile/attributes.h"
#include "propertyhash.h"

/// How the attributes of an element become the properties of its node. Values are trimmed in every case.
namespace NodeAttributes {

/// Names and values as they stand in the file.
[[nodiscard]] PropertyHash asWritten(const ExtensionFile::Attributes &attributes);

/// Names in lower case. Of two names that differ in letter case only, the one written in lower case wins.
[[nodiscard]] PropertyHash withLowerNames(const ExtensionFile::Attributes &attributes);

/// Values without the marks of translatable text.
[[nodiscard]] PropertyHash withoutTranslationMarks(const ExtensionFile::Attributes &attributes);

} // namespace NodeAttributes
