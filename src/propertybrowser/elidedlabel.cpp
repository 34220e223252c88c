#include "propertybrowser/elidedlabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

ElidedLabel::ElidedLabel(const QString &text, QWidget *parent) : QLabel(parent), m_fullText(text)
{
    setTextFormat(Qt::PlainText);
    setText(QString(text).replace(QLatin1Char('&'), QLatin1String("&&")));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize ElidedLabel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    // A very long name may not push the editors out of the sheet.
    const int widest = metrics.averageCharWidth() * 24;
    return { qMin(metrics.horizontalAdvance(m_fullText) + 1, widest), metrics.height() };
}

QSize ElidedLabel::minimumSizeHint() const
{
    return { qMin(sizeHint().width(), fontMetrics().averageCharWidth() * 8), fontMetrics().height() };
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && fontMetrics().horizontalAdvance(m_fullText) > width()) {
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), m_fullText.toHtmlEscaped(), this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(m_fullText, Qt::ElideRight, width());
    style()->drawItemText(&painter, rect(),
        int(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter)), palette(), isEnabled(),
        shown, foregroundRole());
}
