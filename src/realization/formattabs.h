#pragma once

#include <QHash>
#include <QIcon>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTabWidget>
#include <QTimer>

class PointTreeWidgetItem;

/// The tabs of the realization page, one for each format. Owned by the page builder; the tab widget is the form's.
///
/// A tab's page is known by its object name alone:
///
/// | what brings it                    | name of the page                    | label                                 |
/// |-----------------------------------|-------------------------------------|---------------------------------------|
/// | a format or layout of this plug-in | its "id", else its "target"        | "title", else "toolTip", else the name|
/// | a layout of any plug-in           | its "id", else its "target"         | the same; its "toolTip" on a known one|
/// | a format root of a sibling        | its "target", else its "id"         | the name                              |
///
/// Its icon is the file that "icon" names as it stands or, where there is none, the one in the directory that the root
/// was read from; a path is written relative to that directory as a rule.
///
/// A tab that an own contribution without a label brought takes the label and the icon of the layout that it
/// contributes to.
///
/// What has no name gets no tab, and a name never gets a second one.
class FormatTabs final : public QObject
{
    Q_OBJECT

public:
    explicit FormatTabs(QTabWidget *tabs, QObject *parent = nullptr);

    /// While this is set, tabs are put into the widget many at a time, many times a second: a tab bar lays out all of
    /// its tabs whenever one is added, which for thousands of them would take longer than everything else. What is
    /// asked of this class never shows the difference. At the end of the batch what still waits comes at once or, when
    /// it is so much that the window would stand still for it, goes on coming in.
    void setBatching(bool batching);
    /// Puts what waits into the widget.
    void flush();

    /// The formats and layouts of the opened plug-in, in the order of the list.
    void addPluginFormats(const QVector<PointTreeWidgetItem *> &roots);
    void addLayout(PointTreeWidgetItem *layout);
    void addFormatRoot(PointTreeWidgetItem *root);

    /// Shows the tab of @p root, when it has one.
    void show(PointTreeWidgetItem *root);

    /// The name of the page that is shown; empty without one.
    [[nodiscard]] QString currentName() const;

    /// Writes the label and the icon of the tab of @p root anew, when it has one.
    void relabel(PointTreeWidgetItem *root);

    /// The name of the page for a root of the opened file; empty when it has none.
    [[nodiscard]] static QString nameOf(PointTreeWidgetItem *root);
    /// Every name of a tab that the root fills, that one first.
    [[nodiscard]] static QStringList namesOf(PointTreeWidgetItem *root);

    /// Gives the page @p oldName the name @p newName. False, with nothing changed, when the new name is empty or taken.
    bool rename(const QString &oldName, const QString &newName);

    /// Removes and destroys the page @p name; whatever must outlive it has been taken out before.
    void remove(const QString &name);

    /// The "id"s of the opened plug-in's formats and layouts that have tabs.
    [[nodiscard]] const QStringList &pluginFormatIds() const { return m_pluginFormatIds; }

private:
    struct WaitingTab
    {
        QString name;
        QIcon icon;
        QString label;
    };

    [[nodiscard]] bool has(const QString &name) const { return m_pages.contains(name); }
    /// Where the tab stands in the widget, after a flush.
    [[nodiscard]] int indexOf(const QString &name);
    void addPage(const QString &name, const QIcon &icon, const QString &label);
    /// As much of what waits as the event loop can do without for the time being.
    void flushPortion();
    void insert(const QVector<WaitingTab> &tabs);

    QPointer<QTabWidget> m_tabs;
    QHash<QString, QPointer<QWidget>> m_pages; ///< by name; null while it waits
    QVector<WaitingTab> m_waiting;             ///< named in m_pages, but not in the widget yet
    QTimer m_flushTimer;
    bool m_batching = false;
    QStringList m_pluginFormatIds;
};
