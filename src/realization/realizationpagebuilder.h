#pragma once

#include "form/extpointwidgetbuilder.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QVariant>

class FormatTabs;
class FormatTree;
class HeldPress;
class PageMenus;
class PointTreeWidgetItem;
class QTableWidgetItem;
class QTreeWidgetItem;
class RecordTable;
class SheetPane;
struct ModelChange;

/// Drives the realization page: the tree of all points of the product, the tabs of the formats with their tree, the
/// table of the records of the point that was clicked last and the sheet of whatever was clicked last. What a sheet, a
/// tree or a table is made of stands in files of its own; here is what happens when.
///
/// Whatever the user asks for first has the sheet commit what is being typed, which may change or destroy what was
/// clicked; that is looked up anew after it. A change ends with finishChange(); no slot tells a view what to repaint.
///
/// Created by the main widget without a parent and never deleted; it lets go of the form when the form dies. GUI
/// thread.
class RealizationPageBuilder final : public QObject, public ExtPointWidgetBuilder
{
    Q_OBJECT

public:
    RealizationPageBuilder(Ui::ExtPointWidget *ui, QObject *parent);
    ~RealizationPageBuilder() override;

    void initWidgets(Ui::ExtPointWidget *ui) override;
    void loadTree() override;
    void createConnections() override;

    /// Adds a tab for each layout and each format of the opened plug-in.
    void addPluginFormats();
    /// See FormatTabs::flush().
    void showAllFormats();
    void addLayout(PointTreeWidgetItem *layout);
    /// Null asks for the current tab to be shown afresh.
    void addFormatRoot(PointTreeWidgetItem *item);

    /// Go to a row of the tree of points, of the table or of the format tree and show its sheet, as a click would; a
    /// filter that hides the row is closed. A record may have no row, which is returned. Null is allowed for an entry.
    void showPoint(PointTreeWidgetItem *point);
    bool showRecord(PointTreeWidgetItem *record);
    void showEntry(PointTreeWidgetItem *row);
    /// Shows the sheet of a node of the opened file that may have no row: it can be put right there.
    void showSheetOf(PointTreeWidgetItem *node);
    /// Has the field @p key of the sheet edited, where it has one.
    void openField(const QString &key);

Q_SIGNALS:
    void modified(bool flag);

public Q_SLOTS:
    void onItemClicked(QTreeWidgetItem *item, int index);
    void formatTabCurrentChanged(int index);
    void onTableItemClicked(QTableWidgetItem *item);
    void onFormatTreeItemClicked(QTreeWidgetItem *item, int index);
    void onPropertyRealization(const QString &property, const QVariant &variant);
    void onAddTableRealization(PointTreeWidgetItem *parent, PointTreeWidgetItem *child, bool flag);
    void onFormatTreeMenu(const QPoint pos);
    void onTableShowMenu(QPoint pos);
    void formatItemDel();
    void tableItemDel();
    void setTarget(PointTreeWidgetItem *item);
    /// The definition page created @p point in the plug-in with the id @p plugin, or @p subPoint under @p point.
    void addDefine(const QString &plugin, PointTreeWidgetItem *point, PointTreeWidgetItem *subPoint);
    /// The definition page is about to destroy @p item.
    void delDefine(PointTreeWidgetItem *item);
    /// One of the actions of "Child Type"; the text of the sender is the kind.
    void onCreatType();
    void dropPoint(PointTreeWidgetItem *item);
    // NOLINTNEXTLINE(readability-identifier-naming): the name of the form's button
    void on_pushButton_add_format_tree_clicked();
    void addMeta();

private:
    void connectToManager();
    /// The end of whatever the user has changed: the views follow, and the document is marked.
    void finishChange();
    /// Has every view follow a change of the model, in an order in which each finds what it needs.
    void follow(const ModelChange &change);
    /// The node whose sheet a click on the point shows; null without one.
    [[nodiscard]] PointTreeWidgetItem *holderOf(PointTreeWidgetItem *point) const;
    /// Has the tab filled again as soon as nobody is in the middle of something.
    void requestRefill();
    void refillWhenIdle();
    /// Whether the table and, of a point with formats, the format tree are in sight: places to drop it onto.
    [[nodiscard]] bool showsTargetsOf(PointTreeWidgetItem *point) const;
    [[nodiscard]] bool isDragging() const;
    [[nodiscard]] bool isBusy() const;

    Ui::ExtPointWidget *m_ui;
    /// The root of the tree: the available points, not the opened file's realization side.
    QPointer<PointTreeWidgetItem> m_realizationRoot;
    FormatTabs *m_formatTabs = nullptr;
    FormatTree *m_formatTree;
    RecordTable *m_records = nullptr;
    SheetPane *m_sheet = nullptr;
    PageMenus *m_menus = nullptr;
    QPointer<HeldPress> m_heldPoint;
    QPointer<HeldPress> m_heldRecord;
    QPointer<PointTreeWidgetItem> m_clickedPoint;
    QTimer m_refillTimer;
};
