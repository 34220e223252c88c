#include "core/idocument.h"

#include <QFileInfo>

#include <utility>

namespace Core {

IDocument::IDocument(QObject *parent) : QObject(parent) { }

IDocument::~IDocument() = default;

QByteArray IDocument::contents() const
{
    return QByteArray();
}

bool IDocument::setContents(const QByteArray &contents)
{
    Q_UNUSED(contents)
    return false;
}

bool IDocument::shouldAutoSave() const
{
    return false;
}

void IDocument::setFilePath(const Utils::FileName &filePath)
{
    if (filePath == m_filePath)
        return;
    const Utils::FileName oldPath = m_filePath;
    m_filePath = filePath;
    Q_EMIT filePathChanged(oldPath, m_filePath);
}

bool IDocument::isFileReadOnly() const
{
    const QFileInfo info(m_filePath.toString());
    return !m_filePath.isEmpty() && info.exists() && !info.isWritable();
}

QString IDocument::fallbackSaveAsPath() const
{
    return QString();
}

QString IDocument::fallbackSaveAsFileName() const
{
    return QString();
}

IDocument::ReloadBehavior IDocument::reloadBehavior(ChangeTrigger trigger, ChangeType type) const
{
    const bool silent = type == TypePermissions || (trigger == TriggerInternal && type == TypeContents);
    return silent && !isModified() ? BehaviorSilent : BehaviorAsk;
}

void IDocument::checkPermissions() { }

Utils::FileName IDocument::filePath() const
{
    return m_filePath;
}

QString IDocument::displayName() const
{
    return QFileInfo(m_filePath.toString()).fileName();
}

void IDocument::setId(Id id)
{
    m_id = std::move(id);
}

Id IDocument::id() const
{
    return m_id;
}

void IDocument::setMimeType(const QString &mimeType)
{
    m_mimeType = mimeType;
}

QString IDocument::mimeType() const
{
    return m_mimeType;
}

} // namespace Core
