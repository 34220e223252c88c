#pragma once

#include "core/core_global.h"
#include "core/id.h"
#include "utils/filename.h"

#include <QObject>

namespace Core {

/// An opened file, as the host sees it. Owned by its editor; lives on the GUI thread.
///
/// A document that works in the background (reading further files, say) tells the host with the dynamic property
/// "busy" (bool): `setProperty("busy", true)` when it starts, false once everything has been taken in. The host
/// shows an indicator meanwhile, and commands that need the finished state wait for it.
class CORE_EXPORT IDocument : public QObject
{
    Q_OBJECT

public:
    enum class OpenResult {
        Success,     ///< The content is loaded.
        ReadError,   ///< The file could not be read or understood.
        CannotHandle ///< The file is none that this editor works on.
    };
    Q_ENUM(OpenResult)

    enum ReloadFlag { FlagReload, FlagIgnore };
    enum ChangeTrigger { TriggerInternal, TriggerExternal };
    enum ChangeType { TypeContents, TypePermissions, TypeRemoved };
    enum ReloadBehavior { BehaviorAsk, BehaviorSilent };

    explicit IDocument(QObject *parent = nullptr);
    ~IDocument() override;

    /// Loads @p realFileName under the name @p fileName; they differ only when a recovered copy is read.
    /// A document may fail without setting @p errorString (never null): the host then looks for the reason itself.
    virtual OpenResult open(QString *errorString, const QString &fileName, const QString &realFileName) = 0;
    /// Writes the content. The host trusts no document that reports success: it looks at the file before and after.
    virtual bool save(QString *errorString, const QString &fileName = QString(), bool autoSave = false) = 0;
    /// The content as bytes, empty when the document has no such form.
    virtual QByteArray contents() const;
    /// False when the document can't be filled from bytes.
    virtual bool setContents(const QByteArray &contents);

    virtual bool shouldAutoSave() const;
    virtual bool isModified() const = 0;
    virtual bool isSaveAsAllowed() const = 0;
    virtual bool reload(QString *errorString, ReloadFlag flag, ChangeType type) = 0;

    /// Emits filePathChanged() when the path is another one.
    virtual void setFilePath(const Utils::FileName &filePath);
    /// True for a file that is there and that this process may not write.
    virtual bool isFileReadOnly() const;
    virtual QString fallbackSaveAsPath() const;
    virtual QString fallbackSaveAsFileName() const;
    virtual ReloadBehavior reloadBehavior(ChangeTrigger trigger, ChangeType type) const;
    /// Called by the host when the permissions of the file may have changed.
    virtual void checkPermissions();

    [[nodiscard]] Utils::FileName filePath() const;
    /// The last part of the path, for titles.
    [[nodiscard]] QString displayName() const;
    void setId(Id id);
    [[nodiscard]] Id id() const;
    void setMimeType(const QString &mimeType);
    [[nodiscard]] QString mimeType() const;

Q_SIGNALS:
    /// The content, the modified state or the permissions changed.
    void changed();
    void filePathChanged(const Utils::FileName &oldPath, const Utils::FileName &newPath);

private:
    Utils::FileName m_filePath;
    QString m_mimeType;
    Id m_id;
};

} // namespace Core
