#pragma once

#include "definition/defintionpagebuilder.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "propertybrowser/grouppropertybrowser.h"
#include "propertybrowser/propertyitem.h"
#include "propertybrowser/treepropertybrowser.h"
#include "surface/extpointwidget.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <memory>

namespace DefinitionTesting {

inline QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/// An opened file on the definition page, driven through its widgets.
class Page final
{
public:
    explicit Page(const QByteArray &sets)
    {
        Controller::instance()->setSourceDataManager(&manager);
        QDir(m_directory.path()).mkpath(s("plugins/own"));
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write("<Plugin id=\"own\">" + sets + "</Plugin>") < 0)
            qFatal("no file");
        file.close();
        widget = std::make_unique<ExtPointWidget>();
        if (!manager.load(path()))
            qFatal("not loaded");
        widget->reloadPages();
        widget->findChild<QTabWidget *>(s("tabWidget"))->setCurrentIndex(0);
        widget->resize(1000, 700);
        widget->show();
        QObject::connect(
            widget.get(), &ExtPointWidget::modified, widget.get(), [this](bool flag) { modified += flag ? 1 : 1000; });
    }
    Page(const Page &) = delete;
    Page &operator=(const Page &) = delete;

    [[nodiscard]] QString path() const { return m_directory.path() + s("/plugins/own/extension.xml"); }
    [[nodiscard]] QTreeWidget *tree() const { return find<QTreeWidget>("defintionTree"); }
    [[nodiscard]] QTreeWidget *otherTree() const { return find<QTreeWidget>("realizationTree"); }
    [[nodiscard]] QTableWidget *attributes() const { return find<QTableWidget>("defintionTable"); }
    [[nodiscard]] QTableWidget *entries() const { return find<QTableWidget>("enumTable"); }
    [[nodiscard]] GroupPropertyBrowser *basicInfo() const { return find<GroupPropertyBrowser>("basicInfo"); }
    [[nodiscard]] TreePropertyBrowser *editInfo() const { return find<TreePropertyBrowser>("editInfoWidget"); }
    [[nodiscard]] QPushButton *button(const char *name) const { return find<QPushButton>(name); }
    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const
    {
        return widget->findChild<Widget *>(s(name));
    }

    /// The node at row numbers from the root downward.
    [[nodiscard]] PointTreeWidgetItem *row(std::initializer_list<int> rows) const
    {
        QTreeWidgetItem *item = tree()->topLevelItem(0);
        for (const int number : rows)
            item = item->child(number);
        return PointTreeWidgetItem::fromRow(item);
    }

    void click(QTreeWidgetItem *item) const
    {
        tree()->scrollToItem(item);
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, tree()->visualItemRect(item).center());
    }
    void click(QTableWidget *table, int rowNumber, int column = 0) const
    {
        QTest::mouseClick(
            table->viewport(), Qt::LeftButton, {}, table->visualItemRect(table->item(rowNumber, column)).center());
    }
    void press(const char *buttonName) const
    {
        // What has just been shown gets its place first.
        QCoreApplication::processEvents();
        QTest::mouseClick(button(buttonName), Qt::LeftButton);
    }

    /// Opens the context menu at @p pos and answers the texts that it offers; triggers the one given.
    QStringList menu(const QPoint &pos, const QString &choice = QString()) const
    {
        QStringList offered;
        QTimer::singleShot(0, widget.get(), [&] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            if (!menu)
                return;
            for (QAction *action : menu->actions()) {
                if (!action->isVisible())
                    continue;
                offered.append(action->text());
                if (action->text() == choice)
                    menu->setActiveAction(action);
            }
            QTest::keyClick(menu, choice.isEmpty() || !offered.contains(choice) ? Qt::Key_Escape : Qt::Key_Return);
        });
        Q_EMIT tree()->customContextMenuRequested(pos);
        QCoreApplication::processEvents();
        return offered;
    }
    QStringList menu(QTreeWidgetItem *item, const QString &choice = QString()) const
    {
        return menu(tree()->visualItemRect(item).center(), choice);
    }

    [[nodiscard]] static QStringList texts(const QTableWidget *table)
    {
        QStringList lines;
        for (int rowNumber = 0; rowNumber < table->rowCount(); ++rowNumber) {
            QStringList cells;
            for (int column = 0; column < table->columnCount(); ++column)
                cells.append(table->item(rowNumber, column)->text());
            lines.append(cells.join(QLatin1Char('|')));
        }
        return lines;
    }

    /// "name:type" of each record, with "=value" where there is one.
    template <typename Sheet>
    [[nodiscard]] static QStringList records(const Sheet *sheet)
    {
        QStringList lines;
        for (const PropertyItem &item : sheet->properties())
            lines.append(item.name() + QLatin1Char(':') + QString::number(int(item.type())) + QLatin1Char('=')
                + item.value().toString());
        return lines;
    }
    template <typename Sheet>
    [[nodiscard]] static PropertyItem record(const Sheet *sheet, const char *name)
    {
        for (const PropertyItem &item : sheet->properties()) {
            if (item.name() == s(name))
                return item;
        }
        return {};
    }
    [[nodiscard]] static QString options(const PropertyItem &item)
    {
        QStringList list;
        for (const PropertyItem::OptionItem &option : item.options())
            list.append(option.value + QLatin1Char('/') + option.text + QLatin1Char('/') + option.icon);
        return list.join(QLatin1Char(' '));
    }

    SourceDataManager manager;
    std::unique_ptr<ExtPointWidget> widget;
    int modified = 0;

private:
    QTemporaryDir m_directory;
};

} // namespace DefinitionTesting
