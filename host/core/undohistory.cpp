#include "core/undohistory.h"

#include "core/editormanager.h"
#include "core/ieditor.h"
#include "core/mainwindow.h"

#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QStatusBar>
#include <QTextEdit>
#include <QToolButton>

#include <algorithm>

namespace Core {

namespace {

constexpr int DeletionMessageTime = 15000; // milliseconds
// A state that took long to take is taken less often.
constexpr int IdleTimesCost = 10;
constexpr int LongestIdle = 2000; // milliseconds
constexpr int LongestText = 60;   // characters in a menu

struct FieldUndo
{
    bool isField = false;
    bool undo = false;
    bool redo = false;
};

FieldUndo fieldUndo(QWidget *widget)
{
    auto *line = qobject_cast<QLineEdit *>(widget);
    if (!line && (qobject_cast<QAbstractSpinBox *>(widget) || qobject_cast<QComboBox *>(widget)))
        line = widget->findChild<QLineEdit *>();
    if (line)
        return { true, line->isUndoAvailable(), line->isRedoAvailable() };
    const QTextDocument *text = nullptr;
    if (const auto *plain = qobject_cast<QPlainTextEdit *>(widget))
        text = plain->document();
    else if (const auto *rich = qobject_cast<QTextEdit *>(widget))
        text = rich->document();
    return text ? FieldUndo { true, text->isUndoAvailable(), text->isRedoAvailable() } : FieldUndo {};
}

} // namespace

UndoHistory::UndoHistory(EditorManager &editors, MainWindow &window)
    : QObject(&window), m_editors(editors), m_window(window), m_undo(window.editMenu()->addAction(QString())),
      m_redo(window.editMenu()->addAction(QString())), m_undoDeletion(new QToolButton(&window))
{
    m_undo->setObjectName(QStringLiteral("undoAction"));
    m_undo->setShortcut(QKeySequence(Qt::CTRL + Qt::Key_Z));
    connect(m_undo, &QAction::triggered, this, &UndoHistory::undo);
    m_redo->setObjectName(QStringLiteral("redoAction"));
    m_redo->setShortcuts({ QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_Z), QKeySequence(Qt::CTRL + Qt::Key_Y) });
    connect(m_redo, &QAction::triggered, this, &UndoHistory::redo);
    m_undoDeletion->setObjectName(QStringLiteral("undoDeletionButton"));
    m_undoDeletion->setText(tr("Undo"));
    m_undoDeletion->hide();
    connect(m_undoDeletion, &QToolButton::clicked, this, &UndoHistory::undo);
    window.statusBar()->addPermanentWidget(m_undoDeletion);
    // It belongs to the sentence beside it.
    connect(window.statusBar(), &QStatusBar::messageChanged, m_undoDeletion, &QWidget::hide);
    m_idle.setObjectName(QStringLiteral("undoIdleTimer"));
    m_idle.setSingleShot(true);
    connect(&m_idle, &QTimer::timeout, this, &UndoHistory::take);
    connect(&editors, &EditorManager::documentChanged, this, [this](const IEditor *editor) {
        if (editor == m_editor && m_document && !m_restoring && !m_idle.isActive())
            m_idle.start();
    });
    connect(&window, &MainWindow::currentEditorChanged, this, &UndoHistory::setEditor);
    qApp->installEventFilter(this);
    update();
}

void UndoHistory::setEditor(IEditor *editor)
{
    m_editor = editor;
    m_document = editor ? dynamic_cast<UndoableDocument *>(editor->document()) : nullptr;
    m_states.clear();
    m_current = 0;
    m_idle.setInterval(0);
    m_undoDeletion->hide();
    // The first state is taken once the document is on the screen; nobody has changed it before.
    if (m_document)
        m_idle.start();
    else
        m_idle.stop();
    update();
}

