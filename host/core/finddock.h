#pragma once

#include "core/core_global.h"

#include <QDockWidget>
#include <QPointer>
#include <QTimer>

#include <memory>

class QAction;
class QLabel;
class QLineEdit;
class QTreeWidget;

namespace Core {

class BusyMonitor;
class IEditor;
class MainWindow;
class ProductSearch;
class SearchableEditor;

/// The dock "Find": what the open editor finds for what is typed, a line each; Return or a double click goes there.
/// What was found while something was still being read is looked for again afterwards. It also shows what the editor
/// itself has been asked for. Makes its entry in "Edit", where it puts the actions of the editor's widget as well.
/// Owned by the window. GUI thread.
class CORE_EXPORT FindDock final : public QDockWidget
{
    Q_OBJECT

public:
    /// @p busy must live as long.
    FindDock(MainWindow &window, const BusyMonitor &busy);
    ~FindDock() override;

    /// As the entry "Find in Product…".
    void open();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setEditor(IEditor *editor);
    void startSearch();
    /// As startSearch(), where the current row is to stay.
    void searchAgain();
    void present(const QString &title, const std::shared_ptr<ProductSearch> &search);
    void advance();
    void showResults();
    void goToCurrent();

    MainWindow &m_window;
    const BusyMonitor &m_busy;
    QPointer<QObject> m_editorObject;
    SearchableEditor *m_editor = nullptr; ///< the same, as long as that lives
    std::shared_ptr<ProductSearch> m_search;
    QAction *m_action;
    QLineEdit *m_needle;
    QTreeWidget *m_list;
    QLabel *m_summary;
    QStringList m_kept;     ///< the texts of the row that is to be current again, if any
    bool m_goesOn = false;  ///< to the first result, once it is there
    bool m_isEarly = false; ///< the search for what was typed began while something was being read
    QTimer m_pause;         ///< of typing
    QTimer m_portion;       ///< of the search
};

} // namespace Core
