#include "core/recentfiles.h"

#include <QFileInfo>
#include <QSettings>
#include <QVariant>

#include <algorithm>

namespace Core {

namespace {

QString key()
{
    return QStringLiteral("RecentFiles");
}

} // namespace

RecentFiles::RecentFiles(QSettings &settings) : m_settings(settings) { }

QStringList RecentFiles::files() const
{
    m_settings.sync();
    QStringList files = m_settings.value(key()).toStringList();
    files.erase(
        std::remove_if(files.begin(), files.end(), [](const QString &path) { return !QFileInfo(path).isFile(); }),
        files.end());
    return files.mid(0, Limit);
}

void RecentFiles::add(const QString &path)
{
    QStringList all = files();
    all.removeAll(path);
    all.prepend(path);
    m_settings.setValue(key(), QStringList(all.mid(0, Limit)));
    m_settings.sync();
}

void RecentFiles::clear()
{
    m_settings.remove(key());
}

} // namespace Core
