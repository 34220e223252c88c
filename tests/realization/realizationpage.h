#pragma once

#include "definition/defintionpagebuilder.h"
#include "form/drops/dropplan.h"
#include "form/realizationtablewidget.h"
#include "form/realizationtreewidget.h"
#include "model/controller.h"
#include "model/modeltesting.h"
#include "propertybrowser/grouppropertybrowser.h"
#include "propertybrowser/propertyitem.h"
#include "propertybrowser/treepropertybrowser.h"
#include "realization/realizationpagebuilder.h"
#include "surface/extpointwidget.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>

#include <memory>

namespace RealizationTesting {

inline QString s(const char *text)
{
    return QString::fromUtf8(text);
}
inline QStringList list(std::initializer_list<const char *> texts)
{
    QStringList strings;
    for (const char *text : texts)
        strings.append(s(text));
    return strings;
}
inline QByteArray points(const QByteArray &content)
{
    return "<ExtPointSet>" + content + "</ExtPointSet>";
}
inline QByteArray data(const QByteArray &records, const QByteArray &point = "host.cmd")
{
    return "<ExtDataSet><ExtData id=\"" + point + "\">" + records + "</ExtData></ExtDataSet>";
}

/// Of each row "key:type=value {options} /pattern/ least..most read-only", what is there of it. For a comparison of two
/// sheets with options sorted, for the current one goes first when a sheet is filled and not again with each choice,
/// and with what else is known of a row.
QStringList sheetLines(const QList<PropertyItem> &rows, bool forComparison = false);

struct Sibling
{
    const char *name;
    QByteArray sets;
};

/// A product of which one file is opened, driven through the widgets of its two pages.
class Page final
{
public:
    using Node = PointTreeWidgetItem;

    explicit Page(const QByteArray &sets, const QVector<Sibling> &siblings = {}, bool scan = true)
    {
        for (const Sibling &sibling : siblings)
            write(sibling.name, sibling.sets);
        write("own", sets);
        open(scan);
    }
    /// The product of @p other, opened a second time with @p bytes in place of the file.
    Page(const Page &other, const QByteArray &bytes) : m_product(other.m_product) { open(true, &bytes); }
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
    [[nodiscard]] QString path() const { return m_product->file(s("own")); }
    QByteArray save() const
    {
        if (!manager->save())
            qFatal("not saved");
        return ModelTesting::Product::read(path());
    }

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const
    {
        return widget->findChild<Widget *>(s(name));
    }
    [[nodiscard]] RealizationPageBuilder *builder() const { return widget->realizationPageBuilder(); }
    [[nodiscard]] RealizationTreeWidget *points() const { return find<RealizationTreeWidget>("realizationTree"); }
    [[nodiscard]] RealizationTreeWidget *formats() const { return find<RealizationTreeWidget>("formatTree"); }
    [[nodiscard]] QTabWidget *tabs() const { return find<QTabWidget>("formatTab"); }
    [[nodiscard]] RealizationTableWidget *table() const { return find<RealizationTableWidget>("realizTable"); }
    [[nodiscard]] TreePropertyBrowser *sheet() const { return find<TreePropertyBrowser>("propertyRealization"); }
    [[nodiscard]] QTreeWidget *definitions() const { return find<QTreeWidget>("defintionTree"); }
    [[nodiscard]] GroupPropertyBrowser *basicInfo() const { return find<GroupPropertyBrowser>("basicInfo"); }
    [[nodiscard]] QTableWidget *attributes() const { return find<QTableWidget>("defintionTable"); }
    [[nodiscard]] QTableWidget *entries() const { return find<QTableWidget>("enumTable"); }
    [[nodiscard]] TreePropertyBrowser *editInfo() const { return find<TreePropertyBrowser>("editInfoWidget"); }
    [[nodiscard]] QMenu *properties() const { return find<QToolButton>("addPropertyButton")->menu(); }

    /// The first row with this text in column 0; null without one.
    [[nodiscard]] static Node *row(const QTreeWidget *tree, const char *text)
    {
        const QList<QTreeWidgetItem *> rows = tree->findItems(s(text), Qt::MatchExactly | Qt::MatchRecursive);
        return rows.isEmpty() ? nullptr : Node::fromRow(rows.first());
    }
    [[nodiscard]] Node *point(const char *name) const { return row(points(), name); }
    [[nodiscard]] Node *entry(const char *id) const { return row(formats(), id); }
    [[nodiscard]] Node *record(const char *id) const { return manager->ownRealizations().anyRecord(s(id)); }

