#include "realizationtablewidget.h"

#include "draglabel.h"
#include "drops/dropmark.h"
#include "drops/tabledrop.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "realizationtreewidget.h"
#include "treeitemmimedata.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPersistentModelIndex>
#include <QToolButton>

namespace {

// Of the columns of the table.
constexpr int labelColumn = 1;
constexpr int iconColumn = 2;

bool isFromTree(const QDropEvent *event)
{
    return qobject_cast<RealizationTreeWidget *>(event->source()) != nullptr;
}

} // namespace

RealizationTableWidget::RealizationTableWidget(QWidget *parent) : QTableWidget(parent)
{
    setAcceptDrops(true);
    setDragEnabled(true);
}

RealizationTableWidget::~RealizationTableWidget() = default;

void RealizationTableWidget::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_dragStartPosition = event->pos();
    QAbstractItemView::mousePressEvent(event);
}

void RealizationTableWidget::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons().testFlag(Qt::LeftButton)
        && (event->pos() - m_dragStartPosition).manhattanLength() > QApplication::startDragDistance())
        beginDrag();
}

void RealizationTableWidget::beginDrag()
{
    const QTableWidgetItem *cell = currentItem();
    if (!cell)
        return;
    const QTableWidgetItem *idCell = item(cell->row(), 0);
    const QString id = idCell ? idCell->data(Qt::EditRole).toString() : QString();
    DragLabel label { QIcon(), id };
    if (const auto *icon = qobject_cast<const QToolButton *>(cellWidget(cell->row(), iconColumn)))
        label.icon = icon->icon();
    if (const QTableWidgetItem *text = item(cell->row(), labelColumn); text && !text->text().isEmpty())
        label.text = text->text();
    auto *payload = new TreeItemMimeData;
    if (PointTreeWidgetItem *record = Controller::instance()->ownRealizations().record(id))
        payload->setItem(TreeItemMimeData::itemFormat(), record);
    const QPersistentModelIndex dragged(currentIndex());
    m_drag.run(this, payload, label, [this, dragged] {
        // The way of the pointer over this table has moved the current cell along.
        if (dragged.isValid())
            setCurrentIndex(dragged);
        if (m_dragEnded)
            m_dragEnded();
    });
}

void RealizationTableWidget::dragEnterEvent(QDragEnterEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
    if (!isFromTree(event))
        return;
    PointTreeWidgetItem *dragged = TreeItemMimeData::nodeOf(event->mimeData());
    setMarked(TableDrop::takes(dragged));
    m_statusTip.show(this, TableDrop::words(dragged));
}

void RealizationTableWidget::dragMoveEvent(QDragMoveEvent *event)
{
    if (!qobject_cast<RealizationTableWidget *>(event->source()))
        return;
    const bool scrolls = hasAutoScroll();
    setAutoScroll(false);
    setCurrentItem(itemAt(event->pos()), QItemSelectionModel::NoUpdate);
    setAutoScroll(scrolls);
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void RealizationTableWidget::dragLeaveEvent(QDragLeaveEvent *event)
{
    setMarked(false);
    m_statusTip.clear(this);
    QTableWidget::dragLeaveEvent(event);
}

void RealizationTableWidget::dropEvent(QDropEvent *event)
{
    setMarked(false);
    m_statusTip.clear(this);
    PointTreeWidgetItem *dragged = TreeItemMimeData::nodeOf(event->mimeData());
    if (!isFromTree(event) || !dragged)
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    drop(dragged);
}

void RealizationTableWidget::drop(PointTreeWidgetItem *dragged)
{
    const TableDrop::Outcome outcome = TableDrop::perform(dragged);
    if (outcome.record)
        Q_EMIT addTableRealization(outcome.parent, outcome.record, outcome.isSubPoint);
    // Where nobody has given it a place it must still have an owner.
    if (outcome.parent && !outcome.parent->parent())
        Controller::instance()->retire(outcome.parent);
    Q_EMIT modified(true);
}

void RealizationTableWidget::setMarked(bool marked)
{
    m_marked = marked;
    viewport()->update();
}

void RealizationTableWidget::paintEvent(QPaintEvent *event)
{
    QTableWidget::paintEvent(event);
    if (!m_marked)
        return;
    QPainter painter(viewport());
    DropMark::paint(&painter, palette(), viewport()->rect(), DropPlan::Place::Into);
}
