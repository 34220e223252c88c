#pragma once

#include <core/ieditorfactory.h>

namespace PointEditor::Internal {

class ExtPointEditorPlugin;

/// Creates an editor for each extension file that the host opens. Handed to the host's object pool, which deletes it.
class ExtPointEditorFactory final : public Core::IEditorFactory
{
    Q_OBJECT

public:
    explicit ExtPointEditorFactory(ExtPointEditorPlugin *plugin);

    /// The host owns the editor.
    [[nodiscard]] Core::IEditor *createEditor() override;

private:
    ExtPointEditorPlugin *m_plugin;
};

} // namespace PointEditor::Internal
