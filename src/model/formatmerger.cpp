#include "formatmerger.h"

#include "extensionfile/logging.h"
#include "model/keys.h"
#include "modellog.h"
#include "pointtreewidgetitem.h"

#include <QHash>
#include <QPointer>
#include <QSet>
#include <QVector>

#include <algorithm>
#include <utility>

namespace {

using Item = PointTreeWidgetItem;
using Items = QVector<Item *>;
using Node = QPointer<Item>;

/// Texts that are equal but for letter case have the same folded form. Whole strings fold otherwise: more becomes
/// equal.
QString folded(const Item *node, const QString &key)
{
    QString text = node->properties().text(key);
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i).toCaseFolded();
        // A text that is folded already goes on sharing its memory.
        if (character != text.at(i))
            text[i] = character;
    }
    return text;
}

QString idOf(const Item *node)
{
    return folded(node, idKey);
}

Items childItems(const Item *node)
{
    Items items;
    items.reserve(node->children().size());
    for (PointObject *child : node->children()) {
        if (Item *item = child->item())
            items.append(item);
    }
    return items;
}

bool isBar(const Item *node)
{
    return node->isKind(QLatin1String("ToolBars")) || node->isKind(QLatin1String("MenuBar"));
}

bool isWithinFormat(const Item *node)
{
    // A node that has left a list while it stood in another one has a row still, but may have no parent.
    const auto above = [](const Item *item) {
        Item *parent = item->parentItem();
        return parent ? parent : Item::fromRow(item->QTreeWidgetItem::parent());
    };
    for (node = above(node); node; node = above(node)) {
        if (node->isKind(QLatin1String("Format")))
            return true;
    }
    return false;
}

/// Adds the levels looked at to @p steps.
bool rowIsWithin(const QTreeWidgetItem *row, const QTreeWidgetItem *other, qint64 *steps)
{
    for (; row; row = row->parent()) {
        ++*steps;
        if (row == other)
            return true;
    }
    return false;
}

/// Nothing happens where the node would come to stand under itself, in the lists or in the rows: a node can stand in
/// two lists, so its parents alone do not tell. Adds what it took to @p steps.
bool move(Item *node, Item *from, Item *to, qint64 *steps)
{
    ++*steps;
    if (rowIsWithin(to, node, steps) || node->reaches(to))
        return false;
    if (node->QTreeWidgetItem::parent() == from)
        node->takeRow();
    // Most lists that are searched don't hold the node; they aren't gone through for that.
    if (node->isHeldBy(from))
        from->detachChild(node);
    to->addChild(node, false);
    to->QTreeWidgetItem::addChild(node);
    return true;
}

// A merge may look at so many nodes: one that means well looks at a few for each entry that it brings. Ids and parents
// that are all the same, or make long chains, would have every entry looked for among all others.
constexpr qint64 mostSteps = 500'000;

/// Sorts @p some children of @p node as they stand in its list.
void sortAsListed(const Item *node, Items *some)
{
    if (some->size() < 2)
        return;
    QHash<const PointObject *, int> positions;
    for (const Item *child : qAsConst(*some))
        positions.insert(child, 0);
    int position = 0;
    for (const PointObject *child : node->children()) {
        const auto known = positions.find(child);
        if (known != positions.end())
            *known = ++position;
    }
    const auto at = [&positions](const Item *child) { return positions.value(child); };
    std::sort(some->begin(), some->end(), [&at](auto *left, auto *right) { return at(left) < at(right); });
}

} // namespace

/// One root that others are merged into, with an index of what stands below it. The search for a "parent" does not go
/// down from the root but up from the nodes that have the id, so its cost is in their number.
///
/// The index relies on lists that only grow, but for that of the root. So it does not outlive a merge in which another
/// one has lost something, see isStale().
class FormatMerger::Root final
{
public:
    explicit Root(Item *root);

