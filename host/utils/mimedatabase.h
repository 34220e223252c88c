#pragma once

#include "utils/mimetype.h"
#include "utils/utils_global.h"

class QByteArray;
class QIODevice;

namespace Utils {

/// The process-wide register of MIME types that plug-ins declare by shared-mime-info documents, in front of the types
/// that the system knows. Objects of this class are only a handle. Every function may be called on any thread.
///
/// A file's type is found by the declared patterns: a literal pattern (a whole file name) before one with wildcards,
/// then the higher weight, the longer pattern, the case-sensitive one. Where several types are still equal, the content
/// decides (the highest magic priority or the root element). Where no declared pattern matches, the system's patterns
/// are asked, then the declared contents, then the system's.
class UTILS_EXPORT MimeDatabase final
{
public:
    /// Registers the types of the shared-mime-info document \a fileName (a file or a resource). A document that can't
    /// be read or has a defect changes nothing and is reported by one warning "path:line:column: reason" in the logging
    /// category "utils.mime". A type that is registered already gets the document's declarations in addition.
    static void addMimeTypes(const QString &fileName);

    /// The same for an open \a device, read to its end. Returns false when nothing was registered, with
    /// "line:column: reason" in \a errorString (which may be null); logs nothing.
    static bool addMimeTypes(QIODevice *device, QString *errorString);

    /// The type called \a name or having it as an alias; invalid when there is none.
    MimeType mimeTypeForName(const QString &name) const;

    /// The type of the file or directory \a path, by name and, where needed, by the first 64 KiB of its content. Always
    /// valid ("application/octet-stream" when nothing else fits); a file that can't be read is judged by name alone.
    MimeType mimeTypeForFile(const QString &path) const;

    /// The type of a file called \a fileName (a path or the last segment) whose content starts with \a data. Always
    /// valid.
    MimeType mimeTypeForFileNameAndData(const QString &fileName, const QByteArray &data) const;
};

} // namespace Utils
