#pragma once

#include <QMultiHash>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

class QDirIterator;

namespace Core {

/// The ids of the plug-ins of a directory, read a few milliseconds at a time: there may be thousands. GUI thread only.
class PluginIds final : public QObject
{
    Q_OBJECT

public:
    explicit PluginIds(QObject *parent);
    ~PluginIds() override;

    /// Begins to read the plug-ins in @p place, unless it is the place of the last call.
    void read(const QString &place);
    /// The name of a directory whose plug-in has the id, as far as they have been read; empty for none.
    [[nodiscard]] QString directoryOf(const QString &id) const { return m_directories.value(id); }

Q_SIGNALS:
    /// All have been read.
    void finished();

private:
    void goOn();

    QString m_place;
    std::unique_ptr<QDirIterator> m_left;
    QMultiHash<QString, QString> m_directories;
    QTimer m_next;
};

} // namespace Core
