#pragma once

#include "place.h"
#include "program.h"

#include <QJsonObject>
#include <QLocalSocket>
#include <QRect>

#include <functional>

/// Works the running workbench as a person does, with the pointer and the keys of the X server that the test runs in,
/// and sees through the probe what it shows. A step waits until it can be done and fails when it can't be within
/// Program::Patience; problem() then says why. What a step leads to is waited for by whoever asks, with EVENTUALLY on
/// the functions that look.
class WorkbenchDriver final
{
public:
    WorkbenchDriver() = default;

    [[nodiscard]] Program &program() { return m_program; }

    /// Starts the program and waits until its window is there, has the focus and no plug-in is being read any more.
    [[nodiscard]] bool open(const QString &file, const QStringList &options = {});
    /// The same, but doesn't wait for the plug-ins that are being read.
    [[nodiscard]] bool openWhileReading(const QString &file, const QStringList &options = {});
    /// Starts the program and waits for nothing but its first answer.
    [[nodiscard]] bool launch(const QStringList &arguments);
    /// Closes the window with the window manager's key and waits for the end, which must be one without any fault: exit
    /// code 0 and nothing on the standard error output.
    [[nodiscard]] bool close();
    /// Waits for that end.
    [[nodiscard]] bool ended();
    [[nodiscard]] QString problem() const { return m_problem; }

    [[nodiscard]] bool click(const Place &place, int button = 1, int times = 1);
    [[nodiscard]] bool drag(const Place &from, const Place &to);
    /// Like drag(), for a target that comes into view only once the source is pressed.
    [[nodiscard]] bool dragToWhatAppears(const Place &from, const Place &to);
    [[nodiscard]] bool key(const QString &name);
    [[nodiscard]] bool type(const QString &text);
    /// Opens the menu of the menu bar and takes the entry.
    [[nodiscard]] bool chooseFromMenu(const QString &menu, const QString &entry);
    /// Opens the context menu of the place and takes the entries, one after the other.
    [[nodiscard]] bool chooseFromContextMenu(const Place &place, const QStringList &entries);
    /// Puts a text into a row of a sheet by clicking and typing, and ends with \a lastKey.
    [[nodiscard]] bool typeIntoSheet(
        const QString &sheet, const QString &row, const QString &text, const QString &lastKey);

    /// One answer of the probe, an empty object when there is none.
    [[nodiscard]] QJsonObject ask(const QJsonObject &request);
    [[nodiscard]] QJsonObject state();
    [[nodiscard]] bool isModified();
    [[nodiscard]] bool isBusy();
    [[nodiscard]] QStringList tree(const QString &name);
    /// What the icons of a tree's lines or of a table's rows show in their middle; empty for none.
    [[nodiscard]] QStringList icons(const char *ask, const QString &view);
    /// The number of rows under the only row that has no parent.
    [[nodiscard]] int topRows(const QString &tree);
    [[nodiscard]] QStringList tabs(const QString &name);
    /// The rows of a table, the cells divided by " | ".
    [[nodiscard]] QStringList table(const QString &name);
    /// "name = value" for each row.
    [[nodiscard]] QStringList sheet(const QString &name);
    /// The object names of the visible dialogs, the one in front last.
    [[nodiscard]] QStringList dialogs();
    /// Everything that the dialog says; empty when it isn't there.
    [[nodiscard]] QString textOfDialog(const QString &name);
    [[nodiscard]] bool waitFor(const QString &what, const std::function<bool()> &condition);

    /// To be called after each test: leaves a picture of a failure, and ends the program, which must have ended by
    /// itself when there was none.
    void finish();
    /// Writes a picture of the screen to the build tree.
    void leavePicture(const QString &name);

private:
    [[nodiscard]] bool fail(const QString &problem);
    [[nodiscard]] bool openAnd(const QString &file, const QStringList &options, bool waitForReading);
    [[nodiscard]] bool waitForFocus();
    [[nodiscard]] bool isDragging();
    /// Presses and moves a little away; \a away is where the pointer is then.
    [[nodiscard]] bool beginDrag(QPoint start, QPoint *away);
    [[nodiscard]] bool endDrag(QPoint away, const Place &to);
    [[nodiscard]] bool reach(const Place &place, QRect *rect);
    void scrollTowards(const QJsonObject &found, const QRect &view);

    Program m_program;
    QLocalSocket m_socket;
    QString m_problem;
};
