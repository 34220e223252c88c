#pragma once

#include "core/commandline.h"
#include "extensionsystem/iplugin.h"

#include <QTemporaryDir>

#include <memory>

class QSettings;

namespace Core {

class EditorManager;
class ICore;
class MainWindow;
class OneWindowPerFile;
class QuitSignals;
class StartupJob;
class ViewMemory;

/// The plug-in "Core": makes the window and what other plug-ins reach through ICore, and carries out the program's
/// command line once all plug-ins are there. Owns all of it; created and deleted by the plug-in manager.
class CorePlugin final : public ExtensionSystem::IPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID EXTENSIONSYSTEM_PLUGIN_IID FILE "Core.json")

public:
    CorePlugin();
    ~CorePlugin() override;

    bool initialize(const QStringList &arguments, QString *errorString) override;
    void extensionsInitialized() override;
    void aboutToShutdown() override;

private:
    /// @p file as on the command line.
    [[nodiscard]] bool startSecondProcess(const QString &file) const;

    CommandLine m_commandLine;
    std::unique_ptr<QTemporaryDir> m_passingSettingsDirectory;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<EditorManager> m_editors;
    std::unique_ptr<ViewMemory> m_views;
    std::unique_ptr<MainWindow> m_window;
    OneWindowPerFile *m_onlyWindow = nullptr; ///< The window's; null for a run that is a job.
    std::unique_ptr<ICore> m_core;
    std::unique_ptr<QuitSignals> m_quitSignals;
    std::unique_ptr<StartupJob> m_job;
};

} // namespace Core
