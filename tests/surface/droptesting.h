#pragma once

#include "form/drops/dropsite.h"
#include "model/controller.h"
#include "model/modeltesting.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"

#include <QMultiHash>
#include <QRegularExpression>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <algorithm>

namespace DropTesting {

inline QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/// Generated numbers are left out.
inline QString masked(QString text)
{
    static const QRegularExpression number(s("(own\\.[A-Za-z]+)[0-9]{1,4}\\b"));
    return text.replace(number, s("\\1#"));
}

/// "kind:id key=value(children), ..." of what stands under the node.
inline QString picture(const PointObject *node)
{
    QStringList entries;
    for (PointObject *child : node->children()) {
        QString entry = child->item()->kind();
        for (const PropertyHash::Entry &property : child->properties())
            entry += (property.key == s("id") ? s(":") : s(" %1=").arg(property.key)) + property.value.toString();
        const QString below = picture(child);
        entries.append(below.isEmpty() ? entry : s("%1(%2)").arg(entry, below));
    }
    return masked(entries.join(s(", ")));
}

/// Two points of a sibling: "kit.menus" with menus, items, gaps and the two bars, "kit.tools" with a "key" of its own.
const QByteArray kitPoints = R"(
<ExtPointSet>
  <ExtPoint id="kit.menus" name="Menus" hasformat="true">
    <String key="icon" value="menus.svg"/>
    <SubExtPoint key="format" childType="Menu||gap"/>
    <SubExtPoint key="menu" name="A &lt;menu&gt;" childType="menu|Item"><String key="title" value="New menu"/></SubExtPoint>
    <SubExtPoint key="Item"><String key="text" value="New item"/><String key="title" value="no"/></SubExtPoint>
    <SubExtPoint key="gap"><String key="id" value="never"/><Int key="size" value="8"/></SubExtPoint>
    <SubExtPoint key="MenuBar" childType="menu"/>
    <SubExtPoint key="ToolBars" childType="Item"/>
  </ExtPoint>
  <ExtPoint id="kit.tools" name="Tools" key="item" hasformat="true"><String key="text" value="Tool"/></ExtPoint>
  <ExtPoint id="kit.plain"><String key="text"/></ExtPoint>
  <ExtPoint id="kit.declared"><String key="Key" value="thing"/></ExtPoint>
</ExtPointSet>)";

/// An opened file "own" beside the sibling "kit", scanned, as the model has it.
class Model final
{
public:
    /// What stands in the data sets, or instead of them.
    explicit Model(const QByteArray &own, const QByteArray &kit = {})
    {
        Controller::instance()->setSourceDataManager(&manager);
        const QString path = m_product.add(s("own"), "<Plugin id=\"own\">" + own + "</Plugin>");
        m_product.add(s("kit"), "<Plugin id=\"kit\">" + kitPoints + kit + "</Plugin>");
        if (!manager.load(path))
            qFatal("not loaded");
        manager.startScan(path);
        manager.completeScan();
        m_siblings = picture(manager.allDataRoot());
    }
    Model(const Model &) = delete;
    Model &operator=(const Model &) = delete;

    /// A point by its "id", a sub point by its "key".
    [[nodiscard]] PointTreeWidgetItem *point(const QString &name) const
    {
        return manager.definitions().first(name.toLower());
    }

    [[nodiscard]] PointTreeWidgetItem *record(const QString &id) const
    {
        return Controller::instance()->ownRealizations().record(id);
    }

    /// What is saved.
    [[nodiscard]] QString saved() const { return picture(manager.realizationRoot()); }

    /// What the model has wrong now: a saved node that is registered not once, or a sibling that was touched.
    [[nodiscard]] QStringList complaints() const
    {
        QStringList complaints;
        QList<PointObject *> open { manager.realizationRoot() };
        const QVector<PointTreeWidgetItem *> registered = manager.ownRealizations().all();
        while (!open.isEmpty()) {
            PointTreeWidgetItem *node = open.takeLast()->item();
            open += node->children();
            if (node == manager.realizationRoot() || node->isKind(QLatin1String("ExtDataSet")))
                continue;
            if (registered.count(node) != 1)
                complaints.append(s("registered not once: ") + node->kind());
            if (node->treeWidget())
                complaints.append(s("shown itself: ") + node->kind());
        }
        if (picture(manager.allDataRoot()) != m_siblings)
            complaints.append(s("a sibling was touched"));
        return complaints;
    }

    SourceDataManager manager;

private:
    ModelTesting::Product m_product;
    QString m_siblings;
};

/// The rows of a tab as the page shows them: mirrors of the first root's nodes; what further roots have stands among
/// them, and their bars in the bar that is there.
class Shown final
{
public:
    using Nodes = QVector<PointTreeWidgetItem *>;

