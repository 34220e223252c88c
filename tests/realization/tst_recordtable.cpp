#include "openedproduct.h"
#include "realization/realizationicons.h"
#include "realization/recordtable.h"

#include <QCheckBox>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableWidget>
#include <QToolButton>
#include <QtTest>

using RealizationTesting::OpenedProduct;
using RealizationTesting::s;

Q_DECLARE_METATYPE(QTableWidgetItem *)

namespace {

QByteArray data(const QByteArray &content)
{
    return "<ExtDataSet><ExtData plugin=\"own\" id=\"p\" extPlugin=\"own\">" + content + "</ExtData></ExtDataSet>";
}

QByteArray point(const QByteArray &attributes, const QByteArray &content = QByteArray())
{
    return "<ExtPointSet><ExtPoint id=\"p\" " + attributes + ">" + content + "</ExtPoint></ExtPointSet>";
}

/// The cells of each row between bars; "(icon)", "(no icon)", "[x]" and "[ ]" stand for widgets.
QStringList cells(const QTableWidget &table)
{
    QStringList lines;
    for (int row = 0; row < table.rowCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < table.columnCount(); ++column) {
            const QTableWidgetItem *item = table.item(row, column);
            QString text = item ? item->text() : s("no item");
            if (item && (item->flags() & Qt::ItemIsEditable))
                text += s(" editable");
            QWidget *widget = table.cellWidget(row, column);
            if (const auto *button = qobject_cast<QToolButton *>(widget))
                text += button->icon().isNull() ? s("(no icon)") : s("(icon)");
            else if (const auto *box = qobject_cast<QCheckBox *>(widget))
                text += (box->isChecked() ? s("[x]") : s("[ ]")) + (box->isEnabled() ? s(" enabled") : QString());
            texts.append(text);
        }
        lines.append(texts.join(QLatin1Char('|')));
    }
    return lines;
}

QStringList headers(const QTableWidget &table)
{
    QStringList texts;
    for (int column = 0; column < table.columnCount(); ++column)
        texts.append(table.horizontalHeaderItem(column)->text());
    return texts;
}

} // namespace

class TestRecordTable : public QObject
{
    Q_OBJECT

private slots:
    void rows_data();
    void rows();
    void followsLikeAFreshOne();
};

void TestRecordTable::rows_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QByteArray>("shown"); // key of the point shown
    QTest::addColumn<QStringList>("expected");
    const QByteArray p("p");
    QTest::newRow("nothing named") << QByteArray() << p
                                   << QStringList { s("a|A|a.png(icon)"), s("b|B|(no icon)"), s("c|C|(no icon)") };
    QTest::newRow("named empty") << QByteArray("displaylabel='' displayicon=''") << p
                                 << QStringList { s("a|A|a.png(icon)"), s("b|B|(no icon)"), s("c|C|(no icon)") };
    QTest::newRow("named") << QByteArray("displayLabel='title' displayIcon='icon'") << p
                           << QStringList { s("a||a.png(icon)"), s("b|B|(no icon)"), s("c|D|(no icon)") };
    QTest::newRow("other keys") << QByteArray("displayLabel='icon' displayIcon='preview'") << p
                                << QStringList { s("a|a.png(icon)|"), s("b|(no icon)|"), s("c|(no icon)|c.png") };
    QTest::newRow("with formats") << QByteArray("hasformat='true' displayLabel='text'") << p
                                  << QStringList { s("a|A|a.png(icon)|2|[x]"), s("b||(no icon)|0|[ ]"),
                                         s("c|C|(no icon)|0|[ ]") };
    QTest::newRow("a sub point") << QByteArray("hasformat='1' displayLabel='title'") << QByteArray("sub")
                                 << QStringList { s("b|B|(no icon)|0|[ ]"), s("c|C|(no icon)|0|[ ]") };
}

