#include "edits.h"

#include "propertybrowser/propertydialogs.h"
#include "propertybrowser/propertykeys.h"

#include <QClipboard>
#include <QScrollBar>

#include <algorithm>
#include <optional>

class TestPropertySheets : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void refuses_data();
    void refuses();
    void focusLeavingCommits_data();
    void focusLeavingCommits();
    void showingDiscardsAndKeepsThePlace();
    void hiddenRowsCommitNothing_data();
    void hiddenRowsCommitNothing();
    void fileDialogIsAskedAsTheRecordSays_data();
    void fileDialogIsAskedAsTheRecordSays();
    void accessibleNames_data();
    void accessibleNames();
};

void TestPropertySheets::initTestCase()
{
    QApplication::setStyle(s("Fusion"));
    qRegisterMetaType<PropertyItem>();
}

void TestPropertySheets::cleanup()
{
    PropertyDialogs::setFileDialog({});
    PropertyDialogs::setColorDialog({});
    PropertyDialogs::setFontDialog({});
    QVERIFY(QApplication::activePopupWidget() == nullptr);
}

void TestPropertySheets::refuses_data()
{
    QTest::addColumn<SheetDriver::Kind>("kind");
    QTest::addColumn<PropertyItem>("record");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("accepted");
    const auto row = [](const QByteArray &name, const PropertyItem &record, const QString &text, bool accepted) {
        for (const auto kind : { SheetDriver::Group, SheetDriver::Tree }) {
            QTest::addRow("%s, %s", kind == SheetDriver::Group ? "group" : "tree", name.constData())
                << kind << record << text << accepted;
        }
    };
    const auto string = [](const char *pattern) {
        return item(PropertyType::String, s("ok"), { { s("regexp"), s(pattern) } });
    };
    using T = PropertyType;
    row("id", string("[a-zA-Z][a-zA-Z0-9-_.]{0,255}"), s("a.b-c_9"), true);
    row("id beginning with a digit", string("[a-zA-Z][a-zA-Z0-9-_.]{0,255}"), s("9a"), false);
    row("id emptied", string("[a-zA-Z][a-zA-Z0-9-_.]{0,255}"), s(""), false);
    row("anchored, too long", string("^.{0,5}$"), s("123456"), false);
    row("longer alternative", string("a|ab"), s("ab"), true);
    row("alternative with more", string("a|bc"), s("abc"), false);
    row("anchored alternatives", string("^ok$|^no$"), s("nok"), false);
    row("markup", string("[^</>'&\"]{0,255}"), s("a<b"), false);
    row("invalid, but not in parentheses", string("a)(b"), s("anything"), true);
    row("quotation without end", string("\\Qa.b"), s("a.b"), true);
    row("quotation without end, other", string("\\Qa.b"), s("axb"), false);
    row("comment at the end", string("(?x) a b # two letters"), s("ab"), true);
    for (const T type : { T::Int, T::Float }) {
        for (const QVariant &value : { QVariant(5), QVariant(s("5")) }) {
            const QByteArray name
                = QByteArray(type == T::Int ? "int" : "float") + (value.type() == QVariant::String ? " of a text" : "");
            const PropertyItem bounded = item(type, value, { { s("min"), -3 }, { s("max"), s("10") } });
            row(name + ", under the least", bounded, s("-4"), false);
            row(name + ", the least", bounded, s("-3"), true);
            row(name + ", the most", bounded, s("10"), true);
            row(name + ", over the most", bounded, s("11"), false);
            row(name + ", empty bounds", item(type, value, { { s("min"), s("") }, { s("max"), QVariant() } }), s("-99"),
                true);
            row(name + " with a comma", item(type, value), s("3,14"), false);
            row(name + " with groups", item(type, value), s("1,000"), false);
            row(name + " with a word", item(type, value), s("12abc"), false);
        }
    }
    row("int beyond an int", item(T::Int, 5), s("2147483648"), false);
    row("int half typed", item(T::Int, 5), s("-"), false);
    row("too many decimals", item(T::Float, 1.0, { { s("decimals"), 2 } }), s("1.125"), false);
    row("float over a fraction", item(T::Float, 1.0, { { s("max"), 2.5 } }), s("2.51"), false);
    row("no such day", item(T::Date, s("2024-02-29")), s("2023-02-29"), false);
    row("date with more", item(T::Date, s("2024-02-29")), s("2023-02-28-"), false);
    row("no such hour", item(T::Time, s("10:00:00")), s("24:00:00"), false);
    row("datetime without time", item(T::DateTime, s("")), s("2024-02-29"), false);
    row("datetime in a zone", item(T::DateTime, s("")), s("2024-03-31T03:30:00 Europe/Berlin"), true);
    row("datetime left out by the zone", item(T::DateTime, s("")), s("2024-03-31T02:30:00 Europe/Berlin"), false);
    row("datetime with another offset", item(T::DateTime, s("")), s("2024-02-29T02:30:00+05:00 Europe/Berlin"), false);
    row("datetime in no zone", item(T::DateTime, s("")), s("2024-02-29T02:30:00 Europe/Atlantis"), false);
    row("point of fractions", item(T::Point, s("1,2")), s("1.5,2.5"), false);
    row("three numbers for a size", item(T::Size, s("1x2")), s("1x2x3"), false);
    row("no colour", item(T::Color, s("red")), s("reddish"), false);
    row("no weight of a font", item(T::Font, QVariant()), s("DejaVu Sans, 10 pt, weight 100"), false);
    row("no size of a font", item(T::Font, QVariant()), s("DejaVu Sans, huge"), false);
}

