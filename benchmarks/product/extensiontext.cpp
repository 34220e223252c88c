#include "product/extensiontext.h"

ExtensionText::ExtensionText() : m_text("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n") { }

void ExtensionText::open(const char *tag, const Attributes &attributes)
{
    start(tag, attributes);
    m_text += ">\n";
    m_openTags.push_back(tag);
}

void ExtensionText::close()
{
    const char *tag = m_openTags.back();
    m_openTags.pop_back();
    m_text += QByteArray(int(m_openTags.size()) * 4, ' ') + "</" + tag + ">\n";
}

void ExtensionText::empty(const char *tag, const Attributes &attributes)
{
    start(tag, attributes);
    m_text += "/>\n";
}

void ExtensionText::start(const char *tag, const Attributes &attributes)
{
    ++m_elements;
    m_text += QByteArray(int(m_openTags.size()) * 4, ' ') + '<' + tag;
    for (const auto &attribute : attributes)
        m_text += QByteArray(" ") + attribute.first + "=\"" + attribute.second + '"';
}
