#pragma once

#include "core/core_global.h"

#include <QByteArray>
#include <QtGlobal>

namespace Core {

/// Names one process for good: its number is given to another one later, with another start or after another boot. A
/// plain value.
struct CORE_EXPORT ProcessIdentity
{
    qint64 pid = 0;
    quint64 start = 0; ///< Clock ticks after the boot; 0 when the system doesn't tell.
    QByteArray boot;   ///< Empty when the system doesn't tell.

    [[nodiscard]] static ProcessIdentity current();
    [[nodiscard]] bool isAlive() const;
};

} // namespace Core
