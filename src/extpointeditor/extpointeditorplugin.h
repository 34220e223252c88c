#pragma once

#include <extensionsystem/iplugin.h>

namespace PointEditor::Internal {

/// The plug-in object: registers the file type of extension files and the factory of their editor. Created and deleted
/// by the host, on the GUI thread.
class ExtPointEditorPlugin final : public ExtensionSystem::IPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID EXTENSIONSYSTEM_PLUGIN_IID FILE "extpointeditorplugin.json")

public:
    ExtPointEditorPlugin();
    ~ExtPointEditorPlugin() override;

    /// Always true.
    bool initialize(const QStringList &arguments, QString *errorString) override;
    void extensionsInitialized() override;
};

} // namespace PointEditor::Internal
