#pragma once

#include "core/core_global.h"

#include <QString>

#include <memory>

namespace Core {

/// The content of a document at one moment, known to the document alone. Immutable.
class CORE_EXPORT DocumentState
{
public:
    virtual ~DocumentState();

    /// Bytes, about: what it needs beside what it shares with the state that was taken before it.
    [[nodiscard]] virtual qint64 size() const = 0;
};

/// What a document may offer beyond IDocument, so that the host can undo and redo: its content as a state, and the way
/// back. It keeps what recovery copies can't, namely what no file holds. A document derives from both classes; the host
/// asks for this one with dynamic_cast and does without where it is missing. GUI thread only.
class CORE_EXPORT UndoableDocument
{
public:
    virtual ~UndoableDocument();

    using State = std::shared_ptr<const DocumentState>;

    struct Change
    {
        QString text; ///< one sentence; empty when there is no difference that a user could have made
        bool isDeletion = false;
    };

    /// Must be quick: it is asked for after every change. Does not end what the user is typing.
    [[nodiscard]] virtual State documentState() = 0;
    /// @p state is one of this document's. The document is modified afterwards. The view stays where it is.
    virtual void setDocumentState(const State &state) = 0;
    [[nodiscard]] virtual Change changeBetween(const State &before, const State &after) const = 0;
};

} // namespace Core