    void merge(Item *arrived);
    [[nodiscard]] bool isStale() const { return m_isStale; }
    /// How many entries the last merge had no time to look for a place for.
    [[nodiscard]] int leftCount() const { return m_leftCount; }

private:
    struct Match
    {
        Node holder;
        Node node;
    };

    /// The nodes of one id that a search can come to.
    struct Carriers
    {
        QVector<Node> inRoot; ///< the children of the root, in their order; some may have left it
        QVector<Node> below;  ///< the first of each list further down
    };

    /// What the last search for an id has come to.
    struct Searched
    {
        QVector<Match> matches;
        QVector<Node> hidden; ///< carriers that are not found unless they move or the first in the root does
        const Item *firstInRoot = nullptr;
        bool holds = false; ///< another search would find the same
    };

    void takeInAll();
    void takeInChildren(const Items &children);
    /// @p node, and what is below it.
    void takeIn(Item *node, Item *holder, QSet<QString> *idsInList);
    /// @p node alone. False when what is below it is not to be taken in with it.
    bool takeInOne(Item *node, Item *holder, QSet<QString> *idsInList);
    void noteBelow(const QString &id, Item *node);
    QSet<QString> &idsIn(Item *node);

    void placeAll(const Items &newChildren);
    void place(Item *child, const QString &parentId);
    void put(Item *child, const Match &match);
    void searchAgainBelow(const Item *moved);

    QVector<Match> matchesFor(const Item *child, const QString &parentId);
    QVector<Match> search(
        const QString &id, const QVector<Node> &below, Item *firstInRoot, const Item *passedOver) const;
    Item *firstInRoot(QVector<Node> *carriers, const Item *passedOver) const;
    Items holdersOf(const Item *node) const;
    void sortByPosition(Items *children) const;

    Item *m_root;
    QVector<Node> m_bars;
    QHash<const Item *, int> m_positions; ///< of all that are or were children of the root
    QHash<QString, Carriers> m_carriers;
    QHash<QString, Searched> m_searched;               ///< of ids that one look does not tell all about
    QHash<const Item *, QVector<Node>> m_otherHolders; ///< that neither the root nor parent() tells
    QHash<const Item *, QSet<QString>> m_idsIn;        ///< of lists that something comes into later

    // Children of the root that name a "parent". Another search finds something new for those that wait only when nodes
    // of the id have come. Those that the first match in the root has refused would find what it has hidden from them,
    // should it have left the root.
    QHash<QString, QVector<Node>> m_waiting;
    QVector<Node> m_refused;

    QSet<const Item *> m_taken; ///< in one go
    QSet<QString> m_newIds;
    mutable qint64 m_steps = 0; ///< of this merge, see mostSteps
    int m_leftCount = 0;
    bool m_isStale = false;
};

FormatMerger::Root::Root(Item *root) : m_root(root)
{
    const Items children = childItems(root);
    std::copy_if(children.begin(), children.end(), std::back_inserter(m_bars), isBar);
}

void FormatMerger::Root::merge(Item *arrived)
{
    m_steps = 0;
    m_leftCount = 0;
    Items newChildren;
    QVector<Match> newEntries;
    bool moved = false;
    const Items newcomers = childItems(arrived);
    for (Item *child : newcomers) {
        for (const Node &bar : isBar(child) ? m_bars : QVector<Node>()) {
            if (!bar || !bar->isHeldBy(m_root) || bar->kind().compare(child->kind(), Qt::CaseInsensitive) != 0)
                continue;
            const Items entries = childItems(child);
            for (Item *entry : entries) {
                if (!move(entry, child, bar, &m_steps))
                    continue;
                moved = true;
                // A bar that has just come is itself taken in with all that it has by then.
                if (m_positions.contains(bar))
                    newEntries.push_back({ bar, entry });
            }
        }
        if (!moved && move(child, arrived, m_root, &m_steps)) {
            newChildren.append(child);
            if (isBar(child))
                m_bars.append(child);
        }
        if (!child->properties().contains(idKey))
            child->setText(0, child->kind());
    }
    if (m_positions.isEmpty()) {
        takeInAll();
        newChildren = childItems(m_root);
    } else {
        takeInChildren(newChildren);
        for (const Match &entry : qAsConst(newEntries))
            takeIn(entry.node, entry.holder, &m_idsIn[entry.holder]);
        m_taken.clear();
    }
    placeAll(newChildren);
}

