#pragma once

#include "hostinterfaces.h"

#include <core/ieditor.h>

#include <QPointer>

class ExtPointWidget;
class PointTreeWidgetItem;

namespace PointEditor::Internal {

class ExtPointEditorDocument;
class ExtPointEditorPlugin;
class LineJump;
class ViewRestoration;

/// The host's editor object for one opened extension file. Owned by the host, as is the widget that it hands over; owns
/// its document.
class ExtPointEditorW final : public Core::IEditor,
                              public Core::ProblemSource,
                              public Core::SearchableEditor,
                              public Core::ViewKeeper
{
    Q_OBJECT

public:
    ExtPointEditorW(const Core::Context &context, ExtPointEditorPlugin *plugin);
    ~ExtPointEditorW() override;

    [[nodiscard]] Core::IDocument *document() override;
    /// Null: this editor has none.
    [[nodiscard]] QWidget *toolBar() override;

    /// Shows what became of the element that starts there.
    void gotoLine(int line, int column, bool centerLine) override;

    [[nodiscard]] QVariantMap viewState() const override;
    void setViewState(const QVariantMap &state) override;

    [[nodiscard]] std::shared_ptr<Core::ProductSearch> search(const QString &needle) override;
    bool goTo(const Core::SearchResult &result) override;
    void setPresenter(const Presenter &presenter) override;

    [[nodiscard]] QVector<Core::FileProblem> problems(int most) const override;
    [[nodiscard]] int problemCount() const override;
    void showProblem(const QVariant &key) override;
    void whenProblemsChange(QObject *context, const std::function<void()> &action) override;

private:
    void presentUsers(const PointTreeWidgetItem *node);

    ExtPointEditorDocument *m_document;
    ExtPointEditorPlugin *m_plugin;
    ExtPointWidget *m_widget;
    QPointer<LineJump> m_jump;
    QPointer<ViewRestoration> m_restoration;
    Presenter m_presenter;
};

} // namespace PointEditor::Internal
