#pragma once

#include "core/core_global.h"

#include <QDockWidget>
#include <QPointer>

class QToolButton;
class QTreeWidget;

namespace Core {

class IEditor;
class MainWindow;
class ProblemSource;

/// The list of what is wrong in the opened file, and the count in the status bar, which brings the list and is not
/// there when there is nothing to tell. Hidden until somebody asks for it. Owned by its window.
class CORE_EXPORT ProblemsDock final : public QDockWidget
{
    Q_OBJECT

public:
    /// Puts itself and the count into @p window.
    explicit ProblemsDock(MainWindow &window);

private:
    void setEditor(IEditor *editor);
    void refresh();
    void present();

    QTreeWidget *m_list;
    QToolButton *m_count;
    /// Ends the notifications of the editor before; null without a source.
    QPointer<QObject> m_subscription;
    ProblemSource *m_source = nullptr;
};

} // namespace Core
