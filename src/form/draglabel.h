#pragma once

#include <QIcon>
#include <QPixmap>
#include <QPoint>
#include <QString>

class QTreeWidgetItem;
class QWidget;

/// The picture beside the pointer that says what is being dragged: icon and text. GUI thread.
struct DragLabel
{
    /// What the row shows in its first column, or its label where it has one.
    [[nodiscard]] static DragLabel ofRow(const QTreeWidgetItem *row);

    QIcon icon;
    QString text;

    /// In the font and the colours of @p widget and for its screen; a long text is elided. Null without icon and text.
    [[nodiscard]] QPixmap pixmap(const QWidget *widget) const;
    /// Where the pointer stands, seen from the top left corner of the pixmap, in pixels that don't depend on the
    /// device: outside, so that neither hides the other.
    [[nodiscard]] static QPoint hotSpot() { return { -12, -8 }; }
};
