#include "propertybrowser/editors/elidingcombobox.h"

#include <QStylePainter>
#include <QWheelEvent>

ElidingComboBox::ElidingComboBox(QWidget *parent) : QComboBox(parent)
{
    constexpr int LeastCharacters = 4;
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(LeastCharacters);
    setFocusPolicy(Qt::StrongFocus);
}

void ElidingComboBox::paintEvent(QPaintEvent *event)
{
    if (isEditable()) {
        QComboBox::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QRect field = style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    const int iconWidth = option.currentIcon.isNull() ? 0 : option.iconSize.width() + 4;
    option.currentText = fontMetrics().elidedText(shownText(), Qt::ElideRight, field.width() - iconWidth - 2);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void ElidingComboBox::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}
