#include "core/filetarget.h"

#include <QFileInfo>

namespace Core {

namespace {

bool isThere(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() || file.isSymLink();
}

/// Takes a colon and the digits after it from the end of @p text; empty when it does not end so.
QString takeNumber(QString *text)
{
    const int colon = text->lastIndexOf(QLatin1Char(':'));
    const QString digits = text->mid(colon + 1);
    if (colon <= 0 || digits.isEmpty())
        return QString();
    for (const QChar digit : digits)
        if (digit < QLatin1Char('0') || digit > QLatin1Char('9'))
            return QString();
    text->truncate(colon);
    return digits;
}

/// 0, and @p error set, for what is no number of a line or column.
int numberOf(const QString &digits, const QString &argument, QString *error)
{
    bool fits = false;
    const int number = digits.toInt(&fits);
    if (fits && number > 0)
        return number;
    *error = QStringLiteral("%1: there is no line or column %2").arg(argument, digits);
    return 0;
}

} // namespace

FileTarget FileTarget::of(const QString &argument, QString *error)
{
    FileTarget target { argument, 0, 0 };
    if (isThere(argument))
        return target;
    QString rest = argument;
    if (rest.endsWith(QLatin1Char(':')))
        rest.chop(1);
    const QString last = takeNumber(&rest);
    if (last.isEmpty())
        return target;
    const QString first = isThere(rest) ? QString() : takeNumber(&rest);
    target.path = rest;
    target.line = numberOf(first.isEmpty() ? last : first, argument, error);
    if (!first.isEmpty())
        target.column = numberOf(last, argument, error);
    return target;
}

QString FileTarget::toArgument() const
{
    if (line <= 0)
        return path;
    const QString place = QStringLiteral("%1:%2").arg(path).arg(line);
    return column > 0 ? QStringLiteral("%1:%2").arg(place).arg(column) : place;
}

} // namespace Core
