#pragma once

#include "extensionfile/attributes.h"
#include "extensionfile/locator.h"

namespace ExtensionFile {

/// What a document holds beside elements, which are all that is kept of it.
enum class Aside {
    Comment,
    Text, ///< not of blanks alone
    Instruction,
    DocumentType,
    LooksLikeUtf8 ///< the bytes are UTF-8, but another encoding is declared, and so they were read in that one
};

/// Takes the elements of a document in document order, on the thread that reads. The events come while the rest is
/// unread and may still turn out malformed, so a sink must keep what it builds to itself until read() has returned
/// true. Owned by the caller of read().
class Sink
{
public:
    virtual ~Sink() = default;

    /// The whole file is in memory: from here on reading waits for nobody. Not called for bytes that were there.
    virtual void fileRead() { }

    /// In document order, but for LooksLikeUtf8, which comes last and with an empty text. Of a long text the beginning.
    virtual void aside(Aside, const QString & /*text*/) { }

    /// @p where knows the places of the element and its attributes, for as long as the call lasts.
    virtual void startElement(const QString &name, const Attributes &attributes, const Locator &where) = 0;

    /// Ends the element that was started last and not yet ended.
    virtual void endElement() = 0;
};

} // namespace ExtensionFile
