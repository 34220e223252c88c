#include "realizationtreewidget.h"

#include "draglabel.h"
#include "drops/dropmark.h"
#include "drops/dropwords.h"
#include "drops/entrymove.h"
#include "drops/pointdrop.h"
#include "drops/recorddrop.h"
#include "model/pointtreewidgetitem.h"
#include "realizationtablewidget.h"
#include "rowtooltip.h"
#include "treeitemmimedata.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

namespace {

/// Keeps a row and those under it expanded while the row moves, since a row loses that with its place.
class ExpansionKept final
{
public:
    explicit ExpansionKept(PointTreeWidgetItem *top)
    {
        QVector<QTreeWidgetItem *> open { top };
        while (!open.isEmpty()) {
            QTreeWidgetItem *row = open.takeLast();
            if (row->isExpanded())
                m_expanded.append(PointTreeWidgetItem::fromRow(row));
            for (int i = 0; i < row->childCount(); ++i)
                open.append(row->child(i));
        }
    }
    ExpansionKept(const ExpansionKept &) = delete;
    ExpansionKept &operator=(const ExpansionKept &) = delete;
    ~ExpansionKept()
    {
        for (const QPointer<PointTreeWidgetItem> &row : qAsConst(m_expanded)) {
            if (row)
                row->setExpanded(true);
        }
    }

private:
    QVector<QPointer<PointTreeWidgetItem>> m_expanded;
};

/// The last child of an expanded row; null for another one, and where a filter hides all of them.
const QTreeWidgetItem *lastShownChild(const QTreeWidgetItem *row)
{
    for (int i = row->isExpanded() ? row->childCount() - 1 : -1; i >= 0; --i) {
        if (!row->child(i)->isHidden())
            return row->child(i);
    }
    return nullptr;
}

} // namespace

RealizationTreeWidget::RealizationTreeWidget(QWidget *parent)
    : QTreeWidget(parent), m_edgeScroll(this, [this] { hover(m_hovering, m_hoveringFrom, m_hoverPos); })
{
    setAcceptDrops(true);
    setDragEnabled(true);
}

RealizationTreeWidget::~RealizationTreeWidget() = default;

void RealizationTreeWidget::setMergedSources(
    const QMultiHash<const PointTreeWidgetItem *, PointTreeWidgetItem *> &sources)
{
    m_site.merged = MergedSources(sources);
}

void RealizationTreeWidget::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_dragStartPosition = event->pos();
    QTreeView::mousePressEvent(event);
}

void RealizationTreeWidget::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons().testFlag(Qt::LeftButton)
        && (event->pos() - m_dragStartPosition).manhattanLength() > QApplication::startDragDistance())
        beginDrag();
}

void RealizationTreeWidget::beginDrag()
{
    QTreeWidgetItem *item = currentItem();
    if (!item)
        return;
    auto *payload = new TreeItemMimeData;
    payload->setItem(TreeItemMimeData::itemFormat(), item);
    const QPointer<PointTreeWidgetItem> dragged(payload->node());
    m_drag.run(this, payload, DragLabel::ofRow(item), [this, dragged] {
        // The way of the pointer over this tree has moved the current row along.
        if (dragged && dragged->treeWidget() == this)
            setCurrentItem(dragged);
        if (m_dragEnded)
            m_dragEnded();
    });
}

RealizationTreeWidget::Source RealizationTreeWidget::sourceOf(const QDropEvent *event)
{
    if (qobject_cast<RealizationTreeWidget *>(event->source()))
        return Source::Tree;
    return qobject_cast<RealizationTableWidget *>(event->source()) ? Source::Table : Source::Other;
}

DropSite RealizationTreeWidget::siteAt(const QPoint &pos) const
{
    QTreeWidgetItem *row = itemAt(pos);
    DropSite site = siteOf(PointTreeWidgetItem::fromRow(row));
    if (row) {
        const QRect rect = visualItemRect(row);
        site.eighth = qBound(0, (pos.y() - rect.top()) * 8 / qMax(1, rect.height()), 7);
    }
    return site;
}

DropSite RealizationTreeWidget::siteOf(PointTreeWidgetItem *row) const
{
    DropSite site = m_site;
    site.row = row;
    return site;
}

DropPlan RealizationTreeWidget::planFor(const DropSite &site, PointTreeWidgetItem *dragged, Source source)
{
    if (source == Source::Other)
        return {};
    if (!dragged)
        return DropPlan::refusal(DropWords::gone());
    if (source == Source::Table)
        return RecordDrop::plan(site, dragged);
    return PointDrop::takes(dragged) ? PointDrop::plan(site, dragged) : EntryMove::plan(site, dragged);
}

void RealizationTreeWidget::dragEnterEvent(QDragEnterEvent *event)
{
    if (sourceOf(event) == Source::Tree)
        event->setDropAction(Qt::CopyAction);
    event->accept();
    m_currentBefore = PointTreeWidgetItem::fromRow(currentItem());
}

