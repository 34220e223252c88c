#pragma once

#include "form/realizationtablewidget.h"
#include "form/realizationtreewidget.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "propertybrowser/grouppropertybrowser.h"
#include "propertybrowser/propertyitem.h"
#include "propertybrowser/treepropertybrowser.h"
#include "realization/realizationpagebuilder.h"
#include "surface/extpointwidget.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <memory>

namespace RealizationTesting {

inline QString s(const char *text)
{
    return QString::fromUtf8(text);
}

struct Sibling
{
    const char *name;
    QByteArray sets;
};

/// A product of which one file is opened, on the realization page, driven through its widgets.
class Page final
{
public:
    using Node = PointTreeWidgetItem;

    explicit Page(const QByteArray &sets, const QVector<Sibling> &siblings = {}, bool scan = true)
    {
        for (const Sibling &sibling : siblings)
            write(s(sibling.name), sibling.name, sibling.sets);
        write(s("own"), "own", sets);
        open(scan);
    }
    /// The product of @p other, opened a second time with @p bytes in place of the file.
    Page(const Page &other, const QByteArray &bytes) : m_directory(other.m_directory) { open(true, &bytes); }
    Page(const Page &) = delete;
    Page &operator=(const Page &) = delete;

    /// Closes what is open, and opens the file anew.
    void reopen()
    {
        widget.reset();
        manager.reset();
        modified = 0;
        open(true);
    }

    [[nodiscard]] QString path(const QString &plugin = s("own")) const
    {
        return m_directory->path() + s("/plugins/") + plugin + s("/extension.xml");
    }
    QByteArray save() const
    {
        if (!manager->save())
            qFatal("not saved");
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    [[nodiscard]] RealizationPageBuilder *builder() const { return widget->realizationPageBuilder(); }
    [[nodiscard]] RealizationTreeWidget *points() const { return find<RealizationTreeWidget>("realizationTree"); }
    [[nodiscard]] RealizationTreeWidget *formats() const { return find<RealizationTreeWidget>("formatTree"); }
    [[nodiscard]] QTabWidget *tabs() const { return find<QTabWidget>("formatTab"); }
    [[nodiscard]] RealizationTableWidget *table() const { return find<RealizationTableWidget>("realizTable"); }
    [[nodiscard]] TreePropertyBrowser *sheet() const { return find<TreePropertyBrowser>("propertyRealization"); }
    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const
    {
        return widget->findChild<Widget *>(s(name));
    }

    /// The first row with this text in column 0; null without one.
    [[nodiscard]] static Node *row(const QTreeWidget *tree, const char *text)
    {
        const QList<QTreeWidgetItem *> rows = tree->findItems(s(text), Qt::MatchExactly | Qt::MatchRecursive);
        return rows.isEmpty() ? nullptr : Node::fromRow(rows.first());
    }
    [[nodiscard]] Node *point(const char *name) const { return row(points(), name); }
    [[nodiscard]] Node *entry(const char *id) const { return row(formats(), id); }

    void showTab(const char *name) const { tabs()->setCurrentWidget(tabs()->findChild<QWidget *>(s(name))); }
    static void click(QTreeWidget *tree, QTreeWidgetItem *item)
    {
        // What has just been shown gets its place first.
        QCoreApplication::processEvents();
        tree->scrollToItem(item);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualItemRect(item).center());
    }
    void clickPoint(const char *name) const { click(points(), point(name)); }
    void clickEntry(const char *id) const { click(formats(), entry(id)); }
    void clickRecord(int rowNumber) const
    {
        QTest::mouseClick(
            table()->viewport(), Qt::LeftButton, {}, table()->visualItemRect(table()->item(rowNumber, 0)).center());
    }
    void press(QWidget *view, Qt::Key key) const
    {
        // A menu that was open has taken the window's place.
        widget->activateWindow();
        view->setFocus();
        if (!QTest::qWaitFor([view] { return view->hasFocus(); }))
            qFatal("no focus");
        QTest::keyClick(view, key);
    }
    void edit(const char *key, const QVariant &value) const { Q_EMIT sheet()->propertyChanged(s(key), value); }

