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

PointTreeWidgetItem *FormatFilling::build()
{
    const FormatSources::Nodes roots = m_sources.all();
    m_merges = roots.size() > 1;
    if (roots.isEmpty())
        return nullptr;
    m_root = copyOf(roots.first());
    if (!m_merges) {
        addChildren(m_root, roots.first());
        return m_root;
    }
    for (PointTreeWidgetItem *source : roots) {
        remember(source, m_root);
        if (source != roots.first())
            m_furtherRoots.insert(source);
    }
    for (PointTreeWidgetItem *source : roots) {
        if (source != roots.first())
            m_merged.insert(m_root, source);
        for (PointObject *object : source->children()) {
            PointTreeWidgetItem *child = object->item();
            if (!belongsTo(child, source))
                continue;
            if (!value(child, QStringLiteral("parent")).isEmpty())
                m_waiting.append(child);
            else
                addUnder(m_root, child);
        }
    }
    placeWaiting();
    // The row of the root says what it stands for, whoever says it.
    for (PointTreeWidgetItem *source : roots) {
        if (value(m_root, idKey).isEmpty() && !value(source, idKey).isEmpty()) {
            setRowText(m_root, 0, value(source, idKey));
            break;
        }
    }
    for (PointTreeWidgetItem *source : roots) {
        if (m_root->QTreeWidgetItem::text(1).isEmpty())
            setRowText(m_root, 1, labelOf(source).toString());
    }
    return m_root;
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

PointTreeWidgetItem *FormatFilling::copyOf(PointTreeWidgetItem *source)
{
    auto *row = new PointTreeWidgetItem(*source);
    label(row);
    if (m_merges) {
        m_rowOf.insert(source, row);
        if (m_root)
            remember(source, row);
    }
    return row;
}

void FormatFilling::addUnder(PointTreeWidgetItem *row, PointTreeWidgetItem *source)
{
    if (PointTreeWidgetItem *known = rowFor(source)) {
        mergeInto(known, source);
        return;
    }
    PointTreeWidgetItem *copy = copyOf(source);
    row->addChild(copy, false);
    row->QTreeWidgetItem::addChild(copy);
    if (row == m_root && isBar(copy) && !m_bars.contains(copy->kind().toLower()))
        m_bars.insert(copy->kind().toLower(), copy);
    addChildren(copy, source);
}

void FormatFilling::addChildren(PointTreeWidgetItem *row, PointTreeWidgetItem *source)
{
    for (PointObject *child : source->children()) {
        if (belongsTo(child, source))
            addUnder(row, child->item());
    }
}

void FormatFilling::mergeInto(PointTreeWidgetItem *row, PointTreeWidgetItem *source)
{
    m_merged.insert(row, source);
    remember(source, row);
    addChildren(row, source);
}

PointTreeWidgetItem *FormatFilling::rowFor(PointTreeWidgetItem *source) const
{
    if (source->link() != source) {
        if (PointTreeWidgetItem *row = m_rowOf.value(source->link()->item()))
            return row;
    }
    return isBar(source) && m_furtherRoots.contains(source->parentItem()) ? m_bars.value(source->kind().toLower())
                                                                          : nullptr;
}

void FormatFilling::remember(const PointTreeWidgetItem *source, PointTreeWidgetItem *row)
{
    const QString id = value(source, idKey);
    const QString name = (id.isEmpty() ? source->kind() : id).toLower();
    if (!name.isEmpty() && !m_named.contains(name))
        m_named.insert(name, row);
}

void FormatFilling::placeWaiting()
{
    // An entry may wait for a row that another waiting entry brings.
    bool placed = true;
    while (placed && !m_waiting.isEmpty()) {
        placed = false;
        const QVector<PointTreeWidgetItem *> waiting = std::exchange(m_waiting, {});
        for (PointTreeWidgetItem *source : waiting) {
            PointTreeWidgetItem *row = m_named.value(value(source, QStringLiteral("parent")).toLower());
            if (row) {
                addUnder(row, source);
                placed = true;
            } else {
                m_waiting.append(source);
            }
        }
    }
    const QVector<PointTreeWidgetItem *> orphans = std::exchange(m_waiting, {});
    for (PointTreeWidgetItem *source : orphans)
        addUnder(m_root, source);
}
