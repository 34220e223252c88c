#pragma once

#include <QByteArray>

#include <initializer_list>
#include <utility>
#include <vector>

/// Puts the text of an extension file together, indented as the editor writes it, and counts its elements. A value; any
/// thread.
class ExtensionText final
{
public:
    using Attributes = std::initializer_list<std::pair<const char *, QByteArray>>;

    ExtensionText();

    /// Names and values are written as they stand: nothing in them may need escaping.
    void open(const char *tag, const Attributes &attributes = {});
    void close();
    void empty(const char *tag, const Attributes &attributes = {});

    [[nodiscard]] int elements() const { return m_elements; }
    /// Complete once everything is closed.
    [[nodiscard]] const QByteArray &text() const { return m_text; }

private:
    void start(const char *tag, const Attributes &attributes);

    QByteArray m_text;
    std::vector<const char *> m_openTags;
    int m_elements = 0;
};
