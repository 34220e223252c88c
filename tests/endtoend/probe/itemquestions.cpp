#include "probe/itemquestions.h"

#include "probe/questions.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QJsonArray>

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

void addLines(QJsonArray *lines, const QAbstractItemModel &model, const QModelIndex &parent, int depth)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        lines->append(QString(depth * 4, QLatin1Char(' ')) + lineOf(index));
        addLines(lines, model, index, depth + 1);
    }
}

QJsonArray pathOf(QModelIndex index)
{
    QJsonArray path;
    for (; index.isValid(); index = index.parent())
        path.prepend(index.sibling(index.row(), 0).data().toString());
    return path;
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
    addLines(&lines, *view->model(), view->rootIndex(), 0);
    return { { QStringLiteral("lines"), lines }, { QStringLiteral("current"), pathOf(view->currentIndex()) } };
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
    QJsonArray headers;
    for (int column = 0; column < model.columnCount(); ++column)
        headers.append(model.headerData(column, Qt::Horizontal).toString());
    QJsonArray rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QJsonArray cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells.append(model.index(row, column).data().toString());
        rows.append(cells);
    }
    return {
        { QStringLiteral("headers"), headers },
        { QStringLiteral("rows"), rows },
        { QStringLiteral("current"), view->currentIndex().row() },
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
    reply.insert(QStringLiteral("text"), cell.data().toString());
    reply.insert(QStringLiteral("selected"), view->selectionModel()->isSelected(cell));
    return reply;
}
