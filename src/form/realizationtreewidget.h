#pragma once

#include "drops/dropsite.h"
#include "drops/ownslots.h"
#include "edgescroll.h"
#include "runningdrag.h"
#include "statustip.h"

#include <QMultiHash>
#include <QPointer>
#include <QTreeWidget>

#include <functional>
#include <utility>

class PointTreeWidgetItem;

/// A tree of the realization page, source and target of its drags: the tree of all points, and the format tree of the
/// tab that is shown. Owned by the form or by the page; it only borrows the rows that it shows. GUI thread.
///
/// Every drag is accepted where it is not dropped onto itself; what a drop would do is painted over the rows and said
/// in the status line, from the same plan that the drop carries out. The changes stand in drops/, one file pair for
/// each kind of what is dragged. All signals are emitted when the model is whole again, and whoever hears them may
/// destroy what they name.
class RealizationTreeWidget : public QTreeWidget
{
    Q_OBJECT

public:
    explicit RealizationTreeWidget(QWidget *parent = nullptr);
    ~RealizationTreeWidget() override;

    /// Whether drops go into the rows themselves, which is so at first, or are recorded in the opened file beside them.
    /// Rows of siblings are never dropped into, whatever is said here.
    void setDirectDrop(bool directDrop) { m_site.direct = directDrop; }
    [[nodiscard]] bool directDrop() const { return m_site.direct; }

    /// The name of the tab that the tree shows, by which a recorded drop finds its "Format". Empty, as at first, when
    /// the tree stands in no tab.
    void setTabName(const QString &name) { m_site.tabName = name; }
    [[nodiscard]] const QString &tabName() const { return m_site.tabName; }

    /// The further nodes that displayed rows stand for, row by row. What one of those nodes takes is recorded with it
    /// as the "parent".
    void setMergedSources(const QMultiHash<const PointTreeWidgetItem *, PointTreeWidgetItem *> &sources);

    /// Where a drop at @p pos, in viewport coordinates, would go.
    [[nodiscard]] DropSite siteAt(const QPoint &pos) const;
    /// Where a drop onto @p row would go.
    [[nodiscard]] DropSite siteOf(PointTreeWidgetItem *row) const;

    /// Where something comes from decides on what dropping it means.
    enum class Source { Tree, Table, Other };

    /// What dropping @p dragged at @p site does; null is allowed. The mark, the drop and pasting all ask this.
    [[nodiscard]] static DropPlan planFor(const DropSite &site, PointTreeWidgetItem *dragged, Source source);
    /// Carries that out, and announces it.
    void drop(const DropSite &site, PointTreeWidgetItem *dragged, Source source);

    /// True while a drag that this tree has started is running.
    [[nodiscard]] bool isDragging() const { return m_drag.isRunning(); }
    /// Has @p ended called at the end of each of these drags, while isDragging() still holds.
    void setDragEnded(std::function<void()> ended) { m_dragEnded = std::move(ended); }

Q_SIGNALS:
    void modified(bool flag);
    void showProprty(QTreeWidgetItem *, int);
    /// @p item is the "Format" that a recorded drop went to; it belongs to this tree's tab.
    void setTarget(PointTreeWidgetItem *);
    /// A drop has added a row to this tree.
    void dropPoint(PointTreeWidgetItem *);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool viewportEvent(QEvent *event) override;

private:
    [[nodiscard]] static Source sourceOf(const QDropEvent *event);
    void beginDrag();
    void hover(PointTreeWidgetItem *dragged, Source source, const QPoint &pos);
    void stopHovering();
    /// Makes a row current without scrolling to it: what scrolls under the pointer is no target.
    void setCurrentQuietly(QTreeWidgetItem *row);
    /// What the mark of a plan for the row at @p pos is painted around; empty without a row.
    [[nodiscard]] QRect markedRect(const QPoint &pos, DropPlan::Place place) const;
    void moveEntry(const DropSite &site, PointTreeWidgetItem *dragged);
    void announce(const DropOutcome &outcome);

    QPoint m_dragStartPosition;
    DropSite m_site; ///< without a row
    OwnSlots::FirstFound m_found;
    RunningDrag m_drag;
    std::function<void()> m_dragEnded;

    // What hovers over the rows at present.
    EdgeScroll m_edgeScroll;
    QPointer<PointTreeWidgetItem> m_currentBefore;
    QPointer<PointTreeWidgetItem> m_hovering;
    Source m_hoveringFrom = Source::Other;
    QPoint m_hoverPos;
    bool m_isHovering = false;
    StatusTip m_statusTip;
};
