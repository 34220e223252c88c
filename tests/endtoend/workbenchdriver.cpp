#include "workbenchdriver.h"

#include "inputdevices.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QThread>

#include <algorithm>
#include <csignal>

namespace {

constexpr int PollInterval = 15; // milliseconds

QStringList strings(const QJsonValue &array)
{
    return array.toVariant().toStringList();
}

QRect rectIn(const QJsonObject &found, const char *key = "rect")
{
    const QJsonArray rect = found.value(QLatin1String(key)).toArray();
    // On a scaled screen they needn't be whole.
    return QRectF(rect.at(0).toDouble(), rect.at(1).toDouble(), rect.at(2).toDouble(), rect.at(3).toDouble()).toRect();
}

QString printed(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace

// From start to end ---------------------------------------------------------------------------------------------------

bool WorkbenchDriver::open(const QString &file, bool waitForReading)
{
    static const bool hasDevices = InputDevices::plugIn();
    if (!hasDevices)
        return fail(s("no keyboard; is xdotool installed, and DISPLAY set?"));
    m_problem.clear();
    m_socket.abort();
    if (!program().start({ file }))
        return fail(s("the program does not start"));
    return waitFor(s("the probe"), [this] {
        m_socket.connectToServer(program().socketName());
        return m_socket.waitForConnected(PollInterval) || !program().isRunning();
    }) && waitFor(s("the window"), [&] {
        const QJsonObject now = state();
        return now.value(s("exposed")).toBool() && now.value(s("active")).toBool() && now.value(s("editor")).toBool()
            && !(waitForReading && now.value(s("busy")).toBool());
    });
}

bool WorkbenchDriver::close()
{
    return key(s("alt+F4")) && ended();
}

bool WorkbenchDriver::ended()
{
    const Program::Result result = program().result();
    m_socket.abort();
    return (result.code == 0 && result.error.isEmpty()) || fail(s("exit code %1").arg(result.code));
}

bool WorkbenchDriver::fail(const QString &problem)
{
    m_problem = problem + s("; the program said: ") + QString::fromLocal8Bit(program().errorOutput());
    return false;
}

bool WorkbenchDriver::waitFor(const QString &what, const std::function<bool()> &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.hasExpired(Program::Patience))
            return fail(s("waited in vain for %1").arg(what));
        QThread::msleep(PollInterval);
    }
    return true;
}

// Doing ---------------------------------------------------------------------------------------------------------------

bool WorkbenchDriver::reach(const Place &place, QRect *rect)
{
    // What still moves is not clicked at: a layout may be about to change.
    QRect before;
    QJsonObject found;
    const bool reached = waitFor(printed(place.request), [&] {
        found = ask("place", place.request);
        *rect = rectIn(found);
        const int wheel = found.value(s("wheel")).toInt();
        if (wheel != 0)
            (void)InputDevices::click(rectIn(found, "over").center(), wheel);
        const bool ready = found.value(s("reachable")).toBool() && wheel == 0 && *rect == before;
        before = *rect;
        return ready;
    });
    if (!reached)
        m_problem += s("; last answer: ") + printed(found);
    return reached;
}

bool WorkbenchDriver::click(const Place &place, int button)
{
    QRect rect;
    return reach(place, &rect) && (InputDevices::click(rect.center(), button) || fail(s("no click")));
}

bool WorkbenchDriver::drag(const Place &from, const Place &to)
{
    QRect target;
    // The target first: scrolling to it must not move the source away under the button.
    return reach(to, &target) && dragToWhatAppears(from, to);
}

bool WorkbenchDriver::dragToWhatAppears(const Place &from, const Place &to)
{
    QRect source;
    if (!reach(from, &source))
        return false;
    QPoint at = source.center() + QPoint(25, 8);
    if (!InputDevices::press(source.center()) || !InputDevices::moveAlong({ source.center(), at }))
        return fail(s("the pointer does not move"));
    // A view scrolls while the pointer is near its edge, step by step, and takes the target along.
    constexpr int StillPolls = 8;
    int still = 0;
    bool lost = false;
    const bool there = waitFor(s("the drag to begin"), [this] { return isDragging(); })
        && waitFor(s("%1 under the pointer").arg(printed(to.request)), [&] {
               const QRect target = rectIn(ask("place", to.request));
               const QPoint end = target.center();
               if (target.isEmpty() || at != end)
                   still = 0;
               if (target.isEmpty() || at == end)
                   return ++still > StillPolls && !target.isEmpty();
               // Around the end once more, for a target that shows what it is only once the pointer has been there.
               lost = !InputDevices::moveAlong({ at, end, end + QPoint(2, 1), end });
               at = end;
               return lost;
           });
    if (!InputDevices::release() || lost)
        return fail(s("the pointer does not move"));
    return there && waitFor(s("the drag to end"), [this] { return !isDragging(); });
}

bool WorkbenchDriver::key(const QString &name)
{
    return waitForFocus() && (InputDevices::key(name) || fail(s("no key %1").arg(name)));
}

