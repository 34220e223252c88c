#pragma once

#include <QJsonObject>
#include <QString>

/// Single measurements, each made in a process of its own, so that none meets the memory that another has left. An
/// answer holds plain figures, times in milliseconds, or "error" with the reason.
namespace Samples {

/// Runs the measurement @p name with @p arguments.
[[nodiscard]] QJsonObject run(const QString &name, const QJsonObject &arguments);

[[nodiscard]] QJsonObject failure(const QString &reason);
[[nodiscard]] bool failed(const QJsonObject &answer);

/// "directory" of plug-ins, "parser": "stream", "dom" or "pugixml". Answers "wall", one thread over all files.
[[nodiscard]] QJsonObject parse(const QJsonObject &arguments);

/// "file" to open, "threads" of the pool (0: as many as Qt takes), "probe": "" or "timer" or "typing" or "clicking".
/// Answers "wall", "nodes", "bytes" of resident growth and, by the probe, "stall" or "latencies".
[[nodiscard]] QJsonObject scan(const QJsonObject &arguments);

/// "directory": the pause of the timer with nothing on the GUI thread, while two threads read. Answers "stall".
[[nodiscard]] QJsonObject idle(const QJsonObject &arguments);

/// "file". Answers "wall" from the wish to open it until it is painted.
[[nodiscard]] QJsonObject open(const QJsonObject &arguments);

/// "file", "rounds". Answers the lists "ours" and "dom", saved by turns.
[[nodiscard]] QJsonObject save(const QJsonObject &arguments);

/// "file", "rounds", "records". Answers the lists "ours" and "bare", shown by turns.
[[nodiscard]] QJsonObject click(const QJsonObject &arguments);

/// "file", "rounds", "items". Answers the lists "ours" and "bare", shown by turns.
[[nodiscard]] QJsonObject tab(const QJsonObject &arguments);

/// "file", "rounds". Answers an object "kinds" with the list of times of each kind of change.
[[nodiscard]] QJsonObject edit(const QJsonObject &arguments);

} // namespace Samples
