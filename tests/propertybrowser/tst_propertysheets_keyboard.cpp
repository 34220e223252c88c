#include "edits.h"

#include "propertybrowser/propertykeys.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>

namespace {

/// Rows of which Tab stops at all but the third and the fifth.
QList<PropertyItem> rows()
{
    using T = PropertyType;
    const auto row
        = [](T type, const char *name, const QVariant &value) { return PropertyItem(type, s(name), s(name), value); };
    QList<PropertyItem> items { row(T::String, "string", s("a")), row(T::Bool, "bool", false),
        row(static_cast<T>(99), "unknown", s("x")), row(T::Text, "text", s("t")), row(T::String, "fixed", s("f")),
        row(T::Enum, "enum", s("b")), row(T::Date, "date", s("2024-02-28")), row(T::File, "file", s("")),
        row(T::KeySequence, "keys", s("")) };
    items[4].setEditable(false);
    for (const QStringList &option : abc) {
        items[5].addOption({ option.at(0), option.at(1), QString() });
    }
    return items;
}

/// The row that has the focus, "before" or "after" the sheet, or "" for anywhere else.
QString focusedRow(const SheetDriver &driver)
{
    const QWidget *focus = QApplication::focusWidget();
    if (focus == driver.before() || focus == driver.after()) {
        return focus == driver.before() ? s("before") : s("after");
    }
    for (const PropertyItem &each : rows()) {
        const QWidget *editor = driver.editor(qPrintable(each.name()));
        if (editor != nullptr && focus != nullptr && editor->isAncestorOf(focus)) {
            return each.name();
        }
    }
    return {};
}

/// A key as it comes from the window system, to whatever has the focus.
void key(Qt::Key code, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(QGuiApplication::focusWindow(), code, modifiers);
    QCoreApplication::processEvents();
}

} // namespace

class TestPropertySheetsKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void tabWalksTheRows_data();
    void tabWalksTheRows();
    void choiceIsMadeWithKeysAlone_data();
    void choiceIsMadeWithKeysAlone();
    void enterAndEscapeStayInTheSheet_data();
    void enterAndEscapeStayInTheSheet();
    void leavingForAnotherWindowKeepsTheText_data();
    void leavingForAnotherWindowKeepsTheText();
    void takesWhatIsDoubtful_data() { tabWalksTheRows_data(); }
    void takesWhatIsDoubtful();
};

void TestPropertySheetsKeyboard::tabWalksTheRows_data()
{
    QTest::addColumn<SheetDriver::Kind>("kind");
    QTest::newRow("group") << SheetDriver::Group;
    QTest::newRow("tree") << SheetDriver::Tree;
}

