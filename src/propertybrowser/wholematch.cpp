#include "propertybrowser/wholematch.h"

#include "propertybrowser/propertyitem.h"
#include "propertybrowser/propertykeys.h"

#include <QRegularExpression>

bool WholeMatch::matches(const QString &pattern, const QString &text, Lines lines)
{
    const QRegularExpression::PatternOptions options
        = lines == Lines::Many ? QRegularExpression::DotMatchesEverythingOption : QRegularExpression::NoPatternOption;
    // Tested before it is wrapped: "a)(b" is no expression, but it would be one inside the parentheses.
    if (pattern.isEmpty() || !QRegularExpression(pattern, options).isValid()) {
        return true;
    }
    // The group keeps alternatives together. An expression that is fine by itself may still swallow the end of the
    // group: with a quotation that it never ends, or a comment of the extended syntax.
    for (const char *end : { "", "\\E", "\n" }) {
        const QString whole = QLatin1String("\\A(?:") + pattern + QLatin1String(end) + QLatin1String(")\\z");
        const QRegularExpression expression(whole, options);
        if (expression.isValid()) {
            return expression.match(text).hasMatch();
        }
    }
    return true;
}

QString WholeMatch::patternOf(const PropertyItem &item)
{
    const QString pattern = item.data(PropertyKey::RegExp).toString();
    return QRegularExpression(pattern).isValid() ? pattern : QString();
}
