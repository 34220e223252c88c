#include "extensionfile/readerror.h"

#include "extensionfile/logging.h"

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
    QString place = path.isEmpty() ? path : oneLine(path) + QLatin1Char(':');
    if (where.line > 0)
        place += QStringLiteral("%1:%2:").arg(where.line).arg(where.column);
    return (place.isEmpty() ? place : place + QLatin1Char(' ')) + oneLine(reason);
}

} // namespace ExtensionFile
