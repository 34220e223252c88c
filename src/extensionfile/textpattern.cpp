#include "textpattern.h"

#include "showntext.h"

#include <QCache>
#include <QCoreApplication>
#include <QPair>
#include <QRegularExpression>

namespace {

constexpr int rememberedExpressions = 100;

using Options = QRegularExpression::PatternOptions;

/// What @p make makes of a pattern, once: compiling takes far longer than matching, and the same few patterns are asked
/// for all the time.
template <typename Make>
const QRegularExpression &remembered(const QString &pattern, Options options, Make make)
{
    static QCache<QPair<QString, int>, QRegularExpression> known(rememberedExpressions);
    const QPair<QString, int> key(pattern, int(options));
    if (const QRegularExpression *expression = known.object(key))
        return *expression;
    auto *made = new QRegularExpression(make());
    known.insert(key, made);
    return *made;
}

const QRegularExpression &compiled(const QString &pattern, Options options = {})
{
    return remembered(pattern, options, [&] { return QRegularExpression(pattern, options); });
}

bool restrictsWith(const QString &pattern, Options options)
{
    return !pattern.isEmpty() && pattern.size() <= ExtensionFile::maximumEditableLength
        && compiled(pattern, options).isValid();
}

/// The expression that matches a text as a whole; one with an empty pattern where nothing is restricted.
QRegularExpression wholeMatch(const QString &pattern, Options options)
{
    // Tested before it is wrapped: "a)(b" is no expression, but it would be one inside the parentheses.
    if (!restrictsWith(pattern, options))
        return {};
    // The group keeps alternatives together. An expression that is fine by itself may still swallow the end of the
    // group: with a quotation that it never ends, or a comment of the extended syntax.
    for (const char *end : { "", "\\E", "\n" }) {
        const QString whole = QLatin1String("\\A(?:") + pattern + QLatin1String(end) + QLatin1String(")\\z");
        const QRegularExpression expression(whole, options);
        if (expression.isValid())
            return expression;
    }
    return {};
}

/// A make of patterns that differ in the longest length only.
struct Make
{
    const char *before;
    const char *words;
    int fixed; ///< characters that the counted part does not count
};

constexpr Make makes[] = {
    { ".", QT_TRANSLATE_NOOP("TextPattern", "At most %1 characters"), 0 },
    { "[a-zA-Z][a-zA-Z0-9-_.]",
        QT_TRANSLATE_NOOP("TextPattern",
            "A letter first, then letters, digits, hyphens, underscores and dots; at most %1 characters"),
        1 },
    { "[0-9a-zA-Z_.]", QT_TRANSLATE_NOOP("TextPattern", "Letters, digits, underscores and dots; at most %1 characters"),
        0 },
    { "[^</>'&\"]", QT_TRANSLATE_NOOP("TextPattern", "None of the characters < / > ' & \"; at most %1 characters"), 0 },
};

} // namespace

bool TextPattern::matches(const QString &pattern, const QString &text, Lines lines)
{
    const Options options
        = lines == Lines::Many ? QRegularExpression::DotMatchesEverythingOption : QRegularExpression::NoPatternOption;
    const QRegularExpression &expression = remembered(pattern, options, [&] { return wholeMatch(pattern, options); });
    return expression.pattern().isEmpty() || expression.match(text).hasMatch();
}

bool TextPattern::matchesPart(const QString &pattern, const QString &text)
{
    return compiled(pattern, QRegularExpression::DotMatchesEverythingOption).match(text).hasMatch();
}

bool TextPattern::restricts(const QString &pattern)
{
    return restrictsWith(pattern, {});
}

QString TextPattern::inWords(const QString &pattern)
{
    QString core = pattern;
    if (core.startsWith(QLatin1Char('^')))
        core.remove(0, 1);
    if (core.endsWith(QLatin1Char('$')))
        core.chop(1);
    static const QRegularExpression counted(QStringLiteral("\\A(.*)\\{([01]),(\\d{1,6})\\}\\z"));
    const QRegularExpressionMatch match = counted.match(core);
    if (match.hasMatch()) {
        for (const Make &make : makes) {
            if (match.captured(1) != QLatin1String(make.before))
                continue;
            // One that asks for a second character at least is rare, and that is not worth a sentence.
            return QCoreApplication::translate("TextPattern", make.words).arg(match.captured(3).toInt() + make.fixed);
        }
    }
    return QCoreApplication::translate("TextPattern", "Must match %1").arg(pattern);
}
