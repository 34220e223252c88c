#include "foundnodes.h"

#include "extensionfile/showntext.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"

#include <QCoreApplication>

namespace PointEditor::Internal {

namespace {

QString word(const char *text)
{
    return QCoreApplication::translate("FoundNodes", text);
}

QString nameOfSort(NodeSort sort)
{
    switch (sort) {
    case NodeSort::Plugin:
        return word(QT_TRANSLATE_NOOP("FoundNodes", "plug-in"));
    case NodeSort::Point:
        return word(QT_TRANSLATE_NOOP("FoundNodes", "point"));
    case NodeSort::SubPoint:
        return word(QT_TRANSLATE_NOOP("FoundNodes", "sub point"));
    case NodeSort::Attribute:
        return word(QT_TRANSLATE_NOOP("FoundNodes", "attribute"));
    case NodeSort::Choice:
        return word(QT_TRANSLATE_NOOP("FoundNodes", "choice"));
    case NodeSort::Record:
        return word(QT_TRANSLATE_NOOP("FoundNodes", "record"));
    case NodeSort::Format:
        return word(QT_TRANSLATE_NOOP("FoundNodes", "format"));
    case NodeSort::Entry:
        return word(QT_TRANSLATE_NOOP("FoundNodes", "entry"));
    case NodeSort::Other:
        break;
    }
    return {};
}

QString firstOf(const PointTreeWidgetItem *node, std::initializer_list<const char *> keys)
{
    for (const char *key : keys) {
        const QString value = node->properties().text(QLatin1String(key));
        if (!value.isEmpty())
            return ExtensionFile::shown(value);
    }
    return {};
}

QString idOf(const PointTreeWidgetItem *node)
{
    return firstOf(node, { "id", "key" });
}

/// What a person would look under to find it.
QString placeOf(const PointTreeWidgetItem *node, NodeSort sort)
{
    const PointTreeWidgetItem *above = node->parentItem();
    if (sort == NodeSort::Format)
        return ExtensionFile::shown(OwnRealizations::tabName(node));
    if (sort == NodeSort::Record)
        return idOf(above);
    if (sort == NodeSort::Entry) {
        const PointTreeWidgetItem *root = above;
        while (!OwnRealizations::isRoot(root))
            root = root->parentItem();
        const QString tab = ExtensionFile::shown(OwnRealizations::tabName(root));
        const QString inside = above == root ? firstOf(node, { "parent" }) : idOf(above);
        return inside.isEmpty() ? tab : QCoreApplication::translate("FoundNodes", "%1, in %2").arg(tab, inside);
    }
    if (sort != NodeSort::SubPoint && sort != NodeSort::Attribute && sort != NodeSort::Choice)
        return {};
    QStringList path;
    for (; above; above = above->parentItem()) {
        const NodeSort aboveSort = ModelSearch::sortOf(above);
        if (aboveSort == NodeSort::Other || aboveSort == NodeSort::Plugin)
            break;
        path.prepend(idOf(above));
    }
    return path.join(QStringLiteral(" > "));
}

} // namespace

FoundNodes::FoundNodes(const SourceDataManager &manager, ModelSearch search)
    : m_manager(&manager), m_search(std::move(search))
{ }

bool FoundNodes::advance(int milliseconds)
{
    return m_manager && m_search.advance(milliseconds);
}

QVector<Core::SearchResult> FoundNodes::results(int most) const
{
    QVector<Core::SearchResult> lines;
    if (!m_manager)
        return lines;
    const OwnRealizations realizations = m_manager->ownRealizations();
    const auto nodes = m_search.best(most);
    for (PointTreeWidgetItem *node : nodes) {
        const NodeSort sort = ModelSearch::sortOf(node);
        Core::SearchResult line;
        line.what = nameOfSort(sort);
        line.id = idOf(node);
        line.label = nameOf(node);
        const PointTreeWidgetItem *top = node;
        while (top->parentItem())
            top = top->parentItem();
        const bool own = realizations.isOwn(node) || top == m_manager->definitionRoot();
        line.plugin = own ? m_manager->pluginId() : sort == NodeSort::Plugin ? line.id : node->pluginId();
        line.place = placeOf(node, sort);
        line.target = QVariant::fromValue(QPointer<QObject>(node));
        lines.append(line);
    }
    return lines;
}

PointTreeWidgetItem *FoundNodes::nodeOf(const Core::SearchResult &result)
{
    return qobject_cast<PointTreeWidgetItem *>(result.target.value<QPointer<QObject>>().data());
}

QString FoundNodes::nameOf(const PointTreeWidgetItem *node)
{
    return firstOf(node, { "name", "text", "title" });
}

} // namespace PointEditor::Internal
