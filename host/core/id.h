#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>

namespace Core {

/// The name of a kind of editor, of a context and the like. A plain value; a default-constructed one and the empty name
/// are invalid.
class Id
{
public:
    Id() = default;
    explicit Id(const char *name) : m_name(name) { }

    [[nodiscard]] bool isValid() const { return !m_name.isEmpty(); }
    [[nodiscard]] QByteArray name() const { return m_name; }
    [[nodiscard]] QString toString() const { return QString::fromUtf8(m_name); }

    friend bool operator==(const Id &a, const Id &b) { return a.m_name == b.m_name; }
    friend bool operator!=(const Id &a, const Id &b) { return !(a == b); }

private:
    QByteArray m_name;
};

} // namespace Core

Q_DECLARE_METATYPE(Core::Id)
