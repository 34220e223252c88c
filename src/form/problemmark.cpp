#include "problemmark.h"

#include "extensionfile/showntext.h"
#include "model/controller.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextDocument>
#include <QToolTip>

#include <utility>

namespace {

// In pixels.
constexpr int markSide = 14;
constexpr int gap = 3;

} // namespace

QString ProblemMark::reasons(PointTreeWidgetItem *node)
{
    const SourceDataManager *manager = Controller::instance()->sourceDataManager();
    // The answer for nearly every row, and asked for each that is painted.
    if (!node || !manager || manager->problems().all().isEmpty())
        return {};
    QStringList lines;
    const auto add = [&lines](const QString &text) {
        if (!text.isEmpty())
            lines.append(text);
    };
    add(manager->problems().reasons(node));
    if (node->isKind(QLatin1String("ExtPoint")) || node->isKind(QLatin1String("SubExtPoint"))) {
        const Definitions::Nodes attributes = Definitions::declarations(node);
        for (PointTreeWidgetItem *attribute : attributes) {
            const QString reasons = manager->problems().reasons(attribute);
            if (!reasons.isEmpty()) {
                add(QApplication::translate("ProblemMark", "Attribute %1, %2")
                        .arg(attribute->properties().text(QStringLiteral("key")), reasons));
            }
        }
    }
    return ExtensionFile::shown(lines.join(QLatin1Char('\n')));
}

QStyleOptionViewItem ProblemMark::paint(QPainter *painter, const QStyleOptionViewItem &option)
{
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);
    const QRect place = QStyle::alignedRect(option.direction, Qt::AlignRight | Qt::AlignVCenter,
        QSize(markSide, markSide), option.rect.adjusted(gap, 0, -gap, 0));
    style->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, option.widget).paint(painter, place);
    QStyleOptionViewItem left = option;
    const int taken = markSide + 2 * gap;
    if (option.direction == Qt::LeftToRight)
        left.rect.adjust(0, 0, -taken, 0);
    else
        left.rect.adjust(taken, 0, 0, 0);
    return left;
}

void ProblemMark::follow(QAbstractItemView *view)
{
    if (const SourceDataManager *manager = Controller::instance()->sourceDataManager()) {
        QObject::connect(
            &manager->problems(), &ProblemWatch::changed, view->viewport(), QOverload<>::of(&QWidget::update));
    }
}

ProblemDelegate::ProblemDelegate(QAbstractItemView *view, NodeAt nodeAt)
    : QStyledItemDelegate(view), m_nodeAt(std::move(nodeAt))
{
    ProblemMark::follow(view);
}

void ProblemDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const bool isMarked = index.column() == 0 && !ProblemMark::reasons(m_nodeAt(index)).isEmpty();
    QStyledItemDelegate::paint(painter, isMarked ? ProblemMark::paint(painter, option) : option, index);
}

bool ProblemDelegate::helpEvent(
    QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const QString reasons = index.column() == 0 ? ProblemMark::reasons(m_nodeAt(index)) : QString();
    if (event->type() != QEvent::ToolTip || reasons.isEmpty())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    // The cell's own tip is rich text or one line of plain text.
    const QString own = index.data(Qt::ToolTipRole).toString();
    QString text = reasons.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br/>"));
    if (!own.isEmpty())
        text = (Qt::mightBeRichText(own) ? own : own.toHtmlEscaped()) + QLatin1String("<br/>") + text;
    QToolTip::showText(event->globalPos(), QLatin1String("<p>") + text + QLatin1String("</p>"), view);
    return true;
}

void ProblemDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    option->textElideMode = m_elideMode;
}
