#pragma once

#include "core/core_global.h"

#include <QByteArray>
#include <QString>

namespace Core {

/// What a document may offer beyond IDocument, so that the host can bring unsaved changes over a crash: its content as
/// bytes, and the way back. A document derives from both classes; the host asks for this one with dynamic_cast and does
/// without where it is missing. It is apart from IDocument::contents() and setContents(), which say what a document is
/// for others. GUI thread only.
class CORE_EXPORT RecoverableDocument
{
public:
    virtual ~RecoverableDocument();

    /// The content, so that nothing of it is lost by the way back; it need not be what a save would write. Must not
    /// change the document, nor end what the user is typing. Empty when it can't be told now; the host asks again
    /// later.
    [[nodiscard]] virtual QByteArray recoveryData() const = 0;

    /// Takes the place of IDocument::open(): the document of the file @p fileName, which need not exist, with the
    /// content that recoveryData() gave. It is modified afterwards, and saving it writes @p fileName. False, with the
    /// reason in @p errorString (never null) or in the log, when the bytes are no document.
    [[nodiscard]] virtual bool openRecovered(QString *errorString, const QString &fileName, const QByteArray &data) = 0;
};

} // namespace Core
