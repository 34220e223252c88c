#pragma once

#include "extensionfile/attributes.h"

namespace ExtensionFile {

/// A place in a file as an editor shows it: both numbers count from 1, columns count characters (not bytes; a tab is
/// one). 0 stands for "no place".
struct Location
{
    qint64 line = 0;
    qint64 column = 0;
};

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
    virtual ~Sink();

    /// Whether the sink looks at `where`. Where it does not, finding the places is left out, and they are 0.
    [[nodiscard]] virtual bool wantsLocations() const { return true; }

    /// Whether the sink looks at the attributes. Where it does not, they may be left out; the document fails by them as
    /// it does otherwise.
    [[nodiscard]] virtual bool wantsAttributes() const { return true; }

    /// The whole file is in memory: from here on reading waits for nobody. Not called for bytes that were there.
    virtual void fileRead() { }

    /// Whether aside() is to be called.
    [[nodiscard]] virtual bool wantsAsides() const { return false; }

    /// In document order, but for LooksLikeUtf8, which comes last and with an empty @p text. Of a long text the
    /// beginning.
    virtual void aside(Aside what, const QString &text);

    /// What came so far is to be forgotten: the document begins anew. Never called where locations are wanted.
    virtual void restart() = 0;

    /// `where` is the "<" of the start tag. In a document that declares entities, where an element may come out of one,
    /// it is instead the last character that the parser had taken (the tag's ">", or the ";" of the reference).
    virtual void startElement(const QString &name, const Attributes &attributes, const Location &where) = 0;

    /// Ends the element that was started last and not yet ended.
    virtual void endElement() = 0;
};

} // namespace ExtensionFile
