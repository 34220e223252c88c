#include "nodeclipboard.h"

#include "form/drops/entrymove.h"
#include "formattree.h"
#include "model/controller.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScopedValueRollback>

#include <memory>

namespace {

using What = NodeClipboard::What;

/// A node as the tree would drag it: for an entry the row that shows it or, where the tab shows none, a row of the same
/// sort that stands nowhere yet. It goes again unless the drop has given it a place.
class Dragged final
{
public:
    Dragged(What what, PointTreeWidgetItem *node, const FormatTree &formats) : m_node(node)
    {
        if (what != What::Entry && what != What::CutEntry)
            return;
        m_node = formats.rowOf(node);
        if (!m_node)
            m_node = m_made = new PointTreeWidgetItem(*node);
    }
    ~Dragged()
    {
        if (m_made && !m_made->parentItem())
            PointTreeWidgetItem::destroySubtree(m_made);
    }
    Dragged(const Dragged &) = delete;
    Dragged &operator=(const Dragged &) = delete;

    [[nodiscard]] PointTreeWidgetItem *node() const { return m_node; }

private:
    QPointer<PointTreeWidgetItem> m_node;
    QPointer<PointTreeWidgetItem> m_made;
};

RealizationTreeWidget::Source sourceOf(What what)
{
    return what == What::Record ? RealizationTreeWidget::Source::Table : RealizationTreeWidget::Source::Tree;
}

} // namespace

NodeClipboard::NodeClipboard(FormatTree *formats) : m_formats(formats)
{
    QObject::connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, &m_context, [this] {
        if (!m_taking)
            m_what = What::Nothing;
    });
}

void NodeClipboard::take(What what, PointTreeWidgetItem *node)
{
    if (!node)
        return;
    m_what = what;
    m_node = node;
    QString name = node->properties().text(idKey);
    for (const QString &other : { node->properties().text(QStringLiteral("key")), node->kind() }) {
        if (name.isEmpty())
            name = other;
    }
    const QScopedValueRollback<bool> taking(m_taking, true);
    QGuiApplication::clipboard()->setText(name);
}

NodeClipboard::What NodeClipboard::what() const
{
    // A record that was deleted lives on, but nobody knows it any more.
    const bool isThere = m_node && (m_what == What::Point || Controller::instance()->ownRealizations().isOwn(m_node));
    return isThere ? m_what : What::Nothing;
}

bool NodeClipboard::fits(PointTreeWidgetItem *row) const
{
    const RealizationTreeWidget *tree = m_formats->widget();
    if (!tree || !row || what() == What::Nothing)
        return false;
    const Dragged dragged(m_what, m_node, *m_formats);
    return bool(RealizationTreeWidget::planFor(tree->siteOf(row), dragged.node(), sourceOf(m_what)));
}

PointTreeWidgetItem *NodeClipboard::pasteOnto(PointTreeWidgetItem *row)
{
    if (!fits(row))
        return nullptr;
    RealizationTreeWidget *tree = m_formats->widget();
    const Dragged dragged(m_what, m_node, *m_formats);
    const DropSite site = tree->siteOf(row);
    if (m_what == What::Entry)
        return EntryMove::copy(site, dragged.node());
    const RealizationTreeWidget::Source source = sourceOf(m_what);
    // What was cut has found its place.
    if (m_what == What::CutEntry)
        m_what = What::Nothing;
    tree->drop(site, dragged.node(), source);
    return nullptr;
}

PointTreeWidgetItem *NodeClipboard::point() const
{
    return what() == What::Point ? m_node.data() : nullptr;
}
