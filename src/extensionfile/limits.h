#pragma once

#include <QtGlobal>

namespace ExtensionFile {

/// What a file may ask of the process. Every file that lies in a sibling directory is read without anybody having asked
/// for it, so none may take the memory or the minutes of the host. A maximum itself is still accepted; a file over one
/// is refused like one that can't be parsed.
struct Limits
{
    /// Bytes. Large hand-made files stay under 1 MiB; this is read into memory whole, together with one decoded copy.
    qint64 maximumFileSize = 64 * 1024 * 1024;

    /// Levels of elements, the root being the first. Neither the parser nor the model needs any stack for them, but the
    /// views of the toolkit lay rows out by recursion: this many levels take a quarter of a stack of 512 KiB, which is
    /// as little as threads are given. 1,000 levels of points or of data have to work.
    int maximumDepth = 1'024;

    /// Elements of a document. Each becomes a tree row of several hundred bytes out of as few as four bytes of file.
    int maximumElements = 1'000'000;

    /// Attributes of one element. A sheet has a row for each.
    int maximumAttributesPerElement = 500;

    /// Attributes of a document, those that its document type declaration adds included.
    int maximumAttributes = 4'000'000;

    /// Characters of all attribute names and values together. A default value of a document type declaration is handed
    /// out once per element, and so may be multiplied by the number of elements.
    qint64 maximumAttributeText = 64 * 1024 * 1024;

    /// Bytes of what the document type declares. The parser's time grows with the square of the number of declared
    /// attributes, each element is compared with all of them, and an entity that refers to the next one and so on takes
    /// stack for each.
    int maximumDeclarationSize = 16 * 1024;

    /// Bytes that the document may become by its entities, where that is more than twice its own.
    int maximumExpansion = 8 * 1024 * 1024;

    /// Nodes, of all siblings that are read in one scan: about 1 GB of memory. Each sibling may have a million by
    /// itself, and nobody has asked for any of them. 8,000 plug-ins of a hundred elements have 800,000.
    qint64 maximumScanElements = 2'000'000;

    /// Characters of all their attributes, at two bytes each.
    qint64 maximumScanAttributeText = 256 * 1024 * 1024;
};

} // namespace ExtensionFile