bool WorkbenchDriver::keys(const char *names)
{
    const QStringList all = s(names).split(QLatin1Char(' '));
    return std::all_of(all.begin(), all.end(), [this](const QString &name) { return key(name); });
}

bool WorkbenchDriver::downTo(const char *row)
{
    // Not by typing its text: a busy machine pauses between two letters, and the second then begins a search anew.
    constexpr int mostRows = 60;
    const auto current = [this] { return state().value(s("focus")).toObject().value(s("value")).toString(); };
    if (!key(s("Home")))
        return false;
    for (int i = 0; i < mostRows && current() != s(row); ++i) {
        const QString before = current();
        if (!key(s("Down")) || !waitFor(s("the row below %1").arg(before), [&] { return current() != before; }))
            return false;
    }
    return current() == s(row) || fail(s("Down does not lead to %1").arg(s(row)));
}

bool WorkbenchDriver::type(const char *text)
{
    return waitForFocus() && (InputDevices::type(s(text)) || fail(s("not typed")));
}

bool WorkbenchDriver::tabTo(const char *widget)
{
    constexpr int mostStops = 60;
    for (int i = 0; i < mostStops; ++i) {
        if (state().value(s("focus")).toObject().value(s("name")).toString() == s(widget))
            return true;
        if (!key(s("Tab")))
            return false;
    }
    return fail(s("Tab does not lead to %1").arg(s(widget)));
}

bool WorkbenchDriver::waitForFocus()
{
    // When a dialog has closed, no window has the focus for a moment, and keys go nowhere.
    return waitFor(s("the focus"), [this] {
        const qint64 window = qint64(state().value(s("activeWindow")).toDouble());
        return window != 0 && window == InputDevices::activeWindow();
    });
}

bool WorkbenchDriver::chooseFromMenu(const QString &menu, const QString &entry)
{
    return click(Place::menuEntry(menu)) && click(Place::menuEntry(entry));
}

bool WorkbenchDriver::choose(const Place &place, const QStringList &entries)
{
    constexpr int RightButton = 3;
    return click(place, RightButton) && std::all_of(entries.begin(), entries.end(), [this](const QString &entry) {
        return click(Place::menuEntry(entry));
    });
}

bool WorkbenchDriver::edit(const char *sheet, const char *row, const QString &text)
{
    const auto typed = [&] {
        const QJsonObject focus = state().value(s("focus")).toObject();
        return focus.value(s("accessibleName")).toString() == s(row)
            && strings(focus.value(s("inside"))).contains(s(sheet)) && focus.value(s("value")).toString() == text;
    };
    return click(Place::sheetRow(s(sheet), s(row))) && key(s("ctrl+a"))
        && (InputDevices::type(text) || fail(s("not typed"))) && waitFor(s("\"%1\" in the row").arg(text), typed)
        && key(s("Return"));
}

bool WorkbenchDriver::save()
{
    return key(s("ctrl+s")) && waitFor(s("the save"), [this] { return !isModified(); });
}

// Looking -------------------------------------------------------------------------------------------------------------

QJsonObject WorkbenchDriver::ask(const char *question, QJsonObject about)
{
    about.insert(s("ask"), s(question));
    m_socket.write(QJsonDocument(about).toJson(QJsonDocument::Compact) + '\n');
    QElapsedTimer timer;
    timer.start();
    while (!m_socket.canReadLine()) {
        const int left = Program::Patience - int(timer.elapsed());
        if (left <= 0 || !m_socket.waitForReadyRead(left)) {
            // A late answer would be taken for the next one's.
            m_socket.abort();
            return {};
        }
    }
    return QJsonDocument::fromJson(m_socket.readLine()).object();
}

QStringList WorkbenchDriver::list(const char *widget, const char *what)
{
    return strings(ask("lines", Place::widget(s(widget)).request).value(s(what)));
}

QStringList WorkbenchDriver::dialogs()
{
    QStringList names;
    const QJsonArray found = state().value(s("dialogs")).toArray();
    for (const QJsonValue &dialog : found)
        names.append(dialog.toObject().value(s("name")).toString());
    return names;
}

QString WorkbenchDriver::textOfDialog()
{
    return state().value(s("dialogs")).toArray().last().toObject().value(s("text")).toString();
}

void WorkbenchDriver::finish()
{
    const bool failed = QTest::currentTestFailed();
    if (failed)
        leavePicture(QString::fromLatin1(QTest::currentTestFunction()) + QLatin1Char('-')
            + QString::fromUtf8(QTest::currentDataTag()));
    const bool killed = program().isRunning() && program().signal(SIGKILL);
    QVERIFY(failed || !killed);
}

void WorkbenchDriver::leavePicture(const QString &name)
{
    const QString directory = s(EXTPOINT_BINARY_DIR "/tests/endtoend/pictures/");
    QString file = name;
    file.replace(QRegularExpression(s("[^A-Za-z0-9._-]+")), s("-"));
    if (QDir().mkpath(directory) && InputDevices::takePicture(directory + file + s(".png")))
        qInfo("the screen: %s", qPrintable(directory + file));
}
