#pragma once

#include "extensionfile/readerror.h"

#include <QByteArray>

namespace ExtensionFile {

/// A document in UTF-8, without a byte order mark.
struct DecodedDocument
{
    QByteArray utf8;         ///< not checked yet where the bytes were meant to be UTF-8
    int markSize = 0;        ///< bytes of the mark, where the rest was taken as it is
    bool transcoded = false; ///< the bytes were in another encoding, so the declared one is not that of @p utf8
};

/// Finds the encoding of @p bytes (byte order mark, pattern of the first bytes, XML declaration) and decodes them
/// strictly: where Qt would put U+FFFD, this refuses. False on failure, with the reason in @p error. Reentrant.
[[nodiscard]] bool decodeDocument(const QByteArray &bytes, DecodedDocument *document, ReadError *error);

} // namespace ExtensionFile
