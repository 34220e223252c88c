#include "core/recentfiles.h"

#include <QFileInfo>
#include <QSettings>
#include <QVariant>

#include <algorithm>

namespace Core {

namespace {

constexpr int WriteDelay = 500; // milliseconds

QString key()
{
    return QStringLiteral("RecentFiles");
}

} // namespace

RecentFiles::RecentFiles(QSettings &settings) : m_settings(settings)
{
    m_later.setSingleShot(true);
    m_later.setInterval(WriteDelay);
    QObject::connect(&m_later, &QTimer::timeout, &m_later, [this] { write(); });
}

RecentFiles::~RecentFiles()
{
    if (!m_added.isEmpty())
        write();
}

QStringList RecentFiles::files() const
{
    m_settings.sync();
    QStringList files = m_added + m_settings.value(key()).toStringList();
    files.removeDuplicates();
    files.erase(
        std::remove_if(files.begin(), files.end(), [](const QString &path) { return !QFileInfo(path).isFile(); }),
        files.end());
    return files.mid(0, Limit);
}

void RecentFiles::add(const QString &path)
{
    m_added.removeAll(path);
    m_added.prepend(path);
    m_later.start();
}

void RecentFiles::clear()
{
    m_added.clear();
    m_later.stop();
    m_settings.remove(key());
}

void RecentFiles::write()
{
    m_settings.setValue(key(), files());
    m_settings.sync();
    m_added.clear();
}

} // namespace Core