void RealizationTreeWidget::dragMoveEvent(QDragMoveEvent *event)
{
    const Source source = sourceOf(event);
    if (source == Source::Other)
        return;
    QTreeWidgetItem *target = itemAt(event->pos());
    const auto *payload = qobject_cast<const TreeItemMimeData *>(event->mimeData());
    if (source == Source::Tree && target && payload && target == payload->item()) {
        event->ignore();
    } else {
        // Without selecting it, so that the dragged row can be told and the mark stands on plain ground.
        setCurrentQuietly(target);
        if (source == Source::Tree)
            event->setDropAction(Qt::CopyAction);
        event->accept();
    }
    hover(TreeItemMimeData::nodeOf(event->mimeData()), source, event->pos());
}

void RealizationTreeWidget::dragLeaveEvent(QDragLeaveEvent *event)
{
    stopHovering();
    QTreeView::dragLeaveEvent(event);
}

void RealizationTreeWidget::dropEvent(QDropEvent *event)
{
    // Asked before the current row goes back to where it was.
    const DropSite site = siteAt(event->pos());
    const Source source = sourceOf(event);
    PointTreeWidgetItem *dragged = TreeItemMimeData::nodeOf(event->mimeData());
    stopHovering();
    event->setDropAction(Qt::CopyAction);
    event->accept();
    drop(site, dragged, source);
}

void RealizationTreeWidget::drop(const DropSite &site, PointTreeWidgetItem *dragged, Source source)
{
    if (!dragged || source == Source::Other)
        return;
    if (source == Source::Table)
        announce(RecordDrop::perform(site, dragged));
    else if (PointDrop::takes(dragged))
        announce(PointDrop::perform(site, dragged, &m_found));
    else
        moveEntry(site, dragged);
}

void RealizationTreeWidget::moveEntry(const DropSite &site, PointTreeWidgetItem *dragged)
{
    const DropPlan plan = EntryMove::plan(site, dragged);
    DropOutcome outcome;
    {
        const ExpansionKept kept(dragged);
        outcome = EntryMove::perform(site, dragged);
    }
    if (plan && dragged->treeWidget() == this) {
        const QPointer<PointTreeWidgetItem> moved(dragged);
        if (plan.place == DropPlan::Place::Into)
            site.row->setExpanded(true);
        setCurrentItem(moved);
        if (moved)
            scrollToItem(moved);
    }
    announce(outcome);
}

void RealizationTreeWidget::announce(const DropOutcome &outcome)
{
    for (const DropOutcome::Addition &addition : outcome.additions) {
        if (addition.format)
            Q_EMIT setTarget(addition.format);
        if (addition.row)
            Q_EMIT dropPoint(addition.row);
    }
    if (outcome.modified)
        Q_EMIT modified(true);
}

void RealizationTreeWidget::hover(PointTreeWidgetItem *dragged, Source source, const QPoint &pos)
{
    m_hovering = dragged;
    m_hoveringFrom = source;
    m_hoverPos = pos;
    m_isHovering = true;
    m_edgeScroll.hold(pos);
    if (source != Source::Other)
        m_statusTip.show(this, DropWords::of(planFor(siteAt(pos), dragged, source), siteAt(pos)));
    viewport()->update();
}

void RealizationTreeWidget::stopHovering()
{
    // What passed over the rows has moved the current one along.
    if (m_isHovering)
        setCurrentQuietly(m_currentBefore && m_currentBefore->treeWidget() == this ? m_currentBefore.data() : nullptr);
    m_isHovering = false;
    m_statusTip.clear(this);
    m_hovering = nullptr;
    m_edgeScroll.stop();
    viewport()->update();
}

void RealizationTreeWidget::paintEvent(QPaintEvent *event)
{
    QTreeWidget::paintEvent(event);
    if (!m_isHovering)
        return;
    const DropPlan::Place place = planFor(siteAt(m_hoverPos), m_hovering, m_hoveringFrom).place;
    QPainter painter(viewport());
    DropMark::paint(&painter, palette(), markedRect(m_hoverPos, place), place);
}

QRect RealizationTreeWidget::markedRect(const QPoint &pos, DropPlan::Place place) const
{
    const QTreeWidgetItem *row = itemAt(pos);
    if (!row)
        return {};
    QRect rect = visualItemRect(row);
    // Clear of the text.
    rect.setLeft(qMax(0, rect.left() - 4));
    rect.setRight(viewport()->width() - 1);
    if (place != DropPlan::Place::After)
        return rect;
    // Behind a row is behind what stands under it.
    const QTreeWidgetItem *last = row;
    for (const QTreeWidgetItem *below = row; below; below = lastShownChild(below))
        last = below;
    if (last != row)
        rect.setBottom(qMax(rect.bottom(), qMin(visualItemRect(last).bottom(), viewport()->height() - 1)));
    return rect;
}

void RealizationTreeWidget::setCurrentQuietly(QTreeWidgetItem *row)
{
    const bool scrolls = hasAutoScroll();
    setAutoScroll(false);
    setCurrentItem(row, 0, QItemSelectionModel::NoUpdate);
    setAutoScroll(scrolls);
}

bool RealizationTreeWidget::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        QTreeWidgetItem *row = itemAt(help->pos());
        const QString text = RowToolTip::text(PointTreeWidgetItem::fromRow(row));
        if (!text.isEmpty()) {
            QToolTip::showText(help->globalPos(), text, viewport(), visualItemRect(row));
            return true;
        }
    }
    return QTreeWidget::viewportEvent(event);
}
