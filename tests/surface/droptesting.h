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

#include <memory>

namespace DropTesting {

inline QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/// Two points of a sibling: "kit.menus" with menus, items, gaps and the two bars, "kit.tools" with a "key" of its own.
inline QByteArray kitPoints()
{
    return R"(
<ExtPointSet>
  <ExtPoint id="kit.menus" name="Menus" hasformat="true">
    <String key="icon" value="menus.svg"/>
    <SubExtPoint key="format" childType="Menu||gap"/>
    <SubExtPoint key="menu" name="A menu" childType="menu|Item"><String key="title" value="New menu"/></SubExtPoint>
    <SubExtPoint key="Item"><String key="text" value="New item"/><String key="title" value="no"/></SubExtPoint>
    <SubExtPoint key="gap"><String key="id" value="never"/><Int key="size" value="8"/></SubExtPoint>
    <SubExtPoint key="MenuBar" childType="menu"/>
    <SubExtPoint key="ToolBars" childType="Item"/>
  </ExtPoint>
  <ExtPoint id="kit.tools" name="Tools" key="item" hasformat="true"><String key="text" value="Tool"/></ExtPoint>
  <ExtPoint id="kit.plain"><String key="text"/></ExtPoint>
  <ExtPoint id="kit.declared"><String key="Key" value="thing"/></ExtPoint>
</ExtPointSet>)";
}

/// An opened file "own" beside the siblings "kit" and "lib", scanned, as the model has it.
class Model final
{
public:
    /// What stands in the data sets, or instead of them.
    explicit Model(const QByteArray &own, const QByteArray &kit = {}, const QByteArray &lib = {})
    {
        Controller::instance()->setSourceDataManager(&manager);
        m_path = m_product.add(s("own"), "<Plugin id=\"own\">" + own + "</Plugin>");
        m_product.add(s("kit"), "<Plugin id=\"kit\">" + kitPoints() + kit + "</Plugin>");
        m_product.add(s("lib"), "<Plugin id=\"lib\">" + lib + "</Plugin>");
        if (!manager.load(m_path))
            qFatal("not loaded");
        manager.startScan(m_path);
        manager.completeScan();
        m_siblings = ModelTesting::tree(manager.allDataRoot());
    }
    Model(const Model &) = delete;
    Model &operator=(const Model &) = delete;

    [[nodiscard]] QString path() const { return m_path; }

    /// A point by its "id", a sub point of "kit.menus" by its "key".
    [[nodiscard]] PointTreeWidgetItem *point(const QString &name) const
    {
        QVector<PointObject *> open { manager.availablePointsRoot() };
        while (!open.isEmpty()) {
            PointObject *node = open.takeFirst();
            const PropertyHash &properties = node->properties();
            if (properties.value(s("id")).toString() == name
                || (node->item()->isKind(QLatin1String("SubExtPoint")) && properties.value(s("key")) == name))
                return node->item();
            for (PointObject *child : node->children())
                open.append(child);
        }
        return nullptr;
    }

    [[nodiscard]] PointTreeWidgetItem *record(const QString &id) const
    {
        return Controller::instance()->ownRealizations().record(id);
    }

    /// What is saved, generated numbers masked.
    [[nodiscard]] QStringList saved() const { return masked(ModelTesting::tree(manager.realizationRoot())); }

    /// What the model has wrong now: a saved node that is registered not once, or a sibling that was touched.
    [[nodiscard]] QStringList complaints() const
    {
        QStringList complaints;
        QVector<PointObject *> open { manager.realizationRoot() };
        const QVector<PointTreeWidgetItem *> registered = manager.ownRealizations().all();
        while (!open.isEmpty()) {
            PointObject *node = open.takeLast();
            const bool counts = node != manager.realizationRoot() && !node->item()->isKind(QLatin1String("ExtDataSet"));
            if (counts && registered.count(node->item()) != 1)
                complaints.append(s("registered not once: ") + node->item()->kind());
            if (counts && node->item()->treeWidget())
                complaints.append(s("shown itself: ") + node->item()->kind());
            for (PointObject *child : node->children())
                open.append(child);
        }
        if (ModelTesting::tree(manager.allDataRoot()) != m_siblings)
            complaints.append(s("a sibling was touched"));
        return complaints;
    }

