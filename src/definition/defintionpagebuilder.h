#pragma once

#include "childtypemask.h"
#include "form/extpointwidgetbuilder.h"
#include "form/menukey.h"
#include "pointsheet.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariant>

#include <memory>

class PointTreeWidgetItem;
class QAction;
class QTableWidget;
class QTableWidgetItem;
class QToolButton;
class QTreeWidgetItem;
class TreeMenu;
struct ModelChange;

/// Drives the definition page: the tree of declared points with its menu, the "Basic Information" sheet, the tables of
/// attributes and enumeration entries and the sheet beside them. What a sheet, a table or a new node is made of stands
/// in files of its own; here is what happens when.
///
/// Whatever the user asks for first has the sheets commit what is being typed, and looks up anew what it was asked for.
/// A change ends with finishChange(); no slot tells a view what to repaint.
///
/// Created by the main widget without a parent and never deleted; it lets go of the form when the form dies. GUI
/// thread.
class DefintionPageBuilder final : public QObject, public ExtPointWidgetBuilder
{
    Q_OBJECT

public:
    DefintionPageBuilder(Ui::ExtPointWidget *ui, QObject *parent);
    ~DefintionPageBuilder() override;

    void initWidgets(Ui::ExtPointWidget *ui) override;
    void loadTree() override;
    void createConnections() override;

    /// Takes a fresh copy of the manager's list of attribute types, in place of the own one only when they differ.
    void refreshAttributeTypes();
    [[nodiscard]] const QStringList &attributeTypes() const { return m_attributeTypes; }

    /// Expands the tree and selects the plug-in, so that the page says what it is about; the latter once it is seen.
    void showLoaded();

    /// Goes to a row of the tree and shows its sheet; a filter that hides it is closed.
    void showPoint(PointTreeWidgetItem *row);
    /// Goes to the row of an attribute of the point that is shown, and shows its sheet.
    void showDeclaration(PointTreeWidgetItem *attribute);
    /// Has the field @p key of the sheet that was shown last edited, where it has one.
    void openField(const QString &key);

Q_SIGNALS:
    void modified(bool flag);
    void addDefine(const QString &plugin, PointTreeWidgetItem *point, PointTreeWidgetItem *subPoint);
    /// @p item is about to be destroyed; nothing may refer to it when this returns.
    void delDefine(PointTreeWidgetItem *item);

public Q_SLOTS:
    void onDefineTreeItemClicked(QTreeWidgetItem *item, int column);
    void onDefineTableItemClicked(QTableWidgetItem *cell);
    void onEnumTableItemClicked(QTableWidgetItem *cell);
    void onEditInfoDataChange(const QString &name, const QVariant &value);
    void onBasicInfoDataChange(const QString &name, const QVariant &value);
    /// Both "Add" buttons of the tables; told apart by the sender.
    void onAddButtonClicked();
    /// Both "Delete" buttons of the tables; told apart by the sender.
    void onDelButtonClicked();
    void onDelPoint();
    /// "Create Point" and "Create Sub Point"; told apart by the sender's text.
    void onCreatPoint();
    void onDefineTreeMenu(const QPoint &pos);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// What the attribute sheet shows; its number is part of the page's behaviour.
    enum EditMode { EditAttribute = 0, EditEntry = 1 };

    void createKeys();
    void createAddPropertyButton();
    void fillAddPropertyMenu();
    void addProperty(const QString &key);
    /// Both sheets hand out what is being typed. It may change or destroy whatever was clicked.
    void commitSheets();
    /// The end of whatever the user has changed: the views follow, and the document is marked.
    void finishChange();
    /// Has everything on the page show what has changed.
    void follow(const ModelChange &change);
    [[nodiscard]] QList<PropertyItem> basicInfo();
    [[nodiscard]] QList<PropertyItem> plainBasicInfo();
    void explainSheets();
    [[nodiscard]] QList<PropertyItem> editInfo() const;
    void showHeadings();
    void showAttribute(PointTreeWidgetItem *attribute);
    /// The current rows of the tables are those of the nodes whose sheet is shown, wherever these stand by now. What
    /// has no row any more has no sheet either.
    void followCurrentRows();
    void createPointIn(PointTreeWidgetItem *plugin);
    void createSubPointOf(PointTreeWidgetItem *point);
    void destroyPoint(PointTreeWidgetItem *point);
    void addAttribute();
    void addEntry();
    void deleteAttribute();
    void deleteEntry();
    void changeAttributeType(const QString &typeName);
    /// Moves the current row of a table by one place. Only where rows and children agree, see
    /// onDefineTableItemClicked().
    void moveRow(QTableWidget *table, int step);
    void updateButtons();
    [[nodiscard]] bool currentTakesAttributes() const;
    /// What "Add Property" offers.
    [[nodiscard]] QStringList missingKeys() const;

    Ui::ExtPointWidget *m_ui;
    PointSheet::TypeTable m_pointPropertyTypes;
    PointSheet::TypeTable m_subPointPropertyTypes;
    ChildTypeMask m_childTypes;
    QPointer<PointTreeWidgetItem> m_currentPoint;
    QPointer<PointTreeWidgetItem> m_currentAttribute;
    QPointer<PointTreeWidgetItem> m_menuItem;
    QPointer<PointTreeWidgetItem> m_editTarget;
    EditMode m_editMode = EditAttribute;
    std::unique_ptr<TreeMenu> m_treeMenu;
    MenuKey m_menuKey;
    QStringList m_attributeTypes;
    QPointer<QToolButton> m_addProperty;
};
