#pragma once

#include "extensionfile/decoder.h"
#include "extensionfile/reader.h"

namespace ExtensionFile {

/// Reads any document: it decides what is accepted, knows the place of each element, and says what is wrong where.
/// False on failure, with kind, place and reason in `error`. Reentrant.
[[nodiscard]] bool readCarefully(const DecodedDocument &document, Sink &sink, const Limits &limits, ReadError *error);

} // namespace ExtensionFile
