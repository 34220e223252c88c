#pragma once

#include "core/core_global.h"

#include <QByteArray>
#include <QMetaType>
#include <QString>

namespace Core {

/// A name that is cheap to copy and to compare: equal names share one number for the life of the process.
/// Thread-safe.
class CORE_EXPORT Id
{
public:
    /// The invalid id.
    Id() = default;
    /// \a name is copied; null or empty gives the invalid id.
    explicit Id(const char *name);

    [[nodiscard]] static Id fromName(const QByteArray &name);
    [[nodiscard]] static Id fromString(const QString &name);

    [[nodiscard]] bool isValid() const { return m_number != 0; }
    /// Empty for the invalid id.
    [[nodiscard]] QByteArray name() const;
    [[nodiscard]] QString toString() const;

    friend bool operator==(Id a, Id b) { return a.m_number == b.m_number; }
    friend bool operator!=(Id a, Id b) { return a.m_number != b.m_number; }
    /// Orders by first use in the process, not by name.
    friend bool operator<(Id a, Id b) { return a.m_number < b.m_number; }
    friend uint qHash(Id id, uint seed = 0) { return ::qHash(id.m_number, seed); }

private:
    int m_number = 0;
};

} // namespace Core

Q_DECLARE_TYPEINFO(Core::Id, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(Core::Id)
