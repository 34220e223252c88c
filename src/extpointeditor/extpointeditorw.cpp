#include "extpointeditorw.h"

#include "extpointeditordocument.h"
#include "extpointeditorplugin.h"
#include "foundnodes.h"
#include "linejump.h"
#include "model/nodewords.h"
#include "model/pointtreewidgetitem.h"
#include "model/problemwatch.h"
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

void ExtPointEditorW::gotoLine(int line, int column, bool)
{
    // What is asked for last is shown.
    delete m_restoration;
    delete m_jump;
    m_jump = new LineJump(*m_document, *m_widget, line, column > 0 ? column + 1 : 0, this);
}

QVariantMap ExtPointEditorW::viewState() const
{
    return viewOf(*m_widget);
}

void ExtPointEditorW::setViewState(const QVariantMap &state)
{
    delete m_restoration;
    m_restoration = new ViewRestoration(state, m_widget, this);
    m_document->whenScanned(m_restoration, [this] {
        if (m_restoration->awaitsPage())
            m_widget->showAllFormats();
        m_restoration->finish();
        m_restoration->deleteLater();
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

QVector<Core::FileProblem> ExtPointEditorW::problems(int most) const
{
    // The number of a problem is its key: the list is read anew after each change.
    QVector<Core::FileProblem> problems;
    const QVector<Problem> all = m_document->problems().all();
    for (int i = 0; i < qMin(most, all.size()); ++i) {
        const Problem &problem = all.at(i);
        const bool isError = problem.severity == Problem::Severity::Error;
        const QString text = problem.key.isEmpty() ? problem.text : tr("%1: %2").arg(problem.key, problem.text);
        problems.append({ isError ? Core::FileProblem::Severity::Error : Core::FileProblem::Severity::Warning, text,
            NodeWords::what(problem.node), i });
    }
    return problems;
}

int ExtPointEditorW::problemCount() const
{
    return m_document->problems().all().size();
}

void ExtPointEditorW::showProblem(const QVariant &key)
{
    const QVector<Problem> all = m_document->problems().all();
    const int number = key.toInt();
    if (number >= 0 && number < all.size())
        (void)m_widget->goTo(all.at(number).node, all.at(number).key);
}

void ExtPointEditorW::whenProblemsChange(QObject *context, const std::function<void()> &action)
{
    connect(&m_document->problems(), &ProblemWatch::changed, context, action);
}

} // namespace PointEditor::Internal
