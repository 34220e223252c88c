#pragma once

#include "extensionfile/sink.h"

#include <QStringList>

/// Prints the elements it is given as indented lines, attributes in the order they came; optionally with the place.
class RecordingSink final : public ExtensionFile::Sink
{
public:
    explicit RecordingSink(bool withLocations = false) : printsLocations(withLocations), m_withLocations(withLocations)
    { }

    [[nodiscard]] bool wantsLocations() const override { return m_withLocations; }
    [[nodiscard]] bool wantsAttributes() const override { return withAttributes; }

    void restart() override
    {
        lines.clear();
        deepest = 0;
        m_depth = 0;
        ++restarts;
    }

    void startElement(
        const QString &name, const ExtensionFile::Attributes &attributes, const ExtensionFile::Location &where) override
    {
        QString line(m_depth * 2, QLatin1Char(' '));
        line += name;
        for (const ExtensionFile::Attribute &attribute : attributes)
            line += QStringLiteral(" %1=[%2]").arg(attribute.name, attribute.value);
        if (printsLocations)
            line += QStringLiteral(" @%1:%2").arg(where.line).arg(where.column);
        lines.append(line);
        ++m_depth;
        deepest = qMax(deepest, m_depth);
    }

    void endElement() override { --m_depth; }

    [[nodiscard]] bool isBalanced() const { return m_depth == 0; }

    bool printsLocations;
    bool withAttributes = true;
    QStringList lines;
    int deepest = 0;
    int restarts = 0;

private:
    const bool m_withLocations;
    int m_depth = 0;
};
