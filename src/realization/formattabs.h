#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTabWidget>

class PointTreeWidgetItem;

/// The tabs of the realization page, one for each format. Owned by the page builder; the tab widget is the form's.
///
/// A tab's page is known by its object name alone:
///
/// | what brings it                    | name of the page                    | label                                 |
/// |-----------------------------------|-------------------------------------|---------------------------------------|
/// | a format or layout of this plug-in | its "id", else its "target"         | "title", else "toolTip", else the name
/// | | a layout of any plug-in           | its "id", else its "target"         | the same; a "toolTip" replaces the
/// label of a page that is there | | a format root of a sibling        | its "target", else its "id"         | the name
/// |
///
/// Its icon is the file that "icon" names as it stands or, where there is none, the one in the directory that the root
/// was read from; a path is written relative to that directory as a rule.
///
/// What has no name gets no tab, and a name never gets a second one.
class FormatTabs final : public QObject
{
    Q_OBJECT

public:
    explicit FormatTabs(QTabWidget *tabs, QObject *parent = nullptr);

    /// The formats and layouts of the opened plug-in, in the order of the list.
    void addPluginFormats(const QVector<PointTreeWidgetItem *> &roots);
    void addLayout(PointTreeWidgetItem *layout);
    void addFormatRoot(PointTreeWidgetItem *root);

    /// The "id"s of the opened plug-in's formats and layouts that have tabs.
    [[nodiscard]] const QStringList &pluginFormatIds() const { return m_pluginFormatIds; }

private:
    [[nodiscard]] int indexOf(const QString &name) const;
    void addPage(const QString &name, const QIcon &icon, const QString &label);

    QPointer<QTabWidget> m_tabs;
    QStringList m_pluginFormatIds;
};
