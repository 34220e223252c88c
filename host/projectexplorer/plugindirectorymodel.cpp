#include "projectexplorer/plugindirectorymodel.h"

#include "core/fileiconprovider.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QStyle>

#include <algorithm>

namespace ProjectExplorer {

namespace {

const QString &extensionFileName()
{
    static const QString name = QStringLiteral("extension.xml");
    return name;
}

} // namespace

PluginDirectoryModel::PluginDirectoryModel(QObject *parent) : QAbstractListModel(parent) { }

void PluginDirectoryModel::setDirectories(const QString &productPath, const QVector<PluginDirectory> &directories)
{
    if (productPath == m_productPath && directories == m_directories)
        return;
    beginResetModel();
    m_productPath = productPath;
    m_directories = directories;
    m_fileCount = int(std::count_if(
        directories.cbegin(), directories.cend(), [](const PluginDirectory &directory) { return directory.hasFile; }));
    endResetModel();
}

void PluginDirectoryModel::setOpened(const QString &name)
{
    if (name == m_opened)
        return;
    m_opened = name;
    if (!m_directories.isEmpty())
        Q_EMIT dataChanged(index(0), index(m_directories.size() - 1), { Qt::FontRole, OpenedRole });
}

void PluginDirectoryModel::setProblems(const QHash<QString, QString> &reasons)
{
    if (reasons == m_problems)
        return;
    m_problems = reasons;
    if (!m_directories.isEmpty())
        Q_EMIT dataChanged(index(0), index(m_directories.size() - 1), { Qt::DecorationRole, Qt::ToolTipRole });
}

int PluginDirectoryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_directories.size();
}

QVariant PluginDirectoryModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return QVariant();
    const PluginDirectory &directory = m_directories.at(index.row());
    const bool opened = directory.name == m_opened;
    switch (role) {
    case Qt::DisplayRole:
        return directory.name;
    case Qt::DecorationRole:
        return icon(directory);
    case Qt::ToolTipRole:
        if (!directory.hasFile)
            return tr("%1 has no %2").arg(directory.name, extensionFileName());
        return m_problems.value(pathOf(directory), QDir::toNativeSeparators(pathOf(directory)));
    case Qt::FontRole: {
        QFont font;
        font.setBold(opened);
        return opened ? QVariant(font) : QVariant();
    }
    case Qt::AccessibleDescriptionRole:
        if (m_problems.contains(pathOf(directory)))
            return tr("can't be read");
        return opened ? tr("opened") : QString();
    case PathRole:
        return directory.hasFile ? pathOf(directory) : QString();
    case OpenedRole:
        return opened;
    default:
        return QVariant();
    }
}

Qt::ItemFlags PluginDirectoryModel::flags(const QModelIndex &index) const
{
    if (!index.isValid() || !m_directories.at(index.row()).hasFile)
        return Qt::ItemNeverHasChildren;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

QString PluginDirectoryModel::pathOf(const PluginDirectory &directory) const
{
    return m_productPath + QLatin1Char('/') + directory.name + QLatin1Char('/') + extensionFileName();
}

QIcon PluginDirectoryModel::icon(const PluginDirectory &directory) const
{
    if (m_problems.contains(pathOf(directory)))
        return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
    return directory.hasFile ? Core::FileIconProvider::icon(QFileInfo(extensionFileName()))
                             : QApplication::style()->standardIcon(QStyle::SP_DirIcon);
}

} // namespace ProjectExplorer
