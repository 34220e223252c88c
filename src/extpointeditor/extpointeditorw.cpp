#include "extpointeditorw.h"

#include "extpointeditordocument.h"
#include "extpointeditorplugin.h"
#include "foundnodes.h"
#include "model/sourcedatamanager.h"
#include "surface/extpointwidget.h"
#include "surface/findactions.h"
#include "widgetview.h"

#include <QCoreApplication>

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
    connect(m_widget->findActions(), &FindActions::usersWanted, this, &ExtPointEditorW::presentUsers);
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

std::shared_ptr<Core::ProductSearch> ExtPointEditorW::search(const QString &needle)
{
    const SourceDataManager &manager = m_document->manager();
    return std::make_shared<FoundNodes>(manager, ModelSearch(manager, needle));
}

bool ExtPointEditorW::goTo(const Core::SearchResult &result)
{
    return m_widget->goTo(FoundNodes::nodeOf(result));
}

void ExtPointEditorW::setPresenter(const Presenter &presenter)
{
    m_presenter = presenter;
    m_widget->findActions()->setUsersShown(m_presenter != nullptr);
}

void ExtPointEditorW::presentUsers(const PointTreeWidgetItem *node)
{
    if (!m_presenter)
        return;
    const SourceDataManager &manager = m_document->manager();
    const QString name = FoundNodes::nameOf(node);
    m_presenter(QCoreApplication::translate("FoundNodes", "Users of %1").arg(name.isEmpty() ? node->text(0) : name),
        std::make_shared<FoundNodes>(manager, ModelSearch(manager, ModelSearch::users(manager, node))));
}

} // namespace PointEditor::Internal
