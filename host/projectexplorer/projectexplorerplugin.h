#pragma once

#include "extensionsystem/iplugin.h"

#include <QPointer>
#include <QTimer>

namespace ProjectExplorer {

class ProductDock;

/// The plug-in "ProjectExplorer": the dock with the product's plug-in directories, and the overlay icon
/// ":/projectexplorer/images/fileoverlay_qrc.png" for the files that editor plug-ins mark. Created and deleted by the
/// plug-in manager.
class ProjectExplorerPlugin final : public ExtensionSystem::IPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID EXTENSIONSYSTEM_PLUGIN_IID FILE "ProjectExplorer.json")

public:
    bool initialize(const QStringList &arguments, QString *errorString) override;
    void extensionsInitialized() override;
    void aboutToShutdown() override;

private:
    void lookForProblems();

    QPointer<ProductDock> m_dock;
    QTimer m_look;
};

} // namespace ProjectExplorer
