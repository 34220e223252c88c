#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>

class PointObject;

/// What the flag editor of "childtype" works on: the keys of the sub points of one point, which the file has joined by
/// "|". As long as an int has a bit for each, the chosen ones are a mask; otherwise they are the text.
class ChildTypeMask final
{
public:
    static constexpr int maxBits = 31;

    ChildTypeMask() = default;

    /// Knows the sub points of @p point, in order. Null gives none.
    explicit ChildTypeMask(PointObject *point);

    [[nodiscard]] const QStringList &names() const { return m_names; }

    /// What an editor that offers names() is given for @p stored.
    [[nodiscard]] QVariant valueOf(const QString &stored) const;

    /// The sum of the bits of the keys in @p text; a key that is not there counts nothing, a repeated one counts once.
    [[nodiscard]] int maskOf(const QString &text) const;

    /// What the file gets in place of @p stored: the keys that are there, in the order of the sub points; empty but not
    /// null without any. @p value is a mask, of which the keys that have no bit are taken from @p stored, or a text.
    [[nodiscard]] QString textOf(const QVariant &value, const QString &stored) const;

private:
    QStringList m_names;
    QHash<QString, int> m_bitOfName;
};
