#pragma once

#include "core/core_global.h"

#include <QObject>

#include <csignal>
#include <vector>

namespace Core {

/// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal, so that the program ends through its event loop. A signal that
/// the process was started to ignore stays ignored. At most one at a time; gives everything back when it goes.
class CORE_EXPORT QuitSignals final : public QObject
{
    Q_OBJECT

public:
    explicit QuitSignals(QObject *parent = nullptr);
    ~QuitSignals() override;

Q_SIGNALS:
    void asked();

private:
    struct Replaced
    {
        int number;
        struct sigaction action;
    };

    int m_pipe[2] = { -1, -1 };
    std::vector<Replaced> m_replaced;
};

} // namespace Core
