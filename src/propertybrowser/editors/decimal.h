#pragma once

#include <QString>

#include <optional>

/// A decimal number with every digit that it was written with, however many a double could hold.
class Decimal final
{
public:
    /// Nothing for a text that is no number, or whose exponent would make it a very long one.
    [[nodiscard]] static std::optional<Decimal> fromText(const QString &text);

    /// Without an exponent, and with as many digits after the point as it has.
    [[nodiscard]] QString text() const;
    /// The same number with no zeros at the end of its fraction.
    [[nodiscard]] Decimal reduced() const;
    /// As many digits after the point as before.
    [[nodiscard]] Decimal plus(int whole) const;

private:
    QString m_digits; ///< those of the fraction at the end, without the point
    int m_decimals = 0;
    bool m_negative = false;
};