void TestPropertySheetsKeyboard::tabWalksTheRows()
{
    QFETCH(SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    QVERIFY(driver.ready());
    driver.show(rows());
    QStringList forward;
    for (int i = 0; i < 8; ++i) {
        key(Qt::Key_Tab);
        forward.append(focusedRow(driver));
    }
    QCOMPARE(forward.join(QLatin1Char(' ')), s("string bool text enum date file keys after"));
    QStringList back;
    for (int i = 0; i < 8; ++i) {
        key(Qt::Key_Backtab, Qt::ShiftModifier);
        back.append(focusedRow(driver));
    }
    QCOMPARE(back.join(QLatin1Char(' ')), s("keys file date enum text bool string before"));
    QCOMPARE(driver.spy().count(), 0);
}

void TestPropertySheetsKeyboard::choiceIsMadeWithKeysAlone_data()
{
    tabWalksTheRows_data();
}

void TestPropertySheetsKeyboard::choiceIsMadeWithKeysAlone()
{
    QFETCH(SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    QVERIFY(driver.ready());
    driver.show(rows());
    for (int i = 0; i < 4; ++i) {
        key(Qt::Key_Tab);
    }
    QCOMPARE(focusedRow(driver), s("enum"));
    key(Qt::Key_F4);
    QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
    QTest::keyClick(QApplication::activePopupWidget()->windowHandle(), Qt::Key_Down);
    // The list is gone with the press.
    QTest::keyPress(QApplication::activePopupWidget()->windowHandle(), Qt::Key_Return);
    QTRY_COMPARE(driver.spy().count(), 1);
    QCOMPARE(driver.value("enum"), QVariant(s("c")));
    // On from there, without touching the window.
    key(Qt::Key_Tab);
    QCOMPARE(focusedRow(driver), s("date"));
}

void TestPropertySheetsKeyboard::enterAndEscapeStayInTheSheet_data()
{
    tabWalksTheRows_data();
}

/// In a dialog Enter presses the default button and Escape closes; not while they mean something to a row.
void TestPropertySheetsKeyboard::enterAndEscapeStayInTheSheet()
{
    QFETCH(SheetDriver::Kind, kind);
    QDialog dialog;
    auto *layout = new QVBoxLayout(&dialog);
    auto *group = new GroupPropertyBrowser(&dialog);
    auto *tree = new TreePropertyBrowser(&dialog);
    layout->addWidget(group);
    layout->addWidget(tree);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &dialog);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QSignalSpy finished(&dialog, &QDialog::finished);
    group->showProperties(rows());
    tree->showProperties(rows());
    dialog.show();
    dialog.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    const auto open = [&] {
        if (kind == SheetDriver::Group) {
            group->editorFor(s("string"))->setFocus();
        } else {
            QVERIFY(tree->openEditor(s("string")));
        }
    };
    open();
    SheetDriver::type(s("typed"));
    key(Qt::Key_Return);
    QVERIFY(dialog.isVisible());
    open();
    SheetDriver::type(s("other"));
    key(Qt::Key_Escape);
    QVERIFY(dialog.isVisible());
    const QList<PropertyItem> items = kind == SheetDriver::Group ? group->properties() : tree->properties();
    QCOMPARE(items.first().value(), QVariant(s("typed")));
    // Nothing is left to give up.
    key(Qt::Key_Escape);
    QCOMPARE(finished.count(), 1);
}

void TestPropertySheetsKeyboard::leavingForAnotherWindowKeepsTheText_data()
{
    tabWalksTheRows_data();
}

void TestPropertySheetsKeyboard::leavingForAnotherWindowKeepsTheText()
{
    QFETCH(SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    QVERIFY(driver.ready());
    driver.show({ item(PropertyType::String, s("old"), { { s("regexp"), s("[a-z]+") } }) });
    driver.click("it");
    SheetDriver::type(s("half 1"));
    {
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(!driver.sheet()->isActiveWindow());
    }
    driver.sheet()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(driver.sheet()->window()));
    QCOMPARE(driver.shown("it"), s("half 1"));
    QVERIFY(driver.isMarked("it"));
    QCOMPARE(driver.spy().count(), 0);
    SheetDriver::type(s("whole"));
    key(Qt::Key_Return);
    QCOMPARE(driver.spy().count(), 1);
}

void TestPropertySheetsKeyboard::takesWhatIsDoubtful()
{
    QFETCH(SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    QVERIFY(driver.ready());
    driver.show({ item(PropertyType::String, s("ok"),
        { { PropertyKey::Doubt, s("'\\)") }, { PropertyKey::DoubtHint, s("not as it is") } }) });
    QVERIFY(!driver.isMarked("it"));
    driver.click("it");
    SheetDriver::type(s("Open ('all')"));
    QVERIFY(driver.isMarked("it"));
    SheetDriver::press(Qt::Key_Return);
    QCOMPARE(driver.spy().count(), 1);
    QVERIFY(driver.isMarked("it"));
    driver.click("it");
    SheetDriver::type(s("Open (all)"));
    QVERIFY(!driver.isMarked("it"));
}

QTEST_MAIN(TestPropertySheetsKeyboard)
#include "tst_propertysheets_keyboard.moc"
