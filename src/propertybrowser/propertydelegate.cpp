#include "propertybrowser/propertydelegate.h"

#include "extensionfile/showntext.h"
#include "propertybrowser/editors/propertyeditor.h"
#include "propertybrowser/invalidmark.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPainter>
#include <QSpinBox>
#include <QToolTip>

namespace {

constexpr int ArrowSize = 9;

/// Of a row that any of the common editors fits into.
int rowHeight(const QFont &font)
{
    QLineEdit line;
    QComboBox box;
    QSpinBox number;
    int height = 0;
    for (QWidget *editor :
        { static_cast<QWidget *>(&line), static_cast<QWidget *>(&box), static_cast<QWidget *>(&number) }) {
        editor->setFont(font);
        height = qMax(height, editor->sizeHint().height());
    }
    return height;
}

} // namespace

void PropertyDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem cell = option;
    const bool dropsDown = index.data(DropsDownRole).toBool() && !index.data(StandingRole).toBool();
    // The focus is on the row, not on a cell of it.
    cell.state &= ~QStyle::State_HasFocus;
    if (index.data(StandingRole).toBool()) {
        // Only the background: the editor is wider or narrower than the text under it.
        QStyleOptionViewItem blank = cell;
        initStyleOption(&blank, index);
        blank.text.clear();
        blank.icon = QIcon();
        const QStyle *style = cell.widget->style();
        style->drawControl(QStyle::CE_ItemViewItem, &blank, painter, cell.widget);
    } else {
        QStyledItemDelegate::paint(painter, cell, index);
    }

    const QPalette &palette = option.palette;
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const QPalette::ColorGroup group = option.state.testFlag(QStyle::State_Active) && option.widget->hasFocus()
        ? QPalette::Active
        : QPalette::Inactive;
    const QColor ink = palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    if (dropsDown) {
        QStyleOption arrow;
        arrow.rect = QStyle::alignedRect(option.direction, Qt::AlignRight | Qt::AlignVCenter,
            QSize(ArrowSize, ArrowSize), option.rect.adjusted(4, 0, -4, 0));
        arrow.palette = palette;
        for (const QPalette::ColorRole role : { QPalette::ButtonText, QPalette::WindowText, QPalette::Text }) {
            arrow.palette.setColor(role, ink);
        }
        arrow.state = QStyle::State_Enabled;
        option.widget->style()->drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrow, painter, option.widget);
    }
    if (!index.data(ProblemRole).toString().isEmpty()) {
        const QColor ground = palette.color(group, selected ? QPalette::Highlight : QPalette::Base);
        InvalidMark::paintWave(painter, QRectF(option.rect).adjusted(4, 0, dropsDown ? -ArrowSize - 6 : -4, -3),
            InvalidMark::color(ground, ink));
    }
    painter->save();
    painter->setPen(palette.color(QPalette::Midlight));
    painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
    if (index.column() == 0) {
        painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
    }
    painter->restore();
}

QSize PropertyDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QSize size = QStyledItemDelegate::sizeHint(option, index);
    if (m_rowHeight == 0) {
        m_rowHeight = rowHeight(option.widget->font());
    }
    return { size.width(), qMax(option.fontMetrics.height() + 2, m_rowHeight) };
}

void PropertyDelegate::updateEditorGeometry(
    QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex & /*index*/) const
{
    // The whole cell, beside no icon, and over the rows around it where it takes more.
    QRect place = option.rect;
    if (const auto *row = qobject_cast<const PropertyEditor *>(editor)) {
        place.setHeight(qMax(place.height(), row->fullHeight()));
        const int room = editor->parentWidget()->height();
        const bool isSeen = option.rect.top() >= 0 && option.rect.bottom() <= room;
        if (isSeen && place.bottom() >= room) {
            place.moveTop(qMax(0, room - place.height()));
        }
    }
    editor->setGeometry(place);
}

bool PropertyDelegate::helpEvent(
    QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option, const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    QStringList lines;
    const bool isCut = QStyledItemDelegate::sizeHint(option, index).width() > option.rect.width();
    const QString whole = index.data(Qt::AccessibleTextRole).toString();
    if (isCut || whole != index.data(Qt::DisplayRole).toString()) {
        lines.append(whole.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")));
    }
    const QString problem = ExtensionFile::shown(index.data(ProblemRole).toString());
    for (const QString &said : { problem, ExtensionFile::shown(index.data(BorrowedRole).toString()),
             ExtensionFile::shown(index.data(HelpRole).toString()) }) {
        if (!said.isEmpty()) {
            lines.append(said.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")));
        }
    }
    QToolTip::showText(event->globalPos(), lines.join(QLatin1String("<br>")), view);
    return true;
}

void PropertyDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (index.data(BorrowedRole).toString().isEmpty()) {
        return;
    }
    option->font.setItalic(true);
    option->fontMetrics = QFontMetrics(option->font);
    for (const QPalette::ColorGroup group : { QPalette::Active, QPalette::Inactive }) {
        const QColor ground = option->palette.color(group, QPalette::Base);
        const QColor ink = option->palette.color(group, QPalette::Text);
        option->palette.setColor(group, QPalette::Text, InvalidMark::paler(ground, ink));
    }
}
