#include "probe/questions.h"

#include "core/busymonitor.h"
#include "core/editormanager.h"
#include "core/icore.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QDialog>
#include <QIcon>
#include <QJsonArray>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMetaProperty>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTreeView>
#include <QWindow>

#include <algorithm>

namespace {

QJsonObject error(const QString &reason)
{
    return { { QStringLiteral("error"), reason } };
}

QString textIn(const QJsonObject &request, const char *key)
{
    return request.value(QLatin1String(key)).toString();
}

/// A visible one where several have the name; null when there is none.
QWidget *find(const QString &name)
{
    QWidget *found = nullptr;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget *candidate : widgets)
        if (candidate->objectName() == name && (!found || (candidate->isVisible() && !found->isVisible())))
            found = candidate;
    return found;
}

/// A text as it is read, without the marks of its shortcut.
QString withoutMnemonic(QString text)
{
    static const QRegularExpression mark(QStringLiteral("&(.)"));
    return text.replace(mark, QStringLiteral("\\1"));
}

/// What an input widget holds: its text, "true" or "false" for something to check.
QString valueOf(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return label->text();
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    if (button && !button->isCheckable())
        return withoutMnemonic(button->text());
    // Of a tree or a table, what the keys act on.
    if (const auto *view = qobject_cast<const QAbstractItemView *>(widget))
        return view->currentIndex().siblingAtColumn(0).data().toString();
    return widget->metaObject()->userProperty().read(widget).toString();
}

/// Empty for no icon.
QString middleOf(const QIcon &icon)
{
    constexpr int side = 16;
    if (icon.isNull() || !icon.name().isEmpty())
        return icon.name();
    const QImage image = icon.pixmap(side).toImage();
    return image.isNull() ? QStringLiteral("nothing") : image.pixelColor(image.rect().center()).name();
}

void addRows(const QAbstractItemView *view, const QModelIndex &parent, int depth, QJsonArray *lines, QJsonArray *icons)
{
    const QAbstractItemModel &model = *view->model();
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex first = model.index(row, 0, parent);
        QStringList cells;
        QStringList shown { middleOf(first.data(Qt::DecorationRole).value<QIcon>()) };
        for (int column = 0; column < model.columnCount(parent); ++column) {
            const QModelIndex cell = model.index(row, column, parent);
            const auto *button = qobject_cast<const QAbstractButton *>(view->indexWidget(cell));
            const bool isBox = button && button->isCheckable();
            cells.append(isBox ? valueOf(button) : cell.data().toString());
            shown.append(button && !isBox ? middleOf(button->icon()) : QString());
        }
        shown.removeAll(QString());
        lines->append(QString(depth * 4, QLatin1Char(' ')) + cells.join(QLatin1String(" | ")));
        icons->append(shown.join(QLatin1Char(' ')));
        addRows(view, first, depth + 1, lines, icons);
    }
}

struct SheetRow
{
    QString name;
    QString value;
    const QWidget *widget = nullptr;
    QRect part;
};

/// Of a sheet of either kind, rows in a tree and rows in a box.
QList<SheetRow> rowsOf(const QWidget *sheet)
{
    QList<SheetRow> rows;
    const auto add = [&rows](const QString &name, const QWidget *editor) {
        const QWidget *inner = editor->focusProxy() ? editor->focusProxy() : editor;
        rows.append({ name, valueOf(inner), inner, inner->rect() });
    };
    if (const auto *view = sheet->findChild<QTreeView *>()) {
        for (int i = 0; i < view->model()->rowCount(); ++i) {
            const QString name = view->model()->index(i, 0).data().toString();
            const QModelIndex value = view->model()->index(i, 1);
            if (const QWidget *editor = view->indexWidget(value))
                add(name, editor);
            else
                rows.append(
                    { name, value.data(Qt::AccessibleTextRole).toString(), view->viewport(), view->visualRect(value) });
        }
        return rows;
    }
    const auto labels = sheet->findChildren<QLabel *>();
    for (const QLabel *label : labels)
        // The rows that were shown before may be waiting for their deletion, hidden.
        if (label->buddy() && label->isVisibleTo(sheet))
            add(withoutMnemonic(label->text()), label->buddy());
    return rows;
}

QJsonArray onScreen(const QWidget *widget, const QRect &part)
{
    const QPoint corner = widget->mapToGlobal(part.topLeft());
    const qreal ratio = widget->devicePixelRatioF();
    return { corner.x() * ratio, corner.y() * ratio, part.width() * ratio, part.height() * ratio };
}