    [[nodiscard]] static QStringList masked(QStringList lines)
    {
        static const QRegularExpression number(s("(own\\.[A-Za-z]+)[0-9]{1,4}\\b"));
        return lines.replaceInStrings(number, s("\\1#"));
    }

    SourceDataManager manager;

private:
    ModelTesting::Product m_product;
    QString m_path;
    QStringList m_siblings;
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
        QVector<QTreeWidgetItem *> open { m_root };
        while (!open.isEmpty()) {
            PointTreeWidgetItem *row = PointTreeWidgetItem::fromRow(open.takeFirst());
            const QString id = row->properties().value(s("id")).toString();
            if (name == s("root") || id == name || (id.isEmpty() && row->kind() == name))
                return row;
            for (int i = 0; i < row->childCount(); ++i)
                open.append(row->child(i));
        }
        return nullptr;
    }

    [[nodiscard]] DropSite site(const QString &row, bool direct, const QString &tab = QString()) const
    {
        DropSite site;
        site.row = this->row(row);
        site.direct = direct;
        site.tabName = tab;
        site.merged = MergedSources(merged);
        return site;
    }

    /// Both columns of every row below the root, and a word where the model of the rows differs from the rows.
    [[nodiscard]] QStringList rows() const
    {
        QStringList lines;
        print(m_root, 0, &lines);
        return Model::masked(lines);
    }

    QTreeWidget tree;
    QMultiHash<const PointTreeWidgetItem *, PointTreeWidgetItem *> merged;

private:
    void fill(PointTreeWidgetItem *row, PointTreeWidgetItem *source)
    {
        for (PointObject *object : source->children()) {
            PointTreeWidgetItem *child = object->item();
            const QString id = child->properties().value(s("id")).toString();
            PointTreeWidgetItem *known = id.isEmpty() ? ofKind(row, child->kind()) : nullptr;
            if (known && known->link()->parent() == source)
                known = nullptr;
            if (known) {
                merged.insert(known, child);
                fill(known, child);
                continue;
            }
            auto *copy = new PointTreeWidgetItem(*child);
            copy->QTreeWidgetItem::setText(0, id.isEmpty() ? child->kind() : id);
            // What was recorded stands where it says.
            const QString parent = child->properties().value(s("parent")).toString();
            PointTreeWidgetItem *above = parent.isEmpty() ? row : this->row(parent);
            if (!above)
                above = row;
            above->addChild(copy, false);
            above->QTreeWidgetItem::addChild(copy);
            fill(copy, child);
        }
    }

    [[nodiscard]] static PointTreeWidgetItem *ofKind(const PointTreeWidgetItem *row, const QString &kind)
    {
        for (PointObject *child : row->children()) {
            if (child->item()->kind() == kind)
                return child->item();
        }
        return nullptr;
    }

    static void print(const PointTreeWidgetItem *row, int depth, QStringList *lines)
    {
        if (row->children().size() != row->childCount())
            lines->append(s("the model has %1 children").arg(row->children().size()));
        for (int i = 0; i < row->childCount(); ++i) {
            PointTreeWidgetItem *child = PointTreeWidgetItem::fromRow(row->child(i));
            if (row->children().value(i) != child || child->parentItem() != row)
                lines->append(s("the model has another child here"));
            QString line = QString(depth * 2, QLatin1Char(' ')) + child->text(0);
            if (!child->text(1).isEmpty())
                line += s(" | ") + child->text(1);
            if (child->properties() != child->master()->properties())
                line += s(" differs from what is saved");
            lines->append(line);
            print(child, depth + 1, lines);
        }
    }

    PointTreeWidgetItem *m_root = nullptr;
};

/// The words of a plan: where, how and through what.
inline QString words(const DropPlan &plan)
{
    if (!plan)
        return s("nothing");
    QString text = plan.place == DropPlan::Place::Into ? s("into") : s("before");
    if (plan.recorded)
        text += s(", recorded");
    const QString id = plan.through->properties().value(s("id")).toString();
    return text + s(" through ") + (id.isEmpty() ? plan.through->kind() : id);
}

/// What would be announced, one word each.
inline QString words(const DropOutcome &outcome)
{
    QStringList words;
    for (const DropOutcome::Addition &addition : outcome.additions) {
        if (addition.format)
            words.append(s("target"));
        if (addition.row)
            words.append(s("drop"));
    }
    if (outcome.modified)
        words.append(s("modified"));
    return words.join(QLatin1Char(' '));
}

} // namespace DropTesting