void FormatMerger::Root::takeInAll()
{
    m_positions.clear();
    m_carriers.clear();
    m_searched.clear();
    m_otherHolders.clear();
    m_idsIn.clear();
    takeInChildren(childItems(m_root));
    m_taken.clear();
}

void FormatMerger::Root::takeInChildren(const Items &children)
{
    // The positions tell which of the nodes further down are children of the root as well.
    for (Item *child : children)
        m_positions.insert(child, m_positions.size());
    for (Item *child : children) {
        const QString id = idOf(child);
        if (!id.isEmpty()) {
            m_carriers[id].inRoot.append(child);
            m_newIds.insert(id);
        }
        QSet<QString> ids { id };
        const Items grandchildren = childItems(child);
        for (Item *grandchild : grandchildren)
            takeIn(grandchild, child, &ids);
        if (isBar(child))
            m_idsIn.insert(child, ids);
    }
}

void FormatMerger::Root::takeIn(Item *node, Item *holder, QSet<QString> *idsInList)
{
    Items open;
    if (takeInOne(node, holder, idsInList))
        open.append(node);
    while (!open.isEmpty()) {
        Item *next = open.takeLast();
        QSet<QString> ids { idOf(next) };
        const Items children = childItems(next);
        for (Item *child : children) {
            if (takeInOne(child, next, &ids))
                open.append(child);
        }
    }
}

bool FormatMerger::Root::takeInOne(Item *node, Item *holder, QSet<QString> *idsInList)
{
    const bool isInRoot = m_positions.contains(node);
    // A node behind another one of its id is never found, nor is one under a node of its id. But a child of the root is
    // passed over by its own search, so it hides nothing.
    const QString id = idOf(node);
    if (!id.isEmpty() && !idsInList->contains(id)) {
        if (!isInRoot)
            idsInList->insert(id);
        noteBelow(id, node);
        m_newIds.insert(id);
    }
    if (isInRoot || node->parentItem() != holder)
        m_otherHolders[node].append(holder);
    if (isInRoot || m_taken.contains(node))
        return false;
    m_taken.insert(node);
    return true;
}

void FormatMerger::Root::noteBelow(const QString &id, Item *node)
{
    m_carriers[id].below.append(node);
    const auto searched = m_searched.find(id);
    if (searched != m_searched.end())
        searched->holds = false;
}

/// The ids that are hidden from what comes into the list of @p node, see takeIn().
QSet<QString> &FormatMerger::Root::idsIn(Item *node)
{
    const auto known = m_idsIn.find(node);
    if (known != m_idsIn.end())
        return *known;
    QSet<QString> ids { idOf(node) };
    const Items children = childItems(node);
    for (const Item *child : children) {
        if (!m_positions.contains(child))
            ids.insert(idOf(child));
    }
    return *m_idsIn.insert(node, ids);
}

void FormatMerger::Root::placeAll(const Items &newChildren)
{
    QVector<Node> candidates = std::exchange(m_refused, {});
    const QSet<QString> newIds = std::exchange(m_newIds, {});
    for (const QString &id : newIds)
        candidates += m_waiting.take(id);
    Items due = newChildren;
    for (const Node &candidate : qAsConst(candidates)) {
        if (candidate)
            due.append(candidate);
    }
    sortByPosition(&due);
    for (Item *child : qAsConst(due)) {
        const QString parentId = folded(child, parentKey);
        if (parentId.isEmpty())
            continue;
        if (m_steps < mostSteps) {
            place(child, parentId);
        } else {
            ++m_leftCount;
            m_waiting[parentId].append(child);
        }
    }
}

