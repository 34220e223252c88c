#pragma once

#include "utils/mimetype.h"

class QIODevice;

namespace Utils {

/// The process-wide register of the MIME types that plug-ins declare by shared-mime-info documents, in front of the
/// types that the system knows. Of a document "mime-type", "sub-class-of", "comment" and "glob" count, no content and
/// no weight. Objects of this class are only a handle. GUI thread.
class UTILS_EXPORT MimeDatabase final
{
public:
    /// Registers the types of the shared-mime-info document @p fileName (a file or a resource). A document that can't
    /// be read or has a defect changes nothing and is reported by one warning "path:line:column: reason" in the logging
    /// category "utils.mime". A type that is declared again is replaced.
    static void addMimeTypes(const QString &fileName);

    /// The same for an open @p device, read to its end. Returns why nothing was registered, as "line:column: reason";
    /// empty when all went well. Logs nothing.
    [[nodiscard]] static QString addMimeTypes(QIODevice *device);

    /// The type called @p name; invalid when there is none.
    MimeType mimeTypeForName(const QString &name) const;

    /// The type of the file or directory @p path. Declared patterns are compared with its name, in any letter case: a
    /// whole name goes before one with wildcards, then the longer pattern. Where none matches, the system decides,
    /// which may read the beginning of the file. Always valid ("application/octet-stream" when nothing else fits).
    MimeType mimeTypeForFile(const QString &path) const;
};

} // namespace Utils
