#include "probe/windowquestions.h"

#include "core/busymonitor.h"
#include "core/editormanager.h"
#include "core/icore.h"
#include "probe/questions.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QJsonArray>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QWindow>

namespace {

/// The picture under the pointer during a drag is a window of its own.
bool isDragging()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(), [](const QWindow *window) {
        return window->isVisible() && qstrcmp(window->metaObject()->className(), "QShapedPixmapWindow") == 0;
    });
}

QJsonObject focus()
{
    const QWidget *widget = QApplication::focusWidget();
    if (!widget)
        return {};
    QJsonArray inside;
    for (const QWidget *parent = widget->parentWidget(); parent; parent = parent->parentWidget())
        if (!parent->objectName().isEmpty())
            inside.append(parent->objectName());
    return {
        { QStringLiteral("accessibleName"), widget->accessibleName() },
        { QStringLiteral("value"), Probe::valueOf(widget) },
        { QStringLiteral("inside"), inside },
    };
}

QJsonObject dialog(QDialog *window)
{
    QStringList texts;
    if (const auto *box = qobject_cast<QMessageBox *>(window)) {
        texts = QStringList { box->text(), box->informativeText() };
    } else {
        const auto labels = window->findChildren<QLabel *>();
        for (const QLabel *label : labels)
            if (label->isVisible())
                texts.append(label->text());
    }
    QJsonArray buttons;
    const auto all = window->findChildren<QAbstractButton *>();
    for (const QAbstractButton *button : all) {
        if (!button->isVisible())
            continue;
        QJsonObject entry = Probe::place(button, button->rect());
        entry.insert(QStringLiteral("text"), Probe::withoutMnemonic(button->text()));
        buttons.append(entry);
    }
    return {
        { QStringLiteral("name"), window->objectName() },
        { QStringLiteral("active"), window->isActiveWindow() },
        { QStringLiteral("texts"), QJsonArray::fromStringList(texts) },
        { QStringLiteral("buttons"), buttons },
    };
}

template <typename Menu>
QJsonArray entriesOf(const Menu *menu)
{
    QJsonArray entries;
    const auto actions = menu->actions();
    for (QAction *action : actions) {
        if (!action->isVisible())
            continue;
        QJsonObject entry = Probe::place(menu, menu->actionGeometry(action));
        entry.insert(QStringLiteral("text"),
            action->isSeparator() ? QStringLiteral("-") : Probe::withoutMnemonic(action->text()));
        entries.append(entry);
    }
    return entries;
}

} // namespace

QJsonObject Probe::state(const QJsonObject & /*request*/)
{
    const QMainWindow *window = Core::ICore::mainWindow();
    const QWindow *native = window->windowHandle();
    const QWidget *active = QApplication::activeWindow();
    return {
        { QStringLiteral("modified"), window->isWindowModified() },
        { QStringLiteral("exposed"), native && native->isExposed() },
        { QStringLiteral("active"), window->isActiveWindow() },
        { QStringLiteral("activeWindow"), active ? qint64(active->winId()) : 0 },
        { QStringLiteral("status"), window->statusBar()->currentMessage() },
        { QStringLiteral("editor"), Core::ICore::currentEditor() != nullptr },
        { QStringLiteral("busy"), Core::ICore::editorManager()->busyMonitor().isBusy() },
        { QStringLiteral("dragging"), isDragging() },
        { QStringLiteral("focus"), focus() },
    };
}

QJsonObject Probe::dialogs(const QJsonObject & /*request*/)
{
    QJsonArray found;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        auto *candidate = qobject_cast<QDialog *>(window);
        if (!candidate || !candidate->isVisible())
            continue;
        if (candidate == QApplication::activeModalWidget())
            found.append(dialog(candidate));
        else
            found.prepend(dialog(candidate));
    }
    return { { QStringLiteral("dialogs"), found } };
}

QJsonObject Probe::menus(const QJsonObject & /*request*/)
{
    QJsonArray open;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows) {
        const auto *menu = qobject_cast<const QMenu *>(window);
        if (menu && menu->isVisible())
            open.append(QJsonObject {
                { QStringLiteral("name"), menu->objectName() }, { QStringLiteral("entries"), entriesOf(menu) } });
    }
    return {
        { QStringLiteral("bar"), entriesOf(Core::ICore::mainWindow()->menuBar()) },
        { QStringLiteral("open"), open },
    };
}

QJsonObject Probe::widget(const QJsonObject &request)
{
    const QWidget *found = find(request);
    if (!found)
        return notFound(request);
    QJsonObject reply = place(found, found->rect());
    reply.insert(QStringLiteral("visible"), found->isVisible());
    reply.insert(QStringLiteral("value"), valueOf(found));
    return reply;
}

QJsonObject Probe::tab(const QJsonObject &request)
{
    const auto *found = qobject_cast<QTabWidget *>(find(request));
    if (!found)
        return notFound(request);
    const QString text = request.value(QLatin1String("tab")).toString();
    for (int i = 0; i < found->count(); ++i)
        if (found->tabText(i) == text) {
            QJsonObject reply = place(found->tabBar(), found->tabBar()->tabRect(i));
            const QJsonObject bar = place(found->tabBar(), found->tabBar()->rect());
            reply.insert(QStringLiteral("bar"), bar.value(QLatin1String("rect")));
            // The buttons that scroll the bar lie over it.
            const QPoint middle = found->tabBar()->mapToGlobal(found->tabBar()->tabRect(i).center());
            const QWidget *hit = QApplication::widgetAt(middle);
            reply.insert(QStringLiteral("outside"),
                reply.value(QLatin1String("rect")).toArray().at(2).toInt() == 0
                    || (hit != found->tabBar() && found->tabBar()->isAncestorOf(hit)));
            reply.insert(QStringLiteral("above"), i < found->currentIndex());
            return reply;
        }
    return error(QStringLiteral("no tab \"%1\"").arg(text));
}

QJsonObject Probe::tabs(const QJsonObject &request)
{
    const auto *found = qobject_cast<QTabWidget *>(find(request));
    if (!found)
        return notFound(request);
    QJsonArray texts;
    for (int i = 0; i < found->count(); ++i) {
        texts.append(withoutMnemonic(found->tabText(i)));
    }
    return {
        { QStringLiteral("texts"), texts },
    };
}
