#pragma once

#include "core/id.h"

#include <QList>

namespace Core {

/// The ids under which the actions of the window that has the focus are valid. A plain value.
class Context
{
public:
    Context() = default;
    explicit Context(const Id &id) { add(id); }

    /// An invalid id and one already there are ignored.
    void add(const Id &id)
    {
        if (id.isValid() && !contains(id))
            m_ids.append(id);
    }
    [[nodiscard]] bool contains(const Id &id) const { return m_ids.contains(id); }

private:
    QList<Id> m_ids;
};

} // namespace Core
