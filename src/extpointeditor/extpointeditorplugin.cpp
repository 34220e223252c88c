#include "extpointeditorplugin.h"

#include "extpointeditorfactory.h"

#include <utils/mimedatabase.h>

namespace PointEditor::Internal {

ExtPointEditorPlugin::ExtPointEditorPlugin() = default;

ExtPointEditorPlugin::~ExtPointEditorPlugin() = default;

bool ExtPointEditorPlugin::initialize(const QStringList &, QString *)
{
    Utils::MimeDatabase::addMimeTypes(QStringLiteral(":/extpointeditor/ExtPointEditor.mimetypes.xml"));
    addAutoReleasedObject(new ExtPointEditorFactory(this));
    return true;
}

void ExtPointEditorPlugin::extensionsInitialized() { }

} // namespace PointEditor::Internal
