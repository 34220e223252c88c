#pragma once

#include <QObject>
#include <QPointer>

class FormatTree;
class PointTreeWidgetItem;

/// What was copied or cut on the realization page: one node, which stays where it is until it is pasted. Pasting onto a
/// row does what dropping the node there does, and nothing where that would do nothing; an entry that was copied and
/// not cut is copied there. Forgotten when the node goes, and when something else is copied, here or in
/// another program. Owned by the page; GUI thread.
class NodeClipboard final
{
public:
    enum class What { Nothing, Point, Record, Entry, CutEntry };

    explicit NodeClipboard(FormatTree *formats);

    /// The "id" of @p node, else its "key" or kind, goes to the system's clipboard as text. Null is allowed and changes
    /// nothing.
    void take(What what, PointTreeWidgetItem *node);

    /// Whether something can be pasted onto @p row of the format tree; null is allowed.
    [[nodiscard]] bool fits(PointTreeWidgetItem *row) const;
    /// Pastes there if it fits. The tree announces it like a drop; a copied entry is nobody told of, it is answered
    /// instead. Null otherwise.
    PointTreeWidgetItem *pasteOnto(PointTreeWidgetItem *row);

    /// What would become a record on the table of records; null for anything but a point.
    [[nodiscard]] PointTreeWidgetItem *point() const;

private:
    [[nodiscard]] What what() const;

    FormatTree *m_formats;
    What m_what = What::Nothing;
    QPointer<PointTreeWidgetItem> m_node;
    bool m_taking = false;
    QObject m_context; ///< of the connection to the system's clipboard
};
