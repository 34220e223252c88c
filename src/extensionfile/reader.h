#pragma once

#include "extensionfile/limits.h"
#include "extensionfile/readerror.h"
#include "extensionfile/sink.h"

namespace ExtensionFile {

/// Reads one document and drives @p sink. Any encoding that Qt knows is accepted if it is declared or recognised by its
/// first bytes. Namespaces mean nothing: names come with their prefix and "xmlns" is an attribute. Entities of the
/// internal subset are expanded; nothing external is ever fetched, and a document that refers to it is refused, as one
/// that uses parameter entities. False on failure, with the reason in @p error (may be null); the sink has then seen
/// the part before the failure. Reentrant: any thread, one call per sink.
[[nodiscard]] bool read(const QByteArray &bytes, Sink &sink, ReadError *error, const Limits &limits = Limits());

/// As read(), from the file @p path or what it links to. Only regular files are opened, so that it never blocks. Writes
/// one line to the log on failure: a warning, or for a missing file a debug message.
[[nodiscard]] bool readFile(const QString &path, Sink &sink, ReadError *error, const Limits &limits = Limits());

} // namespace ExtensionFile
