#include "extpointeditorfactory.h"

#include "extpointeditorconstants.h"
#include "extpointeditorplugin.h"
#include "extpointeditorw.h"

#include <core/fileiconprovider.h>

#include <QCoreApplication>

namespace PointEditor::Internal {

ExtPointEditorFactory::ExtPointEditorFactory(ExtPointEditorPlugin *plugin)
    : Core::IEditorFactory(plugin), m_plugin(plugin)
{
    setId(Core::Id(Constants::editorId));
    setMimeTypes({ QString::fromLatin1(Constants::mimeType) });
    setDisplayName(QCoreApplication::translate("OpenWith::Editors", "ExtPoint Editor"));
    Core::FileIconProvider::registerIconOverlayForSuffix(
        QStringLiteral(":/projectexplorer/images/fileoverlay_qrc.png"), QStringLiteral("extension.xml"));
}

Core::IEditor *ExtPointEditorFactory::createEditor()
{
    return new ExtPointEditorW(Core::Context(Core::Id(Constants::editorId)), m_plugin);
}

} // namespace PointEditor::Internal
