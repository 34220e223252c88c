#pragma once

#include <QRandomGenerator>
#include <QString>
#include <QVector>

/// An element with what is in it, made at random from a seed, so that a failing round can be repeated.
struct RandomElement
{
    QString name;
    QVector<QPair<QString, QString>> attributes;
    QVector<RandomElement> children;
};

inline QString randomPick(QRandomGenerator &random, const QStringList &from)
{
    return from.at(random.bounded(from.size()));
}

/// Values full of what needs escaping, beside ordinary ones; everything in them is legal in XML.
inline QString randomValue(QRandomGenerator &random)
{
    static const QStringList pieces { QStringLiteral("Open file"), QStringLiteral("&"), QStringLiteral("<"),
        QStringLiteral(">"), QStringLiteral("]]>"), QStringLiteral("\""), QStringLiteral("'"), QStringLiteral("\n"),
        QStringLiteral("\r\n"), QStringLiteral("\t"), QStringLiteral("  "), QStringLiteral("tr('x')"),
        QStringLiteral("\u00e4\u20ac\u4e2d"), QStringLiteral("\U0001F600"), QStringLiteral("\u0085\u2028\u007f"),
        QStringLiteral("&amp;#x1;") };
    QString value;
    for (int i = random.bounded(5); i > 0; --i)
        value += randomPick(random, pieces);
    return value;
}

inline RandomElement randomElement(QRandomGenerator &random, int depth, int maximumAttributes)
{
    static const QStringList names { QStringLiteral("ExtPoint"), QStringLiteral("a"), QStringLiteral("x:y"),
        QStringLiteral("_1.-"), QStringLiteral("\u00e9t\u00e9"), QStringLiteral("\u4e2d\u6587") };
    RandomElement element { randomPick(random, names), {}, {} };
    const int attributes = random.bounded(maximumAttributes + 1);
    for (int i = 0; i < attributes; ++i)
        element.attributes.append({ randomPick(random, names) + QString::number(i), randomValue(random) });
    for (int i = depth > 0 ? random.bounded(4) : 0; i > 0; --i)
        element.children.append(randomElement(random, depth - 1, maximumAttributes));
    return element;
}
