#include "workbenchdriver.h"

#include "inputdevices.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <csignal>

namespace {

constexpr int PollInterval = 15; // milliseconds

QStringList strings(const QJsonValue &array)
{
    QStringList result;
    const QJsonArray values = array.toArray();
    for (const QJsonValue &value : values)
        result.append(value.toString());
    return result;
}

QJsonObject about(const char *ask, const QString &widget = QString())
{
    QJsonObject request { { QStringLiteral("ask"), QString::fromLatin1(ask) } };
    if (!widget.isEmpty())
        request.insert(QStringLiteral("widget"), widget);
    return request;
}

QRect rectOf(const QJsonObject &found, const char *key = "rect")
{
    const QJsonArray rect = found.value(QLatin1String(key)).toArray();
    return { rect.at(0).toInt(), rect.at(1).toInt(), rect.at(2).toInt(), rect.at(3).toInt() };
}

} // namespace

// From start to end ---------------------------------------------------------------------------------------------------

bool WorkbenchDriver::open(const QString &file, const QStringList &options)
{
    return openAnd(file, options, true);
}

bool WorkbenchDriver::openWhileReading(const QString &file, const QStringList &options)
{
    return openAnd(file, options, false);
}

bool WorkbenchDriver::openAnd(const QString &file, const QStringList &options, bool waitForReading)
{
    QString complaint;
    const bool opened = launch(options + QStringList { file }) && waitFor(QStringLiteral("the window"), [&] {
        complaint = textOfDialog(QStringLiteral("errorMessage"));
        const QJsonObject now = state();
        return !complaint.isEmpty()
            || (now.value(QLatin1String("exposed")).toBool() && now.value(QLatin1String("active")).toBool()
                && now.value(QLatin1String("editor")).toBool()
                && !(waitForReading && now.value(QLatin1String("busy")).toBool(true)));
    });
    return opened && (complaint.isEmpty() || fail(complaint));
}

bool WorkbenchDriver::launch(const QStringList &arguments)
{
    static const bool hasDevices = InputDevices::plugIn();
    if (!hasDevices)
        return fail(QStringLiteral("no keyboard; is xdotool installed, and DISPLAY set?"));
    m_problem.clear();
    m_socket.abort();
    if (!m_program.start(arguments))
        return fail(QStringLiteral("the program does not start"));
    return waitFor(QStringLiteral("the probe"), [this] {
        m_socket.connectToServer(m_program.socketName());
        return m_socket.waitForConnected(PollInterval) || !m_program.isRunning();
    }) && (m_program.isRunning() || fail(QStringLiteral("the program has ended")));
}

bool WorkbenchDriver::close()
{
    return key(QStringLiteral("alt+F4")) && ended();
}

bool WorkbenchDriver::ended()
{
    const Program::Result result = m_program.result();
    m_socket.abort();
    if (result.code == 0 && result.error.isEmpty())
        return true;
    return fail(QStringLiteral("exit code %1, %2").arg(result.code).arg(QString::fromLocal8Bit(result.error)));
}

bool WorkbenchDriver::fail(const QString &problem)
{
    m_problem = problem;
    const QByteArray said = m_program.errorOutput();
    if (!said.isEmpty())
        m_problem += QStringLiteral("; the program said: ") + QString::fromLocal8Bit(said);
    return false;
}

bool WorkbenchDriver::waitFor(const QString &what, const std::function<bool()> &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.hasExpired(Program::Patience))
            return fail(QStringLiteral("waited in vain for %1").arg(what));
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
    const bool reached = waitFor(place.toString(), [&] {
        found = place.find(ask(place.request()));
        *rect = rectOf(found);
        const bool isTab = found.contains(QLatin1String("bar"));
        const bool outside = isTab
            ? found.value(QLatin1String("outside")).toBool()
            : found.value(QLatin1String("above")).toBool() || found.value(QLatin1String("below")).toBool();
        if (outside && isTab) {
            // The wheel goes from tab to tab.
            scrollTowards(found, rectOf(found, "bar"));
        } else if (outside) {
            const QString view = place.request().value(QLatin1String("widget")).toString();
            scrollTowards(found, rectOf(ask(about("widget", view))));
        }
        const bool ready = found.value(QLatin1String("reachable")).toBool() && !outside && *rect == before;
        before = *rect;
        return ready;
    });
    if (!reached)
        m_problem += QStringLiteral("; last answer: ")
            + QString::fromUtf8(QJsonDocument(found).toJson(QJsonDocument::Compact));
    return reached;
}

