#include "projectexplorer/projectexplorerplugin.h"

#include "core/busymonitor.h"
#include "core/editormanager.h"
#include "core/icore.h"
#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/reportingdocument.h"
#include "projectexplorer/productdock.h"

namespace ProjectExplorer {

namespace {

constexpr int LookInterval = 1000; // milliseconds

} // namespace

bool ProjectExplorerPlugin::initialize(const QStringList &arguments, QString *errorString)
{
    Q_UNUSED(arguments)
    Q_UNUSED(errorString)
    m_dock = new ProductDock;
    Core::ICore::addDockWidget(Qt::LeftDockWidgetArea, m_dock);
    connect(Core::ICore::instance(), &Core::ICore::currentEditorChanged, m_dock, [this](Core::IEditor *editor) {
        m_dock->setOpenedFile(editor ? editor->document()->filePath().toString() : QString());
    });
    // What can't be read turns up while the product is read, for which there is no signal.
    connect(&m_look, &QTimer::timeout, m_dock, [this] { lookForProblems(); });
    connect(&Core::ICore::editorManager()->busyMonitor(), &Core::BusyMonitor::busyChanged, m_dock, [this](bool busy) {
        busy ? m_look.start(LookInterval) : m_look.stop();
        lookForProblems();
    });
    connect(m_dock, &ProductDock::fileActivated, this, [](const QString &path) { Core::ICore::openFile(path); });
    return true;
}

void ProjectExplorerPlugin::lookForProblems()
{
    Core::IEditor *editor = Core::ICore::currentEditor();
    const auto *document = editor ? dynamic_cast<const Core::ReportingDocument *>(editor->document()) : nullptr;
    QHash<QString, QString> reasons;
    if (document) {
        const auto files = document->unreadableFiles();
        for (const Core::UnreadableFile &file : files)
            reasons.insert(file.path, file.reason);
    }
    m_dock->setProblems(reasons);
}

void ProjectExplorerPlugin::extensionsInitialized() { }

void ProjectExplorerPlugin::aboutToShutdown()
{
    delete m_dock;
}

} // namespace ProjectExplorer
