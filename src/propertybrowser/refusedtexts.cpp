#include "propertybrowser/refusedtexts.h"

void RefusedTexts::keep(const QString &name, const QString &text)
{
    constexpr int mostKept = 20;
    if (!m_subject || text.isEmpty()) {
        return;
    }
    m_texts.append({ m_subject, name, text });
    while (m_texts.size() > mostKept) {
        m_texts.removeFirst();
    }
}

QString RefusedTexts::take(const QString &name)
{
    for (int i = m_texts.size() - 1; i >= 0; --i) {
        if (m_subject && m_texts.at(i).subject == m_subject && m_texts.at(i).name == name) {
            return m_texts.takeAt(i).text;
        }
    }
    return {};
}
