#pragma once

#include "runningdrag.h"
#include "statustip.h"

#include <QPoint>
#include <QTableWidget>

#include <functional>
#include <utility>

class PointTreeWidgetItem;

/// The table of the records of one point, on the realization page: a point or sub point dropped here gets a record, and
/// its rows are dragged into the format trees. Owned by the form. GUI thread.
///
/// The widget changes the model only (drops/tabledrop.h); the row is made by whoever hears @p addTableRealization.
class RealizationTableWidget : public QTableWidget
{
    Q_OBJECT

public:
    explicit RealizationTableWidget(QWidget *parent = nullptr);
    ~RealizationTableWidget() override;

    /// True while a drag that this table has started is running.
    [[nodiscard]] bool isDragging() const { return m_drag.isRunning(); }
    /// Has @p ended called at the end of each of these drags, while isDragging() still holds.
    void setDragEnded(std::function<void()> ended) { m_dragEnded = std::move(ended); }

    /// What a drop of @p dragged does, announced by the signals.
    void drop(PointTreeWidgetItem *dragged);

Q_SIGNALS:
    void modified(bool flag);
    /// A drop has made the record @p child under @p parent; @p flag is true for a sub point's. A @p parent without a
    /// parent of its own found no "ExtDataSet": whoever shows the record gives it one.
    void addTableRealization(PointTreeWidgetItem *parent, PointTreeWidgetItem *child, bool flag);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void beginDrag();
    void setMarked(bool marked);

    QPoint m_dragStartPosition;
    RunningDrag m_drag;
    std::function<void()> m_dragEnded;
    StatusTip m_statusTip;
    bool m_marked = false; ///< what hovers here would become a record
};
