#include "extensionfile/readerror.h"

#include "extensionfile/logging.h"

#include <QStringList>

namespace ExtensionFile {

void Location::moveOver(const char *begin, const char *end)
{
    byteOffset += end - begin;
    for (const char *at = begin; at < end; ++at) {
        const bool endsLine = *at == '\n' || (*at == '\r' && at[1] != '\n');
        const bool startsCharacter = (uchar(*at) & 0xc0) != 0x80;
        line += endsLine ? 1 : 0;
        column = endsLine ? 1 : column + (startsCharacter ? 1 : 0);
    }
}

bool ReadError::fail(Kind failure, const QString &why, const Location &place)
{
    kind = failure;
    reason = why;
    where = place;
    return false;
}

QString ReadError::toString() const
{
    QStringList parts;
    if (!path.isEmpty())
        parts += oneLine(path);
    if (where.line > 0)
        parts += QStringLiteral("%1:%2").arg(where.line).arg(where.column);
    const QString place = parts.join(QLatin1Char(':'));
    return (place.isEmpty() ? place : place + QLatin1String(": ")) + oneLine(reason);
}

} // namespace ExtensionFile