void TestPropertySheets::refuses()
{
    QFETCH(SheetDriver::Kind, kind);
    QFETCH(PropertyItem, record);
    QFETCH(QString, text);
    QFETCH(bool, accepted);
    SheetDriver driver(kind);
    QVERIFY(driver.ready());
    driver.show({ record });
    const QString before = driver.shown("it");
    const bool wasMarked = driver.isMarked("it");
    driver.click("it");
    SheetDriver::type(text);
    QCOMPARE(driver.shown("it"), text);
    QCOMPARE(driver.isMarked("it"), !accepted);
    SheetDriver::press(Qt::Key_Return);
    QCOMPARE(driver.spy().count(), accepted ? 1 : 0);
    if (!accepted) {
        QCOMPARE(driver.shown("it"), text);
        SheetDriver::press(Qt::Key_Escape);
        QCOMPARE(driver.shown("it"), before);
        QCOMPARE(driver.isMarked("it"), wasMarked);
        driver.click("it");
        SheetDriver::type(s(""));
        QApplication::clipboard()->setText(text);
        SheetDriver::press(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(driver.shown("it"), text);
        QVERIFY(driver.isMarked("it"));
        SheetDriver::press(Qt::Key_Return);
        QCOMPARE(driver.spy().count(), 0);
    }
}

void TestPropertySheets::focusLeavingCommits_data()
{
    QTest::addColumn<SheetDriver::Kind>("kind");
    QTest::newRow("group") << SheetDriver::Group;
    QTest::newRow("tree") << SheetDriver::Tree;
}

void TestPropertySheets::focusLeavingCommits()
{
    QFETCH(SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    QVERIFY(driver.ready());
    driver.show({ item(PropertyType::String, s("old")), PropertyItem(PropertyType::Text, s("text"), s("text"), s("t")),
        PropertyItem(PropertyType::KeySequence, s("keys"), s("keys"), s("")) });
    driver.click("it");
    SheetDriver::type(s("one"));
    driver.click("text");
    QCOMPARE(driver.spy().count(), 1);
    SheetDriver::type(s("two"));
    driver.click("keys");
    QCOMPARE(driver.spy().count(), 2);
    SheetDriver::press(Qt::Key_F5);
    QTest::mouseClick(driver.before(), Qt::LeftButton);
    QStringList got;
    for (const QList<QVariant> &emission : qAsConst(driver.spy())) {
        got.append(emission.at(0).toString() + QLatin1Char('=') + emission.at(1).value<QVariant>().toString());
    }
    QCOMPARE(got.join(QLatin1Char(' ')), s("it=one text=two keys=F5"));
}

void TestPropertySheets::showingDiscardsAndKeepsThePlace()
{
    SheetDriver driver(SheetDriver::Tree);
    QVERIFY(driver.ready());
    QList<PropertyItem> items;
    for (int i = 0; i < 60; ++i) {
        const QString name = s("row%1").arg(i);
        items.append(PropertyItem(PropertyType::String, name, name, name));
    }
    driver.show(items);
    QTreeWidget *tree = driver.treeWidget();
    tree->scrollToItem(driver.row("row40"), QAbstractItemView::PositionAtTop);
    driver.click("row42");
    SheetDriver::type(s("typed"));
    const int scrolled = tree->verticalScrollBar()->value();
    QVERIFY(scrolled > 0);
    items.removeAt(43);
    driver.show(items);
    QCOMPARE(driver.spy().count(), 0);
    QCOMPARE(driver.shown("row42"), s("row42"));
    QCOMPARE(tree->currentItem(), driver.row("row42"));
    QCOMPARE(tree->verticalScrollBar()->value(), scrolled);
    QVERIFY(tree->hasFocus());
    // The current row doesn't pull the view to itself.
    tree->verticalScrollBar()->setValue(0);
    driver.show(items);
    QCOMPARE(tree->currentItem(), driver.row("row42"));
    QCOMPARE(tree->verticalScrollBar()->value(), 0);
    driver.show({});
    QCOMPARE(tree->topLevelItemCount(), 0);
    QVERIFY(driver.commit());
}

void TestPropertySheets::hiddenRowsCommitNothing_data()
{
    focusLeavingCommits_data();
}

/// The page that hides or disables a sheet may already be about another object, to which the text doesn't belong.
void TestPropertySheets::hiddenRowsCommitNothing()
{
    QFETCH(SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    QVERIFY(driver.ready());
    driver.show({ item(PropertyType::String, s("old")) });
    for (const auto leave : { &QWidget::setHidden, &QWidget::setDisabled }) {
        driver.click("it");
        SheetDriver::type(s("typed"));
        (driver.sheet()->*leave)(true);
        QVERIFY(!driver.sheet()->isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(driver.spy().count(), 0);
        (driver.sheet()->*leave)(false);
        driver.show({ item(PropertyType::String, s("old")) });
    }
}

void TestPropertySheets::fileDialogIsAskedAsTheRecordSays_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("asked");
    const QString here = QDir::currentPath();
    QTest::newRow("nothing said") << s("") << s("") << s("") << s("") << s("Choose a file||");
    QTest::newRow("all said") << s("") << s("/usr") << s("An icon") << s("Icons (*.svg)")
                              << s("An icon|/usr|Icons (*.svg)");
    QTest::newRow("relative directory") << s("") << s("sub/../icons") << s("t") << s("") << s("t|%1/icons|").arg(here);
    QTest::newRow("a file that is there")
        << s("dir/a.png") << s("data") << s("t") << s("") << s("t|%1/data/dir/a.png|").arg(here);
    QTest::newRow("a file that is not") << s("dir/b.png") << s("data") << s("t") << s("") << s("t|%1/data|").arg(here);
}

void TestPropertySheets::fileDialogIsAskedAsTheRecordSays()
{
    QFETCH(QString, value);
    QFETCH(QString, directory);
    QFETCH(QString, title);
    QFETCH(QString, filter);
    QFETCH(QString, asked);
    const QString home = QDir::currentPath();
    QTemporaryDir scratch;
    QVERIFY(QDir(scratch.path()).mkpath(s("data/dir")));
    QFile file(scratch.filePath(s("data/dir/a.png")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(QDir::setCurrent(scratch.path()));
    asked.replace(home, QDir::currentPath());
    QString got;
    PropertyDialogs::setFileDialog([&got](QWidget *, const QString &t, const QString &start, const QString &f) {
        got = QStringList { t, start, f }.join(QLatin1Char('|'));
        return QString();
    });
    SheetDriver driver(SheetDriver::Tree);
    const QMap<QString, QVariant> data { { PropertyKey::Directory, directory }, { PropertyKey::Title, title },
        { PropertyKey::Filter, filter } };
    driver.show({ item(PropertyType::File, value, data) });
    driver.click("it");
    SheetDriver::press(Qt::Key_F4);
    QVERIFY(QDir::setCurrent(home));
    QCOMPARE(got, asked);
}

void TestPropertySheets::accessibleNames_data()
{
    focusLeavingCommits_data();
}

void TestPropertySheets::accessibleNames()
{
    QFETCH(SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    QVERIFY(driver.ready());
    QList<PropertyItem> items;
    for (const int type : { 0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18 }) {
        const QString name = s("kind%1").arg(type);
        items.append(PropertyItem(static_cast<PropertyType>(type), name, s("Label & %1").arg(type), QVariant()));
    }
    driver.show(items);
    if (driver.isTree()) {
        QVERIFY(!driver.treeWidget()->accessibleName().isEmpty());
    }
    for (const PropertyItem &each : qAsConst(items)) {
        if (auto *tree = qobject_cast<TreePropertyBrowser *>(driver.sheet())) {
            QVERIFY(tree->openEditor(each.name()));
        }
        QWidget *editor = driver.editor(qPrintable(each.name()));
        QVERIFY(editor != nullptr);
        QCOMPARE(editor->focusProxy()->accessibleName(), each.displayText());
        for (const QToolButton *button : editor->findChildren<QToolButton *>()) {
            QVERIFY(!button->accessibleName().isEmpty());
        }
    }
}

QTEST_MAIN(TestPropertySheets)
#include "tst_propertysheets.moc"

#include <QClipboard>
#include <QScrollBar>