void WorkbenchDriver::scrollTowards(const QJsonObject &found, const QRect &view)
{
    constexpr int WheelUp = 4;
    constexpr int WheelDown = 5;
    if (!view.isEmpty())
        (void)InputDevices::click(view.center(), found.value(QLatin1String("above")).toBool() ? WheelUp : WheelDown);
}

bool WorkbenchDriver::click(const Place &place, int button, int times)
{
    QRect rect;
    return reach(place, &rect)
        && (InputDevices::click(rect.center(), button, times) || fail(QStringLiteral("no click")));
}

bool WorkbenchDriver::drag(const Place &from, const Place &to)
{
    QRect source;
    QRect target;
    QPoint away;
    // The target first: scrolling to it must not move the source away under the button.
    return reach(to, &target) && reach(from, &source) && beginDrag(source.center(), &away) && endDrag(away, to);
}

bool WorkbenchDriver::dragToWhatAppears(const Place &from, const Place &to)
{
    QRect source;
    QPoint away;
    return reach(from, &source) && beginDrag(source.center(), &away) && endDrag(away, to);
}

bool WorkbenchDriver::isDragging()
{
    return state().value(QLatin1String("dragging")).toBool();
}

bool WorkbenchDriver::beginDrag(QPoint start, QPoint *away)
{
    *away = start + QPoint(25, 8);
    if (!InputDevices::press(start) || !InputDevices::moveAlong({ start, *away }))
        return fail(QStringLiteral("the pointer does not move"));
    if (waitFor(QStringLiteral("the drag to begin"), [this] { return isDragging(); }))
        return true;
    (void)InputDevices::release();
    return false;
}

