#include "extensionfile/textposition.h"

namespace ExtensionFile {

Location TextPosition::at(int offset)
{
    const char *const text = m_text.constData();
    for (; m_offset < offset; ++m_offset) {
        const char c = text[m_offset];
        const bool pairEnds = c == '\n' && m_offset > 0 && text[m_offset - 1] == '\r';
        if (pairEnds)
            continue;
        if (c == '\n' || c == '\r') {
            ++m_location.line;
            m_location.column = 1;
        } else if ((uchar(c) & 0xc0) != 0x80) {
            ++m_location.column;
        }
    }
    return m_location;
}

} // namespace ExtensionFile
