#include "core/pluginids.h"

#include "core/documentroot.h"

#include <QDirIterator>
#include <QElapsedTimer>

namespace Core {

namespace {

constexpr int LongestTurn = 4; // milliseconds

} // namespace

PluginIds::PluginIds(QObject *parent) : QObject(parent)
{
    connect(&m_next, &QTimer::timeout, this, &PluginIds::goOn);
}

PluginIds::~PluginIds() = default;

void PluginIds::read(const QString &place)
{
    if (place == m_place)
        return;
    m_place = place;
    m_directories.clear();
    m_left = QDir::isAbsolutePath(place) ? std::make_unique<QDirIterator>(place, QDir::Dirs | QDir::NoDotAndDotDot)
                                         : nullptr;
    if (m_left)
        m_next.start();
    else
        m_next.stop();
}

void PluginIds::goOn()
{
    QElapsedTimer turn;
    turn.start();
    while (m_left->hasNext() && !turn.hasExpired(LongestTurn)) {
        const QString path = m_left->next();
        const QString id = DocumentRoot::of(path + QLatin1String("/extension.xml")).id;
        if (!id.isEmpty())
            m_directories.insert(id, m_left->fileName());
    }
    if (m_left->hasNext())
        return;
    m_next.stop();
    Q_EMIT finished();
}

} // namespace Core
