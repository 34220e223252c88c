#pragma once

#include "core/core_global.h"

#include <QDockWidget>
#include <QString>

class QPlainTextEdit;

namespace Core {

/// What the process logs, in a dock from which it can be copied. It listens from when it is made to when it is deleted,
/// on all threads, and hands everything on as before; there is one at a time. What was shown to the user in a message
/// instead (see LogCollector) is not in it. Hidden at first.
class CORE_EXPORT LogDock final : public QDockWidget
{
    Q_OBJECT

public:
    explicit LogDock(QWidget *parent);
    ~LogDock() override;

    /// Shows what was logged since. GUI thread.
    void takeIn();

private:
    QPlainTextEdit *m_lines;
};

} // namespace Core
