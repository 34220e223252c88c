#pragma once

#include "form/menukey.h"
#include "nodeclipboard.h"

#include <QObject>
#include <QPointer>

#include <memory>

class FormatMenu;
class FormatTree;
class PointTreeWidgetItem;
class QAction;
class QMenu;
class QPoint;
class RealizationPageBuilder;
class RealizationTableWidget;
class RealizationTreeWidget;
class RecordTable;
class SheetPane;

/// The context menus and the keys of the tree of points, the format tree and the record table, and what they are about:
/// each first has the sheet commit, notes the row or record that was meant, and calls the page's slot for what was
/// chosen, or the operation that a drag with the mouse ends with. Owned by the page. GUI thread.
class PageMenus final : public QObject
{
    Q_OBJECT

public:
    PageMenus(FormatTree *tree, RealizationTreeWidget *points, RealizationTableWidget *table, RecordTable *records,
        SheetPane *sheet, RealizationPageBuilder *page);
    ~PageMenus() override;

    /// The row of the format tree, or the record, that a menu or a key was last used on; null when it has gone.
    [[nodiscard]] PointTreeWidgetItem *target() const { return m_target; }
    /// The same, for something that ends it.
    [[nodiscard]] PointTreeWidgetItem *takeTarget();

    /// @p pos is in the coordinates of the tree or of the table.
    void openForTree(const QPoint &pos);
    void openForTable(const QPoint &pos);

private:
    void createMenus();
    void createKeys();
    void openForPoints(const QPoint &pos);
    void openFormatMenu(QMenu *menu, const QPoint &globalPos);
    void deleteEntry();
    void createChild();
    void moveEntry(int step);
    void deleteRecord();
    /// What a drop of @p point onto the table does; the new record has the focus. Null is allowed.
    void createRecord(PointTreeWidgetItem *point);
    void copy(NodeClipboard::What what, PointTreeWidgetItem *node);
    /// Copies or cuts the entry that @p row of the format tree shows.
    void takeEntry(NodeClipboard::What what, PointTreeWidgetItem *row);
    void paste(PointTreeWidgetItem *row);
    [[nodiscard]] PointTreeWidgetItem *currentPoint() const;
    [[nodiscard]] PointTreeWidgetItem *currentEntry() const;
    [[nodiscard]] PointTreeWidgetItem *currentRecord() const;
    [[nodiscard]] QAction *add(QMenu *menu, const QString &text, const QKeySequence &key) const;

    FormatTree *m_tree;
    RealizationTreeWidget *m_points;
    RealizationTableWidget *m_table;
    RecordTable *m_records;
    SheetPane *m_sheet;
    RealizationPageBuilder *m_page;
    MenuKey m_menuKey;
    NodeClipboard m_clipboard;
    FormatMenu *m_formatMenu;
    std::unique_ptr<QMenu> m_tableMenu;
    std::unique_ptr<QMenu> m_pointMenu;
    QAction *m_cutEntry = nullptr;
    QAction *m_pasteEntry = nullptr;
    QAction *m_deleteRecord = nullptr;
    QAction *m_createHere = nullptr; ///< a record of the point whose records are shown
    QAction *m_copyRecord = nullptr;
    QAction *m_pasteRecord = nullptr;
    QAction *m_createRecord = nullptr; ///< a record of the point that the menu is about
    QAction *m_copyPoint = nullptr;
    QPointer<PointTreeWidgetItem> m_target;
    QPointer<PointTreeWidgetItem> m_point; ///< what the menu of the points is about
};
