#pragma once

#include "extensionfile/limits.h"
#include "extensionfile/sink.h"

#include <QString>

class QIODevice;

namespace ExtensionFile {

/// Why a file could not be read, and where. Line and column are 0 when the failure has no place in the text; otherwise
/// they count from 1 and name the last character that the parser had taken, or the end of a document that ends too
/// early. (Where it is the parser that fails, a character beyond U+FFFF in the same line counts as two columns.)
struct ReadError
{
    enum class Kind {
        None,
        Missing,    ///< there is no such file; the only kind that readFile() does not warn about
        NotRegular, ///< a directory, pipe, socket or device
        Unreadable, ///< not permitted, or the reading itself failed
        TooLarge,   ///< over one of the limits
        Malformed   ///< not well-formed XML, in an encoding that is not known, or not in the one that it declares
    };

    Kind kind = Kind::None;
    QString path;
    qint64 line = 0;
    qint64 column = 0;
    QString reason;

    /// Fills in everything but the path. Always false, which is what a reader that fails answers.
    bool fail(Kind failure, const QString &why, const Location &where = {});

    /// "path:line:column: reason", without the parts that are not known, in one line.
    [[nodiscard]] QString toString() const;
};

/// Reads one document from `device`, which must be open for reading, up to its end (a sequential device:
/// up to where it has nothing at hand), and drives `sink`. Any encoding
/// that Qt knows is accepted if it is declared or recognised by its first bytes. Namespaces mean nothing: names come
/// with their prefix and "xmlns" is an attribute. Entities of the internal subset are expanded, external ones are never
/// fetched, parameter entities are refused. False on failure, with the reason in `error` (may be null); the sink has
/// then seen the part before the failure. Reentrant: any thread, one call per device and sink.
[[nodiscard]] bool read(QIODevice &device, Sink &sink, ReadError *error, const Limits &limits = Limits());

/// As read(), from the file `path` or what it links to. Only regular files are opened, so that it never blocks. Writes
/// one line to the log on failure: a warning, or for a missing file a debug message.
[[nodiscard]] bool readFile(const QString &path, Sink &sink, ReadError *error, const Limits &limits = Limits());

} // namespace ExtensionFile
