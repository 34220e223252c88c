#include "core/finddock.h"

#include "core/busymonitor.h"
#include "core/ieditor.h"
#include "core/mainwindow.h"
#include "core/searchableeditor.h"

#include <QAction>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace Core {

namespace {

// Milliseconds: short enough not to be noticed, long enough for the next letter of somebody who types.
constexpr int typingPause = 120;
// Milliseconds of the search in one go, so that the window stays alive.
constexpr int portion = 12;
// More than anybody reads.
constexpr int mostResults = 1'000;
// Pixels.
constexpr int columnWidths[] { 90, 280, 220, 220 };

QStringList textsOf(const QTreeWidgetItem *row)
{
    QStringList texts;
    for (int column = 0; row && column < row->columnCount(); ++column)
        texts.append(row->text(column));
    return texts;
}

} // namespace

FindDock::FindDock(MainWindow &window, const BusyMonitor &busy)
    : QDockWidget(tr("Find"), &window), m_window(window), m_busy(busy)
{
    setObjectName(QStringLiteral("findDock"));
    auto *contents = new QWidget(this);
    m_needle = new QLineEdit(contents);
    m_needle->setObjectName(QStringLiteral("findNeedle"));
    m_needle->setPlaceholderText(tr("Id, name or text, of all plug-ins"));
    m_needle->setAccessibleName(tr("Find in the product"));
    m_needle->setClearButtonEnabled(true);
    m_summary = new QLabel(contents);
    m_summary->setObjectName(QStringLiteral("findSummary"));
    m_list = new QTreeWidget(contents);
    m_list->setObjectName(QStringLiteral("findResults"));
    m_list->setAccessibleName(tr("What was found"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setHeaderLabels({ tr("What"), tr("Id"), tr("Label"), tr("Plug-in"), tr("Place") });
    for (int column = 0; column < int(std::size(columnWidths)); ++column)
        m_list->header()->resizeSection(column, columnWidths[column]);
    auto *line = new QHBoxLayout;
    line->addWidget(m_needle, 1);
    line->addWidget(m_summary);
    auto *layout = new QVBoxLayout(contents);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addLayout(line);
    layout->addWidget(m_list, 1);
    setWidget(contents);
    m_needle->installEventFilter(this);
    m_list->installEventFilter(this);

    m_pause.setSingleShot(true);
    m_pause.setInterval(typingPause);
    connect(&m_pause, &QTimer::timeout, this, &FindDock::startSearch);
    connect(&m_portion, &QTimer::timeout, this, &FindDock::advance);
    connect(m_needle, &QLineEdit::textEdited, &m_pause, QOverload<>::of(&QTimer::start));
    connect(m_needle, &QLineEdit::textChanged, this, [this](const QString &text) {
        // The clear button edits nothing.
        if (text.isEmpty())
            startSearch();
    });
    connect(m_list, &QTreeWidget::itemActivated, this, &FindDock::goToCurrent);
    connect(&m_busy, &BusyMonitor::busyChanged, this, [this](bool isBusy) {
        if (!isBusy && m_isEarly && !m_pause.isActive())
            searchAgain();
    });

    hide();
    window.addDock(Qt::BottomDockWidgetArea, this);
    m_action = window.editMenu()->addAction(tr("Find in &Product…"));
    m_action->setObjectName(QStringLiteral("findInProductAction"));
    m_action->setShortcut(QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_F));
    connect(m_action, &QAction::triggered, this, &FindDock::open);
    connect(&window, &MainWindow::currentEditorChanged, this, &FindDock::setEditor);
    setEditor(window.currentEditor());
}

FindDock::~FindDock() = default;

void FindDock::setEditor(IEditor *editor)
{
    m_portion.stop();
    m_search.reset();
    m_list->clear();
    m_summary->clear();
    m_editorObject = editor;
    m_editor = dynamic_cast<SearchableEditor *>(editor);
    m_action->setEnabled(m_editor != nullptr);
    if (m_editor)
        m_editor->setPresenter([this](const QString &title, const std::shared_ptr<ProductSearch> &search) {
            m_needle->clear();
            present(title, search);
            show();
            raise();
            m_list->setFocus(Qt::OtherFocusReason);
        });
    if (editor && editor->widget()) {
        const QList<QAction *> actions = editor->widget()->actions();
        m_window.editMenu()->insertActions(m_action, actions);
    }
}

void FindDock::open()
{
    show();
    raise();
    m_needle->setFocus(Qt::ShortcutFocusReason);
    m_needle->selectAll();
}

void FindDock::startSearch()
{
    m_pause.stop();
    setWindowTitle(tr("Find"));
    const QString needle = m_needle->text().trimmed();
    present(QString(), m_editor && m_editorObject && !needle.isEmpty() ? m_editor->search(needle) : nullptr);
    m_isEarly = m_search && m_busy.isBusy();
}

void FindDock::searchAgain()
{
    const QStringList kept = textsOf(m_list->currentItem());
    startSearch();
    m_kept = kept;
}

void FindDock::present(const QString &title, const std::shared_ptr<ProductSearch> &search)
{
    m_search = search;
    m_goesOn = false;
    m_isEarly = false;
    m_kept.clear();
    if (!title.isEmpty())
        setWindowTitle(title);
    if (m_search) {
        // What was found before is no answer to this.
        m_list->setCurrentItem(nullptr);
        m_portion.start(0);
        return;
    }
    m_portion.stop();
    showResults();
}

void FindDock::advance()
{
    if (m_search && m_search->advance(portion))
        return;
    m_portion.stop();
    showResults();
}

void FindDock::showResults()
{
    m_list->clear();
    if (!m_search) {
        m_summary->clear();
        return;
    }
    const QVector<SearchResult> results = m_search->results(mostResults);
    QList<QTreeWidgetItem *> rows;
    rows.reserve(results.size());
    for (const SearchResult &result : results) {
        rows.append(new QTreeWidgetItem({ result.what, result.id, result.label, result.plugin, result.place }));
        rows.last()->setData(0, Qt::UserRole, result.target);
        rows.last()->setToolTip(1, result.id);
    }
    m_list->addTopLevelItems(rows);
    const auto kept = std::find_if(
        rows.cbegin(), rows.cend(), [this](const QTreeWidgetItem *row) { return textsOf(row) == m_kept; });
    m_list->setCurrentItem(kept != rows.cend() ? *kept : rows.value(0));
    const QLocale locale;
    m_summary->setText(m_search->count() > results.size()
            ? tr("%1 of %2, go on typing").arg(locale.toString(results.size()), locale.toString(m_search->count()))
            : tr("%1 found").arg(locale.toString(results.size())));
    if (std::exchange(m_goesOn, false))
        goToCurrent();
}

void FindDock::goToCurrent()
{
    const QTreeWidgetItem *row = m_list->currentItem();
    if (!row || !m_editor || !m_editorObject)
        return;
    SearchResult result;
    result.target = row->data(0, Qt::UserRole);
    if (!m_editor->goTo(result))
        m_summary->setText(tr("It is no longer there"));
}

bool FindDock::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QDockWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key == Qt::Key_Escape) {
        hide();
        m_window.focusEditor();
        return true;
    }
    const bool isReturn = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (watched != m_needle || (key != Qt::Key_Down && !isReturn))
        return QDockWidget::eventFilter(watched, event);
    if (m_pause.isActive())
        startSearch();
    if (key == Qt::Key_Down)
        m_list->setFocus(Qt::OtherFocusReason);
    else if (m_portion.isActive())
        m_goesOn = true;
    else
        goToCurrent();
    return true;
}

} // namespace Core
