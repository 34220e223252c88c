#include "modellog.h"

Q_LOGGING_CATEGORY(modelLog, "extpoint.model", QtInfoMsg)
Q_LOGGING_CATEGORY(scanLog, "extpoint.scan", QtInfoMsg)
