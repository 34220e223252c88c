#include "core/recoverabledocument.h"

namespace Core {

// Here and nowhere else, so that there is one type information for all plug-ins and dynamic_cast works across them.
RecoverableDocument::~RecoverableDocument() = default;

} // namespace Core
