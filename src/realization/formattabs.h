#pragma once

#include "model/pointtreewidgetitem.h"

#include <QHash>
#include <QIcon>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QStringList>
#include <QTabWidget>
#include <QTimer>
#include <QVector>

struct ModelChange;

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

    /// Brings the tabs into line with the formats and layouts of the opened plug-in, in the order of the list: a new
    /// root gets its tab, a renamed one keeps it under the new name, and one that has gone takes it along, unless a
    /// sibling fills it as well. Labels and icons are those that a fresh start would give.
    /// @p edited are those whose attributes have changed.
    void sync(const QVector<PointTreeWidgetItem *> &roots, const QSet<const PointTreeWidgetItem *> &edited = {});
    /// The same after a change of the opened file, if it concerns a root.
    void follow(const ModelChange &change);
    void addLayout(PointTreeWidgetItem *layout);
    void addFormatRoot(PointTreeWidgetItem *root);

    /// Shows the tab of @p root, when it has one.
    void show(PointTreeWidgetItem *root);

    /// The name of the page that is shown; empty without one.
    [[nodiscard]] QString currentName() const;

    /// The name of the page for a root of the opened file; empty when it has none.
    [[nodiscard]] static QString nameOf(PointTreeWidgetItem *root);
    /// Every name of a tab that the root fills, that one first.
    [[nodiscard]] static QStringList namesOf(PointTreeWidgetItem *root);
    /// Whether a root of the opened file has no name any more once @p value stands under @p key. Nothing would ever
    /// show it again.
    [[nodiscard]] static bool wouldLoseItsName(PointTreeWidgetItem *root, const QString &key, const QVariant &value);

Q_SIGNALS:
    /// Whatever of it must outlive @p page is to be taken out now.
    void aboutToRemove(QWidget *page);

private:
    struct WaitingTab
    {
        QString name;
        QIcon icon;
        QString label;
    };

    struct Face
    {
        QIcon icon;
        QString label;
    };

    [[nodiscard]] bool has(const QString &name) const { return m_pages.contains(name); }
    /// What the tab @p name looks like by what fills it.
    [[nodiscard]] Face faceOf(const QString &name) const;
    void rename(const QString &oldName, const QString &newName);
    void remove(const QString &name);
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
    /// The opened plug-in's roots that have or share a tab, in order, each with the name of the page.
    QVector<QPair<QPointer<PointTreeWidgetItem>, QString>> m_own;
};
