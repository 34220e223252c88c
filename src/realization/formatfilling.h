#pragma once

#include "formatsources.h"

#include <QHash>
#include <QMultiHash>
#include <QSet>
#include <QVector>

#include <deque>

class PointTreeWidgetItem;

/// What the rows of one tab are to show: each row a node, in place. Valid until the model changes.
struct FormatPlan
{
    struct Row
    {
        PointTreeWidgetItem *source = nullptr;
        QVector<PointTreeWidgetItem *> further; ///< nodes of other roots that the row stands for as well
        QVector<Row *> children;
        int depth = 0; ///< rows above it
    };

    std::deque<Row> rows; ///< owns them; the first one is the root's
    QString rootId;       ///< what the root's row shows where its own node says nothing
    QString rootLabel;
};

/// Plans the rows of one format tree: first the root with its children as they stand, then what the other roots of the
/// tab bring, each entry in the place where the product would show it. GUI thread; lives no longer than the planning.
///
/// - An entry directly under a root that names a "parent" goes under the row with that "id" (in the same letter case,
/// else
///   in any), or else under one without "id" of that kind; where there is none below the root, it stays there. A tab
///   with one root only shows that as it is.
/// - A bar ("menubar", "toolbars") of a further root gets no row of its own when there is one of its kind: its entries
///   go into that one. The same holds for a sibling's entry that mirrors an own one (see FormatSources).
/// - Where a chain of entries, each the "parent" of the next one, is deeper than a file may be, it goes on below the
///   root.
class FormatFilling final
{
public:
    explicit FormatFilling(const FormatSources &sources);

    /// Without rows when nothing fills the tab.
    [[nodiscard]] FormatPlan plan();

    /// The opened file's entries that stand under @p entry in some tab because they name it as their "parent".
    [[nodiscard]] static QVector<PointTreeWidgetItem *> placedUnder(PointTreeWidgetItem *entry);

    /// Texts and icon of a row: its "id", else its kind; its label, else its record's; its icon, else its record's.
    static void label(PointTreeWidgetItem *row);

private:
    using Row = FormatPlan::Row;

    Row *makeRow(PointTreeWidgetItem *source);
    /// @p source, and what is below it.
    void addUnder(Row *row, PointTreeWidgetItem *source);
    void addChildren(Row *row, PointTreeWidgetItem *source);
    /// @p source alone; the row that stands for it now, null when it waits.
    Row *addOne(Row *row, PointTreeWidgetItem *source);
    [[nodiscard]] bool waits(const PointTreeWidgetItem *source) const;
    [[nodiscard]] Row *rowFor(PointTreeWidgetItem *source) const;
    void remember(const PointTreeWidgetItem *source, Row *row);
    enum class By { Id, Kind };
    [[nodiscard]] Row *rowNamed(const QString &parent, By by) const;
    /// Places what waits for a row that there is. True when there was any.
    bool placeSome(By by);
    void placeWaiting();

    FormatSources m_sources;
    FormatPlan m_plan;
    Row *m_root = nullptr;
    bool m_merges = false;
    QSet<const PointTreeWidgetItem *> m_furtherRoots;
    QHash<QString, Row *> m_bars; ///< the first one of each kind under the root, by kind in lower case
    struct Waiting
    {
        Row *above; ///< for a sibling's entry that mirrors one that has no row yet
        PointTreeWidgetItem *source;
    };
    QVector<Waiting> m_waiting;   ///< in order
    QHash<QString, Row *> m_byId; ///< the first row of each
    QHash<QString, Row *> m_byFoldedId;
    QHash<QString, Row *> m_byKind; ///< rows without "id", by kind in lower case
    QHash<const PointTreeWidgetItem *, Row *> m_rowOf;
};
