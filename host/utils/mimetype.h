#pragma once

#include "utils/utils_global.h"

#include <QString>
#include <QStringList>

namespace Utils {

/// What is known of one MIME type: a plain value. A default-constructed one is invalid and answers everything with
/// nothing.
class UTILS_EXPORT MimeType final
{
public:
    MimeType() = default;
    MimeType(const QString &name, const QString &comment, const QStringList &parents, const QStringList &globPatterns);

    bool isValid() const { return !m_name.isEmpty(); }
    QString name() const { return m_name; }
    /// Of a declared type the untranslated one.
    QString comment() const { return m_comment; }
    /// The direct parents, in order of declaration, as written there.
    QStringList parentMimeTypes() const { return m_parents; }
    /// The patterns as written, in order of declaration.
    QStringList globPatterns() const { return m_globPatterns; }

    /// True when this type is called @p mimeTypeName, or that is among its parents, theirs and so on. GUI thread.
    bool inherits(const QString &mimeTypeName) const;

private:
    QString m_name;
    QString m_comment;
    QStringList m_parents;
    QStringList m_globPatterns;
};

} // namespace Utils
