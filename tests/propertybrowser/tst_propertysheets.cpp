#include "accessiblewalk.h"
#include "sheetdriver.h"

#include <QClipboard>
#include <QHelpEvent>
#include <QScrollBar>
#include <QToolTip>

class TestPropertySheets : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { SheetDriver::bothKinds(); }
    void initTestCase() { QApplication::setStyle(s("Fusion")); }
    void cleanup() { QVERIFY(!QApplication::activePopupWidget()); }
    void refuses_data();
    void refuses();
    void focusLeavingCommits();
    void showingDiscardsAndKeepsThePlace();
    void hiddenRowsCommitNothing();
    void fileDialogIsAskedAsTheRecordSays_data();
    void fileDialogIsAskedAsTheRecordSays();
    void accessibleNames();
    void toolTips();
};

void TestPropertySheets::refuses_data()
{
    QTest::addColumn<PropertyItem>("record");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("accepted");
    const auto row = [](const QByteArray &name, const PropertyItem &record, const char *text, bool accepted = false) {
        QTest::newRow(name) << record << s(text) << accepted;
    };
    using T = PropertyType;
    const auto string = [](const char *pattern) { return item(T::String, "ok", { { s("regexp"), pattern } }); };
    row("id", string("[a-zA-Z][a-zA-Z0-9-_.]{0,255}"), "a.b-c_9", true);
    row("id beginning with a digit", string("[a-zA-Z][a-zA-Z0-9-_.]{0,255}"), "9a");
    row("id emptied", string("[a-zA-Z][a-zA-Z0-9-_.]{0,255}"), "");
    row("anchored, too long", string("^.{0,5}$"), "123456");
    row("longer alternative", string("a|ab"), "ab", true);
    row("alternative with more", string("a|bc"), "abc");
    row("anchored alternatives", string("^ok$|^no$"), "nok");
    row("invalid, but not in parentheses", string("a)(b"), "anything", true);
    row("quotation without end", string("\\Qa.b"), "a.b", true);
    row("quotation without end, other", string("\\Qa.b"), "axb");
    row("comment at the end", string("(?x) a b # two letters"), "ab", true);
    for (const T type : { T::Int, T::Float }) {
        for (const Value &value : { Value(5), Value("5") }) {
            const QByteArray name = QByteArray(type == T::Int ? "int " : "float ") + value.typeName();
            const PropertyItem bounded = item(type, value, { { s("min"), -3 }, { s("max"), "10" } });
            row(name + ", under the least", bounded, "-4");
            row(name + ", the least", bounded, "-3", true);
            row(name + ", the most", bounded, "10", true);
            row(name + ", over the most", bounded, "11");
            row(name + ", empty bounds", item(type, value, { { s("min"), "" }, { s("max"), QVariant() } }), "-99",
                true);
            row(name + " with a comma", item(type, value), "3,14");
            row(name + " with groups", item(type, value), "1,000");
            row(name + " with a word", item(type, value), "12abc");
        }
    }
    row("int beyond an int", item(T::Int, 5), "2147483648");
    row("int half typed", item(T::Int, 5), "-");
    row("too many decimals", item(T::Float, 1.0, { { s("decimals"), 2 } }), "1.125");
    row("float over a fraction", item(T::Float, 1.0, { { s("max"), 2.5 } }), "2.51");
    row("no such day", item(T::Date, "2024-02-29"), "2023-02-29");
    row("date with more", item(T::Date, "2024-02-29"), "2023-02-28-");
    row("no such hour", item(T::Time, "10:00:00"), "24:00:00");
    row("datetime without time", item(T::DateTime, ""), "2024-02-29");
    row("datetime in a zone", item(T::DateTime, ""), "2024-03-31T03:30:00 Europe/Berlin", true);
    row("datetime left out by the zone", item(T::DateTime, ""), "2024-03-31T02:30:00 Europe/Berlin");
    row("datetime with another offset", item(T::DateTime, ""), "2024-02-29T02:30:00+05:00 Europe/Berlin");
    row("datetime in no zone", item(T::DateTime, ""), "2024-02-29T02:30:00 Europe/Atlantis");
    row("point of fractions", item(T::Point, "1,2"), "1.5,2.5");
    row("three numbers for a size", item(T::Size, "1x2"), "1x2x3");
    row("no colour", item(T::Color, "red"), "reddish");
    row("no weight of a font", item(T::Font, QVariant()), "DejaVu Sans, 10 pt, weight 100");
    row("no size of a font", item(T::Font, QVariant()), "DejaVu Sans, huge");
}

