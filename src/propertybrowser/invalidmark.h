#pragma once

#include "propertybrowser/propertybrowser_global.h"

#include <QColor>
#include <QWidget>

class QPainter;
class QPalette;

/// Marks a widget whose content would be refused: a border with a wavy line along its bottom, so that it doesn't depend
/// on seeing colours. Lies over its target without taking its events; the target's parent owns it.
class InvalidMark final : public QWidget
{
    Q_OBJECT

public:
    explicit InvalidMark(QWidget *target);

    /// The red that stands out from @p background, or @p text where no red does.
    [[nodiscard]] static QColor color(const QColor &background, const QColor &text);
    /// @p text as pale as it may be and be read on @p background.
    [[nodiscard]] PROPERTYBROWSER_EXPORT static QColor paler(const QColor &background, const QColor &text);
    /// The wavy line alone, along the bottom of @p rect.
    static void paintWave(QPainter *painter, const QRectF &rect, const QColor &color);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void follow();

    QWidget *m_target;
};
