#include "extensionfile/sink.h"

namespace ExtensionFile {

Sink::~Sink() = default;

} // namespace ExtensionFile
