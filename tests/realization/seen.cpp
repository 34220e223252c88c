#include "seen.h"

#include "definition/defintionpagebuilder.h"
#include "realization/recordtable.h"
#include "realization/sheetpane.h"
#include "realizationpage.h"

#include <QSignalBlocker>
#include <QTableWidget>
#include <QToolButton>
#include <QTreeWidgetItemIterator>

#include <algorithm>

using namespace RealizationTesting;
using Node = PointTreeWidgetItem;

namespace {

QString line(const QStringList &words)
{
    return words.join(QLatin1Char('|')).replace(QLatin1Char('\n'), QLatin1String("\\n"));
}

QStringList rowsOf(const QTreeWidget *tree)
{
    QStringList lines;
    for (QTreeWidgetItemIterator it(const_cast<QTreeWidget *>(tree)); *it; ++it) {
        int depth = 0;
        for (const QTreeWidgetItem *above = (*it)->parent(); above; above = above->parent())
            ++depth;
        lines.append(QString(depth * 2, QLatin1Char(' '))
            + line({ (*it)->text(0), (*it)->text(1), (*it)->icon(0).isNull() ? QString() : s("icon") }));
    }
    return lines;
}

template <typename Sheet>
QStringList linesOf(const Sheet *sheet)
{
    return sheetLines(sheet->properties(), true);
}

/// A node in words. "type" is never written, and neither are the flags of a fresh node.
QString words(Node *node)
{
    QStringList properties;
    // A declaration may hold a key in two letter cases; the lower one is what counts, and what is read again.
    const bool declares = node->isKind(QLatin1String("ExtPoint")) || node->isKind(QLatin1String("SubExtPoint"));
    for (const PropertyHash::Entry &entry : node->properties()) {
        const QString lowered = entry.key.toLower();
        const bool isOutdone = declares && lowered != entry.key && node->properties().contains(lowered);
        if (lowered != QLatin1String("type") && !isOutdone)
            properties.append(lowered + s("=") + entry.value.toString());
    }
    properties.sort();
    return line({ node->kind(), node->pointId(), node->pluginId(), node->basePath(), node->hasFormat() ? s("f") : s(""),
        properties.join(QLatin1Char(';')) });
}

void appendNodes(const PointObject *node, int depth, QStringList *lines)
{
    for (PointObject *child : node->children()) {
        lines->append(QString(depth * 2, QLatin1Char(' ')) + words(child->item()));
        appendNodes(child, depth + 1, lines);
    }
}

QStringList model(Page &page)
{
    QStringList lines;
    const SourceDataManager &manager = *page.manager;
    lines << s("plugin ") + manager.pluginId() << words(manager.realizationRoot());
    appendNodes(manager.realizationRoot(), 0, &lines);
    lines << s("offered");
    appendNodes(manager.availablePointsRoot(), 0, &lines);
    for (const auto name :
        { NodeIndexes::Points, NodeIndexes::Targets, NodeIndexes::Realizations, NodeIndexes::Layouts }) {
        lines << s("index %1").arg(int(name));
        const QStringList keys = manager.indexes()[name].sortedKeys();
        for (const QString &key : keys) {
            for (Node *node : manager.indexes()[name].nodes(key))
                lines.append(key + s(" -> ") + words(node));
        }
    }
    return lines;
}

QStringList definitionSheets(Page &page)
{
    return QStringList { s("  basic") } + linesOf(page.basicInfo()) + Page::lines(page.attributes());
}

QStringList attributeSheets(Page &page)
{
    QStringList lines;
    if (!page.editInfo()->isHidden())
        lines += linesOf(page.editInfo());
    if (!page.find<QWidget>("enumGroup")->isHidden())
        lines += Page::lines(page.entries());
    for (const char *button : { "pushButton_add_attr", "pushButton_del_attr", "pushButton_add_enum",
             "pushButton_delete_enmu", "addPropertyButton" })
        lines.append(s(button) + (page.find<QWidget>(button)->isEnabled() ? s(" on") : s(" off")));
    return lines;
}

QStringList definitionPage(Page &page)
{
    QStringList lines { s("definitions") };
    QTreeWidget *tree = page.definitions();
    QTableWidget *attributes = page.attributes();
    QTableWidget *entries = page.entries();
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        // The text of the root is what was typed as its name until the file is opened again.
        lines.append((*it)->parent() ? (*it)->text(0) : s("root"));
        Q_EMIT tree->itemClicked(*it, 0);
        lines += definitionSheets(page) + attributeSheets(page);
        auto *builder = page.widget->defintionPageBuilder();
        const QSignalBlocker quiet(attributes);
        const QSignalBlocker quietEntries(entries);
        for (int row = 0; row < attributes->rowCount(); ++row) {
            attributes->setCurrentCell(row, 0);
            builder->onDefineTableItemClicked(attributes->item(row, 0));
            lines += attributeSheets(page);
            for (int entry = 0; entry < entries->rowCount() && !page.find<QWidget>("enumGroup")->isHidden(); ++entry) {
                entries->setCurrentCell(entry, 0);
                builder->onEnumTableItemClicked(entries->item(entry, 0));
                lines += attributeSheets(page);
            }
        }
    }
    Q_EMIT tree->itemClicked(tree->topLevelItem(0), 0);
    return lines;
}

