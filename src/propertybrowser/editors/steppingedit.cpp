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
