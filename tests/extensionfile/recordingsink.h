#pragma once

#include "extensionfile/sink.h"

#include <QLoggingCategory>
#include <QStringList>

/// Prints the elements it is given as indented lines, attributes in the order they came; optionally with their places.
/// What is aside it prints with the first letter of what it is.
class RecordingSink final : public ExtensionFile::Sink
{
public:
    explicit RecordingSink(bool printsPlaces = false) : m_printsPlaces(printsPlaces) { }

    void aside(ExtensionFile::Aside what, const QString &text) override
    {
        asides.append(QLatin1Char("ctid8"[int(what)]) + (QLatin1Char(' ') + text));
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
    }

    void endElement() override { --depth; }

    [[nodiscard]] QString tree() const { return lines.join(QLatin1Char('\n')); }

    QStringList lines;
    QStringList asides;
    int depth = 0;

private:
    [[nodiscard]] QString place(const ExtensionFile::Location &where) const
    {
        if (!m_printsPlaces)
            return {};
        return QStringLiteral("@%1:%2/%3").arg(where.line).arg(where.column).arg(where.byteOffset);
    }

    const bool m_printsPlaces;
};

/// Keeps the warnings about files to itself while it lives; one at a time.
class FileWarnings final
{
public:
    FileWarnings()
    {
        lines().clear();
        m_before = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &text) {
            if (type == QtWarningMsg && qstrcmp(context.category, "extpoint.file") == 0)
                lines().append(text);
        });
    }
    ~FileWarnings() { qInstallMessageHandler(m_before); }
    FileWarnings(const FileWarnings &) = delete;
    FileWarnings &operator=(const FileWarnings &) = delete;

    static QStringList &lines()
    {
        static QStringList texts;
        return texts;
    }

private:
    QtMessageHandler m_before;
};
