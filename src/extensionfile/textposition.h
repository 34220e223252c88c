#pragma once

#include "extensionfile/sink.h"

#include <QByteArray>

namespace ExtensionFile {

/// Turns byte offsets of a UTF-8 text into line and column. Offsets must be asked for in ascending order: each answer
/// goes on from the one before, so that all of them together cost one pass.
class TextPosition final
{
public:
    explicit TextPosition(const QByteArray &text) : m_text(text) { }

    [[nodiscard]] Location at(int offset);

private:
    QByteArray m_text;
    int m_offset = 0;
    Location m_location { 1, 1 };
};

} // namespace ExtensionFile
