#pragma once

#include "extensionfile/decoder.h"
#include "extensionfile/limits.h"
#include "extensionfile/sink.h"

namespace ExtensionFile {

/// Reads an ordinary document into `sink`, without places, in a fraction of the time of CarefulReader. Ordinary is one
/// that is well-formed, declares no document type, stays within the limits and has no name that CarefulReader might not
/// take; that is, nearly every one. False for any other, with nothing said of why: that is for CarefulReader to find
/// out, which may still accept it. The sink has then seen a part of it, and is to be restarted. Reentrant.
[[nodiscard]] bool readQuickly(const DecodedDocument &document, Sink &sink, const Limits &limits);

} // namespace ExtensionFile
