#include "surface/realizationtablewidget.h"

#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QtTest>

#include <functional>

namespace {

QString s(const char *text)
{
    return QString::fromLatin1(text);
}

using Arrange = std::function<void(QTableWidget &)>;

/// The table on the screen, where widgets in the cells cut what is painted below them.
QImage picture(QTableWidget &table, const Arrange &arrange)
{
    table.setRowCount(12);
    table.setColumnCount(4);
    table.setHorizontalHeaderLabels({ s("a"), s("b"), s("c"), s("d") });
    for (int row = 0; row < table.rowCount(); ++row)
        table.setItem(row, row % 4, new QTableWidgetItem(s("cell")));
    table.setCurrentCell(2, 2);
    table.resize(360, 260);
    arrange(table);
    table.show();
    if (!QTest::qWaitForWindowExposed(&table))
        return {};
    // The last thing that was asked for may have come after the first painting.
    table.repaint();
    return table.screen()->grabWindow(table.winId()).toImage();
}

} // namespace

Q_DECLARE_METATYPE(Arrange)

class TestGridLines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lookAsATablesOwn_data();
    void lookAsATablesOwn();
};

void TestGridLines::lookAsATablesOwn_data()
{
    QTest::addColumn<Arrange>("arrange");
    QTest::newRow("as it comes") << Arrange([](QTableWidget &) {});
    QTest::newRow("fewer cells than room") << Arrange([](QTableWidget &table) {
        table.setRowCount(2);
        table.setColumnCount(2);
    });
    QTest::newRow("no rows") << Arrange([](QTableWidget &table) { table.setRowCount(0); });
    QTest::newRow("scrolled by pixels") << Arrange([](QTableWidget &table) {
        table.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
        table.show();
        table.verticalScrollBar()->setValue(17);
        table.horizontalScrollBar()->setValue(23);
    });
    QTest::newRow("hidden and moved sections") << Arrange([](QTableWidget &table) {
        table.hideColumn(1);
        table.hideRow(3);
        table.hideRow(11);
        table.horizontalHeader()->moveSection(3, 0);
    });
    QTest::newRow("last column stretched")
        << Arrange([](QTableWidget &table) { table.horizontalHeader()->setStretchLastSection(true); });
    QTest::newRow("from right to left") << Arrange([](QTableWidget &table) {
        table.setColumnCount(2);
        table.setLayoutDirection(Qt::RightToLeft);
    });
    QTest::newRow("widgets in cells") << Arrange([](QTableWidget &table) {
        for (int row = 0; row < 4; ++row) {
            auto *label = new QLabel(s("w"));
            label->setAutoFillBackground(true);
            table.setCellWidget(row, row % 2, label);
        }
    });
    QTest::newRow("no grid") << Arrange([](QTableWidget &table) { table.setShowGrid(false); });
    QTest::newRow("lines in another color")
        << Arrange([](QTableWidget &table) { table.setPalette(QPalette(QColor(40, 44, 52))); });
}

void TestGridLines::lookAsATablesOwn()
{
    QFETCH(Arrange, arrange);
    QTableWidget plain;
    RealizationTableWidget ours;
    const QImage expected = picture(plain, arrange);
    plain.hide();
    const QImage found = picture(ours, arrange);
    QVERIFY(!found.isNull());
    QCOMPARE(found, expected);
}


QTEST_MAIN(TestGridLines)
#include "tst_gridlines.moc"
