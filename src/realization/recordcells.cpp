#include "recordcells.h"

#include "extensionfile/showntext.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QTextDocument>
#include <QToolButton>

namespace {

/// Keeps a text of any length, as Qt::EditRole, and shows the beginning of a very long one.
class Cell final : public QTableWidgetItem
{
public:
    [[nodiscard]] QVariant data(int role) const override
    {
        const QVariant value = QTableWidgetItem::data(role);
        return role == Qt::DisplayRole ? ExtensionFile::shown(value.toString()) : value;
    }
};

/// A check box in the middle of its cell; the style would put it at the edge.
class CentredBox final : public QCheckBox
{
public:
    using QCheckBox::QCheckBox;

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QStyleOptionButton option;
        initStyleOption(&option);
        const QSize size = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this).size();
        option.rect = QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, size, rect());
        QStylePainter(this).drawPrimitive(QStyle::PE_IndicatorCheckBox, option);
    }
};

/// Leaves out the texts that have a widget over them.
class CellDelegate final : public QStyledItemDelegate
{
public:
    explicit CellDelegate(QTableWidget *table) : QStyledItemDelegate(table), m_table(table) { }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (m_table->indexWidget(index))
            option->text.clear();
    }

private:
    QTableWidget *m_table;
};

/// The widget in the cell when it is of this kind, else a new one in its place. The mouse reaches through it, so that
/// its cell selects and drags like any other.
template <typename Widget>
Widget *widgetAt(QTableWidget *table, int row, int column)
{
    auto *widget = dynamic_cast<Widget *>(table->cellWidget(row, column));
    if (widget)
        return widget;
    widget = new Widget;
    widget->setFocusPolicy(Qt::NoFocus);
    widget->setAttribute(Qt::WA_TransparentForMouseEvents);
    table->setCellWidget(row, column, widget);
    return widget;
}

} // namespace

void RecordCells::prepare(QTableWidget *table)
{
    // In pixels, above and below: room for the icon's button and for the text.
    constexpr int margin = 4;
    table->setItemDelegate(new CellDelegate(table));
    table->setIconSize({ iconSide, iconSide });
    table->setWordWrap(false);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setContextMenuPolicy(Qt::CustomContextMenu);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setTabKeyNavigation(false);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(qMax(iconSide, table->fontMetrics().height()) + 2 * margin);
    table->horizontalHeader()->setStretchLastSection(false);
    table->horizontalHeader()->setHighlightSections(false);
}

void RecordCells::setText(QTableWidget *table, int row, int column, const QString &text, const QString &toolTip)
{
    QTableWidgetItem *cell = table->item(row, column);
    if (!cell) {
        cell = new Cell;
        cell->setFlags(cell->flags() & ~Qt::ItemIsEditable);
        table->setItem(row, column, cell);
    }
    cell->setText(text);
    // What a file says is never taken for markup.
    cell->setToolTip(toolTip.isEmpty() ? QString() : Qt::convertFromPlainText(toolTip, Qt::WhiteSpaceNormal));
    if (table->cellWidget(row, column))
        table->removeCellWidget(row, column);
}

void RecordCells::setNumber(QTableWidget *table, int row, int column, int number, const QString &toolTip)
{
    setText(table, row, column, QString::number(number), toolTip);
    table->item(row, column)->setTextAlignment(Qt::AlignCenter);
}

void RecordCells::setIcon(QTableWidget *table, int row, int column, const QIcon &icon, const QString &accessibleName)
{
    auto *button = widgetAt<QToolButton>(table, row, column);
    button->setAutoRaise(true);
    button->setIconSize({ iconSide, iconSide });
    button->setIcon(icon);
    button->setAccessibleName(accessibleName);
}

void RecordCells::setBox(QTableWidget *table, int row, int column, bool ticked, const QString &accessibleName)
{
    auto *box = widgetAt<CentredBox>(table, row, column);
    box->setEnabled(false);
    box->setChecked(ticked);
    box->setAccessibleName(accessibleName);
}
