#pragma once

#include <QtGlobal>

#include <unistd.h>

/// While it lives, the process has the rights of the user "nobody": root may read and write anything, whatever the
/// mode. Changes nothing for a process that is not root's.
class Unprivileged final
{
public:
    Unprivileged()
    {
        if (m_user == 0 && ::setresuid(Nobody, Nobody, 0) != 0)
            qFatal("the rights of root could not be laid down");
    }
    ~Unprivileged()
    {
        if (m_user == 0 && ::setresuid(0, 0, 0) != 0)
            qFatal("the rights of root could not be taken up again");
    }
    Unprivileged(const Unprivileged &) = delete;
    Unprivileged &operator=(const Unprivileged &) = delete;

private:
    static constexpr uid_t Nobody = 65534;
    const uid_t m_user = ::getuid();
};
