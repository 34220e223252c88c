#include "inputdevices.h"

#include "files.h"

#include <QLineF>
#include <QProcess>

#include <cmath>

namespace {

constexpr int Patience = 30'000; // milliseconds
constexpr qreal StepLength = 12;

bool run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program, arguments);
    return process.waitForFinished(Patience) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

bool xdotool(const QString &line)
{
    return run(s("xdotool"), line.split(QLatin1Char(' ')));
}

/// What it answers, empty when there is no answer.
QString answer(const QStringList &arguments)
{
    QProcess process;
    process.start(s("xdotool"), arguments);
    return process.waitForFinished(Patience) ? QString::fromUtf8(process.readAllStandardOutput()).trimmed() : QString();
}

QString moveTo(QPoint point)
{
    return s("mousemove %1 %2 ").arg(point.x()).arg(point.y());
}

} // namespace

bool InputDevices::plugIn()
{
    return key(s("Shift_L"));
}

bool InputDevices::move(QPoint to)
{
    return xdotool(moveTo(to).trimmed());
}

bool InputDevices::click(QPoint at, int button)
{
    return xdotool(moveTo(at) + s("click %1").arg(button));
}

bool InputDevices::press(QPoint at)
{
    return xdotool(moveTo(at) + s("mousedown 1"));
}

bool InputDevices::release()
{
    return xdotool(s("mouseup 1"));
}

bool InputDevices::moveAlong(const QVector<QPoint> &points)
{
    QString commands;
    for (int i = 1; i < points.size(); ++i) {
        const QLineF way(points.at(i - 1), points.at(i));
        const int steps = qMax(1, int(std::ceil(way.length() / StepLength)));
        // A pause between the steps, so that they arrive as several events and not as one.
        for (int step = 1; step <= steps; ++step)
            commands += moveTo(way.pointAt(qreal(step) / steps).toPoint()) + s("sleep 0.008 ");
    }
    return xdotool(commands.trimmed());
}

bool InputDevices::key(const QString &name)
{
    return xdotool(s("key --delay 20 ") + name);
}

bool InputDevices::type(const QString &text)
{
    return run(s("xdotool"), { s("type"), s("--delay"), s("12"), s("--"), text });
}

qint64 InputDevices::activeWindow()
{
    return answer({ s("getactivewindow") }).toLongLong();
}

QString InputDevices::activeTitle()
{
    return answer({ s("getactivewindow"), s("getwindowname") });
}

bool InputDevices::activeWindowHas(const QString &property)
{
    QProcess process;
    process.start(s("xprop"), { s("-id"), answer({ s("getactivewindow") }), property });
    return process.waitForFinished() && process.readAllStandardOutput().contains(" = ");
}

bool InputDevices::cutOffActiveWindow()
{
    return xdotool(s("getactivewindow windowkill"));
}

bool InputDevices::takePicture(const QString &path)
{
    return run(s("import"), { s("-window"), s("root"), path });
}