    /// Opens the context menu of a view at @p pos and answers the texts offered, "-" before a disabled one and "text >
    /// entry" for those of sub menus; triggers the one given.
    QStringList menu(QWidget *view, const QPoint &pos, const QString &choice = QString()) const
    {
        QStringList offered;
        QTimer::singleShot(0, widget.get(), [&] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            if (!menu)
                return;
            QAction *chosen = nullptr;
            collect(menu, QString(), choice, &offered, &chosen);
            menu->close();
            if (chosen)
                chosen->trigger();
        });
        Q_EMIT view->customContextMenuRequested(pos);
        QCoreApplication::processEvents();
        return offered;
    }
    QStringList menuOf(const char *id, const QString &choice = QString()) const
    {
        formats()->scrollToItem(entry(id));
        return menu(formats(), formats()->visualItemRect(entry(id)).center(), choice);
    }
    QStringList menuOfRecord(int rowNumber, const QString &choice = QString()) const
    {
        return menu(table(), table()->visualItemRect(table()->item(rowNumber, 0)).center(), choice);
    }

    /// The format tree as lines: "id" and, where there is one, "=label"; two spaces per level.
    [[nodiscard]] QStringList formatLines() const
    {
        QStringList lines;
        for (int i = 0; formats() && i < formats()->topLevelItemCount(); ++i)
            append(formats()->topLevelItem(i), 0, &lines);
        return lines;
    }
    [[nodiscard]] QStringList pointLines() const
    {
        QStringList lines;
        append(points()->topLevelItem(0), 0, &lines);
        return lines;
    }
    [[nodiscard]] QStringList tabNames() const
    {
        QStringList names;
        for (int i = 0; i < tabs()->count(); ++i)
            names.append(tabs()->widget(i)->objectName() + s("|") + tabs()->tabText(i));
        return names;
    }
    /// The cells' texts; "[x]" and "[ ]" for check boxes, "(icon)" and "()" for buttons.
    [[nodiscard]] QStringList tableLines() const
    {
        QStringList lines;
        for (int line = 0; line < table()->rowCount(); ++line) {
            QStringList cells;
            for (int column = 0; column < table()->columnCount(); ++column)
                cells.append(cellText(line, column));
            lines.append(cells.join(QLatin1Char('|')));
        }
        return lines;
    }
    [[nodiscard]] QStringList sheetKeys() const
    {
        QStringList keys;
        for (const PropertyItem &item : sheet()->properties())
            keys.append(item.name());
        return keys;
    }

    std::unique_ptr<SourceDataManager> manager;
    std::unique_ptr<ExtPointWidget> widget;
    int modified = 0; ///< emissions of modified(true)

private:
    void write(const QString &plugin, const char *id, const QByteArray &sets) const
    {
        QDir().mkpath(m_directory->path() + s("/plugins/") + plugin);
        QFile file(path(plugin));
        if (!file.open(QIODevice::WriteOnly)
            || file.write("<Plugin id=\"" + QByteArray(id) + "\">" + sets + "</Plugin>") < 0)
            qFatal("no file");
    }
    void open(bool scan, const QByteArray *bytes = nullptr)
    {
        manager = std::make_unique<SourceDataManager>();
        Controller::instance()->setSourceDataManager(manager.get());
        widget = std::make_unique<ExtPointWidget>();
        QObject::connect(
            widget.get(), &ExtPointWidget::modified, widget.get(), [this](bool flag) { modified += flag ? 1 : 1000; });
        if (!(bytes ? manager->load(path(), *bytes) : manager->load(path())))
            qFatal("not loaded");
        widget->reloadPages();
        if (scan) {
            manager->startScan(path());
            manager->completeScan();
        }
        find<QTabWidget>("tabWidget")->setCurrentIndex(1);
        widget->resize(1200, 800);
        widget->show();
        // Keys go where the focus is, and there is none in a window that is not active.
        widget->activateWindow();
        if (!QTest::qWaitForWindowActive(widget.get()))
            qFatal("not active");
        points()->expandAll();
    }
    static void collect(
        QMenu *menu, const QString &prefix, const QString &choice, QStringList *offered, QAction **chosen)
    {
        for (QAction *action : menu->actions()) {
            const QString text = prefix + action->text();
            const bool enabled = action->isEnabled() && menu->isEnabled();
            offered->append((enabled ? QString() : s("-")) + text);
            if (enabled && text == choice)
                *chosen = action;
            if (action->menu() && enabled)
                collect(action->menu(), text + s(" > "), choice, offered, chosen);
        }
    }
    static void append(const QTreeWidgetItem *item, int depth, QStringList *lines)
    {
        QString line = QString(depth * 2, QLatin1Char(' ')) + item->text(0);
        if (!item->text(1).isEmpty())
            line += QLatin1Char('=') + item->text(1);
        lines->append(line);
        for (int i = 0; i < item->childCount(); ++i)
            append(item->child(i), depth + 1, lines);
    }
    [[nodiscard]] QString cellText(int line, int column) const;

    std::shared_ptr<QTemporaryDir> m_directory = std::make_shared<QTemporaryDir>();
};

} // namespace RealizationTesting