void TestRecordTable::rows()
{
    QFETCH(QByteArray, attributes);
    QFETCH(QByteArray, shown);
    QFETCH(QStringList, expected);
    OpenedProduct product(point(attributes, "<SubExtPoint key='Sub'/>")
        + data("<k id='a' text='A' icon='a.png'/><Sub id='b' title='B'/><sub id='c' text='C' title='D' "
               "preview='c.png'/><k text='no id'/><format target='t'><k id='a'/><x><k id='a'/></x></format>"));
    QTableWidget widget;
    RecordTable table(&widget);
    QCOMPARE(headers(widget), RecordTable::columns(false));
    table.showRecords(product.point(shown.constData()));
    QCOMPARE(cells(widget), expected);
    QStringList names { s("id"), s("displayLabel"), s("displayIcon") };
    if (attributes.contains("hasformat"))
        names += { s("used"), s("format") };
    QCOMPARE(headers(widget), names);
    for (int row = 0; row < widget.rowCount(); ++row)
        QCOMPARE(table.record(row)->property(s("id")).toString(), widget.item(row, 0)->text());
}

/// After any change of the model the table shows what a table that is filled now would show, and the row that was
/// current is so still.
void TestRecordTable::followsLikeAFreshOne()
{
    QRandomGenerator random(7);
    const QStringList keys { s("id"), s("title"), s("text"), s("icon"), s("target") };
    const QStringList values { s("a"), s("b"), s("c"), QString(), s("t") };
    for (int round = 0; round < 60; ++round) {
        OpenedProduct product(
            point("displayLabel='title' displayIcon='icon' hasformat='true'", "<SubExtPoint key='k'/>")
            + data("<k id='a' title='A'/><k id='b'/><l id='c'/><k id='d'/><format target='t'><k id='a'/><x "
                   "id='c'/></format>"));
        const bool ofSubPoint = round % 3 == 0;
        QTableWidget widget;
        RecordTable table(&widget);
        table.showRecords(product.point(ofSubPoint ? "k" : "p"));
        connect(&product.manager.changes(), &ModelChanges::changed, &table, &RecordTable::follow);
        PointTreeWidgetItem *own = product.manager.definitionRoot()->children().at(0)->children().at(0)->item();
        for (int step = 0; step < 30; ++step) {
            const int row = widget.rowCount() > 0 ? int(random.bounded(widget.rowCount())) : -1;
            widget.setCurrentCell(row, 0);
            const QPointer<PointTreeWidgetItem> current(table.record(row));
            PointTreeWidgetItem *set = product.manager.ownEdits().ensureDataSet();
            PointTreeWidgetItem *holder = set->children().first()->item();
            const int count = holder->children().size();
            PointTreeWidgetItem *any = holder->children().value(int(random.bounded(qMax(1, count))))
                ? holder->children().at(int(random.bounded(count)))->item()
                : nullptr;
            const QString value = values.at(random.bounded(values.size()));
            switch (random.bounded(8)) {
            case 0:
                OwnEdits::insert(holder,
                    ModelTesting::node(random.bounded(2) ? s("k") : s("format"), { { s("id"), value } }),
                    int(random.bounded(count + 1)));
                break;
            case 1:
                if (any)
                    PointTreeWidgetItem::destroySubtree(any);
                break;
            case 2:
                if (any)
                    OwnEdits::move(any, holder, int(random.bounded(count)));
                break;
            case 3:
                if (any)
                    product.manager.retire(any);
                break;
            case 4:
                own->setProperty(random.bounded(2) ? s("displaylabel") : s("hasformat"), value);
                break;
            case 5:
                if (any && !any->children().isEmpty())
                    any->children().first()->item()->setProperty(s("id"), value);
                break;
            default:
                if (any)
                    any->setProperty(keys.at(random.bounded(keys.size())), value);
            }
            product.manager.changes().flush();
            QTableWidget freshWidget;
            RecordTable fresh(&freshWidget);
            fresh.showRecords(table.point());
            QVERIFY2(cells(widget) == cells(freshWidget) && headers(widget) == headers(freshWidget),
                qPrintable(s("round %1, step %2: %3 / %4")
                               .arg(round)
                               .arg(step)
                               .arg(cells(widget).join(QLatin1Char(' ')), cells(freshWidget).join(QLatin1Char(' ')))));
            QCOMPARE(table.record(widget.currentRow()), fresh.row(current) >= 0 ? current.data() : nullptr);
        }
    }
}

QTEST_MAIN(TestRecordTable)
#include "tst_recordtable.moc"
