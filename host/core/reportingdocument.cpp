#include "core/reportingdocument.h"

namespace Core {

ReportingDocument::~ReportingDocument() = default;

} // namespace Core
