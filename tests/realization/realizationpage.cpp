#include "realizationpage.h"

#include "form/drops/tabledrop.h"
#include "propertybrowser/propertykeys.h"

#include <QCheckBox>
#include <QTreeWidgetItemIterator>

using namespace RealizationTesting;

namespace {

QString cellText(const QTableWidget *table, int row, int column)
{
    QWidget *cell = table->cellWidget(row, column);
    if (const auto *box = qobject_cast<QCheckBox *>(cell))
        return box->isChecked() ? s("[x]") : s("[ ]");
    const QTableWidgetItem *item = table->item(row, column);
    const QString text = item ? item->text() : s("-");
    if (const auto *button = qobject_cast<QToolButton *>(cell))
        return text + (button->icon().isNull() ? s("()") : s("(icon)"));
    return item && (item->flags() & Qt::ItemIsEditable) ? text + s(" editable") : text;
}

} // namespace

QStringList RealizationTesting::sheetLines(const QList<PropertyItem> &rows, bool forComparison)
{
    QStringList lines;
    for (const PropertyItem &row : rows) {
        const QVariant value = row.value();
        const QString text
            = value.type() == QVariant::StringList ? value.toStringList().join(QLatin1Char(',')) : value.toString();
        QString line = s("%1:%2=%3").arg(row.name()).arg(int(row.type())).arg(text);
        if (value.type() == QVariant::Int && !forComparison)
            line += s(" (int)");
        QStringList options;
        for (const PropertyItem::OptionItem &option : row.options())
            options.append(option.text == option.value ? option.value : option.value + s("/") + option.text);
        if (forComparison)
            options.sort();
        if (!options.isEmpty())
            line += s(" {%1}").arg(options.join(QLatin1Char(' ')));
        // A key that an attribute has just been given holds nothing, and an empty text later: neither restricts.
        const QString pattern = row.data(PropertyKey::RegExp).toString();
        if (!pattern.isEmpty())
            line += s(" /%1/").arg(pattern);
        const QString least = row.data(PropertyKey::Min).toString();
        const QString most = row.data(PropertyKey::Max).toString();
        if (!least.isEmpty() || !most.isEmpty())
            line += s(" %1..%2").arg(least, most);
        if (!row.isEditable())
            line += s(" read-only");
        if (forComparison)
            line += row.data(PropertyKey::Doubt).toString();
        lines.append(row.displayText() == row.name() ? line : s("label differs: ") + line);
    }
    return lines;
}

void Page::dropOnTable(Node *point) const
{
    const TableDrop::Outcome outcome = TableDrop::perform(point);
    if (outcome.record)
        Q_EMIT table()->addTableRealization(outcome.parent, outcome.record, outcome.isSubPoint);
    Q_EMIT table()->modified(true);
}

QStringList Page::lines(const QTreeWidget *tree)
{
    QStringList lines;
    for (QTreeWidgetItemIterator it(const_cast<QTreeWidget *>(tree)); *it; ++it) {
        QString line = (*it)->text(1).isEmpty() ? (*it)->text(0) : (*it)->text(0) + s("=") + (*it)->text(1);
        for (const QTreeWidgetItem *above = (*it)->parent(); above; above = above->parent())
            line.prepend(s("  "));
        lines.append(line);
    }
    return lines;
}

QStringList Page::lines(const QTableWidget *table)
{
    QStringList lines;
    for (int row = -1; row < table->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < table->columnCount(); ++column)
            cells.append(row < 0 ? table->horizontalHeaderItem(column)->text() : cellText(table, row, column));
        lines.append(cells.join(QLatin1Char('|')));
    }
    return lines;
}

void Page::open(bool scan, const QByteArray *bytes)
{
    manager = std::make_unique<SourceDataManager>();
    Controller::instance()->setSourceDataManager(manager.get());
    widget = std::make_unique<ExtPointWidget>();
    QObject::connect(
        widget.get(), &ExtPointWidget::modified, widget.get(), [this](bool flag) { modified += flag ? 1 : 1000; });
    if (!(bytes ? manager->load(path(), *bytes) : manager->load(path())))
        qFatal("not loaded");
    widget->reloadPages();
    if (scan) {
        manager->startScan(path());
        manager->completeScan();
    }
    showPage(1);
    widget->resize(1200, 800);
    widget->show();
    // Keys go where the focus is, and there is none in a window that is not active.
    widget->activateWindow();
    if (!QTest::qWaitForWindowActive(widget.get()))
        qFatal("not active");
    points()->expandAll();
}

void Page::collect(
    const QMenu *menu, const QString &prefix, const QString &choice, QStringList *offered, QAction **chosen)
{
    for (QAction *action : menu->actions()) {
        if (!action->isVisible())
            continue;
        const QString text = prefix + action->text();
        const bool enabled = action->isEnabled() && menu->isEnabled();
        offered->append((enabled ? QString() : s("-")) + text);
        if (enabled && text == choice)
            *chosen = action;
        if (action->menu() && enabled)
            collect(action->menu(), text + s(" > "), choice, offered, chosen);
    }
}
