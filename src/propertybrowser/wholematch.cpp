#include "propertybrowser/wholematch.h"

#include "extensionfile/showntext.h"
#include "propertybrowser/propertyitem.h"
#include "propertybrowser/propertykeys.h"

#include <QCache>
#include <QRegularExpression>

namespace {

constexpr int rememberedExpressions = 100;

/// Compiling takes far longer than matching, and a sheet asks for the same few expressions all the time. GUI thread.
QRegularExpression compiled(const QString &pattern, QRegularExpression::PatternOptions options = {})
{
    static QCache<QPair<QString, int>, QRegularExpression> known(rememberedExpressions);
    const QPair<QString, int> key(pattern, int(options));
    if (const QRegularExpression *expression = known.object(key)) {
        return *expression;
    }
    const QRegularExpression expression(pattern, options);
    known.insert(key, new QRegularExpression(expression));
    return expression;
}

bool restricts(const QString &pattern, QRegularExpression::PatternOptions options = {})
{
    return !pattern.isEmpty() && pattern.size() <= ExtensionFile::maximumEditableLength
        && compiled(pattern, options).isValid();
}

} // namespace

bool WholeMatch::matches(const QString &pattern, const QString &text, Lines lines)
{
    const QRegularExpression::PatternOptions options
        = lines == Lines::Many ? QRegularExpression::DotMatchesEverythingOption : QRegularExpression::NoPatternOption;
    // Tested before it is wrapped: "a)(b" is no expression, but it would be one inside the parentheses.
    if (!restricts(pattern, options)) {
        return true;
    }
    // The group keeps alternatives together. An expression that is fine by itself may still swallow the end of the
    // group: with a quotation that it never ends, or a comment of the extended syntax.
    for (const char *end : { "", "\\E", "\n" }) {
        const QString whole = QLatin1String("\\A(?:") + pattern + QLatin1String(end) + QLatin1String(")\\z");
        const QRegularExpression expression = compiled(whole, options);
        if (expression.isValid()) {
            return expression.match(text).hasMatch();
        }
    }
    return true;
}

QString WholeMatch::patternOf(const PropertyItem &item)
{
    const QString pattern = item.data(PropertyKey::RegExp).toString();
    return restricts(pattern) ? pattern : QString();
}

QString WholeMatch::doubtAbout(const PropertyItem &item, const QString &text)
{
    const QString pattern = item.data(PropertyKey::Doubt).toString();
    if (pattern.isEmpty() || !compiled(pattern, QRegularExpression::DotMatchesEverythingOption).match(text).hasMatch())
        return {};
    return item.data(PropertyKey::DoubtHint).toString();
}
