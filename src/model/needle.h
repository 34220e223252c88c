#pragma once

#include <QString>

/// A text that is looked for in many short ones, in whatever letter case. For those it is quicker than QStringMatcher,
/// which folds every character of either by a look-up. Any thread.
class Needle final
{
public:
    explicit Needle(const QString &text = QString())
        : m_folded(text.toCaseFolded()), m_first(m_folded.isEmpty() ? QChar() : m_folded.at(0)),
          m_upper(m_first.toUpper())
    { }

    [[nodiscard]] const QString &folded() const { return m_folded; }

    /// The empty needle is in every text.
    [[nodiscard]] bool isIn(const QString &text) const
    {
        const QChar *const characters = text.constData();
        for (int last = text.size() - m_folded.size(), at = 0; at <= last; ++at) {
            if (m_folded.isEmpty() || (begins(characters[at]) && goesOn(characters + at)))
                return true;
        }
        return false;
    }

private:
    [[nodiscard]] bool begins(QChar character) const
    {
        return character == m_first || character == m_upper
            || (character.unicode() > 0x7f && character.toCaseFolded() == m_first);
    }
    [[nodiscard]] bool goesOn(const QChar *characters) const
    {
        for (int i = 1; i < m_folded.size(); ++i) {
            if (characters[i] != m_folded.at(i) && characters[i].toCaseFolded() != m_folded.at(i))
                return false;
        }
        return true;
    }

    QString m_folded;
    QChar m_first;
    QChar m_upper; ///< the other form of it in most texts
};
