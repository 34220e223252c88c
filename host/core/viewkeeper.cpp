#include "core/viewkeeper.h"

namespace Core {

// Here and nowhere else, as for RecoverableDocument.
ViewKeeper::~ViewKeeper() = default;

} // namespace Core