void FormatMerger::Root::place(Item *child, const QString &parentId)
{
    const QVector<Match> matches = matchesFor(child, parentId);
    for (const Match &match : matches) {
        if (m_steps < mostSteps)
            put(child, match);
    }
    if (!child->isHeldBy(m_root))
        return;
    if (!matches.isEmpty() && matches.last().holder == m_root)
        m_refused.append(child);
    else
        m_waiting[parentId].append(child);
}

void FormatMerger::Root::put(Item *child, const Match &match)
{
    // Matches are kept, and nodes may be destroyed between two merges.
    if (!match.holder || !match.node)
        return;
    const bool wasThere = child->isHeldBy(match.node);
    const bool leaves = child->isHeldBy(match.holder);
    const QString id = idOf(child);
    QSet<QString> *ids = wasThere || id.isEmpty() ? nullptr : &idsIn(match.node);
    m_steps += m_otherHolders.value(child).size();
    if (!move(child, match.holder, match.node, &m_steps))
        return;
    if (leaves && match.holder != m_root) {
        // Only a format within a format brings a node that stands in two lists already. What it has hidden appears.
        m_isStale = true;
        takeInAll();
        return;
    }
    if (!wasThere)
        m_otherHolders[child].append(match.node);
    if (ids && !ids->contains(id)) {
        ids->insert(id);
        noteBelow(id, child);
    }
    if (leaves || !wasThere)
        searchAgainBelow(child);
}

/// What stands below a node that has moved may be found otherwise than before. The node itself is noted where it came.
/// Moving its row has already taken as many steps as this.
void FormatMerger::Root::searchAgainBelow(const Item *moved)
{
    Items open = childItems(moved);
    QSet<const Item *> seen;
    while (!open.isEmpty()) {
        Item *node = open.takeLast();
        if (seen.contains(node))
            continue;
        seen.insert(node);
        ++m_steps;
        open += childItems(node);
        const QString id = idOf(node);
        const auto searched = m_searched.find(id);
        if (searched == m_searched.end())
            continue;
        searched->holds = false;
        if (!searched->hidden.isEmpty())
            m_carriers[id].below.append(node);
    }
}

/// What the search for the "parent" of @p child finds, in its order: matches further down and at last one in the root.
QVector<FormatMerger::Root::Match> FormatMerger::Root::matchesFor(const Item *child, const QString &parentId)
{
    const auto known = m_carriers.find(parentId);
    if (known == m_carriers.end())
        return {};
    Item *first = firstInRoot(&known->inRoot, child);
    const bool isSearched = m_searched.contains(parentId);
    if (!isSearched && known->below.isEmpty())
        return first ? QVector<Match> { { m_root, first } } : QVector<Match>();
    if (!isSearched && known->below.size() == 1 && !first) {
        // Nothing hides the only one.
        Item *only = known->below.first();
        const Items holders = only ? holdersOf(only) : Items();
        if (holders.size() == 1)
            return { { holders.first(), only } };
    }

    Searched &searched = m_searched[parentId];
    const bool isCarrier = idOf(child) == parentId;
    if (isCarrier || searched.firstInRoot != first) {
        known->below += std::exchange(searched.hidden, {});
        searched.firstInRoot = first;
        searched.holds = false;
    }
    // The search passes over the child, but that makes no difference unless it has the id: what stands below the child
    // refuses it.
    if (isCarrier)
        return search(parentId, known->below, first, child);
    if (!searched.holds) {
        searched.matches = search(parentId, known->below, first, nullptr);
        searched.holds = true;
        QSet<const Item *> found;
        for (const Match &match : qAsConst(searched.matches))
            found.insert(match.node);
        for (const Node &carrier : std::exchange(known->below, {}))
            (found.contains(carrier) ? known->below : searched.hidden).append(carrier);
    }
    return searched.matches;
}

