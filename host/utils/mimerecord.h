#pragma once

#include "utils/mimemagic.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QVector>

namespace Utils {

/// One "glob" of a MIME type: a pattern for whole file names.
struct MimeGlob
{
    QString pattern;
    int weight = 50;
    bool caseSensitive = false;
    /// Compiled from pattern when it has wildcards, else empty.
    QRegularExpression wildcards;

    bool isLiteral() const { return wildcards.pattern().isEmpty(); }
    bool matches(const QString &fileName) const;

    bool operator==(const MimeGlob &other) const
    {
        return pattern == other.pattern && weight == other.weight && caseSensitive == other.caseSensitive;
    }
};

/// One "root-XML" of a MIME type: the root element of its documents. An empty localName stands for every name, an empty
/// namespaceUri for no namespace.
struct MimeRootElement
{
    QString namespaceUri;
    QString localName;

    bool operator==(const MimeRootElement &other) const
    {
        return namespaceUri == other.namespaceUri && localName == other.localName;
    }
};

/// Everything known about one MIME type. Immutable once it is shared between threads.
struct MimeTypeRecord
{
    QString name;
    QString comment;
    QStringList parents;
    QStringList aliases;
    QVector<MimeGlob> globs;
    QVector<MimeMagic> magics;
    QVector<MimeRootElement> rootElements;
};

} // namespace Utils
