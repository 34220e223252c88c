#include "definitionpage.h"

#include "definition/metadialog.h"

#include <QDialog>
#include <QLineEdit>
#include <QSignalSpy>

using namespace DefinitionTesting;

namespace {

/// A record with two meta entries among other children, and a dialog on it.
class Opened final
{
public:
    Opened()
    {
        Controller::instance()->setSourceDataManager(&manager);
        const auto add = [this](const char *kind, const PropertyHash &properties) {
            auto *child = new PointTreeWidgetItem(QString());
            child->setKind(s(kind));
            child->setProperties(properties);
            record.addChild(child, false);
        };
        add("Meta",
            { { s("key"), s("author") }, { s("name"), s("Author") }, { s("value"), s("me") },
                { s("type"), s("String") } });
        add("Format", {});
        add("Meta",
            { { s("type"), s("Int") }, { s("key"), s("rank") }, { s("value"), s("5") }, { s("min"), s("1") },
                { s("max"), s("9") }, { s("trans"), s("true") }, { s("other"), s("o") } });
        add("meta", { { s("key"), s("no entry: the letter case differs") } });
    }
    ~Opened()
    {
        while (!record.children().isEmpty())
            PointTreeWidgetItem::destroySubtree(record.children().first()->item());
    }

    template <typename Widget>
    static Widget *find(MetaDialog &dialog, const char *name)
    {
        return dialog.findChild<Widget *>(s(name));
    }
    static QStringList rows(MetaDialog &dialog) { return Page::texts(find<QTableWidget>(dialog, "tableWidget")); }
    static QStringList sheet(MetaDialog &dialog)
    {
        return Page::records(find<TreePropertyBrowser>(dialog, "metaProperty"));
    }
    static void click(MetaDialog &dialog, int row)
    {
        auto *table = find<QTableWidget>(dialog, "tableWidget");
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualItemRect(table->item(row, 1)).center());
    }
    static void press(MetaDialog &dialog, const char *name)
    {
        QTest::mouseClick(find<QPushButton>(dialog, name), Qt::LeftButton);
    }

    SourceDataManager manager;
    PointTreeWidgetItem record { QString() };
};

void key(MetaDialog &dialog, Qt::Key code)
{
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *table = Opened::find<QTableWidget>(dialog, "tableWidget");
    table->setFocus();
    QTest::keyClick(table, code);
}

} // namespace

class TestMetaDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entriesAndSheets();
    void deleting();
    void closingKeepsWhatWasTyped();
    void mirrorsReachTheirMaster();
};

void TestMetaDialog::entriesAndSheets()
{
    Opened opened;
    MetaDialog dialog(&opened.record);
    dialog.show();
    QSignalSpy modified(&dialog, &MetaDialog::modified);
    QCOMPARE(Opened::rows(dialog), (QStringList { s("author|me|String"), s("rank|5|Int") }));
    QVERIFY(!(Opened::find<QTableWidget>(dialog, "tableWidget")->item(0, 0)->flags() & Qt::ItemIsEditable));
    Opened::click(dialog, 0);
    QCOMPARE(Opened::sheet(dialog).join(QLatin1Char(' ')), s("key:5=author name:5=Author value:5=me type:7=String"));
    Opened::click(dialog, 1);
    QCOMPARE(Opened::sheet(dialog).join(QLatin1Char(' ')),
        s("key:5=rank value:3=5 min:3=1 max:3=9 trans:2=true other:5=o type:7=Int"));
    auto *sheet = Opened::find<TreePropertyBrowser>(dialog, "metaProperty");
    QCOMPARE(Page::record(sheet, "key").data(s("regexp")).toString(), s("[a-zA-Z][a-zA-Z0-9-_.]{0,51}"));
    QCOMPARE(Page::options(Page::record(sheet, "type")),
        s("Int/Int/ String/String/ Enum/Enum/ Bool/Bool/ File/File/ ShortCut/ShortCut/"));
    QCOMPARE(modified.count(), 0);
}

void TestMetaDialog::deleting()
{
    Opened opened;
    MetaDialog dialog(&opened.record);
    dialog.show();
    QSignalSpy modified(&dialog, &MetaDialog::modified);
    QVERIFY(!Opened::find<QPushButton>(dialog, "pushButton_delete")->isEnabled());
    dialog.on_pushButton_delete_clicked();
    QCOMPARE(modified.count(), 0);
    Opened::click(dialog, 0);
    Opened::press(dialog, "pushButton_delete");
    QCOMPARE(Opened::rows(dialog), QStringList { s("rank|5|Int") });
    QCOMPARE(opened.record.children().size(), 3);
    QCOMPARE(modified.count(), 1);
    // What is shown afterwards is what the current row is about.
    Q_EMIT Opened::find<TreePropertyBrowser>(dialog, "metaProperty")->propertyChanged(s("value"), 6);
    QCOMPARE(Opened::rows(dialog), QStringList { s("rank|6|Int") });
    key(dialog, Qt::Key_Delete);
    QCOMPARE(Opened::rows(dialog), QStringList());
    QVERIFY(Opened::sheet(dialog).isEmpty());
    QVERIFY(!Opened::find<QPushButton>(dialog, "pushButton_delete")->isEnabled());
}

void TestMetaDialog::closingKeepsWhatWasTyped()
{
    Opened opened;
    MetaDialog dialog(&opened.record);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    Opened::click(dialog, 0);
    auto *sheet = Opened::find<TreePropertyBrowser>(dialog, "metaProperty");
    QVERIFY(sheet->openEditor(s("value")));
    QWidget *focus = QApplication::focusWidget();
    QVERIFY(qobject_cast<QLineEdit *>(focus));
    QTest::keyClick(focus, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(focus, s("typed"));
    dialog.close();
    QCOMPARE(opened.record.children().first()->property(s("value")).toString(), s("typed"));
}

void TestMetaDialog::mirrorsReachTheirMaster()
{
    Opened opened;
    PointTreeWidgetItem shown(opened.record);
    MetaDialog dialog(&shown);
    dialog.show();
    Opened::press(dialog, "pushButton_add");
    Q_EMIT Opened::find<TreePropertyBrowser>(dialog, "metaProperty")->propertyChanged(s("value"), s("v"));
    QCOMPARE(opened.record.children().size(), 5);
    QCOMPARE(opened.record.children().last()->property(s("value")).toString(), s("v"));
    Opened::press(dialog, "pushButton_delete");
    QCOMPARE(opened.record.children().size(), 4);
}

QTEST_MAIN(TestMetaDialog)
#include "tst_metadialog.moc"
