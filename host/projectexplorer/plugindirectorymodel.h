#pragma once

#include "projectexplorer/directorylister.h"
#include "projectexplorer/projectexplorer_global.h"

#include <QAbstractListModel>
#include <QHash>
#include <QIcon>

namespace ProjectExplorer {

/// The rows of the dock: the directories of a product, those without an "extension.xml" disabled, the opened one bold.
/// GUI thread only.
class PROJECTEXPLORER_EXPORT PluginDirectoryModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        PathRole = Qt::UserRole, ///< Of the directory's "extension.xml"; empty where it has none.
        OpenedRole               ///< True for the opened directory.
    };

    explicit PluginDirectoryModel(QObject *parent = nullptr);

    /// Resets the model unless the rows stay the same.
    void setDirectories(const QString &productPath, const QVector<PluginDirectory> &directories);
    /// The name of the opened directory, empty for none.
    void setOpened(const QString &name);
    /// Why files can't be read, by path.
    void setProblems(const QHash<QString, QString> &reasons);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    /// How many rows have an "extension.xml".
    [[nodiscard]] int fileCount() const { return m_fileCount; }

private:
    [[nodiscard]] QString pathOf(const PluginDirectory &directory) const;
    [[nodiscard]] QIcon icon(const PluginDirectory &directory) const;

    QString m_productPath;
    QString m_opened;
    QHash<QString, QString> m_problems;
    QVector<PluginDirectory> m_directories;
    int m_fileCount = 0;
};

} // namespace ProjectExplorer
