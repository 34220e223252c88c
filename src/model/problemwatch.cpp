#include "problemwatch.h"

#include "pointtreewidgetitem.h"
#include "sourcedatamanager.h"

#include <QStringList>

#include <algorithm>

namespace {

// In milliseconds: what follows a change at once is one judgement with it.
constexpr int shortestPause = 10;
// A file that takes long to judge is judged the more rarely.
constexpr int judgementsInPause = 5;
constexpr int longJudgement = 50;

bool areSame(const Problem &left, const Problem &right)
{
    return left.node == right.node && left.key == right.key && left.text == right.text
        && left.severity == right.severity;
}

} // namespace

ProblemWatch::ProblemWatch(SourceDataManager *manager) : QObject(manager), m_manager(manager)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(shortestPause);
    connect(&m_timer, &QTimer::timeout, this, &ProblemWatch::judge);
    connect(&manager->changes(), &ModelChanges::changed, this, &ProblemWatch::judgeSoon);
    connect(manager, &SourceDataManager::scanFinished, this, [this] {
        m_withSiblings = true;
        judgeSoon();
    });
}

QString ProblemWatch::reasons(PointTreeWidgetItem *node) const
{
    // Asked for every row that is painted.
    if (m_byNode.isEmpty() || !node)
        return {};
    // A row stands for what it mirrors; a definition mirrors what offers it, but is judged itself.
    const PointTreeWidgetItem *judged = m_byNode.contains(node) ? node : node->master()->item();
    QList<int> numbers = m_byNode.values(judged);
    std::sort(numbers.begin(), numbers.end());
    QStringList lines;
    for (const int number : qAsConst(numbers)) {
        const Problem &problem = m_problems.at(number);
        // One that has gone may have left its address to another.
        if (problem.node == judged)
            lines.append(QStringLiteral("%1: %2").arg(problem.key, problem.text));
    }
    return lines.join(QLatin1Char('\n'));
}

void ProblemWatch::judgeSoon()
{
    if (!m_timer.isActive())
        m_timer.start();
}

void ProblemWatch::judge()
{
    QElapsedTimer clock;
    clock.start();
    const QVector<Problem> problems = Problems::of(*m_manager, m_withSiblings);
    const int took = int(clock.elapsed());
    m_timer.setInterval(took <= longJudgement ? shortestPause : took * judgementsInPause);
    if (std::equal(problems.cbegin(), problems.cend(), m_problems.cbegin(), m_problems.cend(), areSame))
        return;
    m_problems = problems;
    m_byNode.clear();
    for (int i = 0; i < m_problems.size(); ++i) {
        if (m_problems.at(i).node)
            m_byNode.insert(m_problems.at(i).node, i);
    }
    Q_EMIT changed();
}
