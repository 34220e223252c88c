#pragma once

#include "extensionfile/attributes.h"
#include "extensionfile/readerror.h"

struct XML_ParserStruct;

namespace ExtensionFile {

struct DecodedDocument;

/// What a document holds beside elements, which are all that is kept of it.
enum class Aside {
    Comment,
    Text, ///< not of blanks alone
    Instruction,
    DocumentType,
    LooksLikeUtf8 ///< the bytes are UTF-8, but another encoding is declared, and so they were read in that one
};

/// Finds the place of what a sink is just given, on demand: a sink that does not ask pays nothing. Valid during the
/// call that it is handed to, on that thread; one made by nobody knows no place.
class Locator final
{
public:
    Locator() = default;
    /// Both must outlive it.
    Locator(const DecodedDocument &document, XML_ParserStruct *parser) : m_document(&document), m_parser(parser) { }

    /// The "<" of the start tag, or the "&" of the reference to the entity that the element comes out of.
    [[nodiscard]] Location element() const;

    /// The name of the attribute at @p index of those that the element has; the element where the attribute does not
    /// stand in the start tag, since the document type declaration gives it, or comes out of an entity with its
    /// element.
    [[nodiscard]] Location attribute(int index) const;

private:
    const DecodedDocument *m_document = nullptr;
    XML_ParserStruct *m_parser = nullptr;
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
