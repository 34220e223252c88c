#include "core/icore.h"

#include "core/ieditor.h"
#include "core/mainwindow.h"

#include <QDockWidget>
#include <QSettings>

namespace Core {

namespace {
ICore *theInstance = nullptr;
}

ICore::ICore(MainWindow &window, EditorManager &editors, QSettings &settings)
    : m_window(window), m_editors(editors), m_settings(settings)
{
    theInstance = this;
    connect(&window, &MainWindow::currentEditorChanged, this, &ICore::currentEditorChanged);
}

ICore::~ICore()
{
    theInstance = nullptr;
}

ICore *ICore::instance()
{
    return theInstance;
}

QMainWindow *ICore::mainWindow()
{
    return &theInstance->m_window;
}

QSettings *ICore::settings()
{
    return &theInstance->m_settings;
}

EditorManager *ICore::editorManager()
{
    return &theInstance->m_editors;
}

IEditor *ICore::currentEditor()
{
    return theInstance->m_window.currentEditor();
}

void ICore::addDockWidget(Qt::DockWidgetArea area, QDockWidget *dock)
{
    theInstance->m_window.addDock(area, dock);
}

void ICore::openFile(const QString &path)
{
    theInstance->m_window.openFile(path);
}

} // namespace Core
