#pragma once

#include "core/busymonitor.h"
#include "core/core_global.h"
#include "core/idocument.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace Utils {
class MimeType;
}

namespace Core {

class IEditor;
class IEditorFactory;

/// Exactly one of the two is set. The editor stays the manager's.
struct OpenOutcome
{
    IEditor *editor = nullptr;
    QString error; ///< Why the file can't be opened, one or more sentences.
};

struct SaveOutcome
{
    bool written = false;
    QString error;   ///< Why the file was not written; empty exactly when it was.
    QString warning; ///< The file was written, but something about it has to be told; mostly empty.
};

/// Opens files in the editors of plug-ins, saves and closes them. Owns the editors; shows nothing itself, every failure
/// is data. GUI thread only.
///
/// It takes no document's word for what happened to the file. A document may fail to open without a reason and may
/// report every save as a success; so the manager collects what was logged meanwhile and looks at the file itself. A
/// document whose file was not written stays modified here (isModified()) whatever it says of itself, until a later
/// save works or it is closed.
class CORE_EXPORT EditorManager final : public QObject
{
    Q_OBJECT

public:
    explicit EditorManager(QObject *parent = nullptr);
    ~EditorManager() override;

    /// The factory in the object pool for the type of the file: one that names the type itself, else one that names the
    /// nearest type it derives from. Null when there is none.
    [[nodiscard]] IEditorFactory *factoryFor(const QString &path) const;

    /// Opens the file in a new editor, however many have it open already. @p path is made absolute.
    [[nodiscard]] OpenOutcome open(const QString &path);
    /// As open(), with @p data, which a document of the file gave as a recovery copy, in place of what the file holds.
    [[nodiscard]] OpenOutcome openRecovered(const QString &path, const QByteArray &data);
    /// Saves the document of @p editor to its path.
    [[nodiscard]] SaveOutcome save(IEditor *editor);
    /// Deletes @p editor, and its widget if that survives it. Asks nothing.
    void close(IEditor *editor);
    void closeAll();

    [[nodiscard]] std::vector<IEditor *> editors() const;
    /// True when the document says so, when its last save did not reach the disk, or when it is ahead of the disk.
    [[nodiscard]] bool isModified(IEditor *editor) const;
    /// Whether the disk holds less than the document, although that was not changed: the file was removed, say. A save
    /// ends it.
    void setAhead(IEditor *editor, bool ahead);
    /// True while a document loads or saves, which may run an event loop: nothing may be closed then.
    [[nodiscard]] bool isWorking() const { return m_working; }

    [[nodiscard]] const BusyMonitor &busyMonitor() const { return m_busyMonitor; }

Q_SIGNALS:
    void opened(Core::IEditor *editor);
    /// The editor is still whole; its widget must be taken out of the window now.
    void aboutToClose(Core::IEditor *editor);
    /// Path, modified state or permissions of its document may be different now.
    void documentChanged(Core::IEditor *editor);

private:
    using Opener = std::function<IDocument::OpenResult(IDocument &document, QString *errorString)>;
    [[nodiscard]] OpenOutcome openWith(IEditorFactory &factory, const QString &file, const Opener &opener);
    [[nodiscard]] IEditorFactory *factoryFor(const Utils::MimeType &type) const;
    void adopt(std::unique_ptr<IEditor> editor);

    struct Entry
    {
        std::unique_ptr<IEditor> editor;
        bool unwritten = false; ///< The last save did not reach the disk.
        bool ahead = false;     ///< See setAhead().
    };
    [[nodiscard]] std::vector<Entry>::const_iterator find(const IEditor *editor) const;
    void setUnwritten(const IEditor *editor, bool unwritten);

    std::vector<Entry> m_entries;
    BusyMonitor m_busyMonitor;
    bool m_working = false;
};

} // namespace Core
