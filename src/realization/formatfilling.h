#pragma once

#include "formatsources.h"

#include <QHash>
#include <QMultiHash>
#include <QSet>

class PointTreeWidgetItem;

/// Builds the rows of one format tree: copies that are linked to what they show, first the root with its children as
/// they stand, then what the other roots of the tab bring, each entry in the place where the product would show it.
/// GUI thread; lives no longer than the filling.
///
/// - An entry directly under a root that names a "parent" goes under the row with that "id", or with that kind when the
///   row has no "id"; where there is no such row, it stays under the root. A tab with one root only shows that as it
///   is.
/// - A bar ("menubar", "toolbars") of a further root gets no row of its own when there is one of its kind: its entries
///   go into that one. The same holds for an entry that mirrors one that is shown.
class FormatFilling final
{
public:
    explicit FormatFilling(const FormatSources &sources);

    /// The root with everything under it, owned by the caller until it is put into a tree; null when nothing fills the
    /// tab.
    [[nodiscard]] PointTreeWidgetItem *build();

    /// What further nodes a row stands for.
    [[nodiscard]] const QMultiHash<const PointTreeWidgetItem *, PointTreeWidgetItem *> &merged() const
    {
        return m_merged;
    }

    /// Texts and icon of a row: its "id", else its kind; its label, else its record's; its icon, else its record's.
    static void label(PointTreeWidgetItem *row);

private:
    PointTreeWidgetItem *copyOf(PointTreeWidgetItem *source);
    void addUnder(PointTreeWidgetItem *row, PointTreeWidgetItem *source);
    void addChildren(PointTreeWidgetItem *row, PointTreeWidgetItem *source);
    void mergeInto(PointTreeWidgetItem *row, PointTreeWidgetItem *source);
    [[nodiscard]] PointTreeWidgetItem *rowFor(PointTreeWidgetItem *source) const;
    void remember(const PointTreeWidgetItem *source, PointTreeWidgetItem *row);
    void placeWaiting();

    FormatSources m_sources;
    PointTreeWidgetItem *m_root = nullptr;
    bool m_merges = false;
    QSet<const PointTreeWidgetItem *> m_furtherRoots;
    QHash<QString, PointTreeWidgetItem *> m_bars; ///< the first one of each kind under the root, by kind in lower case
    QVector<PointTreeWidgetItem *> m_waiting; ///< entries with a "parent", in order
    QHash<QString, PointTreeWidgetItem *> m_named; ///< by "id" or kind in lower case, the first row of each
    QHash<PointTreeWidgetItem *, PointTreeWidgetItem *> m_rowOf;
    QMultiHash<const PointTreeWidgetItem *, PointTreeWidgetItem *> m_merged;
};
