#pragma once

#include "extensionfile/decoder.h"
#include "extensionfile/limits.h"
#include "extensionfile/sink.h"

namespace ExtensionFile {

/// Reads @p document into @p sink. False on failure, with kind, place and reason in @p error; the sink has then seen a
/// part of it. Nothing is passed over in silence: what would have to be looked up outside of the document is a failure.
/// Reentrant.
[[nodiscard]] bool parse(const DecodedDocument &document, Sink &sink, const Limits &limits, ReadError *error);

} // namespace ExtensionFile
