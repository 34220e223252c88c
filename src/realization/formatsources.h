#pragma once

#include <QHash>
#include <QString>
#include <QVector>

class PointObject;
class PointTreeWidgetItem;

/// What fills a tab, by the name of its page:
///
// clang-format off
/// | the opened file has       | siblings have      | the tab shows                                  | editable |
/// |---------------------------|--------------------|------------------------------------------------|----------|
/// | a format or layout of it  | nothing            | the own root                                   | yes      |
/// | a format or layout of it  | a format or layout | the own root, with what siblings have in place | yes      |
/// | nothing                   | a format or layout | the root that came first, the others in place  | no       |
/// | nothing                   | nothing            | nothing                                        | no       |
// clang-format on
///
/// An own root is found by its "target", else by its "id"; a "Format" that a drop has recorded comes after the others.
/// A sibling's format is found by its "target", else by its
/// "id"; its layout by its "id", else by its "target". Of several own roots the first one is the root that is shown,
/// and the entries of the others stand under it. "Editable" is said of the tab; a row of a sibling is not, wherever it
/// stands.
struct FormatSources
{
    using Nodes = QVector<PointTreeWidgetItem *>;

    [[nodiscard]] static FormatSources of(const QString &name);

    [[nodiscard]] bool isEditable() const { return !own.isEmpty(); }
    [[nodiscard]] bool isEmpty() const { return own.isEmpty() && siblings.isEmpty(); }

    /// Every root, the one that is shown first.
    [[nodiscard]] Nodes all() const { return own + siblings; }

    /// Has the siblings' roots of the tab mirror the own one, and each of their entries that has the "id" of an own
    /// entry of the tab mirror that: both are one entry, and it is the own one.
    void linkSiblings();

    /// Whether @p node is such an entry.
    [[nodiscard]] bool mirrorsOwn(const PointTreeWidgetItem *node) const;

    Nodes own;
    Nodes siblings;

private:
    QHash<QString, PointObject *> m_ownById; ///< the first entry of each id
};
