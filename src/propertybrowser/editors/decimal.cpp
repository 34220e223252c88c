#include "propertybrowser/editors/decimal.h"

#include <QRegularExpression>

#include <algorithm>
#include <cstdlib>

namespace {

/// That of the largest double has three digits; beyond it there is nothing to keep.
constexpr int LargestExponent = 400;

QString widened(const QString &digits, int width)
{
    return digits.rightJustified(width, QLatin1Char('0'));
}

/// The sum, or the difference, of two numbers of equal width; of which the first is the larger one for a difference.
QString combined(const QString &a, const QString &b, int sign)
{
    QString result = a;
    int carry = 0;
    for (int i = a.size() - 1; i >= 0; --i) {
        const int digit = a.at(i).digitValue() + sign * (b.at(i).digitValue() + carry);
        carry = digit < 0 || digit > 9 ? 1 : 0;
        result[i] = QLatin1Char(static_cast<char>('0' + (digit + 10) % 10));
    }
    return result;
}

} // namespace

std::optional<Decimal> Decimal::fromText(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("\\A\\s*([+-]?)(\\d*)\\.?(\\d*)(?:[eE]([+-]?\\d+))?\\s*\\z"));
    const QRegularExpressionMatch match = form.match(text);
    const QString written = match.captured(4);
    bool fits = true;
    const int exponent = written.isEmpty() ? 0 : written.toInt(&fits);
    if (!fits || match.capturedLength(2) + match.capturedLength(3) <= 0 || std::abs(exponent) > LargestExponent) {
        return std::nullopt;
    }
    Decimal result;
    result.m_negative = match.captured(1) == QLatin1String("-");
    result.m_digits = match.captured(2) + match.captured(3);
    result.m_decimals = match.capturedLength(3) - exponent;
    if (result.m_decimals < 0) {
        result.m_digits += QString(-result.m_decimals, QLatin1Char('0'));
        result.m_decimals = 0;
    }
    return result;
}

QString Decimal::text() const
{
    QString text = widened(m_digits, m_decimals + 1);
    int zeros = 0;
    while (zeros < text.size() - m_decimals - 1 && text.at(zeros) == QLatin1Char('0')) {
        ++zeros;
    }
    text.remove(0, zeros);
    if (m_decimals > 0) {
        text.insert(text.size() - m_decimals, QLatin1Char('.'));
    }
    return m_negative ? QLatin1Char('-') + text : text;
}

Decimal Decimal::reduced() const
{
    Decimal result = *this;
    while (result.m_decimals > 0 && (result.m_digits.isEmpty() || result.m_digits.endsWith(QLatin1Char('0')))) {
        result.m_digits.chop(1);
        --result.m_decimals;
    }
    return result;
}

Decimal Decimal::plus(int whole) const
{
    const QString term = QString::number(std::abs(static_cast<qint64>(whole))) + QString(m_decimals, QLatin1Char('0'));
    // One more than either has, for what is carried.
    const int width = std::max(m_digits.size(), term.size()) + 1;
    const QString a = widened(m_digits, width);
    const QString b = widened(term, width);
    Decimal result = *this;
    if (m_negative == (whole < 0)) {
        result.m_digits = combined(a, b, 1);
    } else if (a < b) {
        result.m_digits = combined(b, a, -1);
        result.m_negative = !m_negative;
    } else {
        result.m_digits = combined(a, b, -1);
        result.m_negative = m_negative && a != b;
    }
    return result;
}
