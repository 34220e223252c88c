#pragma once

#include "childtypemask.h"
#include "pointsheet.h"
#include "surface/extpointwidgetbuilder.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariant>

class PointTreeWidgetItem;
class QTreeWidgetItem;

/// Drives the definition page: the tree of declared points, the "Basic Information" sheet and the table of attributes.
///
/// Created by the main widget without a parent and never deleted; it lets go of the form when the form dies. GUI thread.
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

    /// Expands the tree and selects the plug-in, so that the page says what it is about.
    void showLoaded();
    [[nodiscard]] const QStringList &attributeTypes() const { return m_attributeTypes; }

Q_SIGNALS:
    void modified(bool flag);
    void addDefine(QString plugin, PointTreeWidgetItem *point, PointTreeWidgetItem *subPoint);
    void delDefine(PointTreeWidgetItem *item);

public Q_SLOTS:
    void onDefineTreeItemClicked(QTreeWidgetItem *item, int column);
    void onBasicInfoDataChange(const QString &name, const QVariant &value);

private:
    void showPointSheet();
    void showSubPointSheet();

    Ui::ExtPointWidget *m_ui;
    PointSheet::TypeTable m_pointPropertyTypes;
    PointSheet::TypeTable m_subPointPropertyTypes;
    ChildTypeMask m_childTypes;
    QPointer<PointTreeWidgetItem> m_currentPoint;
    QStringList m_attributeTypes;
};
