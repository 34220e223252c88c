#include "samples/sample.h"

#include "form/drops/tabledrop.h"
#include "form/realizationtablewidget.h"
#include "form/realizationtreewidget.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "openedproduct.h"
#include "propertybrowser/grouppropertybrowser.h"
#include "propertybrowser/treepropertybrowser.h"
#include "surface/extpointwidget.h"
#include "watchedapplication.h"

#include <QAction>
#include <QJsonArray>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <functional>

namespace {

QString text(const char *what)
{
    return QString::fromLatin1(what);
}

/// Somebody who changes things in a loaded product, each change timed until everything that follows from it is done and
/// painted.
class Editing final
{
public:
    explicit Editing(const OpenedProduct &product) : m_product(product)
    {
        QObject::connect(product.widget(), &ExtPointWidget::modified, product.widget(), [this] { m_modified = true; });
    }

    void definitionPage(int round);
    void realizationPage(int round);

    [[nodiscard]] const QJsonObject &times() const { return m_times; }
    /// The first change that changed nothing; empty without one.
    [[nodiscard]] const QString &failed() const { return m_failed; }

private:
    void time(const char *kind, const std::function<void()> &change)
    {
        m_modified = false;
        const double elapsed = WatchedApplication::untilIdle(change);
        if (!m_modified && m_failed.isEmpty())
            m_failed = text(kind);
        QJsonArray times = m_times.value(text(kind)).toArray();
        times.append(elapsed);
        m_times.insert(text(kind), times);
    }
    void press(const char *button) const { m_product.find<QPushButton>(button)->click(); }
    void timeKey(const char *kind, QWidget *view, Qt::Key key)
    {
        // A menu that was open has taken the window's place.
        m_product.widget()->activateWindow();
        view->setFocus();
        if (!QTest::qWaitFor([view] { return view->hasFocus(); }))
            m_failed = text("the focus");
        time(kind, [&] { QTest::keyClick(view, key); });
    }
    void createEntry(RealizationTreeWidget *formats, PointTreeWidgetItem *row);

    const OpenedProduct &m_product;
    QJsonObject m_times;
    QString m_failed;
    bool m_modified = false;
};

void Editing::definitionPage(int round)
{
    m_product.showPage("tab");
    WatchedApplication::settle();
    auto *tree = m_product.find<QTreeWidget>("defintionTree");
    auto *basic = m_product.find<GroupPropertyBrowser>("basicInfo");
    auto *sheet = m_product.find<TreePropertyBrowser>("editInfoWidget");
    const QString value = QStringLiteral("changed%1").arg(round);

    time("create_point", [&] { press("pushButton_add_extpoint"); });
    QTreeWidgetItem *point = tree->currentItem();
    time("edit_point_name", [&] { Q_EMIT basic->propertyChanged(text("name"), value); });
    time("edit_point_id", [&] { Q_EMIT basic->propertyChanged(text("id"), value); });
    time("create_attribute", [&] { press("pushButton_add_attr"); });
    time("create_attribute", [&] { press("pushButton_add_attr"); });
    time("edit_attribute", [&] { Q_EMIT sheet->propertyChanged(text("name"), value); });
    time("change_attribute_type", [&] { Q_EMIT sheet->propertyChanged(text("type"), text("Enum")); });
    // The deletion of the last entry of a table is no change of the document, so there are two.
    time("create_entry", [&] { press("pushButton_add_enum"); });
    time("create_entry", [&] { press("pushButton_add_enum"); });
    time("edit_entry", [&] { Q_EMIT sheet->propertyChanged(text("text"), value); });
    time("delete_entry", [&] { press("pushButton_delete_enmu"); });
    time("delete_attribute", [&] { press("pushButton_del_attr"); });
    timeKey("create_sub_point", tree, Qt::Key_Insert);
    time("edit_sub_point", [&] { Q_EMIT basic->propertyChanged(text("key"), value); });
    timeKey("delete_sub_point", tree, Qt::Key_Delete);
    tree->setCurrentItem(point);
    WatchedApplication::settle();
    timeKey("delete_point", tree, Qt::Key_Delete);
}

void Editing::realizationPage(int round)
{
    m_product.showPage("tab_2");
    auto *points = m_product.find<RealizationTreeWidget>("realizationTree");
    auto *records = m_product.find<RealizationTableWidget>("realizTable");
    auto *sheet = m_product.find<TreePropertyBrowser>("propertyRealization");
    auto *tabs = m_product.find<QTabWidget>("formatTab");
    PointTreeWidgetItem *point = OpenedProduct::pointRow(points, text("bench.p0000.point0"));
    tabs->setCurrentWidget(m_product.find<QWidget>("bench.p0000.layout"));
    OpenedProduct::click(points, point);
    WatchedApplication::settle();
    const QString value = QStringLiteral("bench.changed%1").arg(round);

    time("create_record", [&] {
        const TableDrop::Outcome outcome = TableDrop::perform(point);
        Q_EMIT records->addTableRealization(outcome.parent, outcome.record, outcome.isSubPoint);
        Q_EMIT records->modified(true);
    });
    records->setCurrentCell(records->rowCount() - 1, 0);
    WatchedApplication::settle();
    time("edit_record", [&] { Q_EMIT sheet->propertyChanged(text("text"), value); });
    time("edit_record_id", [&] { Q_EMIT sheet->propertyChanged(text("id"), value); });
    timeKey("delete_record", records, Qt::Key_Delete);

    auto *formats = m_product.find<RealizationTreeWidget>("formatTree");
    const QList<QTreeWidgetItem *> rows
        = formats->findItems(text("bench.p0000.menu"), Qt::MatchExactly | Qt::MatchRecursive);
    if (rows.isEmpty()) {
        m_failed = text("no format is shown");
        return;
    }
    createEntry(formats, PointTreeWidgetItem::fromRow(rows.first()));
    time("edit_format_entry", [&] { Q_EMIT sheet->propertyChanged(text("text"), value); });
    timeKey("delete_format_entry", formats, Qt::Key_Delete);
}

void Editing::createEntry(RealizationTreeWidget *formats, PointTreeWidgetItem *row)
{
    formats->scrollToItem(row);
    // The menu runs an event loop of its own.
    QTimer::singleShot(0, formats, [&] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        auto *types = menu ? menu->findChild<QMenu *>(text("childTypeMenu")) : nullptr;
        if (menu)
            menu->close();
        if (types && !types->actions().isEmpty())
            time("create_format_entry", [&] { types->actions().last()->trigger(); });
        else if (m_failed.isEmpty())
            m_failed = text("create_format_entry");
    });
    Q_EMIT formats->customContextMenuRequested(formats->visualItemRect(row).center());
    WatchedApplication::settle();
}

} // namespace

QJsonObject Samples::edit(const QJsonObject &arguments)
{
    OpenedProduct product;
    if (!product.open(arguments.value(QLatin1String("file")).toString()) || !product.becomesActive())
        return failure(QStringLiteral("the product can't be opened"));
    product.startScan();
    product.waitForScan();
    Editing editing(product);
    for (int round = 0; round < arguments.value(QLatin1String("rounds")).toInt(); ++round) {
        editing.definitionPage(round);
        editing.realizationPage(round);
        if (!editing.failed().isEmpty())
            return failure(QStringLiteral("%1 has changed nothing").arg(editing.failed()));
    }
    return { { QStringLiteral("kinds"), editing.times() } };
}