QJsonObject placeOf(const QWidget *widget, const QRect &part)
{
    const QRect seen = part & widget->visibleRegion().boundingRect();
    const QWidget *hit = seen.isEmpty() ? nullptr : QApplication::widgetAt(widget->mapToGlobal(seen.center()));
    const QWidget *modal = QApplication::activeModalWidget();
    const bool blocked = modal && widget->window() != modal && !modal->isAncestorOf(widget);
    return {
        { QStringLiteral("rect"), onScreen(widget, seen) },
        { QStringLiteral("reachable"),
            hit && (hit == widget || widget->isAncestorOf(hit)) && widget->isEnabled() && widget->updatesEnabled()
                && !blocked },
    };
}

void scrollTo(QJsonObject *reply, bool back, const QWidget *over)
{
    constexpr int WheelUp = 4;
    constexpr int WheelDown = 5;
    reply->insert(QStringLiteral("wheel"), back ? WheelUp : WheelDown);
    reply->insert(QStringLiteral("over"), onScreen(over, over->rect()));
}

QJsonObject buttonPlace(const QString &dialog, const QString &text)
{
    const QWidget *window = find(dialog);
    const auto buttons = window ? window->findChildren<QAbstractButton *>() : QList<QAbstractButton *>();
    for (const QAbstractButton *button : buttons)
        if (button->isVisible() && withoutMnemonic(button->text()) == text)
            return placeOf(button, button->rect());
    return error(QStringLiteral("no such button"));
}

/// An entry of an open menu, else of the menu bar.
QJsonObject menuPlace(const QString &text)
{
    QJsonObject found = error(QStringLiteral("no such entry"));
    const auto look = [&](const auto *menu) {
        const auto actions = menu->actions();
        for (QAction *action : actions)
            if (action->isVisible() && withoutMnemonic(action->text()) == text)
                found = placeOf(menu, menu->actionGeometry(action));
    };
    look(Core::ICore::mainWindow()->menuBar());
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows)
        if (const auto *menu = qobject_cast<const QMenu *>(window); menu && menu->isVisible())
            look(menu);
    return found;
}

QJsonObject tabPlace(const QTabWidget *tabs, const QString &text)
{
    const QTabBar *bar = tabs->tabBar();
    for (int i = 0; i < tabs->count(); ++i) {
        if (tabs->tabText(i) != text)
            continue;
        QJsonObject reply = placeOf(bar, bar->tabRect(i));
        // The buttons that scroll the bar lie over it.
        const QWidget *hit = QApplication::widgetAt(bar->mapToGlobal(bar->tabRect(i).center()));
        if (!bar->visibleRegion().intersects(bar->tabRect(i)) || (hit != bar && bar->isAncestorOf(hit)))
            scrollTo(&reply, i < tabs->currentIndex(), bar);
        return reply;
    }
    return error(QStringLiteral("no such tab"));
}

/// @p path holds texts of the first column, or numbers of rows.
QJsonObject cellPlace(const QAbstractItemView *view, const QJsonArray &path, int column)
{
    const QAbstractItemModel &model = *view->model();
    QModelIndex index = view->rootIndex();
    for (const QJsonValue &step : path) {
        const QModelIndex parent = index;
        index = step.isDouble() ? model.index(step.toInt(), 0, parent) : QModelIndex();
        for (int row = 0; step.isString() && !index.isValid() && row < model.rowCount(parent); ++row)
            if (model.index(row, 0, parent).data().toString() == step.toString())
                index = model.index(row, 0, parent);
        if (!index.isValid())
            return error(QStringLiteral("no row \"%1\"").arg(step.toVariant().toString()));
    }
    const QRect rect = view->visualRect(index.sibling(index.row(), column));
    if (rect.isEmpty())
        return error(QStringLiteral("the row is hidden or not expanded"));
    QJsonObject reply = placeOf(view->viewport(), rect);
    const int middle = rect.center().y();
    if (middle < 0 || middle >= view->viewport()->height())
        scrollTo(&reply, middle < 0, view->viewport());
    return reply;
}

QJsonArray dialogs()
{
    QJsonArray found;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows) {
        if (!qobject_cast<const QDialog *>(window) || !window->isVisible())
            continue;
        QStringList texts;
        if (const auto *box = qobject_cast<const QMessageBox *>(window))
            texts = QStringList { box->text(), box->informativeText() };
        const QJsonObject dialog { { QStringLiteral("name"), window->objectName() },
            { QStringLiteral("text"), texts.join(QLatin1Char('\n')) } };
        found.insert(window == QApplication::activeModalWidget() ? found.size() : 0, dialog);
    }
    return found;
}

