#pragma once

#include "extensionsystem/extensionsystem_global.h"

#include <QObject>
#include <QStringList>

#include <memory>

namespace ExtensionSystem {

/// The root object of a plug-in. Derive one class per shared object, with
/// Q_PLUGIN_METADATA(IID EXTENSIONSYSTEM_PLUGIN_IID FILE "name.json"); the JSON is described at PluginMetaData.
/// Created, called and deleted by the plug-in manager, on the GUI thread only. No exception may leave it.
///
/// Life: constructor, initialize (after those of all plug-ins it depends on), extensionsInitialized (after those of all
/// that depend on it), delayedInitialize (the same order, once the event loop runs), aboutToShutdown (before those it
/// depends on), destructor. What it put into the object pool leaves the pool with it.
class EXTENSIONSYSTEM_EXPORT IPlugin : public QObject
{
    Q_OBJECT
public:
    IPlugin();
    ~IPlugin() override;

    /// Sets up what others may use. Returns false, with a reason in @p errorString (never null), when the plug-in can't
    /// work: it is then deleted, and nothing that depends on it is initialized.
    virtual bool initialize(const QStringList &arguments, QString *errorString) = 0;

    /// Called when every plug-in that depends on this one has put its objects into the pool.
    virtual void extensionsInitialized() = 0;

    /// Work that can wait until the program's window is there. Returns true when it took noticeable time: the manager
    /// then gives the event loop a turn before it goes on.
    virtual bool delayedInitialize() { return false; }

    /// The last call before deletion, all other plug-ins still alive.
    virtual void aboutToShutdown() { }

    /// Carries out the command line of a second start of the program. The result, if any, is watched by the caller; its
    /// destruction ends the command.
    virtual QObject *remoteCommand(
        const QStringList &options, const QString &workingDirectory, const QStringList &arguments);

    /// Puts @p obj into the object pool, and takes it out and deletes it at shutdown, the last added first. The plug-in
    /// owns @p obj from here on; deleting it earlier is fine.
    void addAutoReleasedObject(QObject *obj);

    /// Puts @p obj into the object pool; it stays the caller's.
    void addObject(QObject *obj);

    /// Takes @p obj out of the object pool; an auto-released one is the caller's again.
    void removeObject(QObject *obj);

private:
    friend class PluginManager;
    void releaseObjects();

    class Private;
    std::unique_ptr<Private> d;
};

} // namespace ExtensionSystem
