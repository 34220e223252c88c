#include "extpointeditordocument.h"

#include "changetexts.h"
#include "extpointeditorconstants.h"
#include "model/controller.h"
#include "model/modelchanges.h"
#include "model/ownchange.h"
#include "model/sourcedatamanager.h"
#include "savereporttexts.h"
#include "surface/siblingwatch.h"

#include <utils/filename.h>

#include <utility>

namespace PointEditor::Internal {

namespace {

constexpr char busyProperty[] = "busy";

class EditorState final : public Core::DocumentState
{
public:
    EditorState(std::shared_ptr<const OwnState> own, int edits) : m_own(std::move(own)), m_edits(edits) { }
    [[nodiscard]] qint64 size() const override { return m_own->size(); }
    [[nodiscard]] const OwnState &own() const { return *m_own; }
    /// How often the document had been modified.
    [[nodiscard]] int edits() const { return m_edits; }
    [[nodiscard]] static const EditorState &of(const Core::UndoableDocument::State &state)
    {
        return static_cast<const EditorState &>(*state);
    }

private:
    std::shared_ptr<const OwnState> m_own;
    int m_edits;
};

} // namespace

ExtPointEditorDocument::ExtPointEditorDocument(QObject *parent)
    : Core::IDocument(parent), m_manager(std::make_unique<SourceDataManager>(QString()))
{
    setId(Core::Id(Constants::editorId));
    setMimeType(QString::fromLatin1(Constants::mimeType));
    Controller::instance()->setSourceDataManager(m_manager.get());
    watchSiblings(m_manager.get());
    connect(m_manager.get(), &SourceDataManager::scanFinished, this, [this] { setProperty(busyProperty, false); });
    connect(&m_manager->changes(), &ModelChanges::changed, this, [this](const ModelChange &change) {
        if (change.definitions)
            Q_EMIT changed();
    });
}

ExtPointEditorDocument::~ExtPointEditorDocument() = default;

Core::IDocument::OpenResult ExtPointEditorDocument::open(QString *, const QString &fileName, const QString &)
{
    take(fileName);
    if (!m_manager->load(fileName))
        return OpenResult::ReadError;
    show();
    return OpenResult::Success;
}

bool ExtPointEditorDocument::openRecovered(QString *, const QString &fileName, const QByteArray &data)
{
    take(fileName);
    if (!m_manager->load(fileName, data))
        return false;
    show();
    onModified(true);
    return true;
}

QByteArray ExtPointEditorDocument::recoveryData() const
{
    return m_manager->recoverable();
}

void ExtPointEditorDocument::whenScanned(QObject *context, const std::function<void()> &action) const
{
    if (m_manager->siblings().isRunning())
        connect(m_manager.get(), &SourceDataManager::scanFinished, context, action);
    else
        action();
}

void ExtPointEditorDocument::take(const QString &fileName)
{
    setFilePath(Utils::FileName::fromString(fileName));
    m_fileName = fileName;
}

void ExtPointEditorDocument::show()
{
    if (m_widget)
        m_widget->reloadPages();
    setProperty(busyProperty, true);
    m_manager->startScan(m_fileName);
}

bool ExtPointEditorDocument::save(QString *, const QString &, bool)
{
    if (m_widget)
        m_widget->commitEditors();
    // Success is reported in any case; the model has logged why nothing was written.
    (void)m_manager->save();
    m_modified = false;
    Q_EMIT changed();
    return true;
}

const ProblemWatch &ExtPointEditorDocument::problems() const
{
    return m_manager->problems();
}

QStringList ExtPointEditorDocument::awaitedFiles() const
{
    return m_manager->siblings().awaitedFiles();
}

QVector<Core::UnreadableFile> ExtPointEditorDocument::unreadableFiles() const
{
    QVector<Core::UnreadableFile> files;
    for (const UnreadableFile &file : m_manager->siblings().unreadableFiles())
        files.append({ file.path, file.reason });
    return files;
}

Core::SaveReport ExtPointEditorDocument::saveReport()
{
    if (m_widget)
        m_widget->commitEditors();
    return SaveReportTexts::of(m_manager->saveReport());
}

bool ExtPointEditorDocument::saveNow(QString *)
{
    if (m_widget)
        m_widget->commitEditors();
    if (!m_manager->saveNow())
        return false;
    m_modified = false;
    Q_EMIT changed();
    return true;
}

ExtPointEditorDocument::State ExtPointEditorDocument::documentState()
{
    return std::make_shared<EditorState>(m_manager->ownStates().take(), m_edits);
}

void ExtPointEditorDocument::setDocumentState(const State &state)
{
    m_manager->ownStates().restore(EditorState::of(state).own());
    m_manager->changes().flush();
    if (m_widget)
        m_widget->keepPointCurrent();
    onModified(true);
}

ExtPointEditorDocument::Change ExtPointEditorDocument::changeBetween(const State &before, const State &after) const
{
    const OwnChange change = OwnChange::between(EditorState::of(before).own(), EditorState::of(after).own());
    const bool isDeletion = change.what == OwnChange::What::Removed;
    // A page deletes the last attribute without a word. What else changes unsaid, such as defaults that a click stores,
    // is nobody's step.
    if (!isDeletion && EditorState::of(before).edits() == EditorState::of(after).edits())
        return {};
    return { ChangeTexts::of(change), isDeletion };
}

QByteArray ExtPointEditorDocument::contents() const
{
    return {};
}

bool ExtPointEditorDocument::setContents(const QByteArray &)
{
    return true;
}

bool ExtPointEditorDocument::shouldAutoSave() const
{
    return m_shouldAutoSave;
}

bool ExtPointEditorDocument::isModified() const
{
    // What the user has typed counts, although the sheet still holds it.
    if (m_widget)
        m_widget->commitEditors();
    return m_modified;
}

bool ExtPointEditorDocument::isSaveAsAllowed() const
{
    return true;
}

bool ExtPointEditorDocument::reload(QString *, ReloadFlag, ChangeType)
{
    return true;
}

void ExtPointEditorDocument::onModified(bool)
{
    m_modified = true;
    ++m_edits;
    Q_EMIT changed();
}

} // namespace PointEditor::Internal
