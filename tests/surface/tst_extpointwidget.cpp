#include "definition/defintionpagebuilder.h"
#include "form/rowfilter.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "realization/realizationpagebuilder.h"
#include "surface/extpointwidget.h"

#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <memory>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/// An editor without a host, with what the document does when it opens a file.
struct Editor
{
    Editor()
    {
        Controller::instance()->setSourceDataManager(manager.get());
        widget = std::make_unique<ExtPointWidget>();
        if (!manager->load(s(EXTPOINT_SOURCE_DIR "/samples/product/plugins/chartdesk/extension.xml")))
            qFatal("not loaded");
        widget->reloadPages();
    }

    std::unique_ptr<SourceDataManager> manager = std::make_unique<SourceDataManager>();
    std::unique_ptr<ExtPointWidget> widget;
};

/// Makes random trees of nodes, and says literally which of their rows a needle leaves.
struct RandomTree
{
    explicit RandomTree(quint32 seed) : random(seed), filter(new TreeRowFilter(&tree, seed % 2 == 0 ? 6 : 1'000))
    {
        tree.setColumnCount(1);
    }
    ~RandomTree()
    {
        while (tree.topLevelItemCount() > 0)
            PointTreeWidgetItem::destroySubtree(PointTreeWidgetItem::fromRow(tree.topLevelItem(0)));
    }

    int below(int bound) { return random.bounded(bound); }
    QString word(int most)
    {
        QString text;
        for (int length = below(most + 1); text.size() < length;)
            text.append(QLatin1Char("abAB"[below(4)]));
        return text;
    }
    PointTreeWidgetItem *node(int depth)
    {
        auto *made = new PointTreeWidgetItem(word(3));
        made->setProperty(below(2) ? s("id") : s("key"), word(3));
        for (int i = depth > 0 ? below(4) : 0; i > 0; --i)
            made->QTreeWidgetItem::addChild(node(depth - 1));
        return made;
    }
    QList<PointTreeWidgetItem *> rows()
    {
        QList<PointTreeWidgetItem *> all;
        for (QTreeWidgetItemIterator it(&tree); *it; ++it)
            all.append(PointTreeWidgetItem::fromRow(*it));
        return all;
    }
    bool matches(const PointTreeWidgetItem *row) const
    {
        return (row->text(0) + s("\n") + row->properties().text(s("id")) + s("\n") + row->properties().text(s("key")))
            .toLower()
            .contains(filter->needle().toLower());
    }
    bool isKept(QTreeWidgetItem *row) const
    {
        bool kept = matches(PointTreeWidgetItem::fromRow(row));
        for (int i = 0; i < row->childCount(); ++i)
            kept = kept || isKept(row->child(i));
        return kept;
    }
    /// The rows in sight, by the view, and by the model of the rule.
    void collect(QTreeWidgetItem *above, QList<QTreeWidgetItem *> *seen, QList<QTreeWidgetItem *> *due) const
    {
        for (int i = 0; i < above->childCount(); ++i) {
            QTreeWidgetItem *row = above->child(i);
            if (!row->isHidden())
                seen->append(row);
            if (isKept(row))
                due->append(row);
            if (!row->isHidden() && isKept(row) && row->isExpanded())
                collect(row, seen, due);
        }
    }
    void change()
    {
        const QList<PointTreeWidgetItem *> all = rows();
        PointTreeWidgetItem *row = all.isEmpty() ? nullptr : all.at(below(all.size()));
        switch (below(7)) {
        case 0:
            filter->setNeedle(filter->needle() + word(1));
            break;
        case 1:
            filter->setNeedle(word(2));
            break;
        case 2:
            tree.addTopLevelItem(node(3));
            break;
        case 3:
            if (row)
                row->QTreeWidgetItem::insertChild(below(row->childCount() + 1), node(2));
            break;
        case 4:
            if (row && all.size() > 30)
                PointTreeWidgetItem::destroySubtree(row);
            break;
        case 5:
            if (row)
                row->setText(0, word(3));
            break;
        default:
            if (row)
                row->setExpanded(!row->isExpanded());
        }
    }

    QRandomGenerator random;
    QTreeWidget tree;
    RowFilter *filter;
};

} // namespace

class TestExtPointWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Controller::instance()->setSourceDataManager(nullptr); }
    void buildersOutliveTheWidget();
    void widgetMayDieAfterTheModel();
    void filterLeavesTheRowsOfTheRule();
    void filterOfTheRecords();
    void findGoesToTheLineOfTheView();
};

void TestExtPointWidget::buildersOutliveTheWidget()
{
    Editor editor;
    const QPointer<DefintionPageBuilder> definition = editor.widget->defintionPageBuilder();
    const QPointer<RealizationPageBuilder> realization = editor.widget->realizationPageBuilder();
    editor.widget.reset();
    QVERIFY(definition && realization);
    QVERIFY(editor.manager->definitionRoot() && editor.manager->availablePointsRoot());
    // Late callers find a builder without a form.
    definition->onDefineTreeItemClicked(editor.manager->definitionRoot()->child(0), 0);
    definition->loadTree();
    realization->loadTree();
    realization->addPluginFormats();
    QCOMPARE(editor.manager->definitionRoot()->childCount(), 4);
}

void TestExtPointWidget::widgetMayDieAfterTheModel()
{
    Editor editor;
    auto *tree = editor.widget->findChild<QTreeWidget *>(s("defintionTree"));
    tree->setCurrentItem(tree->topLevelItem(0)->child(1));
    editor.manager.reset();
    QCOMPARE(tree->topLevelItemCount(), 0);
    editor.widget->defintionPageBuilder()->onBasicInfoDataChange(s("name"), s("late"));
}

