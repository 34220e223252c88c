#include "core/viewmemory.h"

#include "core/editormanager.h"
#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/viewkeeper.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <utility>
#include <vector>

namespace Core {

namespace {

constexpr int LongestState = 8 * 1024; // bytes, as they are kept
constexpr int LongestFullState = 1024 * 1024;
constexpr int StreamVersion = QDataStream::Qt_5_15;

QString group()
{
    return QStringLiteral("Views");
}

QString keyOf(IEditor *editor)
{
    const QFileInfo file(editor->document()->filePath().toString());
    const QString path = file.canonicalFilePath();
    const QByteArray name = QFile::encodeName(path.isEmpty() ? file.absoluteFilePath() : path);
    return QString::fromLatin1(QCryptographicHash::hash(name, QCryptographicHash::Sha1).toHex());
}

QByteArray packed(const QVariantMap &view)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(StreamVersion);
    stream << view;
    return bytes.size() > LongestFullState ? QByteArray() : qCompress(bytes);
}

QVariantMap unpacked(const QByteArray &state)
{
    // Begins with the size of what comes out.
    constexpr int SizeBytes = 4;
    quint32 size = 0;
    QDataStream(state.left(SizeBytes)) >> size;
    if (state.size() <= SizeBytes || size > LongestFullState)
        return {};
    const QByteArray bytes = qUncompress(state);
    QDataStream stream(bytes);
    stream.setVersion(StreamVersion);
    QVariantMap view;
    stream >> view;
    return stream.status() == QDataStream::Ok ? view : QVariantMap();
}

} // namespace

ViewMemory::ViewMemory(EditorManager &editors, QSettings &settings, QObject *parent)
    : QObject(parent), m_settings(settings)
{
    connect(&editors, &EditorManager::aboutToClose, this, &ViewMemory::remember);
}

void ViewMemory::restore(IEditor *editor)
{
    auto *keeper = dynamic_cast<ViewKeeper *>(editor);
    if (!keeper)
        return;
    const QVariantList entry = m_settings.value(group() + QLatin1Char('/') + keyOf(editor)).toList();
    const QVariantMap view = unpacked(entry.value(1).toByteArray());
    if (!view.isEmpty())
        keeper->setViewState(view);
}

void ViewMemory::remember(IEditor *editor)
{
    const auto *keeper = dynamic_cast<const ViewKeeper *>(editor);
    if (!keeper)
        return;
    const QByteArray state = packed(keeper->viewState());
    const QString key = keyOf(editor);
    m_settings.beginGroup(group());
    m_settings.remove(key);
    if (!state.isEmpty() && state.size() <= LongestState) {
        // After all others, whatever the clock says.
        const qint64 newest = forgetOldest(MostFiles - 1);
        m_settings.setValue(key, QVariantList { qMax(newest + 1, QDateTime::currentMSecsSinceEpoch()), state });
    }
    m_settings.endGroup();
}

qint64 ViewMemory::forgetOldest(int left)
{
    const QStringList keys = m_settings.childKeys();
    std::vector<std::pair<qint64, QString>> entries;
    for (const QString &key : keys)
        entries.emplace_back(m_settings.value(key).toList().value(0).toLongLong(), key);
    std::sort(entries.rbegin(), entries.rend());
    for (size_t i = size_t(left); i < entries.size(); ++i)
        m_settings.remove(entries.at(i).second);
    return entries.empty() ? 0 : entries.front().first;
}

} // namespace Core
