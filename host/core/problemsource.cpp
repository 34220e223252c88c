#include "core/problemsource.h"

namespace Core {

// Here and nowhere else, as for RecoverableDocument.
ProblemSource::~ProblemSource() = default;

} // namespace Core
