#pragma once

#include "core/core_global.h"
#include "core/reportingdocument.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

class QBoxLayout;
class QMainWindow;
class QMessageBox;
class QPushButton;
class QToolButton;

namespace Core {

class EditorManager;
class FileCare;
class IEditor;
class InfoBar;

/// Saves the file of the window's editor: waits, with the window alive, for what the document still waits for, asks
/// about what a save would lose, saves, and tells how it went in the status bar or a message. Owned by MainWindow; GUI
/// thread.
class CORE_EXPORT FileSaving final : public QObject
{
    Q_OBJECT

public:
    static constexpr int StatusMessageTime = 4000; // milliseconds

    /// Adds its bar to @p place, whose widget must outlive it, as must the other three.
    FileSaving(EditorManager &editors, FileCare &care, QMainWindow &window, QBoxLayout &place);
    ~FileSaving() override;

    /// The editor to save; null gives up a save that is under way.
    void setEditor(IEditor *editor);

    /// Calls @p then once the file has been written and there is nothing about it that the user should look at first.
    /// A save that is under way goes on, with @p then, if it is one, in place of what it was to be followed by.
    void save(const std::function<void()> &then = {});
    /// A save that is under way is followed by nothing any more.
    void forgetWhatFollows() { m_then = {}; }

    /// Why there is no saving under another name, and what there is instead.
    void explainSaveAs();

    /// A warning or an error, by @p objectName, about the file @p path.
    void showMessage(const QString &objectName, const QString &text, const QString &path, const QString &reason);

private:
    enum class Step { None, Waiting, Asking };

    void look();
    void goOn();
    void ask(const SaveReport &report);
    void write(const SaveReport &report);
    void tell(const QString &path, const SaveReport &report);
    void giveUp();
    void showRemarks();

    EditorManager &m_editors;
    FileCare &m_care;
    QMainWindow &m_window;
    IEditor *m_editor = nullptr;
    Step m_step = Step::None;
    std::function<void()> m_then;
    QTimer m_look;
    QElapsedTimer m_waiting;
    InfoBar *m_bar;
    QPushButton *m_goOnButton;
    QToolButton *m_detailsButton;
    QPointer<QMessageBox> m_question;
    QString m_accepted; ///< the question that was answered with yes
    QStringList m_remarks;
};

} // namespace Core