QJsonObject focus()
{
    const QWidget *widget = QApplication::focusWidget();
    if (!widget)
        return {};
    QJsonArray inside;
    for (const QWidget *parent = widget->parentWidget(); parent; parent = parent->parentWidget())
        inside.append(parent->objectName());
    // A bar of tabs goes by the name of what it is the bar of.
    const QWidget *named = qobject_cast<const QTabBar *>(widget) ? widget->parentWidget() : widget;
    return { { QStringLiteral("accessibleName"), widget->accessibleName() },
        { QStringLiteral("name"), named->objectName() }, { QStringLiteral("value"), valueOf(widget) },
        { QStringLiteral("inside"), inside } };
}

} // namespace

QJsonObject Probe::state(const QJsonObject & /*request*/)
{
    const QMainWindow *window = Core::ICore::mainWindow();
    const QWindow *native = window->windowHandle();
    const QWidget *active = QApplication::activeWindow();
    // The picture under the pointer during a drag is a window of its own.
    const QWindowList windows = QGuiApplication::topLevelWindows();
    const bool dragging = std::any_of(windows.begin(), windows.end(), [](const QWindow *candidate) {
        return candidate->isVisible() && qstrcmp(candidate->metaObject()->className(), "QShapedPixmapWindow") == 0;
    });
    return {
        { QStringLiteral("modified"), window->isWindowModified() },
        { QStringLiteral("exposed"), native && native->isExposed() },
        { QStringLiteral("active"), window->isActiveWindow() },
        { QStringLiteral("activeWindow"), active ? qint64(active->winId()) : 0 },
        { QStringLiteral("status"), window->statusBar()->currentMessage() },
        { QStringLiteral("editor"), Core::ICore::currentEditor() != nullptr },
        { QStringLiteral("busy"), Core::ICore::editorManager()->busyMonitor().isBusy() },
        { QStringLiteral("dragging"), dragging },
        { QStringLiteral("focus"), focus() },
        { QStringLiteral("dialogs"), dialogs() },
    };
}

QJsonObject Probe::lines(const QJsonObject &request)
{
    const QWidget *found = find(textIn(request, "widget"));
    QJsonArray lines;
    QJsonArray icons;
    if (const auto *tabs = qobject_cast<const QTabWidget *>(found)) {
        for (int i = 0; i < tabs->count(); ++i)
            lines.append(withoutMnemonic(tabs->tabText(i)));
    } else if (const auto *view = qobject_cast<const QAbstractItemView *>(found)) {
        addRows(view, view->rootIndex(), 0, &lines, &icons);
    } else if (found) {
        const QList<SheetRow> rows = rowsOf(found);
        for (const SheetRow &row : rows)
            lines.append(row.name + QLatin1String(" = ") + row.value);
    }
    return { { QStringLiteral("lines"), lines }, { QStringLiteral("icons"), icons } };
}

QJsonObject Probe::place(const QJsonObject &request)
{
    if (request.contains(QLatin1String("button")))
        return buttonPlace(textIn(request, "widget"), textIn(request, "button"));
    if (request.contains(QLatin1String("menu")))
        return menuPlace(textIn(request, "menu"));
    const QWidget *found = find(textIn(request, "widget"));
    // The list that has dropped down has no name.
    const QWidget *popup = QApplication::activePopupWidget();
    if (!request.contains(QLatin1String("widget")) && popup)
        found = popup->findChild<QAbstractItemView *>();
    if (!found)
        return error(QStringLiteral("no such widget"));
    if (request.contains(QLatin1String("path")))
        if (const auto *view = qobject_cast<const QAbstractItemView *>(found))
            return cellPlace(
                view, request.value(QLatin1String("path")).toArray(), request.value(QLatin1String("column")).toInt());
    if (request.contains(QLatin1String("tab")))
        if (const auto *tabs = qobject_cast<const QTabWidget *>(found))
            return tabPlace(tabs, textIn(request, "tab"));
    if (request.contains(QLatin1String("row"))) {
        const QList<SheetRow> rows = rowsOf(found);
        for (const SheetRow &row : rows)
            if (row.name == textIn(request, "row"))
                return placeOf(row.widget, row.part);
        return error(QStringLiteral("no such row"));
    }
    QJsonObject reply = placeOf(found, found->rect());
    reply.insert(QStringLiteral("visible"), found->isVisible());
    reply.insert(QStringLiteral("value"), valueOf(found));
    return reply;
}
