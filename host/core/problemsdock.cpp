#include "core/problemsdock.h"

#include "core/ieditor.h"
#include "core/mainwindow.h"
#include "core/problemsource.h"

#include <QHeaderView>
#include <QStatusBar>
#include <QStyle>
#include <QToolButton>
#include <QTreeWidget>

namespace Core {

namespace {

enum ProblemColumn { ReasonColumn, PlaceColumn, ProblemColumnCount };
constexpr int KeyRole = Qt::UserRole;
// Nobody reads more, and rows take time.
constexpr int MostRows = 1000;
constexpr QSize PreferredSize(600, 130);

/// One line, whatever a file says.
QString line(QString text)
{
    return text.replace(QLatin1Char('\n'), QLatin1Char(' '));
}

} // namespace

ProblemsDock::ProblemsDock(MainWindow &window)
    : QDockWidget(tr("Problems"), &window), m_list(new QTreeWidget(this)), m_count(new QToolButton(&window))
{
    setObjectName(QStringLiteral("problemsDock"));
    m_list->setObjectName(QStringLiteral("problemsList"));
    m_list->setAccessibleName(tr("Problems of the opened file"));
    m_list->setColumnCount(ProblemColumnCount);
    m_list->setHeaderLabels({ tr("Problem"), tr("Place") });
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->header()->setStretchLastSection(true);
    m_list->header()->resizeSection(ReasonColumn, PreferredSize.width() * 6 / 10);
    setWidget(m_list);
    resize(PreferredSize);
    hide();
    connect(m_list, &QTreeWidget::itemActivated, this, [this](const QTreeWidgetItem *row) {
        const QVariant key = row->data(0, KeyRole);
        if (m_source && key.isValid())
            m_source->showProblem(key);
    });

    m_count->setObjectName(QStringLiteral("problemsButton"));
    m_count->setAutoRaise(true);
    m_count->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_count->setToolTip(tr("Show the list of problems"));
    m_count->hide();
    connect(m_count, &QToolButton::clicked, this, &ProblemsDock::present);
    window.statusBar()->addPermanentWidget(m_count);
    m_count->hide();

    window.addDock(Qt::BottomDockWidgetArea, this);
    connect(&window, &MainWindow::currentEditorChanged, this, &ProblemsDock::setEditor);
    connect(this, &QDockWidget::visibilityChanged, this, [this](bool visible) {
        if (visible)
            refresh();
    });
    setEditor(window.currentEditor());
}

void ProblemsDock::setEditor(IEditor *editor)
{
    delete m_subscription;
    m_source = dynamic_cast<ProblemSource *>(editor);
    if (m_source) {
        m_subscription = new QObject(this);
        m_source->whenProblemsChange(m_subscription, [this] { refresh(); });
    }
    refresh();
}

void ProblemsDock::refresh()
{
    const int count = m_source ? m_source->problemCount() : 0;
    if (count > 0 && m_count->icon().isNull())
        m_count->setIcon(style()->standardIcon(QStyle::SP_MessageBoxWarning));
    m_count->setText(count == 1 ? tr("1 problem") : tr("%n problems", nullptr, count));
    m_count->setVisible(count > 0);

    // Nobody sees the rows of a list that is closed; it is filled when it opens.
    const QTreeWidgetItem *current = m_list->currentItem();
    const int row = current ? m_list->indexOfTopLevelItem(const_cast<QTreeWidgetItem *>(current)) : -1;
    m_list->clear();
    if (isHidden() || count == 0)
        return;
    QList<QTreeWidgetItem *> rows;
    const QVector<FileProblem> problems = m_source->problems(MostRows);
    for (const FileProblem &problem : problems) {
        const bool isError = problem.severity == FileProblem::Severity::Error;
        auto *item = new QTreeWidgetItem({ line(problem.text), line(problem.place) });
        item->setIcon(ReasonColumn,
            style()->standardIcon(isError ? QStyle::SP_MessageBoxCritical : QStyle::SP_MessageBoxWarning));
        item->setData(ReasonColumn, Qt::AccessibleDescriptionRole, isError ? tr("Error") : tr("Warning"));
        for (int column = 0; column < ProblemColumnCount; ++column)
            item->setToolTip(column, item->text(column).toHtmlEscaped());
        item->setData(0, KeyRole, problem.key);
        rows.append(item);
    }
    if (count > problems.size())
        rows.append(new QTreeWidgetItem({ tr("%n more are not listed", nullptr, count - problems.size()) }));
    m_list->addTopLevelItems(rows);
    if (row >= 0)
        m_list->setCurrentItem(m_list->topLevelItem(qMin(row, m_list->topLevelItemCount() - 1)));
}

void ProblemsDock::present()
{
    show();
    raise();
    m_list->setFocus(Qt::OtherFocusReason);
    if (!m_list->currentItem())
        m_list->setCurrentItem(m_list->topLevelItem(0));
}

} // namespace Core