    explicit Shown(const Nodes &roots)
    {
        if (roots.isEmpty())
            qFatal("nothing to show");
        m_root = new PointTreeWidgetItem(*roots.first());
        tree.addTopLevelItem(m_root);
        for (PointTreeWidgetItem *root : roots) {
            if (root != roots.first())
                merged.insert(m_root, root);
            fill(m_root, root);
        }
        // What was recorded stands where it says, once that is there.
        const auto copies = m_recorded;
        for (PointTreeWidgetItem *copy : copies) {
            PointTreeWidgetItem *above = row(copy->properties().value(s("parent")).toString());
            if (!above)
                continue;
            copy->parentItem()->detachChild(copy);
            copy->takeRow();
            add(above, copy);
        }
        tree.expandAll();
    }
    ~Shown()
    {
        tree.takeTopLevelItem(0);
        PointTreeWidgetItem::destroySubtree(m_root);
    }
    Shown(const Shown &) = delete;
    Shown &operator=(const Shown &) = delete;

    /// By "id", else by kind; "root" is the root.
    [[nodiscard]] PointTreeWidgetItem *row(const QString &name) const
    {
        for (QTreeWidgetItemIterator it(m_root); *it; ++it) {
            PointTreeWidgetItem *row = PointTreeWidgetItem::fromRow(*it);
            const QString id = row->properties().value(s("id")).toString();
            if (row == m_root ? name == s("root") : id == name || (id.isEmpty() && row->kind() == name))
                return row;
        }
        return nullptr;
    }

    [[nodiscard]] DropSite site(const QString &row, bool direct, const QString &tab = QString()) const
    {
        return { this->row(row), direct, tab, MergedSources(merged) };
    }

    /// The rows below the root with both columns, and a word where the model of the rows differs from the rows.
    [[nodiscard]] QString rows() const { return masked(print(m_root)); }

    QTreeWidget tree;
    QMultiHash<const PointTreeWidgetItem *, PointTreeWidgetItem *> merged;

private:
    void fill(PointTreeWidgetItem *row, PointTreeWidgetItem *source)
    {
        for (PointObject *object : source->children()) {
            PointTreeWidgetItem *child = object->item();
            const QString id = child->properties().value(s("id")).toString();
            const auto shown = row->children();
            const auto isTheSame = [&](PointObject *other) {
                return id.isEmpty() && other->item()->kind() == child->kind() && other->link()->parent() != source;
            };
            const auto known = std::find_if(shown.cbegin(), shown.cend(), isTheSame);
            if (known != shown.cend()) {
                merged.insert((*known)->item(), child);
                fill((*known)->item(), child);
                continue;
            }
            auto *copy = new PointTreeWidgetItem(*child);
            copy->QTreeWidgetItem::setText(0, id.isEmpty() ? child->kind() : id);
            if (child->properties().contains(s("parent")))
                m_recorded.append(copy);
            add(row, copy);
            fill(copy, child);
        }
    }

    static void add(PointTreeWidgetItem *row, PointTreeWidgetItem *copy)
    {
        row->addChild(copy, false);
        row->QTreeWidgetItem::addChild(copy);
    }

    static QString print(const PointTreeWidgetItem *row)
    {
        QStringList entries;
        if (row->children().size() != row->childCount())
            entries.append(s("the model has %1 children").arg(row->children().size()));
        for (int i = 0; i < row->childCount(); ++i) {
            PointTreeWidgetItem *child = PointTreeWidgetItem::fromRow(row->child(i));
            QString entry = child->text(0) + (child->text(1).isEmpty() ? QString() : s(" | ") + child->text(1));
            if (row->children().value(i) != child || child->parentItem() != row)
                entry += s(" is another in the model");
            if (child->properties() != child->master()->properties())
                entry += s(" differs from what is saved");
            const QString below = print(child);
            entries.append(below.isEmpty() ? entry : s("%1(%2)").arg(entry, below));
        }
        return entries.join(s(", "));
    }

    PointTreeWidgetItem *m_root = nullptr;
    Nodes m_recorded;
};

/// The words of a plan: where, how and through what.
inline QString words(const DropPlan &plan)
{
    if (!plan)
        return s("nothing");
    const QString id = plan.through->properties().value(s("id")).toString();
    const char *const places[] = { "nothing", "into", "before", "after" };
    return s(places[int(plan.place)]) + s(plan.recorded ? ", recorded" : "") + s(" through ")
        + (id.isEmpty() ? plan.through->kind() : id);
}

/// What would be announced, one word each.
inline QString words(const DropOutcome &outcome)
{
    QString words;
    for (const DropOutcome::Addition &addition : outcome.additions)
        words += s(addition.format ? "target " : "") + s(addition.row ? "drop " : "");
    return (words + s(outcome.modified ? "modified" : "")).trimmed();
}

} // namespace DropTesting
