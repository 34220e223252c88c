#include "filterline.h"

#include "rowfilter.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTreeWidget>

namespace {

/// What every scroll area may do with itself, asked for from outside.
struct Margins : QAbstractScrollArea
{
    using QAbstractScrollArea::setViewportMargins;
};

void leaveAbove(QAbstractScrollArea *area, int height)
{
    void (QAbstractScrollArea::*const set)(int, int, int, int) = &Margins::setViewportMargins;
    (area->*set)(0, height, 0, 0);
}

} // namespace

FilterLine *FilterLine::of(QAbstractItemView *view)
{
    auto *tree = qobject_cast<QTreeWidget *>(view);
    auto *table = qobject_cast<QTableWidget *>(view);
    QHeaderView *header = tree ? tree->header() : table ? table->horizontalHeader() : nullptr;
    if (!header)
        return nullptr;
    auto *line = header->findChild<FilterLine *>(QString(), Qt::FindDirectChildrenOnly);
    if (line)
        return line;
    return tree ? new FilterLine(view, header, new TreeRowFilter(tree))
                : new FilterLine(view, header, new TableRowFilter(table));
}

FilterLine::FilterLine(QAbstractItemView *view, QHeaderView *header, RowFilter *filter)
    : QWidget(header), m_view(view), m_header(header), m_filter(filter), m_edit(new QLineEdit(this)),
      m_count(new QLabel(this))
{
    hide();
    setObjectName(view->objectName() + QStringLiteral("FilterLine"));
    setAutoFillBackground(true);
    m_edit->setObjectName(view->objectName() + QStringLiteral("Filter"));
    m_edit->setPlaceholderText(tr("Filter"));
    m_edit->setAccessibleName(tr("Filter: %1").arg(view->accessibleName()));
    m_edit->setClearButtonEnabled(true);
    m_edit->installEventFilter(this);
    m_count->setObjectName(view->objectName() + QStringLiteral("FilterCount"));
    m_count->hide();
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(2, 2, 4, 2);
    row->setSpacing(4);
    row->addWidget(m_edit, 1);
    row->addWidget(m_count);
    connect(m_edit, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_filter->setNeedle(text);
        tell();
    });
    connect(m_filter, &RowFilter::counted, this, &FilterLine::tell);
    header->installEventFilter(this);
    view->installEventFilter(this);
}

void FilterLine::showCurrent(QAbstractItemView *view)
{
    auto *line = view->findChild<FilterLine *>();
    if (line)
        line->m_filter->catchUp();
    const auto *tree = qobject_cast<QTreeWidget *>(view);
    const auto *table = qobject_cast<QTableWidget *>(view);
    const bool isHidden = tree ? !isInSight(tree->currentItem())
                               : table && table->currentRow() >= 0 && table->isRowHidden(table->currentRow());
    if (line && isHidden)
        line->close();
    view->scrollTo(view->currentIndex());
}

void FilterLine::open()
{
    show();
    makeRoom();
    m_edit->setFocus(Qt::ShortcutFocusReason);
    m_edit->selectAll();
}

void FilterLine::close()
{
    m_edit->clear();
    m_view->setFocus(Qt::OtherFocusReason);
    hide();
    makeRoom();
}

void FilterLine::makeRoom()
{
    const int height = isHidden() ? 0 : sizeHint().height();
    leaveAbove(m_header, height);
    m_header->setMinimumHeight(height == 0 ? 0 : height + m_header->sizeHint().height());
    setGeometry(0, 0, m_header->width(), height);
    // The view asks its header for its height.
    Q_EMIT m_header->geometriesChanged();
}

void FilterLine::tell()
{
    m_count->setVisible(!m_filter->needle().isEmpty());
    m_count->setText(tr("%1 of %2").arg(m_filter->matches()).arg(m_filter->total()));
}

bool FilterLine::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_header && event->type() == QEvent::Resize)
        resize(m_header->width(), height());
    if (watched == m_view && event->type() == QEvent::KeyPress && !isHidden() && !m_filter->needle().isEmpty()
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        close();
        return true;
    }
    if (watched != m_edit || (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride))
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    const bool leaves = key == Qt::Key_Escape;
    const bool goes = key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter;
    if (!leaves && !goes)
        return QWidget::eventFilter(watched, event);
    event->accept();
    if (event->type() == QEvent::KeyPress && leaves)
        close();
    else if (event->type() == QEvent::KeyPress && (m_filter->needle().isEmpty() || m_filter->goToFirst()))
        m_view->setFocus(Qt::OtherFocusReason);
    return true;
}
