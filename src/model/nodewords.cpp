#include "nodewords.h"

#include "controller.h"
#include "extensionfile/showntext.h"
#include "keys.h"
#include "pointtreewidgetitem.h"

#include <QCoreApplication>

namespace {

using Node = PointTreeWidgetItem;

// More of a name or an id is no help in a line.
constexpr int mostShown = 80;

QString say(const char *text, int number = -1)
{
    return QCoreApplication::translate("NodeWords", text, nullptr, number);
}

QString cut(const QString &text)
{
    return text.size() <= mostShown ? text : text.left(mostShown) + QChar(0x2026);
}

QString value(const Node *node, const char *key)
{
    return cut(node->properties().text(QLatin1String(key)));
}

QString first(const QString &one, const QString &other)
{
    return one.isEmpty() ? other : one;
}

/// Its kind, and its id where it has one.
QString kindAndId(const Node *node, const QString &id)
{
    return id.isEmpty() ? cut(node->kind()) : QStringLiteral("%1 %2").arg(cut(node->kind()), id);
}

QString pointName(const QString &pointId)
{
    const Node *point = Controller::instance()->definitions().first(pointId);
    return first(point ? value(point, "name") : QString(), cut(pointId));
}

bool declares(const Node *node)
{
    const Node *root = Controller::instance()->definitionRoot();
    while (node && node != root)
        node = node->parentItem();
    return node && node == root;
}

QString ofDefinition(const Node *node)
{
    const Node *above = node->parentItem();
    if (!above || !above->parentItem())
        return say(QT_TRANSLATE_NOOP("NodeWords", "Plug-in %1")).arg(cut(Controller::instance()->pluginId()));
    const QString id = value(node, "id");
    const QString key = first(value(node, "key"), value(node, "text"));
    const QString owner = first(value(above, "name"), first(value(above, "key"), value(above, "id")));
    if (node->isKind(QLatin1String("ExtPoint")))
        return say(QT_TRANSLATE_NOOP("NodeWords", "Point %1")).arg(id);
    if (node->isKind(QLatin1String("SubExtPoint")))
        return say(QT_TRANSLATE_NOOP("NodeWords", "Sub point %1 of %2")).arg(key, owner);
    if (node->kind() == QLatin1String("Data"))
        return say(QT_TRANSLATE_NOOP("NodeWords", "Entry %1 of the attribute %2")).arg(value(node, "text"), owner);
    return say(QT_TRANSLATE_NOOP("NodeWords", "%1 attribute %2 of %3")).arg(cut(node->kind()), key, owner);
}

/// The tab that an entry stands in, by the name that its root has.
QString tabOf(const Node *node)
{
    while (node && !OwnRealizations::isRoot(node))
        node = node->parentItem();
    return node ? first(value(node, "title"), first(value(node, "target"), value(node, "id"))) : QString();
}

QString ofRealization(const Node *node)
{
    const QString named = kindAndId(node, value(node, "id"));
    if (node->isKind(QLatin1String("ExtData"))) {
        return say(QT_TRANSLATE_NOOP("NodeWords", "Records of %1 in this plug-in"))
            .arg(pointName(node->properties().text(idKey)));
    }
    if (OwnRealizations::isRoot(node) && !(OwnRealizations::isRecord(node) && node->isKind(QLatin1String("Layout"))))
        return say(QT_TRANSLATE_NOOP("NodeWords", "%1 of the tab %2")).arg(named, tabOf(node));
    if (OwnRealizations::isRecord(node))
        return say(QT_TRANSLATE_NOOP("NodeWords", "%1, record of %2")).arg(named, pointName(node->pointId()));
    return say(QT_TRANSLATE_NOOP("NodeWords", "%1, entry of the tab %2")).arg(named, tabOf(node));
}

} // namespace

QString NodeWords::what(PointTreeWidgetItem *node)
{
    if (!node)
        return {};
    return declares(node) ? ofDefinition(node) : ofRealization(node);
}

QString NodeWords::withUses(PointTreeWidgetItem *node)
{
    if (!node || !OwnRealizations::isRecord(node) || declares(node))
        return what(node);
    const int uses = Controller::instance()->ownRealizations().references(node->properties().text(idKey)).size();
    return uses == 1 ? say(QT_TRANSLATE_NOOP("NodeWords", "%1, 1 use")).arg(what(node))
                     : say(QT_TRANSLATE_N_NOOP("NodeWords", "%1, %n uses"), uses).arg(what(node));
}
