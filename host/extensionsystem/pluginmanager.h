#pragma once

#include "extensionsystem/extensionsystem_global.h"
#include "extensionsystem/pluginmetadata.h"

#include <QObject>
#include <QStringList>
#include <QVector>

#include <memory>

namespace ExtensionSystem {

/// One file of the plug-in directories and how far its plug-in has come: a plain record for showing.
struct EXTENSIONSYSTEM_EXPORT PluginInfo
{
    enum State {
        Invalid,     ///< the file or its metadata can't be used
        Read,        ///< the metadata is in order, no code was loaded
        Resolved,    ///< everything that it depends on is there
        Loaded,      ///< the code is in memory
        Initialized, ///< initialize() returned true
        Running,     ///< extensionsInitialized() returned
        Stopped      ///< shut down and deleted
    };

    PluginMetaData metaData;
    QString filePath;
    /// The last state reached; a plug-in that failed stays there.
    State state = Invalid;
    /// Why the plug-in came no further; empty when nothing is wrong.
    QString errorString;

    bool hasError() const { return !errorString.isEmpty(); }
};

/// Finds plug-ins, loads them in the order of their dependencies, takes them through their life, and holds the pool of
/// objects through which they meet. The program creates the only one of the process and destroys it before its
/// application object; that shuts down what is still running. GUI thread only.
class EXTENSIONSYSTEM_EXPORT PluginManager final : public QObject
{
    Q_OBJECT
public:
    PluginManager();
    ~PluginManager() override;

    /// The manager of this process; null when there is none.
    static PluginManager *instance();

    /// Reads the metadata of every "*.so" in @p paths, directory by directory and by file name within each; loads no
    /// code. Nothing but these directories is ever searched; empty entries and repeated directories are passed over.
    /// What can't be used is listed with the reason. Of two plug-ins with one name the first is taken. Replaces what
    /// was read before; does nothing once plug-ins are loaded.
    void setPluginPaths(const QStringList &paths);

    /// Loads and starts every plug-in found, handing @p arguments to each initialize(). A plug-in that fails is listed
    /// with its reason, and so is each that needs it; the others are started. To be called once; delayedInitialize()
    /// follows from the event loop.
    void loadPlugins(const QStringList &arguments = {});

    /// Stops and deletes every plug-in, those that depend on others first. Leaves the object pool empty.
    void shutdown();

    /// All files listed, in the order they were found.
    QVector<PluginInfo> plugins() const;

    /// Adds @p obj to the pool, which does not own it. Null, an object that is in the pool and any call without a
    /// manager do nothing.
    static void addObject(QObject *obj);
    /// Takes @p obj out of the pool; does nothing when it isn't there. A destroyed object leaves by itself.
    static void removeObject(QObject *obj);
    /// The pool, in the order of adding.
    static QVector<QObject *> allObjects();

    /// All objects of the pool that are a T, in the order of adding.
    template <typename T>
    static QVector<T *> getObjects()
    {
        QVector<T *> result;
        const QVector<QObject *> objects = allObjects();
        for (QObject *obj : objects) {
            if (T *match = qobject_cast<T *>(obj))
                result.append(match);
        }
        return result;
    }

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace ExtensionSystem
