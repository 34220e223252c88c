#include "formatfilling.h"

#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "realizationicons.h"

#include <utility>

namespace {

const QString idKey = QStringLiteral("id");
const QString iconKey = QStringLiteral("icon");

QString value(const PointTreeWidgetItem *node, const QString &key)
{
    return node->properties().text(key);
}

/// "text" when the node has it, else "title"; null when it has neither.
QVariant labelOf(const PointTreeWidgetItem *node)
{
    const QVariant text = node->properties().value(QStringLiteral("text"));
    return text.isNull() ? node->properties().value(QStringLiteral("title")) : text;
}

bool isBar(const PointTreeWidgetItem *node)
{
    return node->isKind(QLatin1String("menubar")) || node->isKind(QLatin1String("toolbars"));
}

/// A node that was moved deeper can still stand in the list that it came from; it shows only where it belongs.
bool belongsTo(const PointObject *child, const PointObject *parent)
{
    return child->parent() == parent;
}

void setRowText(PointTreeWidgetItem *row, int column, const QString &text)
{
    if (row->QTreeWidgetItem::text(column) != text)
        row->QTreeWidgetItem::setText(column, text);
}

} // namespace

FormatFilling::FormatFilling(const FormatSources &sources) : m_sources(sources) { }

FormatPlan FormatFilling::plan()
{
    const FormatSources::Nodes roots = m_sources.all();
    m_merges = roots.size() > 1;
    if (roots.isEmpty())
        return {};
    m_root = makeRow(roots.first());
    if (!m_merges) {
        addChildren(m_root, roots.first());
        return std::move(m_plan);
    }
    for (PointTreeWidgetItem *source : roots) {
        remember(source, m_root);
        if (source != roots.first()) {
            m_furtherRoots.insert(source);
            m_root->further.append(source);
        }
    }
    for (PointTreeWidgetItem *source : roots)
        addChildren(m_root, source);
    placeWaiting();
    // The row of the root says what it stands for, whoever says it.
    for (PointTreeWidgetItem *source : roots) {
        if (m_plan.rootId.isEmpty())
            m_plan.rootId = value(source, idKey);
        if (m_plan.rootLabel.isEmpty())
            m_plan.rootLabel = labelOf(source).toString();
    }
    return std::move(m_plan);
}

void FormatFilling::label(PointTreeWidgetItem *row)
{
    const QString id = value(row, idKey);
    setRowText(row, 0, id.isEmpty() ? row->kind() : id);
    QVariant text = labelOf(row);
    QString iconPath = value(row, iconKey);
    const PointTreeWidgetItem *iconOwner = row;
    if (text.isNull() || iconPath.isEmpty()) {
        if (PointTreeWidgetItem *record = Controller::instance()->ownRealizations().anyRecord(id)) {
            if (text.isNull())
                text = labelOf(record);
            if (iconPath.isEmpty() && row->properties().value(iconKey).isNull()) {
                iconPath = value(record, iconKey);
                iconOwner = record;
            }
        }
    }
    setRowText(row, 1, text.toString());
    const QIcon icon = iconPath.isEmpty() ? QIcon() : RealizationIcons::icon(iconPath, iconOwner->basePath());
    if (!icon.isNull() || !row->QTreeWidgetItem::icon(0).isNull())
        row->QTreeWidgetItem::setIcon(0, icon);
}

FormatFilling::Row *FormatFilling::makeRow(PointTreeWidgetItem *source)
{
    m_plan.rows.emplace_back();
    Row *row = &m_plan.rows.back();
    row->source = source;
    if (m_merges) {
        m_rowOf.insert(source, row);
        if (m_root)
            remember(source, row);
    }
    return row;
}

void FormatFilling::addUnder(Row *row, PointTreeWidgetItem *source)
{
    if (Row *known = rowFor(source)) {
        mergeInto(known, source);
        return;
    }
    if (waits(source)) {
        m_waiting.append({ row, source });
        return;
    }
    Row *added = makeRow(source);
    row->children.append(added);
    if (row == m_root && isBar(source) && !m_bars.contains(source->kind().toLower()))
        m_bars.insert(source->kind().toLower(), added);
    addChildren(added, source);
}

void FormatFilling::addChildren(Row *row, PointTreeWidgetItem *source)
{
    const bool isRoot = m_merges && (source == m_root->source || m_furtherRoots.contains(source));
    for (PointObject *object : source->children()) {
        PointTreeWidgetItem *child = object->item();
        if (!belongsTo(child, source))
            continue;
        if (isRoot && !value(child, QStringLiteral("parent")).isEmpty())
            m_waiting.append({ nullptr, child });
        else
            addUnder(row, child);
    }
}

void FormatFilling::mergeInto(Row *row, PointTreeWidgetItem *source)
{
    row->further.append(source);
    remember(source, row);
    addChildren(row, source);
}

bool FormatFilling::waits(const PointTreeWidgetItem *source) const
{
    return m_merges && m_sources.mirrorsOwn(source) && !m_rowOf.contains(source->link()->item());
}

FormatFilling::Row *FormatFilling::rowFor(PointTreeWidgetItem *source) const
{
    if (source->link() != source) {
        if (Row *row = m_rowOf.value(source->link()->item()))
            return row;
    }
    return isBar(source) && m_furtherRoots.contains(source->parentItem()) ? m_bars.value(source->kind().toLower())
                                                                          : nullptr;
}

void FormatFilling::remember(const PointTreeWidgetItem *source, Row *row)
{
    const QString id = value(source, idKey);
    const QString name = (id.isEmpty() ? source->kind() : id).toLower();
    if (!name.isEmpty() && !m_named.contains(name))
        m_named.insert(name, row);
}

void FormatFilling::placeWaiting()
{
    // What waits may wait for a row that something else brings that waits as well.
    const auto place = [this] {
        bool placed = false;
        const QVector<Waiting> waiting = std::exchange(m_waiting, {});
        for (const Waiting &entry : waiting) {
            Row *row = entry.above;
            if (!row)
                row = m_named.value(value(entry.source, QStringLiteral("parent")).toLower());
            if (row && !waits(entry.source)) {
                addUnder(row, entry.source);
                placed = true;
            } else {
                m_waiting.append(entry);
            }
        }
        return placed;
    };
    while (!m_waiting.isEmpty()) {
        if (place())
            continue;
        // Nobody brings what they wait for: own entries first, since those that mirror them wait for nothing else.
        const QVector<Waiting> orphans = std::exchange(m_waiting, {});
        for (const Waiting &entry : orphans) {
            if (waits(entry.source))
                m_waiting.append(entry);
            else
                addUnder(m_root, entry.source);
        }
        if (m_waiting.size() == orphans.size())
            return;
    }
}
