#include "realization/realizationpage.h"

#include "accessiblewalk.h"
#include "definition/metadialog.h"
#include "propertybrowser/propertydelegate.h"
#include "tabcycle.h"

#include <QSignalSpy>

using namespace RealizationTesting;

namespace {

/// A record with two meta entries among other children, and a dialog on it or on a copy of it.
class Opened final
{
public:
    explicit Opened(bool ofACopy = false) : copy(record)
    {
        Controller::instance()->setSourceDataManager(&manager);
        const auto add = [this](const char *kind, const PropertyHash &properties) {
            record.addChild(ModelTesting::node(s(kind), properties), false);
        };
        add("Meta",
            { { s("key"), s("author") }, { s("name"), s("Author") }, { s("value"), s("me") },
                { s("type"), s("String") } });
        add("Format", {});
        add("Meta",
            { { s("type"), s("Int") }, { s("key"), s("rank") }, { s("value"), s("5") }, { s("min"), s("1") },
                { s("max"), s("9") }, { s("trans"), s("true") }, { s("other"), s("o") } });
        add("meta", { { s("key"), s("no entry: the letter case differs") } });
        dialog = std::make_unique<MetaDialog>(ofACopy ? &copy : &record);
        dialog->show();
        if (!QTest::qWaitForWindowActive(dialog.get()))
            qFatal("not active");
    }
    ~Opened()
    {
        while (!record.children().isEmpty())
            PointTreeWidgetItem::destroySubtree(record.children().first()->item());
    }

    [[nodiscard]] QTableWidget *table() const { return dialog->findChild<QTableWidget *>(); }
    [[nodiscard]] TreePropertyBrowser *sheet() const { return dialog->findChild<TreePropertyBrowser *>(); }
    [[nodiscard]] QPushButton *button(const char *name) const { return dialog->findChild<QPushButton *>(s(name)); }
    [[nodiscard]] QStringList rows() const { return Page::lines(table()).mid(1); }
    void click(int row) const { Page::click(table(), table()->item(row, 1)); }

    SourceDataManager manager;
    PointTreeWidgetItem record { QString() };
    PointTreeWidgetItem copy;
    std::unique_ptr<MetaDialog> dialog;
};

} // namespace

class TestMetaDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entriesAndSheets();
    void deleting();
    void keys();
    void closingKeepsWhatWasTyped();
    void copiesReachTheirMaster();
};

void TestMetaDialog::entriesAndSheets()
{
    const Opened opened;
    const QSignalSpy modified(opened.dialog.get(), &MetaDialog::modified);
    QCOMPARE(opened.rows(), list({ "author|me|String", "rank|5|Int" }));
    opened.click(0);
    QCOMPARE(sheetLines(opened.sheet()->properties()),
        list({ "key:5=author /[a-zA-Z][a-zA-Z0-9-_.]{0,51}/", "name:5=Author /[^</>'&\"]{0,255}/", "value:5=me",
            "type:7=String {String Enum Bool Int File ShortCut}" }));
    opened.click(1);
    QCOMPARE(sheetLines(opened.sheet()->properties()),
        list({ "key:5=rank /[a-zA-Z][a-zA-Z0-9-_.]{0,51}/", "value:3=5", "min:3=1", "max:3=9", "trans:2=true",
            "other:5=o", "type:7=Int {Int String Enum Bool File ShortCut}" }));
    QCOMPARE(modified.count(), 0);
}

void TestMetaDialog::deleting()
{
    const Opened opened;
    const QSignalSpy modified(opened.dialog.get(), &MetaDialog::modified);
    opened.click(0);
    opened.button("pushButton_delete")->click();
    QCOMPARE(opened.rows(), list({ "rank|5|Int" }));
    QCOMPARE(opened.record.children().size(), 3);
    QCOMPARE(modified.count(), 1);
    // What is shown afterwards is what the current row is about.
    Q_EMIT opened.sheet()->propertyChanged(s("value"), 6);
    QCOMPARE(opened.rows(), list({ "rank|6|Int" }));
    opened.table()->setFocus();
    QTest::keyClick(opened.table(), Qt::Key_Delete);
    QCOMPARE(opened.rows(), QStringList());
    QVERIFY(opened.sheet()->properties().isEmpty());
    QVERIFY(!opened.button("pushButton_delete")->isEnabled());
    opened.dialog->on_pushButton_delete_clicked();
    QCOMPARE(modified.count(), 3);
}

void TestMetaDialog::keys()
{
    const Opened opened;
    opened.table()->setFocus();
    QTest::keyClick(opened.table(), Qt::Key_Insert);
    QCOMPARE(QApplication::focusWidget()->accessibleName(), s("key"));
    // No file keeps the key: it may be left out, but what is written there is looked at.
    const auto *rows = opened.sheet()->findChild<QTreeWidget *>();
    const auto problem = [&] { return rows->topLevelItem(0)->data(1, PropertyDelegate::ProblemRole).toString(); };
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QCOMPARE(problem(), QString());
    Q_EMIT opened.sheet()->propertyChanged(s("key"), s("1 2"));
    opened.click(0);
    opened.click(2);
    QVERIFY(!problem().isEmpty());
    const TabCycle cycle(opened.dialog.get());
    QCOMPARE(cycle.size(), 5);
    QVERIFY2(cycle.complaint(false).isEmpty(), qPrintable(cycle.complaint(false)));
    QVERIFY2(cycle.complaint(true).isEmpty(), qPrintable(cycle.complaint(true)));
    QCOMPARE(AccessibleWalk::complaints(opened.dialog.get()), QString());
}

void TestMetaDialog::closingKeepsWhatWasTyped()
{
    const Opened opened;
    opened.click(0);
    QVERIFY(opened.sheet()->openEditor(s("value")));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), s("typed"));
    opened.dialog->close();
    QCOMPARE(opened.record.children().first()->property(s("value")).toString(), s("typed"));
}

void TestMetaDialog::copiesReachTheirMaster()
{
    const Opened opened(true);
    opened.button("pushButton_add")->click();
    Q_EMIT opened.sheet()->propertyChanged(s("value"), s("v"));
    QCOMPARE(opened.record.children().size(), 5);
    QCOMPARE(opened.record.children().last()->property(s("value")).toString(), s("v"));
    opened.button("pushButton_delete")->click();
    QCOMPARE(opened.record.children().size(), 4);
}

QTEST_MAIN(TestMetaDialog)
#include "tst_metadialog.moc"
