#include "samples/sample.h"

#include "form/realizationtablewidget.h"
#include "form/realizationtreewidget.h"
#include "model/pointtreewidgetitem.h"
#include "openedproduct.h"
#include "watchedapplication.h"

#include <QCheckBox>
#include <QJsonArray>
#include <QTabWidget>
#include <QTableWidget>
#include <QToolButton>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace {

const QString idlePoint = QStringLiteral("bench.views.idle");
const QString fullPoint = QStringLiteral("bench.views.records");
constexpr int columns = 5;
constexpr int iconColumn = 2;
constexpr int boxColumn = 4;

bool openViews(OpenedProduct *product, const QJsonObject &arguments)
{
    if (!product->open(arguments.value(QLatin1String("file")).toString()) || !product->becomesActive())
        return false;
    product->startScan();
    product->waitForScan();
    return true;
}

void clickPoint(const OpenedProduct &product, const QString &id)
{
    auto *points = product.find<RealizationTreeWidget>("realizationTree");
    OpenedProduct::click(points, OpenedProduct::pointRow(points, id));
}

/// The texts of a table, row by row.
QVector<QStringList> textsOf(const QTableWidget *table)
{
    QVector<QStringList> texts;
    for (int row = 0; row < table->rowCount(); ++row) {
        QStringList line;
        for (int column = 0; column < columns; ++column)
            line.append(table->item(row, column) ? table->item(row, column)->text() : QString());
        texts.append(line);
    }
    return texts;
}

void fill(QTableWidget *table, const QVector<QStringList> &texts)
{
    table->setRowCount(texts.size());
    for (int row = 0; row < texts.size(); ++row) {
        for (int column = 0; column < columns; ++column) {
            if (column == iconColumn)
                table->setCellWidget(row, column, new QToolButton);
            else if (column == boxColumn)
                table->setCellWidget(row, column, new QCheckBox);
            else
                table->setItem(row, column, new QTableWidgetItem(texts.at(row).at(column)));
        }
    }
}

struct TreeLine
{
    int depth;
    QStringList texts;
};

QVector<TreeLine> linesOf(QTreeWidget *tree)
{
    QVector<TreeLine> lines;
    for (QTreeWidgetItemIterator row(tree); *row; ++row) {
        int depth = 0;
        for (const QTreeWidgetItem *above = (*row)->parent(); above; above = above->parent())
            ++depth;
        lines.append({ depth, { (*row)->text(0), (*row)->text(1) } });
    }
    return lines;
}

void fill(QTreeWidget *tree, const QVector<TreeLine> &lines)
{
    QVector<QTreeWidgetItem *> open;
    for (const TreeLine &line : lines) {
        open.resize(line.depth);
        auto *row = line.depth ? new QTreeWidgetItem(open.last(), line.texts) : new QTreeWidgetItem(tree, line.texts);
        open.append(row);
    }
    tree->expandAll();
}

void showBare(QWidget *view, const QWidget *like)
{
    view->resize(like->size());
    view->show();
    WatchedApplication::settle();
}

} // namespace

QJsonObject Samples::click(const QJsonObject &arguments)
{
    WatchedApplication *application = WatchedApplication::instance();
    OpenedProduct product;
    if (!openViews(&product, arguments))
        return failure(QStringLiteral("the product can't be opened"));
    auto *records = product.find<RealizationTableWidget>("realizTable");
    clickPoint(product, fullPoint);
    WatchedApplication::settle();
    const QVector<QStringList> texts = textsOf(records);
    if (texts.size() != arguments.value(QLatin1String("records")).toInt() || records->columnCount() != columns)
        return failure(QStringLiteral("%1 records are shown").arg(texts.size()));
    QTableWidget bare(0, columns);
    showBare(&bare, records);

    QJsonArray ours;
    QJsonArray plain;
    for (int round = 0; round < arguments.value(QLatin1String("rounds")).toInt(); ++round) {
        clickPoint(product, idlePoint);
        bare.setRowCount(0);
        WatchedApplication::settle();
        ours.append(application->untilPainted([&]() -> const QWidget * {
            clickPoint(product, fullPoint);
            return records->viewport();
        }));
        WatchedApplication::settle();
        plain.append(application->untilPainted([&]() -> const QWidget * {
            fill(&bare, texts);
            return bare.viewport();
        }));
        if (records->rowCount() != bare.rowCount())
            return failure(QStringLiteral("%1 rows beside %2").arg(records->rowCount()).arg(bare.rowCount()));
    }
    return { { QStringLiteral("ours"), ours }, { QStringLiteral("bare"), plain } };
}

QJsonObject Samples::tab(const QJsonObject &arguments)
{
    WatchedApplication *application = WatchedApplication::instance();
    OpenedProduct product;
    if (!openViews(&product, arguments))
        return failure(QStringLiteral("the product can't be opened"));
    auto *tabs = product.find<QTabWidget>("formatTab");
    auto *large = product.find<QWidget>("bench.views.large");
    auto *small = product.find<QWidget>("bench.views.small");
    // Formats are shown beside a point that has any.
    clickPoint(product, idlePoint);
    tabs->setCurrentWidget(large);
    WatchedApplication::settle();
    auto *formats = product.find<RealizationTreeWidget>("formatTree");
    const QVector<TreeLine> lines = linesOf(formats);
    // And the root.
    if (lines.size() != arguments.value(QLatin1String("items")).toInt() + 1)
        return failure(QStringLiteral("%1 rows are shown").arg(lines.size()));
    QTreeWidget bare;
    bare.setColumnCount(2);
    showBare(&bare, formats);

    QJsonArray ours;
    QJsonArray plain;
    for (int round = 0; round < arguments.value(QLatin1String("rounds")).toInt(); ++round) {
        tabs->setCurrentWidget(small);
        bare.clear();
        WatchedApplication::settle();
        ours.append(application->untilPainted([&]() -> const QWidget * {
            tabs->setCurrentWidget(large);
            return formats->viewport();
        }));
        WatchedApplication::settle();
        plain.append(application->untilPainted([&]() -> const QWidget * {
            fill(&bare, lines);
            return bare.viewport();
        }));
        if (linesOf(formats).size() != linesOf(&bare).size())
            return failure(QStringLiteral("the trees are not alike"));
    }
    return { { QStringLiteral("ours"), ours }, { QStringLiteral("bare"), plain } };
}