void UndoHistory::take()
{
    if (!m_document || m_editors.isWorking())
        return;
    QElapsedTimer clock;
    clock.start();
    const UndoableDocument::State state = m_document->documentState();
    m_idle.setInterval(std::min(int(clock.elapsed()) * IdleTimesCost, LongestIdle));
    if (!state)
        return;
    if (m_states.empty()) {
        m_states.push_back(state);
        return;
    }
    const UndoableDocument::Change change = m_document->changeBetween(m_states[m_current], state);
    if (change.text.isEmpty()) {
        m_states[m_current] = state;
        return;
    }
    m_states.resize(m_current + 1);
    m_states.push_back(state);
    ++m_current;
    dropOldest();
    update();
    if (change.isDeletion)
        tellDeletion(change.text);
    else if (!m_undoDeletion->isHidden())
        m_window.statusBar()->clearMessage();
}

void UndoHistory::takePending()
{
    // Takes in what is being typed, too.
    if (m_editor)
        (void)m_editors.isModified(m_editor);
    m_idle.stop();
    take();
}

void UndoHistory::dropOldest()
{
    qint64 bytes = 0;
    size_t first = m_states.size();
    // The newest two stay whatever they weigh, so that one step can always be undone.
    while (first > 0 && m_states.size() - first <= size_t(MostSteps)
        && (bytes += m_states[first - 1]->size(), bytes <= MostBytes || m_states.size() - first < 2))
        --first;
    m_states.erase(m_states.begin(), m_states.begin() + std::ptrdiff_t(first));
    m_current -= first;
}

void UndoHistory::undo()
{
    takePending();
    if (m_current > 0)
        goTo(m_current - 1);
}

void UndoHistory::redo()
{
    takePending();
    if (m_current + 1 < m_states.size())
        goTo(m_current + 1);
}

void UndoHistory::goTo(size_t index)
{
    if (!m_document || m_editors.isWorking())
        return;
    const QString text = changeText(std::max(index, m_current));
    const bool back = index < m_current;
    const QScopedValueRollback<bool> restoring(m_restoring, true);
    m_document->setDocumentState(m_states[index]);
    m_current = index;
    update();
    m_window.statusBar()->showMessage(
        (back ? tr("Undone: %1") : tr("Done again: %1")).arg(text), DeletionMessageTime / 2);
}

QString UndoHistory::changeText(size_t index) const
{
    return m_document->changeBetween(m_states[index - 1], m_states[index]).text;
}

void UndoHistory::update()
{
    const auto label = [this](QAction *action, const QString &plain, const QString &with, bool enabled, size_t index) {
        action->setEnabled(enabled);
        QString text = enabled ? changeText(index) : QString();
        if (text.size() > LongestText)
            text = text.left(LongestText) + QStringLiteral("…");
        action->setText(enabled ? with.arg(text.replace(QLatin1Char('&'), QLatin1String("&&"))) : plain);
    };
    label(m_undo, tr("&Undo"), tr("&Undo: %1"), m_current > 0, m_current);
    label(m_redo, tr("&Redo"), tr("&Redo: %1"), m_current + 1 < m_states.size(), m_current + 1);
}

void UndoHistory::tellDeletion(const QString &text)
{
    m_window.statusBar()->showMessage(text, DeletionMessageTime);
    m_undoDeletion->show();
}

bool UndoHistory::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride || !watched->isWidgetType())
        return QObject::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    const auto matches = [key](const QAction *action) {
        return action->shortcuts().contains(QKeySequence(int(key->modifiers()) | key->key()));
    };
    const bool undoes = matches(m_undo);
    if (!undoes && !matches(m_redo))
        return QObject::eventFilter(watched, event);
    // A field takes these keys for itself also when it has nothing to undo.
    const FieldUndo field = fieldUndo(static_cast<QWidget *>(watched));
    if (!field.isField || (undoes ? field.undo : field.redo))
        return QObject::eventFilter(watched, event);
    event->ignore();
    return true;
}

} // namespace Core
