#include "extpointeditorw.h"

#include "extpointeditordocument.h"
#include "extpointeditorplugin.h"
#include "surface/extpointwidget.h"
#include "widgetview.h"

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

QVariantMap ExtPointEditorW::viewState() const
{
    return viewOf(*m_widget);
}

void ExtPointEditorW::setViewState(const QVariantMap &state)
{
    auto *restoration = new ViewRestoration(state, m_widget, this);
    m_document->whenScanned(restoration, [this, restoration] {
        m_widget->showAllFormats();
        restoration->finish();
        restoration->deleteLater();
    });
}

} // namespace PointEditor::Internal