QStringList sheetNow(Page &page)
{
    QStringList lines { page.sheet()->isEnabled() ? s("sheet") : s("no sheet") };
    if (page.sheet()->isEnabled())
        lines += linesOf(page.sheet());
    return lines;
}

QStringList offeredPoints(Page &page)
{
    QStringList lines { s("points") };
    lines += rowsOf(page.points());
    for (QTreeWidgetItemIterator it(page.points()); *it; ++it) {
        lines.append(s("point ") + (*it)->text(0));
        Q_EMIT page.points()->itemClicked(*it, 0);
        lines += Page::lines(page.table()) + sheetNow(page);
        for (int row = 0; row < page.table()->rowCount(); ++row) {
            Q_EMIT page.table()->itemClicked(page.table()->item(row, 0));
            lines += sheetNow(page);
            if (page.formats()) {
                for (QTreeWidgetItem *selected : page.formats()->selectedItems())
                    lines.append(s("    selected ") + selected->text(0));
            }
        }
    }
    return lines;
}

QStringList tabs(Page &page)
{
    QStringList lines { s("tabs") };
    // New ones stand at the end until the file is opened again.
    QStringList names;
    for (int i = 0; i < page.tabs()->count(); ++i)
        names.append(page.tabs()->widget(i)->objectName());
    std::sort(names.begin(), names.end());
    for (const QString &name : qAsConst(names)) {
        page.tabs()->setCurrentWidget(page.tabs()->findChild<QWidget *>(name));
        Q_EMIT page.tabs()->currentChanged(page.tabs()->currentIndex());
        lines.append(line({ name, page.tabs()->tabText(page.tabs()->currentIndex()),
            page.formats()->directDrop() ? s("direct") : s("recorded") }));
        lines += rowsOf(page.formats());
        for (QTreeWidgetItemIterator it(page.formats()); *it; ++it) {
            Q_EMIT page.formats()->itemClicked(*it, 0);
            lines += sheetNow(page);
            Node *row = Node::fromRow(*it);
            lines.append(s("    ")
                + line({ page.manager->ownRealizations().isForeign(row) ? s("foreign") : s("own"),
                    page.manager->definitions()
                        .childTypes(row->kind().toLower(), row->pointId())
                        .join(QLatin1Char(',')) }));
        }
    }
    return lines;
}

} // namespace

QStringList RealizationTesting::everything(Page &page)
{
    // In this order: looking stores what a click stores.
    QStringList lines = model(page);
    lines += definitionPage(page);
    // The last of them is the one in which a click on a record selects its entries.
    lines += tabs(page);
    lines += offeredPoints(page);
    return lines;
}

QStringList RealizationTesting::shownNow(Page &page)
{
    QStringList lines = sheetNow(page);
    if (page.formats())
        lines += rowsOf(page.formats());
    lines += Page::lines(page.table()) + definitionSheets(page);
    if (!page.editInfo()->isHidden())
        lines += attributeSheets(page);
    return lines;
}

QStringList RealizationTesting::shownAnew(Page &page)
{
    auto *sheet = page.builder()->findChild<SheetPane *>();
    sheet->showAfresh();
    QStringList lines = sheetNow(page);
    if (page.formats()) {
        page.builder()->formatTabCurrentChanged(page.tabs()->currentIndex());
        lines += rowsOf(page.formats());
    }
    auto *records = page.builder()->findChild<RecordTable *>();
    records->showRecords(records->point());
    lines += Page::lines(page.table());

    auto *definitions = page.widget->defintionPageBuilder();
    QTableWidget *attributes = page.attributes();
    QTableWidget *entries = page.entries();
    const bool hasSheet = !page.editInfo()->isHidden();
    const bool hasEntry = page.find<QPushButton>("pushButton_delete_enmu")->isEnabled();
    const int row = attributes->currentRow();
    const int entry = entries->currentRow();
    definitions->onDefineTreeItemClicked(nullptr, 0);
    lines += definitionSheets(page);
    if (hasSheet) {
        const QSignalBlocker quiet(attributes);
        const QSignalBlocker quietEntries(entries);
        attributes->setCurrentCell(row, 0);
        definitions->onDefineTableItemClicked(attributes->item(row, 0));
        entries->setCurrentCell(entry, 0);
        if (hasEntry)
            definitions->onEnumTableItemClicked(entries->item(entry, 0));
        lines += attributeSheets(page);
    }
    return lines;
}
