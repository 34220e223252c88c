#include "propertybrowser/editors/steppingedit.h"

#include "propertybrowser/editors/textcodec.h"

#include <QLineEdit>

SteppingEdit::SteppingEdit(const PropertyItem &item, const TextCodec &codec, QWidget *parent)
    : QAbstractSpinBox(parent), m_item(item), m_codec(codec)
{
    setFocusPolicy(Qt::StrongFocus);
}

void SteppingEdit::stepBy(int steps)
{
    QString text = lineEdit()->text();
    const int cursor = lineEdit()->cursorPosition();
    if (m_codec.step(m_item, &text, cursor, steps)) {
        lineEdit()->setText(text);
        lineEdit()->setCursorPosition(cursor);
    }
}

QValidator::State SteppingEdit::validate(QString &input, int & /*position*/) const
{
    if (m_codec.accepts(m_item, input)) {
        return QValidator::Acceptable;
    }
    const QString kept = m_codec.shownText(m_item);
    for (const QChar c : qAsConst(input)) {
        const bool typable = m_codec.allowed == nullptr || QLatin1String(m_codec.allowed).contains(c);
        // A value that never was of this kind can still be shortened and mended.
        if (!typable && !kept.contains(c)) {
            return QValidator::Invalid;
        }
    }
    return QValidator::Intermediate;
}

QSize SteppingEdit::minimumSizeHint() const
{
    return { fontMetrics().averageCharWidth() * 8, QAbstractSpinBox::minimumSizeHint().height() };
}

QAbstractSpinBox::StepEnabled SteppingEdit::stepEnabled() const
{
    QString up = lineEdit()->text();
    QString down = up;
    StepEnabled enabled = StepNone;
    enabled.setFlag(StepUpEnabled, m_codec.step(m_item, &up, lineEdit()->cursorPosition(), 1));
    enabled.setFlag(StepDownEnabled, m_codec.step(m_item, &down, lineEdit()->cursorPosition(), -1));
    return enabled;
}
