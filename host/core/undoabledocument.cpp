#include "core/undoabledocument.h"

namespace Core {

DocumentState::~DocumentState() = default;
UndoableDocument::~UndoableDocument() = default;

} // namespace Core
