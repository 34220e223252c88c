#pragma once

#include "core/core_global.h"
#include "core/id.h"

#include <QObject>
#include <QStringList>

#include <utility>

namespace Core {

class IEditor;

/// Makes the editors for files of certain MIME types. Found by the EditorManager in the plug-in system's object pool,
/// so it serves as long as it is registered there.
class CORE_EXPORT IEditorFactory : public QObject
{
    Q_OBJECT

public:
    explicit IEditorFactory(QObject *parent = nullptr);
    ~IEditorFactory() override;

    [[nodiscard]] Id id() const { return m_id; }
    void setId(Id id) { m_id = std::move(id); }

    [[nodiscard]] QStringList mimeTypes() const { return m_mimeTypes; }
    void setMimeTypes(const QStringList &mimeTypes) { m_mimeTypes = mimeTypes; }

    [[nodiscard]] QString displayName() const { return m_displayName; }
    void setDisplayName(const QString &displayName) { m_displayName = displayName; }

    /// A new editor with an empty document; the caller owns it.
    [[nodiscard]] virtual IEditor *createEditor() = 0;

private:
    QStringList m_mimeTypes;
    QString m_displayName;
    Id m_id;
};

} // namespace Core
