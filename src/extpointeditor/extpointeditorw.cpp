#include "extpointeditorw.h"

#include "extpointeditordocument.h"
#include "extpointeditorplugin.h"
#include "surface/extpointwidget.h"

namespace PointEditor::Internal {

ExtPointEditorW::ExtPointEditorW(const Core::Context &context, ExtPointEditorPlugin *plugin)
    : m_document(new ExtPointEditorDocument(this)), m_plugin(plugin)
{
    setContext(context);
    // The document has registered its model by now; the widget fetches that model from the Controller.
    m_widget = new ExtPointWidget;
    setWidget(m_widget);
    m_document->setWidget(m_widget);
    connect(m_widget, &ExtPointWidget::modified, m_document, &ExtPointEditorDocument::onModified);
}

ExtPointEditorW::~ExtPointEditorW() = default;

Core::IDocument *ExtPointEditorW::document()
{
    return m_document;
}

QWidget *ExtPointEditorW::toolBar()
{
    return nullptr;
}

} // namespace PointEditor::Internal
