#pragma once

#include "problems.h"

#include <QElapsedTimer>
#include <QMultiHash>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVector>

class PointTreeWidgetItem;
class SourceDataManager;

/// The problems of the opened file, kept true: judged anew a moment after each change of it, and when its siblings have
/// been read. Nothing is judged while a file is opened, nor for each sibling. Owned by the manager; GUI thread.
class ProblemWatch final : public QObject
{
    Q_OBJECT

public:
    explicit ProblemWatch(SourceDataManager *manager);

    [[nodiscard]] const QVector<Problem> &all() const { return m_problems; }

    /// What is wrong with what @p node stands for, a line for each problem in plain text; empty when nothing is.
    [[nodiscard]] QString reasons(PointTreeWidgetItem *node) const;

    /// What depends on the siblings is left out until their next reading is over.
    void scanStarted() { m_withSiblings = false; }

Q_SIGNALS:
    void changed();

private:
    void judgeSoon();
    void judge();

    SourceDataManager *m_manager;
    QVector<Problem> m_problems;
    QMultiHash<const PointTreeWidgetItem *, int> m_byNode;
    QTimer m_timer;
    bool m_withSiblings = false;
};
