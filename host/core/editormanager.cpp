#include "core/editormanager.h"

#include "core/diskstate.h"
#include "core/filestamp.h"
#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/ieditorfactory.h"
#include "core/logcollector.h"
#include "core/recoverabledocument.h"
#include "core/reportingdocument.h"
#include "extensionsystem/pluginmanager.h"
#include "utils/mimedatabase.h"

#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>
#include <QScopedValueRollback>
#include <QXmlStreamReader>

#include <algorithm>

namespace Core {

namespace {

/// A logged line "path:line:column: text" without the path, which is shown beside it anyway.
QString withoutPath(const QString &line, const QString &path)
{
    static const QRegularExpression place(QStringLiteral("^:(\\d+)(?::(\\d+))?: "));
    if (!line.startsWith(path + QLatin1Char(':')))
        return line;
    const QString rest = line.mid(path.size());
    const QRegularExpressionMatch match = place.match(rest);
    if (!match.hasMatch())
        return rest.mid(1).trimmed();
    const QString text = rest.mid(match.capturedLength());
    return match.captured(2).isEmpty()
        ? EditorManager::tr("line %1: %2").arg(match.captured(1), text)
        : EditorManager::tr("line %1, column %2: %3").arg(match.captured(1), match.captured(2), text);
}

/// What a document said, else what was logged about the file meanwhile; empty when there is neither.
QString reasonGiven(const QString &errorString, LogCollector &log, const QString &path)
{
    if (!errorString.trimmed().isEmpty())
        return errorString.trimmed();
    const QStringList lines = log.linesAbout(path);
    log.discard(lines);
    QStringList reasons;
    for (const QString &line : lines)
        reasons.append(withoutPath(line, path));
    return reasons.join(QLatin1Char('\n'));
}

QString whyNotOpened(const QString &path)
{
    const QString reason = whyNotReadable(path);
    return reason.isEmpty() ? EditorManager::tr("The content of the file cannot be parsed.") : reason;
}

/// Why a saved XML file will not open again, empty when it will or is no XML. A document that consists of its
/// declaration alone is what an editor writes that has nothing to write; anything else that is no XML comes from a
/// failed write.
QString whyNotOpenableAgain(const QString &path, const QString &mimeType)
{
    const Utils::MimeType type = Utils::MimeDatabase().mimeTypeForName(mimeType);
    if (!type.inherits(QStringLiteral("text/xml")) && !type.inherits(QStringLiteral("application/xml")))
        return QString();
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return QString();
    QXmlStreamReader reader(&file);
    reader.setNamespaceProcessing(false);
    bool hasElement = false;
    while (!reader.atEnd())
        hasElement = reader.readNext() == QXmlStreamReader::StartElement || hasElement;
    if (!reader.hasError())
        return QString();
    if (!hasElement && reader.error() == QXmlStreamReader::PrematureEndOfDocumentError)
        return EditorManager::tr("The saved file has no content but its XML declaration. It will not open again.");
    return EditorManager::tr("The saved file is damaged (line %1, column %2: %3). It will not open again.")
        .arg(QString::number(reader.lineNumber()), QString::number(reader.columnNumber()), reader.errorString());
}

/// Has a document saved that may report every save as a success. A file that was written and put back has another
/// stamp, but the old content, and the reason was logged.
bool saveUnsaid(IDocument &document, const QString &path, QString *errorString, const LogCollector &log)
{
    const DiskState content = DiskState::of(path);
    const FileStamp before = FileStamp::settled(path);
    const bool claimed = document.save(errorString, path, false);
    const FileStamp after = FileStamp::of(path);
    const bool wasPutBack = !log.linesAbout(path).isEmpty() && DiskState::of(path) == content;
    return claimed && after.exists && after != before && !wasPutBack;
}

} // namespace

EditorManager::EditorManager(QObject *parent) : QObject(parent) { }

EditorManager::~EditorManager()
{
    closeAll();
}

IEditorFactory *EditorManager::factoryFor(const QString &path) const
{
    return factoryFor(Utils::MimeDatabase().mimeTypeForFile(path));
}

IEditorFactory *EditorManager::factoryFor(const Utils::MimeType &type) const
{
    const auto factories = ExtensionSystem::PluginManager::getObjects<IEditorFactory>();
    // The type itself, then its parents, theirs and so on, the nearest first. The system's types, which are nearly
    // always among these, are not asked for until nothing nearer has done: that takes longer than opening a file.
    QStringList names { type.name() };
    for (int i = 0; i < names.size(); ++i) {
        for (IEditorFactory *factory : factories)
            if (factory->mimeTypes().contains(names.at(i)))
                return factory;
        const QStringList parents = Utils::MimeDatabase().mimeTypeForName(names.at(i)).parentMimeTypes();
        for (const QString &parent : parents)
            if (!names.contains(parent))
                names.append(parent);
    }
    return nullptr;
}

OpenOutcome EditorManager::open(const QString &path)
{
    const QString file = QFileInfo(path).absoluteFilePath();
    // Before anything reads it: looking at the content of a pipe for its type would wait for ever.
    const QString obstacle = whyNotReadable(file);
    if (!obstacle.isEmpty())
        return { nullptr, obstacle };
    const Utils::MimeType type = Utils::MimeDatabase().mimeTypeForFile(file);
    IEditorFactory *factory = factoryFor(type);
    if (!factory)
        return { nullptr, tr("No plug-in edits files of this kind (%1).").arg(type.name()) };
    return openWith(
        *factory, file, [&file](IDocument &document, QString *error) { return document.open(error, file, file); });
}

OpenOutcome EditorManager::openRecovered(const QString &path, const QByteArray &data)
{
    const QString file = QFileInfo(path).absoluteFilePath();
    const Utils::MimeType type = Utils::MimeDatabase().mimeTypeForFile(file);
    IEditorFactory *factory = factoryFor(type);
    if (!factory)
        return { nullptr, tr("No plug-in edits files of this kind (%1).").arg(type.name()) };
    return openWith(*factory, file, [&](IDocument &document, QString *error) {
        auto *recoverable = dynamic_cast<RecoverableDocument *>(&document);
        if (!recoverable)
            return IDocument::OpenResult::CannotHandle;
        return recoverable->openRecovered(error, file, data) ? IDocument::OpenResult::Success
                                                             : IDocument::OpenResult::ReadError;
    });
}

OpenOutcome EditorManager::openWith(IEditorFactory &factory, const QString &file, const Opener &opener)
{
    const QScopedValueRollback<bool> working(m_working, true);
    LogCollector log;
    std::unique_ptr<IEditor> editor(factory.createEditor());
    if (!editor || !editor->document())
        return { nullptr, tr("The plug-in for this kind of file made no editor.") };
    QString errorString;
    const IDocument::OpenResult result = opener(*editor->document(), &errorString);
    if (result != IDocument::OpenResult::Success) {
        QString reason = reasonGiven(errorString, log, file);
        if (reason.isEmpty())
            reason = whyNotOpened(file);
        const QPointer<QWidget> widget = editor->widget();
        editor.reset();
        delete widget;
        return { nullptr, reason };
    }
    IEditor *opened = editor.get();
    adopt(std::move(editor));
    return { opened, QString() };
}

void EditorManager::adopt(std::unique_ptr<IEditor> editor)
{
    IEditor *adopted = editor.get();
    IDocument *document = adopted->document();
    connect(document, &IDocument::changed, this, [this, adopted] { emit documentChanged(adopted); });
    connect(document, &IDocument::filePathChanged, this, [this, adopted] { emit documentChanged(adopted); });
    m_busyMonitor.addDocument(document);
    m_entries.push_back({ std::move(editor), false, false });
    Q_EMIT opened(adopted);
}

SaveOutcome EditorManager::save(IEditor *editor)
{
    if (m_working)
        return { false, tr("The file is still being read or written."), QString() };
    const QScopedValueRollback<bool> working(m_working, true);
    IDocument *document = editor->document();
    const QString path = document->filePath().toString();
    QString errorString;
    LogCollector log;
    SaveOutcome outcome;
    if (auto *reporting = dynamic_cast<ReportingDocument *>(document)) {
        outcome.written = reporting->saveNow(&errorString);
    } else {
        outcome.written = saveUnsaid(*document, path, &errorString, log);
        if (outcome.written)
            outcome.warning = whyNotOpenableAgain(path, document->mimeType());
    }
    setUnwritten(editor, !outcome.written);
    if (!outcome.written) {
        outcome.error = reasonGiven(errorString, log, path);
        if (outcome.error.isEmpty())
            outcome.error = whyNotWritten(path);
    }
    Q_EMIT documentChanged(editor);
    return outcome;
}

void EditorManager::close(IEditor *editor)
{
    if (find(editor) == m_entries.cend())
        return;
    Q_EMIT aboutToClose(editor);
    if (find(editor) == m_entries.cend())
        return;
    const auto entry = m_entries.begin() + (find(editor) - m_entries.cbegin());
    std::unique_ptr<IEditor> last = std::move(entry->editor);
    m_entries.erase(entry);
    disconnect(last->document(), nullptr, this, nullptr);
    const QPointer<QWidget> widget = last->widget();
    last.reset();
    delete widget;
}

void EditorManager::closeAll()
{
    while (!m_entries.empty())
        close(m_entries.back().editor.get());
}

std::vector<IEditor *> EditorManager::editors() const
{
    std::vector<IEditor *> result;
    for (const Entry &entry : m_entries)
        result.push_back(entry.editor.get());
    return result;
}

bool EditorManager::isModified(IEditor *editor) const
{
    const auto entry = find(editor);
    return editor->document()->isModified() || (entry != m_entries.cend() && (entry->unwritten || entry->ahead));
}

void EditorManager::setAhead(IEditor *editor, bool ahead)
{
    const auto entry = find(editor);
    if (entry == m_entries.cend() || entry->ahead == ahead)
        return;
    m_entries[std::size_t(entry - m_entries.cbegin())].ahead = ahead;
    Q_EMIT documentChanged(editor);
}

std::vector<EditorManager::Entry>::const_iterator EditorManager::find(const IEditor *editor) const
{
    return std::find_if(
        m_entries.cbegin(), m_entries.cend(), [editor](const Entry &entry) { return entry.editor.get() == editor; });
}

void EditorManager::setUnwritten(const IEditor *editor, bool unwritten)
{
    const auto entry = find(editor);
    if (entry == m_entries.cend())
        return;
    Entry &changed = m_entries[std::size_t(entry - m_entries.cbegin())];
    changed.unwritten = unwritten;
    changed.ahead = changed.ahead && unwritten;
}

} // namespace Core
