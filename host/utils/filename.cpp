#include "utils/filename.h"

#include <QDir>

namespace Utils {

FileName FileName::fromString(const QString &path)
{
    FileName result;
    result.m_path = QDir::cleanPath(path);
    // Nothing is above the root, but QDir leaves such segments standing.
    while (result.m_path.startsWith(QLatin1String("/../")))
        result.m_path.remove(0, 3);
    if (result.m_path == QLatin1String("/.."))
        result.m_path.chop(2);
    return result;
}

QString FileName::fileName() const
{
    return m_path.mid(m_path.lastIndexOf(QLatin1Char('/')) + 1);
}

FileName FileName::parentDir() const
{
    const QString name = fileName();
    if (name.isEmpty())
        return {};
    if (name == QLatin1String(".") || name == QLatin1String(".."))
        return fromString(m_path + QLatin1String("/.."));
    const int slash = m_path.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return fromString(QStringLiteral("."));
    return fromString(m_path.left(qMax(slash, 1)));
}

bool FileName::exists() const
{
    return QFileInfo::exists(m_path);
}

FileName FileName::appendPath(const QString &path) const
{
    if (path.isEmpty())
        return *this;
    if (isEmpty())
        return fromString(path);
    return fromString(m_path + QLatin1Char('/') + path);
}

} // namespace Utils
