#pragma once

#include <QString>

namespace ExtensionFile {

/// A place in a file. Line and column are what an editor shows: both count from 1, columns count characters (not bytes;
/// a tab is one). Where the file is in another encoding than UTF-8 they are about the decoded text, and so are bytes.
struct Location
{
    qint64 line = 0; ///< 0 stands for "no place"
    qint64 column = 0;
    qint64 byteOffset = -1; ///< from the beginning of the file, a byte order mark included

    /// Moves it over the UTF-8 text from @p begin to before @p end, after which one more byte can be read.
    void moveOver(const char *begin, const char *end);
};

/// Why a file could not be read, and where: at the piece of text that is wrong or too much, or at the end of a document
/// that ends too early. Within an entity it is the reference to it.
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
    Location where; ///< none where the failure has no place in the text
    QString reason;

    /// Fills in everything but the path. Always false, which is what a reader that fails answers.
    bool fail(Kind failure, const QString &why, const Location &place = {});

    /// "path:line:column: reason", without the parts that are not known, in one line.
    [[nodiscard]] QString toString() const;
};

} // namespace ExtensionFile