QVector<FormatMerger::Root::Match> FormatMerger::Root::search(
    const QString &id, const QVector<Node> &below, Item *firstInRoot, const Item *passedOver) const
{
    // Up to the root; nothing is searched for below a match.
    QSet<const Item *> carriers;
    Items open;
    for (const Node &carrier : below) {
        ++m_steps;
        if (!carrier || carrier == passedOver || carriers.contains(carrier))
            continue;
        carriers.insert(carrier);
        open.append(carrier);
    }
    carriers.insert(firstInRoot);
    const int carrierCount = open.size();
    QHash<const Item *, Items> waysDown;
    QSet<const Item *> seen;
    for (int i = 0; i < open.size(); ++i) {
        Item *node = open.at(i);
        if (seen.contains(node))
            continue;
        seen.insert(node);
        if (i >= carrierCount && idOf(node) == id)
            continue;
        const Items holders = holdersOf(node);
        m_steps += 4 + holders.size();
        for (Item *holder : holders) {
            if (holder != m_root)
                open.append(holder);
            if (holder != m_root || i >= carrierCount)
                waysDown[holder].append(node);
        }
    }

    // Down again as the search is defined, but only where it comes to a match.
    if (firstInRoot)
        waysDown[m_root].append(firstInRoot);
    QVector<Match> matches;
    QVector<Match> next { { nullptr, m_root } };
    seen.clear();
    while (!next.isEmpty()) {
        const Match match = next.takeLast();
        Item *node = match.node;
        if (carriers.contains(node)) {
            matches.append(match);
            continue;
        }
        if (seen.contains(node))
            continue;
        seen.insert(node);
        Items ways = waysDown.value(node);
        if (node == m_root)
            sortByPosition(&ways);
        else
            sortAsListed(node, &ways);
        m_steps += 1 + ways.size();
        const auto first = std::find_if(ways.cbegin(), ways.cend(), [&](Item *way) { return carriers.contains(way); });
        for (auto way = first == ways.cend() ? first : first + 1; way != ways.cbegin();)
            next.push_back({ node, *--way });
    }
    return matches;
}

Item *FormatMerger::Root::firstInRoot(QVector<Node> *carriers, const Item *passedOver) const
{
    const auto isHere = [this](const Node &carrier) { return carrier && carrier->isHeldBy(m_root); };
    carriers->erase(carriers->begin(), std::find_if(carriers->begin(), carriers->end(), isHere));
    for (const Node &carrier : qAsConst(*carriers)) {
        if (isHere(carrier) && carrier != passedOver)
            return carrier;
    }
    return nullptr;
}

Items FormatMerger::Root::holdersOf(const Item *node) const
{
    Items holders;
    if (node->isHeldBy(m_root))
        holders.append(m_root);
    else if (Item *parent = node->parentItem(); parent && !m_positions.contains(node))
        holders.append(parent);
    const QVector<Node> others = m_otherHolders.value(node);
    for (const Node &other : others) {
        if (other)
            holders.append(other);
    }
    return holders;
}

void FormatMerger::Root::sortByPosition(Items *children) const
{
    std::sort(children->begin(), children->end(),
        [this](const Item *left, const Item *right) { return m_positions.value(left) < m_positions.value(right); });
}

FormatMerger::FormatMerger() = default;

FormatMerger::~FormatMerger() = default;

void FormatMerger::merge(PointTreeWidgetItem *known, PointTreeWidgetItem *arrived)
{
    // A format within a format: what is remembered of the outer one does not hold when the inner one changes.
    if (isWithinFormat(known) || isWithinFormat(arrived))
        clear();
    std::unique_ptr<Root> &root = m_roots[known];
    if (!root)
        root = std::make_unique<Root>(known);
    root->merge(arrived);
    if (root->leftCount() > 0)
        qCWarning(modelLog).noquote() << ExtensionFile::oneLine(
            QStringLiteral("%1extension.xml: %2 entries stay directly under their format, since too many nodes may be "
                           "meant by what they name as \"parent\"")
                .arg(arrived->basePath())
                .arg(root->leftCount()));
    if (root->isStale())
        m_roots.erase(known);
}

void FormatMerger::clear()
{
    m_roots.clear();
}
