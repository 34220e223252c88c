#pragma once

#include "utils/utils_global.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace Utils {

struct MimeTypeRecord;

/// One MIME type: a cheap value that shares an immutable record with the database it came from and stays usable however
/// the database changes. A default-constructed one is invalid and answers everything with nothing. Any thread.
class UTILS_EXPORT MimeType final
{
public:
    MimeType();
    explicit MimeType(std::shared_ptr<const MimeTypeRecord> record);

    bool isValid() const { return m_record != nullptr; }
    QString name() const;
    /// The comment; of a declared type the untranslated one where there is one.
    QString comment() const;
    /// The declared direct parents, in order of declaration, as written there (possibly aliases).
    QStringList parentMimeTypes() const;
    /// The patterns as written, in order of declaration.
    QStringList globPatterns() const;
    QStringList aliases() const;

    /// True when this type is \a mimeTypeName, or that is among its parents, theirs and so on; aliases count.
    bool inherits(const QString &mimeTypeName) const;
    /// True when \a mimeTypeName is this type's name or one of its aliases.
    bool matchesName(const QString &mimeTypeName) const;

    bool operator==(const MimeType &other) const { return name() == other.name(); }
    bool operator!=(const MimeType &other) const { return name() != other.name(); }

private:
    std::shared_ptr<const MimeTypeRecord> m_record;
};

} // namespace Utils
