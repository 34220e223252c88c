#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

class PointObject;

/// The sub points of one point as the bits of a mask: what the flag editor of "childtype" works on, where the file has
/// their keys joined by "|".
class ChildTypeMask final
{
public:
    /// A flag editor works on an int, so further sub points get no bit.
    static constexpr int maxBits = 31;

    ChildTypeMask() = default;

    /// One bit for each sub point of @p point, in order, from 1 upward. Null gives none.
    explicit ChildTypeMask(PointObject *point);

    [[nodiscard]] const QStringList &names() const { return m_names; }
    [[nodiscard]] const QList<int> &bits() const { return m_bits; }

    /// The sum of the bits of the keys in @p text; a key that is not there counts nothing, a repeated one counts once.
    [[nodiscard]] int maskOf(const QString &text) const;

    /// The keys of the set bits, from the lowest, joined by "|"; empty for 0.
    [[nodiscard]] QString textOf(int mask) const;

private:
    QStringList m_names;
    QList<int> m_bits;
    QMap<QString, int> m_bitOfName;
};
