#pragma once

#include <QGenericPlugin>

/// Gets into a Qt program that knows nothing of it, by the environment: writes the time on the steady clock at which
/// the widget named by EXTPOINT_PAINT_TARGET (without a name, any window) has first been painted to the file
/// EXTPOINT_PAINT_FILE, in nanoseconds, and ends the program. Owned by the application; GUI thread.
class PaintProbe final : public QObject
{
    Q_OBJECT

public:
    explicit PaintProbe(QObject *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;
    bool event(QEvent *event) override;

private:
    QString m_target;
    bool m_painting = false;
};

/// Makes the probe when the application starts.
class PaintProbePlugin final : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "paintprobe.json")

public:
    QObject *create(const QString &name, const QString &arguments) override;
};
