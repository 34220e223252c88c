#pragma once

#include "extensionfile/limits.h"
#include "extensionfile/reader.h"
#include "extensionfile/textposition.h"

#include <QByteArray>

namespace ExtensionFile {

/// Walks over the start tags of a UTF-8 document ahead of the parser and refuses what the parser would take too long
/// for, or too much memory, before anybody could stop it: it hands out a tag or a declaration only when it has worked
/// through all of it. Whether the text is well-formed is the parser's business; up to the first error both see the same
/// tags.
class TagScanner final
{
public:
    struct Tag
    {
        Location where; ///< of the "<"
    };
    enum class Result { Tag, End, Refused };

    TagScanner(const QByteArray &text, const Limits &limits);

    /// Goes on to the next start tag. After `Refused` the problem functions tell why, and nothing more may be asked.
    [[nodiscard]] Result next(Tag *tag);

    /// Whether a document type declaration seen so far declares an entity.
    [[nodiscard]] bool declaresEntities() const { return m_declaresEntities; }

    [[nodiscard]] ReadError::Kind problemKind() const { return m_problemKind; }
    [[nodiscard]] QString problem() const { return m_problem; }
    [[nodiscard]] Location problemLocation() const { return m_problemLocation; }

private:
    bool startsWith(const char *mark) const;
    void skipPast(const char *mark, int from);
    bool scanStartTag();
    bool scanDoctype();
    bool countReferences(int begin, int end);
    bool refuse(ReadError::Kind kind, const QString &reason, int at);

    const QByteArray m_text;
    const Limits &m_limits;
    TextPosition m_position;
    int m_at = 0;
    int m_references = 0;
    bool m_declaresEntities = false;
    ReadError::Kind m_problemKind = ReadError::Kind::None;
    QString m_problem;
    Location m_problemLocation;
};

} // namespace ExtensionFile