    void showPage(int index) const { find<QTabWidget>("tabWidget")->setCurrentIndex(index); }
    void showTab(const char *name) const { tabs()->setCurrentWidget(tabs()->findChild<QWidget *>(s(name))); }
    /// The definition page with the row of this name; the file's own without one.
    void define(const char *name = "own") const
    {
        showPage(0);
        definitions()->setCurrentItem(row(definitions(), name));
    }
    template <typename View, typename Item>
    static void click(View *view, Item *item)
    {
        // What has just been shown gets its place first.
        QCoreApplication::processEvents();
        view->scrollToItem(item);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualItemRect(item).center());
    }
    void clickPoint(const char *name = "Commands") const { click<QTreeWidget, QTreeWidgetItem>(points(), point(name)); }
    void clickEntry(const char *id) const { click<QTreeWidget, QTreeWidgetItem>(formats(), entry(id)); }
    void clickRecord(int row) const { click<QTableWidget>(table(), table()->item(row, 0)); }
    void clickAttribute(int row) const { click(attributes(), attributes()->item(row, 0)); }
    void press(const char *button) const { find<QPushButton>(button)->click(); }
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
    void edit(const char *key, const char *value) const { edit(key, s(value)); }
    void editPoint(const char *key, const QVariant &value) const { Q_EMIT basicInfo()->propertyChanged(s(key), value); }
    void editAttribute(const char *key, const QVariant &value) const
    {
        Q_EMIT editInfo()->propertyChanged(s(key), value);
    }
    /// What the button for properties offers.
    [[nodiscard]] QString offeredProperties() const
    {
        QStringList texts;
        Q_EMIT properties()->aboutToShow();
        for (const QAction *action : properties()->actions())
            texts.append(action->text());
        return texts.join(QLatin1Char(' '));
    }
    void addProperty(const char *key) const
    {
        const int place = offeredProperties().split(QLatin1Char(' ')).indexOf(s(key));
        properties()->actions().at(place)->trigger();
    }

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
    QStringList menu(QTreeWidget *tree, QTreeWidgetItem *item, const char *choice = "") const
    {
        tree->scrollToItem(item);
        return menu(tree, tree->visualItemRect(item).center(), s(choice));
    }
    QStringList menuOfRecord(int row, const char *choice) const
    {
        return menu(table(), table()->visualItemRect(table()->item(row, 0)).center(), s(choice));
    }
    QStringList menuOf(const char *id, const char *choice = "") const { return menu(formats(), entry(id), choice); }

    /// What the tree does at the end of a drag.
    void drop(const DropOutcome &outcome) const
    {
        for (const DropOutcome::Addition &addition : outcome.additions) {
            if (addition.format)
                Q_EMIT formats()->setTarget(addition.format);
            if (addition.row)
                Q_EMIT formats()->dropPoint(addition.row);
        }
        if (outcome.modified)
            Q_EMIT formats()->modified(true);
    }
    [[nodiscard]] DropSite site(QTreeWidgetItem *row) const
    {
        QCoreApplication::processEvents();
        formats()->scrollToItem(row);
        return formats()->siteAt(formats()->visualItemRect(row).center());
    }
    void dropOnTable(Node *point) const;
    void dropOnTable(const char *point) const
    {
        clickPoint(point);
        dropOnTable(this->point(point));
    }

    /// A tree as lines: "id" and, where there is one, "=label"; two spaces per level.
    [[nodiscard]] QStringList formatLines() const { return formats() ? lines(formats()) : QStringList(); }
    [[nodiscard]] static QStringList lines(const QTreeWidget *tree);
    [[nodiscard]] QStringList tabNames() const
    {
        QStringList names;
        for (int i = 0; i < tabs()->count(); ++i)
            names.append(tabs()->widget(i)->objectName() + s("|") + tabs()->tabText(i));
        return names;
    }
    /// The headers and the cells' texts; "[x]" and "[ ]" for check boxes, "(icon)" and "()" for buttons.
    [[nodiscard]] static QStringList lines(const QTableWidget *table);
    [[nodiscard]] QStringList records() const { return lines(table()).mid(1); }
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

    /// The file of a plug-in, as somebody else writes it.
    void write(const QByteArray &plugin, const QByteArray &sets) const
    {
        m_product->add(s(plugin.constData()), "<Plugin id=\"" + plugin + "\">" + sets + "</Plugin>");
    }

private:
    void open(bool scan, const QByteArray *bytes = nullptr);
    static void collect(
        const QMenu *menu, const QString &prefix, const QString &choice, QStringList *offered, QAction **chosen);

    std::shared_ptr<ModelTesting::Product> m_product = std::make_shared<ModelTesting::Product>();
};

} // namespace RealizationTesting
