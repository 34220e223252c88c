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

} // namespace Utils
