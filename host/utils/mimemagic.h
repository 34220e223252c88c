#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

namespace Utils {

/// One "match" of a magic rule: bytes to be found at one of several places, and in addition one of the nested ones, if
/// there are any.
struct MimeMatch
{
    QByteArray value;
    /// Empty, or as long as value: only the bits set here are compared.
    QByteArray mask;
    int firstOffset = 0;
    int lastOffset = 0;
    QVector<MimeMatch> nested;

    bool matches(const QByteArray &data) const;

    /// Makes a match without nested ones from the attributes of a "match" element. Nothing, and the reason in \a
    /// reason, when they are not valid. A null \a mask stands for none.
    static std::optional<MimeMatch> fromAttributes(
        const QString &type, const QString &value, const QString &offset, const QString &mask, QString *reason);

    bool operator==(const MimeMatch &other) const
    {
        return value == other.value && mask == other.mask && firstOffset == other.firstOffset
            && lastOffset == other.lastOffset && nested == other.nested;
    }

private:
    bool matchesAt(const QByteArray &data, int offset) const;
};

/// One "magic" of a MIME type: it matches when one of its matches does.
struct MimeMagic
{
    int priority = 50;
    QVector<MimeMatch> matches;

    bool operator==(const MimeMagic &other) const { return priority == other.priority && matches == other.matches; }
};

/// The highest priority among those of \a magics that match \a data; -1 when none does.
int bestPriority(const QVector<MimeMagic> &magics, const QByteArray &data);

} // namespace Utils
