#pragma once

#include "extensionfile/sink.h"

#include <QByteArray>

namespace ExtensionFile {

/// A document in UTF-8, without a byte order mark.
struct DecodedDocument
{
    QByteArray utf8;
    QByteArray declaredEncoding; ///< as written in the XML declaration, empty when it names none
    bool transcoded = false;     ///< the bytes were in another encoding, so the declared one is not that of `utf8`
};

/// Why bytes are not text, and where.
struct DecodeProblem
{
    QString reason;
    Location where;
};

/// Finds the encoding of `bytes` (byte order mark, pattern of the first bytes, XML declaration) and decodes them
/// strictly: where the parser would put U+FFFD, or report the start of a block as the place, this refuses and names the
/// place.
[[nodiscard]] bool decodeDocument(const QByteArray &bytes, DecodedDocument *document, DecodeProblem *problem);

} // namespace ExtensionFile
