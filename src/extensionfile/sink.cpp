#include "extensionfile/sink.h"

namespace ExtensionFile {

Sink::~Sink() = default;

void Sink::aside(Aside, const QString &) { }

} // namespace ExtensionFile
