#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

class FormatMenu;
class FormatTree;
class PointTreeWidgetItem;
class QAction;
class QMenu;
class QPoint;
class QTableWidget;
class RealizationPageBuilder;
class RecordTable;
class SheetPane;

/// The context menus and the keys of the format tree and of the record table, and what they are about: each first has
/// the sheet commit, notes the row or record that was meant, and calls the page's slot for what was chosen. Owned by
/// the page. GUI thread.
class PageMenus final : public QObject
{
    Q_OBJECT

public:
    PageMenus(
        FormatTree *tree, QTableWidget *table, RecordTable *records, SheetPane *sheet, RealizationPageBuilder *page);
    ~PageMenus() override;

    /// The row of the format tree, or the record, that a menu or a key was last used on; null when it has gone.
    [[nodiscard]] PointTreeWidgetItem *target() const { return m_target; }
    /// The same, for something that ends it.
    [[nodiscard]] PointTreeWidgetItem *takeTarget();

    /// @p pos is in the coordinates of the tree or of the table.
    void openForTree(const QPoint &pos);
    void openForTable(const QPoint &pos);

private:
    void createKeys();
    void openFormatMenu(QMenu *menu, const QPoint &globalPos);

    FormatTree *m_tree;
    QTableWidget *m_table;
    RecordTable *m_records;
    SheetPane *m_sheet;
    RealizationPageBuilder *m_page;
    FormatMenu *m_formatMenu;
    std::unique_ptr<QMenu> m_tableMenu;
    QAction *m_deleteRecord;
    QPointer<PointTreeWidgetItem> m_target;
};
