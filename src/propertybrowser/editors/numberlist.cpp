#include "propertybrowser/editors/numberlist.h"

#include <QRegularExpression>

#include <limits>

namespace {

const QRegularExpression &number()
{
    static const QRegularExpression expression(QStringLiteral("[+-]?\\d+"));
    return expression;
}

QString replaced(const QString &text, const QRegularExpressionMatch &match, int value)
{
    return text.left(match.capturedStart()) + QString::number(value) + text.mid(match.capturedEnd());
}

} // namespace

QVector<int> NumberList::parse(const QString &text, int count)
{
    static const QRegularExpression form(
        QStringLiteral("\\A\\s*[+-]?\\d+(?:(?:[\\s,;]+|\\s*[xX\u00d7]\\s*)[+-]?\\d+)*\\s*\\z"));
    QVector<int> numbers;
    if (!form.match(text).hasMatch()) {
        return numbers;
    }
    auto matches = number().globalMatch(text);
    while (matches.hasNext()) {
        bool fits = false;
        numbers.append(matches.next().captured().toInt(&fits));
        if (!fits) {
            return {};
        }
    }
    return numbers.size() == count ? numbers : QVector<int>();
}

QString NumberList::withNumbers(const QString &pattern, const QVector<int> &numbers)
{
    QString text = pattern;
    int from = 0;
    for (const int value : numbers) {
        const QRegularExpressionMatch match = number().match(text, from);
        text = replaced(text, match, value);
        from = match.capturedStart() + QString::number(value).size();
    }
    return text;
}

bool NumberList::step(QString *text, int count, int cursor, int steps)
{
    if (parse(*text, count).isEmpty()) {
        return false;
    }
    QRegularExpressionMatch at;
    auto matches = number().globalMatch(*text);
    while (matches.hasNext()) {
        at = matches.next();
        if (at.capturedEnd() >= cursor) {
            break;
        }
    }
    const qint64 stepped = at.captured().toLongLong() + steps;
    if (stepped < std::numeric_limits<int>::min() || stepped > std::numeric_limits<int>::max()) {
        return false;
    }
    *text = replaced(*text, at, static_cast<int>(stepped));
    return true;
}
