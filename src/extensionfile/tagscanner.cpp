#include "extensionfile/tagscanner.h"

#include <cstring>

namespace ExtensionFile {

namespace {

bool isPredefined(const char *reference)
{
    for (const char *known : { "&#", "&amp;", "&lt;", "&gt;", "&quot;", "&apos;" }) {
        if (qstrncmp(reference, known, uint(qstrlen(known))) == 0)
            return true;
    }
    return false;
}

} // namespace

TagScanner::TagScanner(const QByteArray &text, const Limits &limits) : m_text(text), m_limits(limits), m_position(text)
{ }

TagScanner::Result TagScanner::next(Tag *tag)
{
    while (m_at < m_text.size()) {
        const int bracket = m_text.indexOf('<', m_at);
        const int textEnd = bracket < 0 ? m_text.size() : bracket;
        if (!countReferences(m_at, textEnd))
            return Result::Refused;
        m_at = textEnd;
        if (bracket < 0)
            break;
        if (startsWith("<!--")) {
            skipPast("-->", 4);
        } else if (startsWith("<![CDATA[")) {
            skipPast("]]>", 9);
        } else if (startsWith("<?")) {
            skipPast("?>", 2);
        } else if (startsWith("</")) {
            skipPast(">", 2);
        } else if (startsWith("<!")) {
            if (!scanDoctype())
                return Result::Refused;
        } else {
            tag->where = m_position.at(m_at);
            return scanStartTag() ? Result::Tag : Result::Refused;
        }
    }
    return Result::End;
}

bool TagScanner::startsWith(const char *mark) const
{
    return qstrncmp(m_text.constData() + m_at, mark, uint(qstrlen(mark))) == 0;
}

void TagScanner::skipPast(const char *mark, int from)
{
    const int found = m_text.indexOf(mark, m_at + from);
    m_at = found < 0 ? m_text.size() : found + int(qstrlen(mark));
}

bool TagScanner::scanStartTag()
{
    const int begin = m_at;
    const int size = m_text.size();
    int attributes = 0;
    for (++m_at; m_at < size; ++m_at) {
        const char c = m_text.at(m_at);
        if (c == '>')
            break;
        if (c == '=' && ++attributes > m_limits.maximumAttributesPerElement) {
            return refuse(ReadError::Kind::TooLarge,
                QStringLiteral("An element has more than %1 attributes.").arg(m_limits.maximumAttributesPerElement),
                begin);
        }
        if (c == '"' || c == '\'') {
            const int end = m_text.indexOf(c, m_at + 1);
            m_at = end < 0 ? size : end;
        }
    }
    m_at = qMin(m_at + 1, size);
    return countReferences(begin, m_at);
}

/// From "<!" to the ">" that ends it: one outside of quotes, comments, instructions and the brackets of the internal
/// subset.
bool TagScanner::scanDoctype()
{
    const int begin = m_at;
    const int size = m_text.size();
    bool inSubset = false;
    bool ended = false;
    bool declares = false;
    for (m_at += 2; !ended && m_at < size;) {
        const char c = m_text.at(m_at);
        if (startsWith("<!--")) {
            skipPast("-->", 4);
        } else if (startsWith("<?")) {
            skipPast("?>", 2);
        } else if (c == '"' || c == '\'') {
            const int end = m_text.indexOf(c, m_at + 1);
            m_at = end < 0 ? size : end + 1;
        } else if (c == '%' && m_at + 1 < size && !strchr(" \t\r\n", m_text.at(m_at + 1))) {
            // The parser lets a parameter entity close the declaration that it is used in, after which what follows is
            // not what it looks like; no extension file has a use for one.
            return refuse(ReadError::Kind::Malformed, QStringLiteral("Parameter entities are not supported."), m_at);
        } else {
            declares = declares || startsWith("<!ENTITY");
            inSubset = (inSubset || c == '[') && c != ']';
            ended = c == '>' && !inSubset;
            ++m_at;
        }
    }
    if (m_at - begin > m_limits.maximumDoctypeSize) {
        return refuse(ReadError::Kind::TooLarge,
            QStringLiteral("The document type declaration has more than %1 bytes.").arg(m_limits.maximumDoctypeSize),
            begin);
    }
    m_declaresEntities = m_declaresEntities || declares;
    return countReferences(begin, m_at);
}

bool TagScanner::countReferences(int begin, int end)
{
    if (!m_declaresEntities)
        return true;
    const char *const text = m_text.constData();
    for (int i = begin; i < end; ++i) {
        const auto *const found = static_cast<const char *>(memchr(text + i, '&', size_t(end - i)));
        if (!found)
            return true;
        i = int(found - text);
        if (!isPredefined(found) && ++m_references > m_limits.maximumEntityReferences) {
            return refuse(ReadError::Kind::TooLarge,
                QStringLiteral("There are more than %1 references to entities.").arg(m_limits.maximumEntityReferences),
                i);
        }
    }
    return true;
}

bool TagScanner::refuse(ReadError::Kind kind, const QString &reason, int at)
{
    m_problemKind = kind;
    m_problem = reason;
    m_problemLocation = TextPosition(m_text).at(at);
    return false;
}

} // namespace ExtensionFile
