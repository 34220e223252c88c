#include "formatfilling.h"

#include "extensionfile/limits.h"
#include "model/controller.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"
#include "realizationicons.h"

#include <algorithm>
#include <utility>

namespace {

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
    if (row->text(column) != text)
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
    if (Row *added = addOne(row, source))
        addChildren(added, source);
}

FormatFilling::Row *FormatFilling::addOne(Row *row, PointTreeWidgetItem *source)
{
    if (Row *known = rowFor(source)) {
        known->further.append(source);
        remember(source, known);
        return known;
    }
    if (waits(source)) {
        m_waiting.append({ row, source });
        return nullptr;
    }
    if (row->depth >= ExtensionFile::Limits().maximumDepth)
        row = m_root;
    Row *added = makeRow(source);
    added->depth = row->depth + 1;
    row->children.append(added);
    if (row == m_root && isBar(source) && !m_bars.contains(source->kind().toLower()))
        m_bars.insert(source->kind().toLower(), added);
    return added;
}

void FormatFilling::addChildren(Row *row, PointTreeWidgetItem *source)
{
    struct Open
    {
        Row *row;
        PointTreeWidgetItem *above;
        PointTreeWidgetItem *source;
    };
    // Chains of "parent" are deeper than a stack carries.
    QVector<Open> open; // the next one is the last
    const auto push = [&open](Row *under, PointTreeWidgetItem *above) {
        for (int i = above->children().size() - 1; i >= 0; --i)
            open.append({ under, above, above->children().at(i)->item() });
    };
    push(row, source);
    while (!open.isEmpty()) {
        const Open next = open.takeLast();
        const bool isInRoot = m_merges && (next.above == m_root->source || m_furtherRoots.contains(next.above));
        if (!belongsTo(next.source, next.above))
            continue;
        if (isInRoot && !value(next.source, parentKey).isEmpty())
            m_waiting.append({ nullptr, next.source });
        else if (Row *added = addOne(next.row, next.source))
            push(added, next.source);
    }
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
    const auto enter = [row](QHash<QString, Row *> *rows, const QString &name) {
        if (!rows->contains(name))
            rows->insert(name, row);
    };
    const QString id = value(source, idKey);
    if (id.isEmpty()) {
        enter(&m_byKind, source->kind().toLower());
    } else {
        enter(&m_byId, id);
        enter(&m_byFoldedId, id.toLower());
    }
}

FormatFilling::Row *FormatFilling::rowNamed(const QString &parent, By by) const
{
    if (by == By::Kind)
        return m_byKind.value(parent.toLower());
    Row *row = m_byId.value(parent);
    return row ? row : m_byFoldedId.value(parent.toLower());
}

bool FormatFilling::placeSome(By by)
{
    bool placed = false;
    const QVector<Waiting> waiting = std::exchange(m_waiting, {});
    for (const Waiting &entry : waiting) {
        Row *row = entry.above ? entry.above : rowNamed(value(entry.source, parentKey), by);
        if (row && !waits(entry.source)) {
            addUnder(row, entry.source);
            placed = true;
        } else {
            m_waiting.append(entry);
        }
    }
    return placed;
}

void FormatFilling::placeWaiting()
{
    // What waits may wait for a row that something else brings that waits as well.
    while (!m_waiting.isEmpty()) {
        if (placeSome(By::Id) || placeSome(By::Kind))
            continue;
        // Those that nobody waiting can help stay under the root.
        QHash<QString, PointTreeWidgetItem *> toCome;
        for (const Waiting &entry : qAsConst(m_waiting)) {
            if (!waits(entry.source))
                toCome.insert(value(entry.source, idKey).toLower(), entry.source);
        }
        const auto awaited
            = [&toCome](const PointTreeWidgetItem *source) { return toCome.value(value(source, parentKey).toLower()); };
        const QVector<Waiting> waiting = std::exchange(m_waiting, {});
        PointTreeWidgetItem *first = nullptr;
        for (const Waiting &entry : waiting) {
            if (!waits(entry.source) && !awaited(entry.source)) {
                addUnder(m_root, entry.source);
                continue;
            }
            m_waiting.append(entry);
            if (!first && !waits(entry.source))
                first = entry.source;
        }
        if (m_waiting.size() < waiting.size())
            continue;
        if (!first)
            return;
        // Of those that wait for each other the last one stays, and the others come under it.
        QSet<const PointTreeWidgetItem *> ring;
        while (!ring.contains(awaited(first))) {
            ring.insert(first);
            first = awaited(first);
        }
        m_waiting.erase(std::find_if(
            m_waiting.begin(), m_waiting.end(), [&](const Waiting &entry) { return entry.source == first; }));
        addUnder(m_root, first);
    }
}

QVector<PointTreeWidgetItem *> FormatFilling::placedUnder(PointTreeWidgetItem *entry)
{
    QVector<PointTreeWidgetItem *> found;
    const OwnRealizations realizations = Controller::instance()->ownRealizations();
    for (PointTreeWidgetItem *root = entry; root; root = root->parentItem()) {
        if (!OwnRealizations::isRoot(root))
            continue;
        for (const QString &name : { value(root, idKey), value(root, targetKey) }) {
            FormatSources sources = FormatSources::of(name);
            sources.linkSiblings();
            const FormatPlan plan = FormatFilling(sources).plan();
            for (const FormatPlan::Row &row : plan.rows) {
                // Where a sibling's namesake stands for the same row, that may have been meant.
                if (row.source != entry || !row.further.isEmpty())
                    continue;
                for (const FormatPlan::Row *below : row.children) {
                    PointTreeWidgetItem *source = below->source;
                    // What stands there for that reason, and not as a child of the entry itself.
                    if (source->parentItem() != entry && realizations.isOwn(source)
                        && !value(source, parentKey).isEmpty() && !found.contains(source))
                        found.append(source);
                }
            }
        }
    }
    return found;
}
