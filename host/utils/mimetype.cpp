#include "utils/mimetype.h"

#include "utils/mimeregistry.h"

namespace Utils {

MimeType::MimeType() = default;

MimeType::MimeType(std::shared_ptr<const MimeTypeRecord> record) : m_record(std::move(record)) { }

QString MimeType::name() const
{
    return m_record ? m_record->name : QString();
}

QString MimeType::comment() const
{
    return m_record ? m_record->comment : QString();
}

QStringList MimeType::parentMimeTypes() const
{
    return m_record ? m_record->parents : QStringList();
}

QStringList MimeType::aliases() const
{
    return m_record ? m_record->aliases : QStringList();
}

QStringList MimeType::globPatterns() const
{
    QStringList result;
    if (m_record) {
        for (const MimeGlob &glob : m_record->globs)
            result.append(glob.pattern);
    }
    return result;
}

bool MimeType::inherits(const QString &mimeTypeName) const
{
    return m_record && MimeRegistry::current()->inherits(m_record->name, mimeTypeName);
}

bool MimeType::matchesName(const QString &mimeTypeName) const
{
    return m_record
        && (m_record->name.compare(mimeTypeName, Qt::CaseInsensitive) == 0
            || m_record->aliases.contains(mimeTypeName, Qt::CaseInsensitive));
}

} // namespace Utils
