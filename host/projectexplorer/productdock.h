#pragma once

#include "projectexplorer/directorylister.h"
#include "projectexplorer/projectexplorer_global.h"

#include <QDockWidget>
#include <QFileSystemWatcher>
#include <QTimer>

class QLabel;
class QLineEdit;
class QListView;
class QSortFilterProxyModel;

namespace ProjectExplorer {

class PluginDirectoryModel;

/// The dock "Plug-ins": the directories beside that of the opened file, with a filter. Follows changes of the product's
/// directory. Owned by the plug-in, shown in the main window.
class PROJECTEXPLORER_EXPORT ProductDock final : public QDockWidget
{
    Q_OBJECT

public:
    explicit ProductDock(QWidget *parent = nullptr);

    /// Shows the product of the opened file @p path; empty when none is open.
    void setOpenedFile(const QString &path);
    /// Why files of the product can't be read, by path.
    void setProblems(const QHash<QString, QString> &reasons);
    /// Looks again. Cheap; the rows change when the listing is done.
    void refresh();

Q_SIGNALS:
    /// The user wants to open this "extension.xml".
    void fileActivated(const QString &path);
    /// The rows are those of the directory as it is on disk.
    void refreshed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watch(const QString &productPath);
    void takeIn(const QString &productPath, const QVector<PluginDirectory> &directories);
    void updateCount();

    QString m_productPath;
    PluginDirectoryModel *m_model = nullptr;
    QSortFilterProxyModel *m_filtered = nullptr;
    QLineEdit *m_filter = nullptr;
    QListView *m_view = nullptr;
    QLabel *m_count = nullptr;
    DirectoryLister m_lister;
    QFileSystemWatcher m_watcher;
    QTimer m_refreshDelay;
};

} // namespace ProjectExplorer
