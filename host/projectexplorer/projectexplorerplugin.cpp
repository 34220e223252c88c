#include "projectexplorer/projectexplorerplugin.h"

#include "core/icore.h"
#include "core/idocument.h"
#include "core/ieditor.h"
#include "projectexplorer/productdock.h"

namespace ProjectExplorer {

bool ProjectExplorerPlugin::initialize(const QStringList &arguments, QString *errorString)
{
    Q_UNUSED(arguments)
    Q_UNUSED(errorString)
    m_dock = new ProductDock;
    Core::ICore::addDockWidget(Qt::LeftDockWidgetArea, m_dock);
    connect(Core::ICore::instance(), &Core::ICore::currentEditorChanged, m_dock, [this](Core::IEditor *editor) {
        m_dock->setOpenedFile(editor ? editor->document()->filePath().toString() : QString());
    });
    connect(m_dock, &ProductDock::fileActivated, this, [](const QString &path) { Core::ICore::openFile(path); });
    return true;
}

void ProjectExplorerPlugin::extensionsInitialized() { }

ProjectExplorerPlugin::ShutdownFlag ProjectExplorerPlugin::aboutToShutdown()
{
    delete m_dock;
    return SynchronousShutdown;
}

} // namespace ProjectExplorer