bool WorkbenchDriver::endDrag(QPoint away, const Place &to)
{
    // A view scrolls while the pointer is near its edge, step by step, and takes the target along.
    constexpr int StillPolls = 8;
    QPoint at = away;
    int still = 0;
    bool lost = false;
    const bool there = waitFor(QStringLiteral("%1 under the pointer").arg(to.toString()), [&] {
        const QRect target = rectOf(to.find(ask(to.request())));
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
        return fail(QStringLiteral("the pointer does not move"));
    if (!there)
        return false;
    return waitFor(QStringLiteral("the drag to end"), [this] { return !isDragging(); });
}

bool WorkbenchDriver::key(const QString &name)
{
    return waitForFocus() && (InputDevices::keys({ name }) || fail(QStringLiteral("no key %1").arg(name)));
}

bool WorkbenchDriver::type(const QString &text)
{
    return waitForFocus() && (InputDevices::type(text) || fail(QStringLiteral("\"%1\" was not typed").arg(text)));
}

bool WorkbenchDriver::waitForFocus()
{
    // When a dialog has closed, no window has the focus for a moment, and keys go nowhere.
    return waitFor(QStringLiteral("the focus"), [this] {
        const qint64 window = qint64(state().value(QLatin1String("activeWindow")).toDouble());
        return window != 0 && window == InputDevices::activeWindow();
    });
}

bool WorkbenchDriver::chooseFromMenu(const QString &menu, const QString &entry)
{
    return click(Place::menuEntry(menu)) && click(Place::menuEntry(entry));
}

bool WorkbenchDriver::chooseFromContextMenu(const Place &place, const QStringList &entries)
{
    constexpr int RightButton = 3;
    return click(place, RightButton) && std::all_of(entries.begin(), entries.end(), [this](const QString &entry) {
        return click(Place::menuEntry(entry));
    });
}

bool WorkbenchDriver::typeIntoSheet(
    const QString &sheet, const QString &row, const QString &text, const QString &lastKey)
{
    const auto typed = [&] {
        const QJsonObject focus = state().value(QLatin1String("focus")).toObject();
        return focus.value(QLatin1String("accessibleName")).toString() == row
            && strings(focus.value(QLatin1String("inside"))).contains(sheet)
            && focus.value(QLatin1String("value")).toString() == text;
    };
    return click(Place::sheetRow(sheet, row)) && key(QStringLiteral("ctrl+a")) && type(text)
        && waitFor(QStringLiteral("\"%1\" in the row").arg(text), typed) && key(lastKey);
}

// Looking -------------------------------------------------------------------------------------------------------------

QJsonObject WorkbenchDriver::ask(const QJsonObject &request)
{
    m_socket.write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
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

QJsonObject WorkbenchDriver::state()
{
    return ask(about("state"));
}

bool WorkbenchDriver::isModified()
{
    return state().value(QLatin1String("modified")).toBool();
}

bool WorkbenchDriver::isBusy()
{
    return state().value(QLatin1String("busy")).toBool();
}

QStringList WorkbenchDriver::icons(const char *ask, const QString &view)
{
    return strings(this->ask(about(ask, view)).value(QLatin1String("icons")));
}

QStringList WorkbenchDriver::tree(const QString &name)
{
    return strings(ask(about("tree", name)).value(QLatin1String("lines")));
}

int WorkbenchDriver::topRows(const QString &name)
{
    return ask(about("rows", name)).value(QLatin1String("rows")).toInt();
}

QStringList WorkbenchDriver::tabs(const QString &name)
{
    return strings(ask(about("tabs", name)).value(QLatin1String("texts")));
}

QStringList WorkbenchDriver::table(const QString &name)
{
    QStringList lines;
    const QJsonArray rows = ask(about("table", name)).value(QLatin1String("rows")).toArray();
    for (const QJsonValue &row : rows)
        lines.append(strings(row).join(QLatin1String(" | ")));
    return lines;
}

QStringList WorkbenchDriver::sheet(const QString &name)
{
    QStringList lines;
    const QJsonArray rows = ask(about("sheet", name)).value(QLatin1String("rows")).toArray();
    for (const QJsonValue &row : rows)
        lines.append(row.toObject().value(QLatin1String("name")).toString() + QLatin1String(" = ")
            + row.toObject().value(QLatin1String("value")).toString());
    return lines;
}

QStringList WorkbenchDriver::dialogs()
{
    QStringList names;
    const QJsonArray found = ask(about("dialogs")).value(QLatin1String("dialogs")).toArray();
    for (const QJsonValue &dialog : found)
        names.append(dialog.toObject().value(QLatin1String("name")).toString());
    return names;
}

QString WorkbenchDriver::textOfDialog(const QString &name)
{
    const QJsonArray found = ask(about("dialogs")).value(QLatin1String("dialogs")).toArray();
    for (const QJsonValue &dialog : found)
        if (dialog.toObject().value(QLatin1String("name")).toString() == name)
            return strings(dialog.toObject().value(QLatin1String("texts"))).join(QLatin1Char('\n'));
    return QString();
}

void WorkbenchDriver::finish()
{
    if (QTest::currentTestFailed())
        leavePicture(QString::fromLatin1(QTest::currentTestFunction()) + QLatin1Char('-')
            + QString::fromUtf8(QTest::currentDataTag()));
    const bool running = m_program.isRunning();
    const bool killed = running && m_program.signal(SIGKILL);
    QVERIFY(QTest::currentTestFailed() || !killed);
}

void WorkbenchDriver::leavePicture(const QString &name)
{
    const QString directory = QStringLiteral(EXTPOINT_BINARY_DIR "/tests/endtoend/pictures");
    QString file = name;
    file.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9._-]+")), QStringLiteral("-"));
    const QString path = directory + QLatin1Char('/') + file + QLatin1String(".png");
    if (QDir().mkpath(directory) && InputDevices::takePicture(path))
        qInfo("the screen: %s", qPrintable(path));
}
