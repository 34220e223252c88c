#include "extensionfile/locator.h"

#include "extensionfile/decoder.h"

#include <cstring>

#include <expat.h>

namespace ExtensionFile {

Location Locator::element() const
{
    if (!m_parser)
        return {};
    const qint64 line = qint64(XML_GetCurrentLineNumber(m_parser));
    const qint64 column = qint64(XML_GetCurrentColumnNumber(m_parser)) + 1;
    return { line, column, qMax<qint64>(0, XML_GetCurrentByteIndex(m_parser)) + m_document->markSize };
}

Location Locator::attribute(int index) const
{
    Location where = element();
    if (!m_parser || 2 * index >= XML_GetSpecifiedAttributeCount(m_parser))
        return where;
    const char *const tag = m_document->utf8.constData() + where.byteOffset - m_document->markSize;
    if (*tag != '<')
        return where;
    // The parser has been through the tag, so it is well-formed.
    const char *const whitespace = " \t\r\n";
    const char *name = std::strpbrk(tag, whitespace);
    for (name += std::strspn(name, whitespace); index > 0; --index) {
        const char *const quote = std::strpbrk(name, "\"'");
        name = std::strchr(quote + 1, *quote) + 1;
        name += std::strspn(name, whitespace);
    }
    where.moveOver(tag, name);
    return where;
}

} // namespace ExtensionFile
