#pragma once

#include "extensionfile/sink.h"

#include <QStringList>

/// Prints the elements it is given as indented lines, attributes in the order they came; optionally with their places.
class RecordingSink final : public ExtensionFile::Sink
{
public:
    enum class Places { Hide, Print };
    explicit RecordingSink(Places places = Places::Hide) : m_places(places) { }

    void aside(ExtensionFile::Aside what, const QString &text) override
    {
        asides.append(QStringLiteral("%1 %2").arg(int(what)).arg(text));
    }

    void startElement(
        const QString &name, const ExtensionFile::Attributes &attributes, const ExtensionFile::Locator &where) override
    {
        QString line = QString(depth * 2, QLatin1Char(' ')) + name + place(where.element());
        for (int i = 0; i < attributes.size(); ++i)
            line += QStringLiteral(" %1=[%2]%3")
                        .arg(attributes.at(i).name, attributes.at(i).value, place(where.attribute(i)));
        lines.append(line);
        ++depth;
        deepest = qMax(deepest, depth);
    }

    void endElement() override { --depth; }

    QStringList lines;
    QStringList asides;
    int depth = 0;
    int deepest = 0;

private:
    [[nodiscard]] QString place(const ExtensionFile::Location &where) const
    {
        if (m_places == Places::Hide)
            return {};
        return QStringLiteral("@%1:%2/%3").arg(where.line).arg(where.column).arg(where.byteOffset);
    }

    const Places m_places;
};
