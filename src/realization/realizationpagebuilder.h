#pragma once

#include "surface/extpointwidgetbuilder.h"

#include <QObject>
#include <QPointer>
#include <QString>

class FormatTabs;
class PointTreeWidgetItem;

/// Drives the realization page: the tree of all points of the product and the tabs of the formats.
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
    void addLayout(PointTreeWidgetItem *layout);
    /// Null asks for the current tab to be shown afresh.
    void addFormatRoot(PointTreeWidgetItem *item);

Q_SIGNALS:
    void modified(bool flag);

public Q_SLOTS:
    /// The definition page created @p point in the plug-in with the id @p plugin, or @p subPoint under @p point.
    void addDefine(QString plugin, PointTreeWidgetItem *point, PointTreeWidgetItem *subPoint);
    /// The definition page is about to destroy @p item.
    void delDefine(PointTreeWidgetItem *item);

private:
    [[nodiscard]] PointTreeWidgetItem *pluginNode(const QString &plugin, bool *created);
    PointTreeWidgetItem *addMaster(PointTreeWidgetItem *parent, PointTreeWidgetItem *definition);

    Ui::ExtPointWidget *m_ui;
    /// The root of the tree: the available points, not the opened file's realization side.
    QPointer<PointTreeWidgetItem> m_realizationRoot;
    FormatTabs *m_formatTabs = nullptr;
};
