#pragma once

#include "extensionfile/readerror.h"

struct XML_ParserStruct;

namespace ExtensionFile {

struct DecodedDocument;

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

} // namespace ExtensionFile
