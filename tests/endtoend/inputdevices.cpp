#include "inputdevices.h"

#include <QLineF>
#include <QProcess>

#include <cmath>

namespace {

constexpr int Patience = 30'000; // milliseconds
constexpr qreal StepLength = 12;
// Between the steps of a move, so that they arrive as several events and not as one.
const QString StepPause = QStringLiteral("0.008");

bool run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program, arguments);
    return process.waitForFinished(Patience) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

bool xdotool(const QStringList &arguments)
{
    return run(QStringLiteral("xdotool"), arguments);
}

/// What it answers, empty when there is no answer.
QString output(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    return process.waitForFinished(Patience) ? QString::fromUtf8(process.readAllStandardOutput()).trimmed() : QString();
}

QStringList moveTo(QPoint point)
{
    return { QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y()) };
}

} // namespace

bool InputDevices::plugIn()
{
    return keys({ QStringLiteral("Shift_L") });
}

bool InputDevices::move(QPoint to)
{
    return xdotool(moveTo(to));
}

bool InputDevices::click(QPoint at, int button, int times)
{
    return xdotool(moveTo(at)
        + QStringList { QStringLiteral("click"), QStringLiteral("--repeat"), QString::number(times),
            QStringLiteral("--delay"), QStringLiteral("40"), QString::number(button) });
}

bool InputDevices::press(QPoint at)
{
    return xdotool(moveTo(at) + QStringList { QStringLiteral("mousedown"), QStringLiteral("1") });
}

bool InputDevices::release()
{
    return xdotool({ QStringLiteral("mouseup"), QStringLiteral("1") });
}

bool InputDevices::moveAlong(const QVector<QPoint> &points)
{
    QStringList commands;
    for (int i = 1; i < points.size(); ++i) {
        const QLineF way(points.at(i - 1), points.at(i));
        const int steps = qMax(1, int(std::ceil(way.length() / StepLength)));
        for (int step = 1; step <= steps; ++step)
            commands += moveTo(way.pointAt(qreal(step) / steps).toPoint())
                + QStringList { QStringLiteral("sleep"), StepPause };
    }
    return commands.isEmpty() || xdotool(commands);
}

bool InputDevices::keys(const QStringList &names)
{
    return xdotool(QStringList { QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("20") } + names);
}

bool InputDevices::type(const QString &text)
{
    return xdotool(
        { QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("12"), QStringLiteral("--"), text });
}

qint64 InputDevices::activeWindow()
{
    return output({ QStringLiteral("getactivewindow") }).toLongLong();
}

QString InputDevices::activeTitle()
{
    return output({ QStringLiteral("getactivewindow"), QStringLiteral("getwindowname") });
}

bool InputDevices::cutOffActiveWindow()
{
    return xdotool({ QStringLiteral("getactivewindow"), QStringLiteral("windowkill") });
}

bool InputDevices::takePicture(const QString &path)
{
    return run(QStringLiteral("import"), { QStringLiteral("-window"), QStringLiteral("root"), path });
}
