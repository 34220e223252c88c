#pragma once

#include "place.h"
#include "program.h"

#include <QLocalSocket>
#include <QRect>
#include <QTest>

#include <functional>

/// Ends the test with the driver's problem when the step fails. For test classes that are drivers.
#define STEP(step) QVERIFY2(step, qPrintable(problem()))

/// Compares as soon as it holds, or fails when the patience has ended.
#define EVENTUALLY(actual, expected)                                                                                   \
    do {                                                                                                               \
        (void)waitFor(QString(), [&] { return (actual) == (expected); });                                              \
        QCOMPARE(actual, expected);                                                                                    \
    } while (false)

/// Works the running workbench as a person does, with the pointer and the keys of the X server that the test runs in,
/// and sees through the probe what it shows. A step waits until it can be done and fails when it can't be within
/// Program::Patience; problem() then says why. What a step leads to is waited for by whoever asks, with EVENTUALLY on
/// the functions that look.
class WorkbenchDriver
{
public:
    WorkbenchDriver() = default;
    WorkbenchDriver(const WorkbenchDriver &) = delete;
    WorkbenchDriver &operator=(const WorkbenchDriver &) = delete;

    [[nodiscard]] Program &program() { return *m_program; }

    /// Starts the program and waits until its window is there, has the focus and, if so wanted, no plug-in is being
    /// read any more.
    [[nodiscard]] bool open(const QString &file, bool waitForReading = true);
    /// Closes the window with the window manager's key and waits for the end.
    [[nodiscard]] bool close();
    /// Waits for the end, which must be one without any fault: exit code 0 and nothing on the standard error output.
    [[nodiscard]] bool ended();
    [[nodiscard]] QString problem() const { return m_problem; }

    [[nodiscard]] bool click(const Place &place, int button = 1);
    [[nodiscard]] bool drag(const Place &from, const Place &to);
    /// Like drag(), for a target that comes into view only once the source is pressed.
    [[nodiscard]] bool dragToWhatAppears(const Place &from, const Place &to);
    [[nodiscard]] bool key(const QString &name);
    /// Several keys, one after the other, their names with blanks between them.
    [[nodiscard]] bool keys(const char *names);
    [[nodiscard]] bool type(const char *text);
    /// Types a text and ends with the Return key.
    [[nodiscard]] bool enter(const char *text) { return type(text) && key(s("Return")); }
    /// Presses Tab until the widget of this name has the focus, or the bar of the tab widget of this name.
    [[nodiscard]] bool tabTo(const char *widget);
    /// Goes from the first row of the tree that has the focus down to the next one with this text in the first column;
    /// no two rows in a row may read the same.
    [[nodiscard]] bool downTo(const char *row);
    /// Opens the menu of the menu bar and takes the entry.
    [[nodiscard]] bool chooseFromMenu(const QString &menu, const QString &entry);
    /// Opens the context menu of the place and takes the entries, one after the other.
    [[nodiscard]] bool choose(const Place &place, const QStringList &entries);
    /// Puts a text into a row of a sheet by clicking and typing, and ends with the Return key.
    [[nodiscard]] bool edit(const char *sheet, const char *row, const QString &text);
    /// Shows a page of the form.
    [[nodiscard]] bool definitionPage() { return click(Place::tab(s("tabWidget"), s("ExtPointEdit"))); }
    [[nodiscard]] bool realizationPage() { return click(Place::tab(s("tabWidget"), s("RealizationExit"))); }
    /// Has the plug-in on the realization page show everything that it declares.
    [[nodiscard]] bool unfold(const QString &plugin) { return click(Place::point({ plugin })) && key(s("asterisk")); }
    /// With the keys, and waits until it is done.
    [[nodiscard]] bool save();

    /// What the probe says of the window, an empty object when there is no answer.
    [[nodiscard]] QJsonObject state() { return ask("state", {}); }
    [[nodiscard]] bool isModified() { return state().value(s("modified")).toBool(); }
    [[nodiscard]] bool isBusy() { return state().value(s("busy")).toBool(true); }
    [[nodiscard]] bool isShown(const char *widget) { return look(widget).value(s("visible")).toBool(); }
    [[nodiscard]] QString textOf(const char *widget) { return look(widget).value(s("value")).toString(); }
    /// What the tabs, the tree, the table or the sheet of this name shows.
    [[nodiscard]] QStringList lines(const char *widget) { return list(widget, "lines"); }
    /// What the icons in the rows of the tree or table show in their middle; empty for none.
    [[nodiscard]] QStringList icons(const char *widget) { return list(widget, "icons"); }
    /// The object names of the visible dialogs, the one in front last.
    [[nodiscard]] QStringList dialogs();
    /// Everything that the dialog in front says.
    [[nodiscard]] QString textOfDialog();
    [[nodiscard]] bool waitFor(const QString &what, const std::function<bool()> &condition);

    /// Writes a picture of the screen to the build tree.
    void leavePicture(const QString &name);

protected:
    /// To be called before each test.
    void begin() { m_program = std::make_unique<Program>(); }
    /// To be called after each test: leaves a picture of a failure, and ends the program, which must have ended by
    /// itself when there was none.
    void finish();

private:
    [[nodiscard]] bool fail(const QString &problem);
    [[nodiscard]] QJsonObject ask(const char *question, QJsonObject about);
    [[nodiscard]] QJsonObject look(const char *widget) { return ask("place", Place::widget(s(widget)).request); }
    [[nodiscard]] QStringList list(const char *widget, const char *what);
    [[nodiscard]] bool waitForFocus();
    [[nodiscard]] bool isDragging() { return state().value(s("dragging")).toBool(); }
    [[nodiscard]] bool reach(const Place &place, QRect *rect);

    std::unique_ptr<Program> m_program = std::make_unique<Program>();
    QLocalSocket m_socket;
    QString m_problem;
};
