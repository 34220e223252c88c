#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(modelLog) ///< extpoint.model
Q_DECLARE_LOGGING_CATEGORY(scanLog)  ///< extpoint.scan
