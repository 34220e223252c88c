#pragma once

#include "core/core_global.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace Core {

/// What saving does to a file beside writing what its editor shows.
struct SaveReport
{
    QString question;    ///< what would be lost that must not be lost in silence, in one sentence; mostly empty
    QString advice;      ///< what to do about it, in one sentence
    QStringList remarks; ///< everything, a line each
};

/// A file that a document depends on and that is there but can't be read.
struct UnreadableFile
{
    QString path;
    QString reason; ///< with the path, and with line and column where it has a place
};

/// What a document may offer beyond IDocument, so that the host can tell what a save will do before it does it, and
/// need not wait for it. A document derives from both classes; the host asks for this one with dynamic_cast. A document
/// that is still at work on what a save needs has the dynamic property "busy" and is not saved meanwhile. GUI thread
/// only; nothing here blocks for longer than a save takes.
class CORE_EXPORT ReportingDocument
{
public:
    virtual ~ReportingDocument();

    /// The files that the document is still waiting for.
    [[nodiscard]] virtual QStringList awaitedFiles() const = 0;
    /// Those that it waited for in vain, as far as is known by now.
    [[nodiscard]] virtual QVector<UnreadableFile> unreadableFiles() const = 0;

    /// What saveNow() would do at this moment. Takes in what the user is typing.
    [[nodiscard]] virtual SaveReport saveReport() = 0;

    /// As IDocument::save() to the path of the document, but waits for nothing and says how it went: true when the file
    /// holds the document now. Otherwise the old file is as it was, and the reason is in @p errorString (never null) or
    /// in the log.
    [[nodiscard]] virtual bool saveNow(QString *errorString) = 0;
};

} // namespace Core
