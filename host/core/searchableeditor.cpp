#include "core/searchableeditor.h"

namespace Core {

// Here and nowhere else, as for RecoverableDocument.
ProductSearch::~ProductSearch() = default;
SearchableEditor::~SearchableEditor() = default;

} // namespace Core
