#pragma once

#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/ieditorfactory.h"
#include "core/problemsource.h"
#include "core/recoverabledocument.h"
#include "core/searchableeditor.h"
#include "core/undoabledocument.h"
#include "core/viewkeeper.h"

#include <QTimer>

class QTabWidget;

/// A document that behaves as its file says: `<fake open="log" save="nothing" busy="300"/>`.
///
/// open: "text" fails with an error text, "log" with a logged warning about the file, "silent" without a word.
/// save: "replace" (as without the attribute), "inplace" with the same size, "nothing", "log" nothing but a warning,
/// "text" nothing but an error text, "refuse" writes and reports a failure, "instruction" writes an XML instruction
/// alone, "truncated" the first half of a document. busy: how many milliseconds it works in the background after
/// opening; it can't be recovered meanwhile.
///
/// Its states are its contents. One that begins with "heavy" weighs 20 MiB, one with "deleted" came of a deletion.
class FakeDocument final : public Core::IDocument, public Core::RecoverableDocument, public Core::UndoableDocument
{
    Q_OBJECT

public:
    explicit FakeDocument(QObject *parent);
    ~FakeDocument() override;

    OpenResult open(QString *errorString, const QString &fileName, const QString &realFileName) override;
    bool save(QString *errorString, const QString &fileName, bool autoSave) override;
    bool isModified() const override { return m_modified; }
    bool isSaveAsAllowed() const override { return true; }
    bool reload(QString *, ReloadFlag, ChangeType) override { return true; }

    QByteArray recoveryData() const override;
    bool openRecovered(QString *errorString, const QString &fileName, const QByteArray &data) override;

    State documentState() override;
    void setDocumentState(const State &state) override;
    Change changeBetween(const State &before, const State &after) const override;

    const QByteArray &content() const { return m_content; }
    /// Not part of what a FakeDocument saves; only recovery shows it.
    void modify(const QByteArray &content = QByteArray());
    void setSaveMode(const QString &mode) { m_saveMode = mode; }
    void work(int milliseconds);

    static int alive;

private:
    bool write(const QByteArray &data);

    QString m_path;
    QByteArray m_content;
    QString m_saveMode;
    QTimer m_work;
    int m_saves = 0;
    bool m_modified = false;
};

/// An editor whose widget has a tab widget with two pages; the page is what its view keeps. It finds as many things as
/// the needle says, in several goes, and has the problems that it is told, with the text as the key.
class FakeEditor final : public Core::IEditor,
                         public Core::ProblemSource,
                         public Core::SearchableEditor,
                         public Core::ViewKeeper
{
    Q_OBJECT

public:
    explicit FakeEditor(bool deletesWidget);
    ~FakeEditor() override;

    FakeDocument *document() override { return m_document; }
    QWidget *toolBar() override { return nullptr; }
    QVariantMap viewState() const override;
    void setViewState(const QVariantMap &state) override;

    std::shared_ptr<Core::ProductSearch> search(const QString &needle) override;
    bool goTo(const Core::SearchResult &result) override;
    void setPresenter(const Presenter &presenter) override { presenterOf = presenter; }

    int searches = 0;
    QStringList wentTo;
    Presenter presenterOf;

    QVector<Core::FileProblem> problems(int most) const override;
    int problemCount() const override { return m_problems.size(); }
    void showProblem(const QVariant &key) override { shownProblem = key.toString(); }
    void whenProblemsChange(QObject *context, const std::function<void()> &action) override;
    void setProblems(const QStringList &texts);
    QString shownProblem;

Q_SIGNALS:
    void problemsChanged();

private:
    QStringList m_problems;
    FakeDocument *m_document;
    QTabWidget *m_tabs;
    bool m_deletesWidget;
};

/// Makes FakeEditors for "*.fake" (application/x-fake, which derives from text/xml). Registers the types.
class FakeFactory final : public Core::IEditorFactory
{
    Q_OBJECT

public:
    explicit FakeFactory(const QString &mimeType = QStringLiteral("application/x-fake"));

    Core::IEditor *createEditor() override;

    bool deletesWidget = false;
};

/// Registers application/x-fake ("*.fake") and its derived types application/x-fake-child ("*.child") and
/// application/x-fake-grandchild ("*.grandchild").
void registerFakeMimeTypes();
