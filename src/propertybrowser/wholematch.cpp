#include "propertybrowser/wholematch.h"

#include "extensionfile/textpattern.h"
#include "propertybrowser/propertyitem.h"
#include "propertybrowser/propertykeys.h"

QString WholeMatch::patternOf(const PropertyItem &item)
{
    const QString pattern = item.data(PropertyKey::RegExp).toString();
    return TextPattern::restricts(pattern) ? pattern : QString();
}

QString WholeMatch::hint(const PropertyItem &item)
{
    return TextPattern::inWords(patternOf(item));
}

QString WholeMatch::help(const PropertyItem &item)
{
    QStringList lines { item.data(PropertyKey::Help).toString() };
    if (!patternOf(item).isEmpty())
        lines.append(hint(item));
    lines.removeAll(QString());
    return lines.join(QLatin1Char('\n'));
}

QString WholeMatch::doubtAbout(const PropertyItem &item, const QString &text)
{
    const QString pattern = item.data(PropertyKey::Doubt).toString();
    if (pattern.isEmpty() || !TextPattern::matchesPart(pattern, text))
        return {};
    return item.data(PropertyKey::DoubtHint).toString();
}