void TestExtPointWidget::filterLeavesTheRowsOfTheRule()
{
    for (quint32 seed = 0; seed < 60; ++seed) {
        RandomTree random(seed);
        random.tree.addTopLevelItem(random.node(3));
        for (int step = 0; step < 60; ++step) {
            QTreeWidgetItem *current = random.tree.currentItem();
            random.change();
            QCoreApplication::processEvents();
            const QByteArray where = QByteArray::number(seed) + ':' + QByteArray::number(step);
            QVERIFY2(!current || random.tree.currentItem() == current || !random.tree.currentItem(), where.constData());
            QList<QTreeWidgetItem *> seen;
            QList<QTreeWidgetItem *> due;
            random.collect(random.tree.invisibleRootItem(), &seen, &due);
            QVERIFY2(seen == due, where.constData());
            const QList<PointTreeWidgetItem *> all = random.rows();
            const bool counts = !random.filter->needle().isEmpty();
            const auto matching = std::count_if(
                all.cbegin(), all.cend(), [&](const PointTreeWidgetItem *row) { return random.matches(row); });
            QCOMPARE(random.filter->matches(), counts ? int(matching) : 0);
            QCOMPARE(random.filter->total(), counts ? all.size() : 0);
            if (step % 7 == 0 && !all.isEmpty())
                random.tree.setCurrentItem(all.at(random.below(all.size())), 0, QItemSelectionModel::NoUpdate);
        }
        // Without it everything is as the user has it. What leads to the current row would stay unfolded.
        random.tree.setCurrentItem(nullptr);
        QVector<QVector<bool>> unfolded;
        for (const QString &needle : { s(""), random.word(2), random.word(2), s("") }) {
            random.filter->setNeedle(needle);
            if (!needle.isEmpty())
                continue;
            unfolded.append(QVector<bool>());
            for (QTreeWidgetItemIterator it(&random.tree); *it; ++it) {
                QVERIFY(!(*it)->isHidden());
                unfolded.last().append((*it)->isExpanded());
            }
        }
        QCOMPARE(unfolded.first(), unfolded.last());
    }
}

void TestExtPointWidget::filterOfTheRecords()
{
    QRandomGenerator random(1);
    QTableWidget table(0, 2);
    TableRowFilter filter(&table);
    const auto word = [&random] { return QString(random.bounded(4), QLatin1Char("aBb"[random.bounded(3)])); };
    for (int step = 0; step < 400; ++step) {
        const int row = random.bounded(table.rowCount() + 1);
        switch (random.bounded(4)) {
        case 0:
            filter.setNeedle(random.bounded(2) ? word() : filter.needle() + word().left(1));
            break;
        case 1:
            table.insertRow(row);
            table.setItem(row, 0, new QTableWidgetItem(word()));
            break;
        case 2:
            if (table.rowCount() > 30)
                table.removeRow(row);
            break;
        default:
            if (row < table.rowCount())
                table.setItem(row, 1, new QTableWidgetItem(word()));
        }
        QCoreApplication::processEvents();
        int left = 0;
        for (int i = 0; i < table.rowCount(); ++i) {
            const QString texts
                = table.item(i, 0)->text() + s("\n") + (table.item(i, 1) ? table.item(i, 1)->text() : s(""));
            const bool due = texts.toLower().contains(filter.needle().toLower());
            QCOMPARE(!table.isRowHidden(i), due);
            left += due ? 1 : 0;
        }
        QCOMPARE(filter.matches(), filter.needle().isEmpty() ? 0 : left);
    }
}

void TestExtPointWidget::findGoesToTheLineOfTheView()
{
    Editor editor;
    editor.widget->show();
    editor.widget->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(editor.widget.get()));
    auto *tree = editor.widget->findChild<QTreeWidget *>(s("realizationTree"));
    tree->setFocus();
    const int headerHeight = tree->header()->height();
    editor.widget->findChild<QAction *>(s("findAction"))->trigger();
    auto *line = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    QVERIFY(line && line->objectName() == s("realizationTreeFilter"));
    QVERIFY(tree->header()->height() > headerHeight);
    QTest::keyClicks(line, s("CHART lay"));
    auto *count = editor.widget->findChild<QLabel *>(s("realizationTreeFilterCount"));
    QCOMPARE(count->text().section(QLatin1Char(' '), 0, 1), s("1 of"));
    QTest::keyClick(line, Qt::Key_Down);
    QVERIFY(tree->hasFocus());
    QVERIFY(tree->currentItem() && tree->currentItem()->text(0).contains(s("Chart layers")));
    editor.widget->findChild<QAction *>(s("findAction"))->trigger();
    QTest::keyClick(line, Qt::Key_Escape);
    QVERIFY(tree->hasFocus() && line->text().isEmpty() && !line->isVisible());
    QCOMPARE(tree->header()->height(), headerHeight);
    // The definition tree is the only one that is seen now, although another one had the focus last.
    editor.widget->findChild<QTabWidget *>(s("tabWidget"))->setCurrentIndex(0);
    editor.widget->findChild<QAction *>(s("findAction"))->trigger();
    QCOMPARE(QApplication::focusWidget()->objectName(), s("defintionTreeFilter"));
}

QTEST_MAIN(TestExtPointWidget)
#include "tst_extpointwidget.moc"
