#pragma once

#include "hostinterfaces.h"
#include "surface/extpointwidget.h"

#include <core/idocument.h>

#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class ProblemWatch;
class SourceDataManager;

namespace PointEditor::Internal {

/// One opened extension file as the host sees it: connects the host's opening and saving to the model and tracks the
/// modified state. Owned by its editor; owns the model. GUI thread.
///
/// While sibling plug-ins are read in the background, the object's dynamic property "busy" is true.
class ExtPointEditorDocument final : public Core::IDocument,
                                     public Core::RecoverableDocument,
                                     public Core::ReportingDocument,
                                     public Core::UndoableDocument
{
    Q_OBJECT
    Q_PROPERTY(QString plainText READ plainText)

public:
    explicit ExtPointEditorDocument(QObject *parent = nullptr);
    ~ExtPointEditorDocument() override;

    /// Fails without an error text; the reason stands in the log.
    OpenResult open(QString *errorString, const QString &fileName, const QString &realFileName) override;

    /// Writes to the path that was opened, whatever @p fileName says, and reports success whatever came of it: the
    /// document is clean afterwards. A host looks at the file itself.
    bool save(QString *errorString, const QString &fileName, bool autoSave) override;
    QByteArray contents() const override;
    bool setContents(const QByteArray &contents) override;
    bool shouldAutoSave() const override;
    bool isModified() const override;
    bool isSaveAsAllowed() const override;
    bool reload(QString *errorString, ReloadFlag flag, ChangeType type) override;

    /// With the marks of translatable texts as they were read, too: what is translatable is only known once the
    /// siblings have been read, and a copy must not wait for them.
    [[nodiscard]] QByteArray recoveryData() const override;
    /// Sets no error text, as open().
    [[nodiscard]] bool openRecovered(QString *errorString, const QString &fileName, const QByteArray &data) override;

    [[nodiscard]] QStringList awaitedFiles() const override;
    [[nodiscard]] QVector<Core::UnreadableFile> unreadableFiles() const override;
    [[nodiscard]] Core::SaveReport saveReport() override;
    /// Sets no error text, as open().
    [[nodiscard]] bool saveNow(QString *errorString) override;

    [[nodiscard]] State documentState() override;
    void setDocumentState(const State &state) override;
    [[nodiscard]] Change changeBetween(const State &before, const State &after) const override;

    /// Calls @p action once the siblings have been read: at once when they have. Not after @p context has gone.
    void whenScanned(QObject *context, const std::function<void()> &action) const;
    [[nodiscard]] const SourceDataManager &manager() const { return *m_manager; }
    void setWidget(ExtPointWidget *widget) { m_widget = widget; }
    /// What is wrong in the file; lives as long as the document.
    [[nodiscard]] const ProblemWatch &problems() const;
    [[nodiscard]] QString plainText() const { return {}; }

Q_SIGNALS:
    /// Part of the document's public face; nothing emits it.
    void loaded(bool success);

public Q_SLOTS:
    /// Marks the document modified, whatever @p flag says: a change can't be undone into a clean state except by
    /// saving.
    void onModified(bool flag);

private:
    void take(const QString &fileName);
    void show();

    QString m_fileName;
    std::unique_ptr<SourceDataManager> m_manager;
    bool m_shouldAutoSave = false;
    bool m_modified = false;
    int m_edits = 0;
    QPointer<ExtPointWidget> m_widget;
};

} // namespace PointEditor::Internal
