#include "probe/itemquestions.h"

#include "probe/questions.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QIcon>
#include <QJsonArray>
#include <QScrollBar>
#include <QTreeView>

namespace {

/// The view that the request names, or the one in the list that has dropped down.
QAbstractItemView *viewOf(const QJsonObject &request)
{
    if (!request.value(QLatin1String("popup")).toBool())
        return qobject_cast<QAbstractItemView *>(Probe::find(request));
    const QWidget *popup = QApplication::activePopupWidget();
    return popup ? popup->findChild<QAbstractItemView *>() : nullptr;
}

QString lineOf(const QModelIndex &row)
{
    QStringList cells;
    for (int column = 0; column < row.model()->columnCount(row.parent()); ++column)
        cells.append(row.sibling(row.row(), column).data().toString());
    return cells.join(QLatin1String(" | "));
}

/// Empty for no icon.
QString middleOf(const QIcon &icon)
{
    constexpr int side = 16;
    if (icon.isNull() || !icon.name().isEmpty())
        return icon.name();
    const QImage image = icon.pixmap(side).toImage();
    return image.isNull() ? QStringLiteral("nothing") : image.pixelColor(image.rect().center()).name();
}

void addLines(
    QJsonArray *lines, QJsonArray *icons, const QAbstractItemModel &model, const QModelIndex &parent, int depth)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        lines->append(QString(depth * 4, QLatin1Char(' ')) + lineOf(index));
        icons->append(middleOf(index.data(Qt::DecorationRole).value<QIcon>()));
        addLines(lines, icons, model, index, depth + 1);
    }
}

/// What a cell shows: its widget's state where it has one to be ticked, else its text.
QString textOf(const QAbstractItemView *view, const QModelIndex &cell)
{
    const auto *button = qobject_cast<const QAbstractButton *>(view->indexWidget(cell));
    return button && button->isCheckable() ? Probe::valueOf(button) : cell.data().toString();
}

QString iconsInRow(const QAbstractItemView *view, int row)
{
    QStringList icons;
    for (int column = 0; column < view->model()->columnCount(); ++column)
        if (const auto *button
            = qobject_cast<const QAbstractButton *>(view->indexWidget(view->model()->index(row, column))))
            if (!button->isCheckable())
                icons.append(middleOf(button->icon()));
    return icons.join(QLatin1Char(' '));
}

QModelIndex childAt(const QAbstractItemModel &model, const QModelIndex &parent, const QJsonValue &step)
{
    if (step.isDouble())
        return model.index(step.toInt(), 0, parent);
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        if (index.data().toString() == step.toString())
            return index;
    }
    return {};
}

} // namespace

QJsonObject Probe::tree(const QJsonObject &request)
{
    const auto *view = viewOf(request);
    if (!view)
        return notFound(request);
    QJsonArray lines;
    QJsonArray icons;
    addLines(&lines, &icons, *view->model(), view->rootIndex(), 0);
    return { { QStringLiteral("lines"), lines }, { QStringLiteral("icons"), icons } };
}

QJsonObject Probe::rows(const QJsonObject &request)
{
    const auto *view = viewOf(request);
    if (!view)
        return notFound(request);
    return { { QStringLiteral("rows"), view->model()->rowCount(view->model()->index(0, 0)) } };
}

QJsonObject Probe::table(const QJsonObject &request)
{
    const auto *view = viewOf(request);
    if (!view)
        return notFound(request);
    const QAbstractItemModel &model = *view->model();
    QJsonArray rows;
    QJsonArray icons;
    for (int row = 0; row < model.rowCount(); ++row) {
        QJsonArray cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells.append(textOf(view, model.index(row, column)));
        rows.append(cells);
        icons.append(iconsInRow(view, row));
    }
    return {
        { QStringLiteral("rows"), rows },
        { QStringLiteral("icons"), icons },
    };
}

QJsonObject Probe::item(const QJsonObject &request)
{
    const auto *view = viewOf(request);
    if (!view)
        return notFound(request);
    QModelIndex index = view->rootIndex();
    const QJsonArray path = request.value(QLatin1String("path")).toArray();
    for (const QJsonValue &step : path) {
        index = childAt(*view->model(), index, step);
        if (!index.isValid())
            return error(QStringLiteral("no row \"%1\"").arg(step.toVariant().toString()));
    }
    const QModelIndex cell = index.sibling(index.row(), request.value(QLatin1String("column")).toInt());
    const QRect rect = view->visualRect(cell);
    if (rect.isEmpty())
        return error(QStringLiteral("the row is hidden or not expanded"));
    QJsonObject reply = place(view->viewport(), rect);
    reply.insert(QStringLiteral("above"), rect.center().y() < 0);
    reply.insert(QStringLiteral("below"), rect.center().y() >= view->viewport()->height());
    return reply;
}
