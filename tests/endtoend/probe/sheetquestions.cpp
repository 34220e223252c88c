#include "probe/sheetquestions.h"

#include "probe/questions.h"

#include <QJsonArray>
#include <QLabel>
#include <QTreeView>

namespace {

struct Row
{
    QString name;
    QString value;
    bool enabled = true;
    const QWidget *widget = nullptr;
    QRect part;
};

QList<Row> rowsOfTree(const QTreeView *view)
{
    QList<Row> rows;
    const QAbstractItemModel &model = *view->model();
    for (int i = 0; i < model.rowCount(); ++i) {
        const QModelIndex value = model.index(i, 1);
        Row row { model.index(i, 0).data().toString(), value.data(Qt::AccessibleTextRole).toString(), true,
            view->viewport(), view->visualRect(value) };
        if (const QWidget *editor = view->indexWidget(value)) {
            const QWidget *inner = editor->focusProxy() ? editor->focusProxy() : editor;
            row.value = Probe::valueOf(inner);
            row.enabled = inner->isEnabled();
            row.widget = inner;
            row.part = inner->rect();
        }
        rows.append(row);
    }
    return rows;
}

QList<Row> rowsOfBox(const QWidget *sheet)
{
    QList<Row> rows;
    const auto labels = sheet->findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        // The rows that were shown before may be waiting for their deletion, hidden.
        if (!label->buddy() || !label->isVisibleTo(sheet))
            continue;
        const QWidget *editor = label->buddy();
        const QWidget *inner = editor->focusProxy() ? editor->focusProxy() : editor;
        rows.append(
            { Probe::withoutMnemonic(label->text()), Probe::valueOf(inner), inner->isEnabled(), inner, inner->rect() });
    }
    return rows;
}

QList<Row> rowsOf(const QWidget *sheet)
{
    const auto *view = sheet->findChild<QTreeView *>();
    return view ? rowsOfTree(view) : rowsOfBox(sheet);
}

} // namespace

QJsonObject Probe::sheet(const QJsonObject &request)
{
    const QWidget *found = find(request);
    if (!found)
        return notFound(request);
    QJsonArray reply;
    const QList<Row> rows = rowsOf(found);
    for (const Row &row : rows)
        reply.append(QJsonObject { { QStringLiteral("name"), row.name }, { QStringLiteral("value"), row.value },
            { QStringLiteral("enabled"), row.enabled } });
    return { { QStringLiteral("rows"), reply } };
}

QJsonObject Probe::sheetRow(const QJsonObject &request)
{
    const QWidget *found = find(request);
    if (!found)
        return notFound(request);
    const QString name = request.value(QLatin1String("row")).toString();
    const QList<Row> rows = rowsOf(found);
    for (const Row &row : rows) {
        if (row.name != name)
            continue;
        QJsonObject reply = Probe::place(row.widget, row.part);
        reply.insert(QStringLiteral("value"), row.value);
        return reply;
    }
    return error(QStringLiteral("no row \"%1\"").arg(name));
}
