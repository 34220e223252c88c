#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// The processes in which single measurements are made, on the offscreen platform and with the settings of nobody. GUI
/// thread.
class Processes final
{
public:
    /// @p home takes what the programs store.
    explicit Processes(const QString &home);

    /// Runs the measurement @p name in a new process of this program; its answer, or one with "error".
    [[nodiscard]] QJsonObject sample(const QString &name, const QJsonObject &arguments) const;

    /// From the start of @p program until the widget @p target (empty: any window) has first been painted, in
    /// milliseconds; NaN when that doesn't happen. The program is ended then.
    [[nodiscard]] double startToPaint(
        const QString &program, const QStringList &arguments, const QString &target) const;

private:
    QString m_home;
};