void TestPropertySheets::refuses()
{
    QFETCH_GLOBAL(const SheetDriver::Kind, kind);
    QFETCH(const PropertyItem, record);
    QFETCH(const QString, text);
    QFETCH(const bool, accepted);
    SheetDriver driver(kind);
    driver.show({ record });
    const QString before = driver.shown("it");
    const bool wasMarked = driver.isMarked("it");
    driver.click("it");
    SheetDriver::type(text);
    QCOMPARE(driver.shown("it"), text);
    QCOMPARE(driver.isMarked("it"), !accepted);
    SheetDriver::press(Qt::Key_Return);
    QCOMPARE(driver.spy().count(), accepted ? 1 : 0);
    if (accepted)
        return;
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

void TestPropertySheets::focusLeavingCommits()
{
    QFETCH_GLOBAL(const SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    driver.show({ text("it", s("old")), text("text", s("t"), PropertyType::Text),
        text("keys", {}, PropertyType::KeySequence) });
    driver.click("it");
    SheetDriver::type(s("one"));
    driver.click("text");
    QCOMPARE(driver.spy().count(), 1);
    SheetDriver::type(s("two"));
    driver.click("keys");
    QCOMPARE(driver.spy().count(), 2);
    SheetDriver::press(Qt::Key_F5);
    QTest::mouseClick(driver.before, Qt::LeftButton);
    QCOMPARE(driver.spy().count(), 3);
    QCOMPARE(driver.value("it").toString() + driver.value("text").toString() + driver.value("keys").toString(),
        s("onetwoF5"));
}

void TestPropertySheets::showingDiscardsAndKeepsThePlace()
{
    QFETCH_GLOBAL(const SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    QList<PropertyItem> items;
    for (int i = 0; i < 60; ++i)
        items.append(text(qPrintable(s("row%1").arg(i)), s("row%1").arg(i)));
    driver.show(items);
    if (driver.isTree())
        driver.treeWidget()->scrollToItem(driver.row("row40"), QAbstractItemView::PositionAtTop);
    driver.click("row42");
    SheetDriver::type(s("typed"));
    const int scrolled = driver.isTree() ? driver.treeWidget()->verticalScrollBar()->value() : 0;
    items.removeAt(43);
    driver.show(items);
    QCOMPARE(driver.spy().count(), 0);
    QCOMPARE(driver.shown("row42"), s("row42"));
    if (driver.isTree()) {
        QTreeWidget *tree = driver.treeWidget();
        QCOMPARE(tree->currentItem(), driver.row("row42"));
        QVERIFY(scrolled > 0);
        QCOMPARE(tree->verticalScrollBar()->value(), scrolled);
        QVERIFY(tree->hasFocus());
        // The current row doesn't pull the view to itself.
        tree->verticalScrollBar()->setValue(0);
        driver.show(items);
        QCOMPARE(tree->currentItem(), driver.row("row42"));
        QCOMPARE(tree->verticalScrollBar()->value(), 0);
        SheetDriver::press(Qt::Key_F2);
        QVERIFY(driver.editor("row42")->isAncestorOf(QApplication::focusWidget()));
    }
    driver.show({});
    QVERIFY(!driver.value("row0").isValid());
    QVERIFY(driver.commit());
}

/// The page that hides or disables a sheet may already be about another object, to which the text doesn't belong.
void TestPropertySheets::hiddenRowsCommitNothing()
{
    QFETCH_GLOBAL(const SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    for (const auto leave : { &QWidget::setHidden, &QWidget::setDisabled }) {
        driver.show({ text("it", s("old")) });
        driver.click("it");
        SheetDriver::type(s("typed"));
        (driver.sheet()->*leave)(true);
        QVERIFY(!driver.sheet()->isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(driver.spy().count(), 0);
        (driver.sheet()->*leave)(false);
    }
}

void TestPropertySheets::fileDialogIsAskedAsTheRecordSays_data()
{
    QTest::addColumn<PropertyItem>("record");
    QTest::addColumn<QString>("asked"); ///< %1 for the current directory
    const auto row = [](const char *name, const char *value, const char *directory, const char *title,
                         const char *filter, const char *asked) {
        QTest::newRow(name) << item(PropertyType::File, value,
            { { PropertyKey::Directory, directory }, { PropertyKey::Title, title }, { PropertyKey::Filter, filter } })
                            << s(asked);
    };
    row("nothing said", "", "", "", "", "Choose a file||");
    row("all said", "", "/usr", "An icon", "Icons (*.svg)", "An icon|/usr|Icons (*.svg)");
    row("relative directory", "", "sub/../icons", "t", "", "t|%1/icons|");
    row("a file that is there", "dir/a.png", "data", "t", "", "t|%1/data/dir/a.png|");
    row("a file that is not", "dir/b.png", "data", "t", "", "t|%1/data|");
}

void TestPropertySheets::fileDialogIsAskedAsTheRecordSays()
{
    QFETCH_GLOBAL(const SheetDriver::Kind, kind);
    QFETCH(const PropertyItem, record);
    QFETCH(QString, asked);
    const QString home = QDir::currentPath();
    const QTemporaryDir scratch;
    QVERIFY(QDir(scratch.path()).mkpath(s("data/dir")));
    QVERIFY(QFile(scratch.filePath(s("data/dir/a.png"))).open(QIODevice::WriteOnly));
    QVERIFY(QDir::setCurrent(scratch.path()));
    asked.replace(s("%1"), QDir::currentPath());
    QString got;
    PropertyDialogs::setFileDialog([&got](QWidget *, const QString &t, const QString &start, const QString &f) {
        got = QStringList { t, start, f }.join(QLatin1Char('|'));
        return QString();
    });
    SheetDriver driver(kind);
    driver.show({ record });
    driver.click("it");
    SheetDriver::press(Qt::Key_F4);
    PropertyDialogs::setFileDialog({});
    QVERIFY(QDir::setCurrent(home));
    QCOMPARE(got, asked);
}

void TestPropertySheets::toolTips()
{
    SheetDriver driver(SheetDriver::Tree);
    driver.show({ text("fits", s("short")), text("cut", QString(200, QLatin1Char('x'))),
        text("wrong", s("soon"), PropertyType::Date) });
    const auto tipOf = [&driver](const char *name) {
        QWidget *viewport = driver.treeWidget()->viewport();
        const QRect value = driver.treeWidget()->visualRect(
            driver.treeWidget()->model()->index(driver.treeWidget()->indexOfTopLevelItem(driver.row(name)), 1));
        QHelpEvent event(QEvent::ToolTip, value.center(), viewport->mapToGlobal(value.center()));
        QApplication::sendEvent(viewport, &event);
        const QString text = QToolTip::isVisible() ? QToolTip::text() : QString();
        QToolTip::hideText();
        return text;
    };
    QCOMPARE(tipOf("fits"), QString());
    QCOMPARE(tipOf("cut"), QString(200, QLatin1Char('x')));
    QVERIFY2(tipOf("wrong").contains(s("yyyy-MM-dd")), qPrintable(tipOf("wrong")));
}

void TestPropertySheets::accessibleNames()
{
    QFETCH_GLOBAL(const SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    QList<PropertyItem> items;
    for (const int type : { 0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18 })
        items.append({ PropertyType(type), s("kind%1").arg(type), s("Label & %1").arg(type), {} });
    driver.show(items);
    if (driver.isTree())
        QVERIFY(!driver.treeWidget()->accessibleName().isEmpty());
    for (const PropertyItem &each : qAsConst(items)) {
        driver.enter(qPrintable(each.name()));
        const QWidget *editor = driver.editor(qPrintable(each.name()));
        QCOMPARE(editor->focusProxy()->accessibleName(), each.displayText());
        QVERIFY2(AccessibleWalk::complaints(driver.sheet()).isEmpty(),
            qPrintable(AccessibleWalk::complaints(driver.sheet())));
    }
    // A number and its bounds are told as such, too.
    PropertyItem number(PropertyType::Int, s("n"), s("n"), s("7"));
    number.setData(PropertyKey::Max, 9);
    driver.show({ number });
    driver.enter("n");
    QAccessibleInterface *told = QAccessible::queryAccessibleInterface(driver.editor("n")->focusProxy());
    QVERIFY(told && told->valueInterface());
    QCOMPARE(told->valueInterface()->currentValue().toInt(), 7);
    QCOMPARE(told->valueInterface()->maximumValue().toInt(), 9);
}

QTEST_MAIN(TestPropertySheets)
#include "tst_propertysheets.moc"
