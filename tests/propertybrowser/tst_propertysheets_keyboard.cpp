#include "sheetdriver.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>

namespace {

/// Rows of which Tab stops at all but the third and the fifth.
QList<PropertyItem> rows()
{
    using T = PropertyType;
    QList<PropertyItem> items { text("string", s("a")), text("bool", {}, T::Bool), text("unknown", s("x"), T(99)),
        text("text", s("t"), T::Text), text("fixed", s("f")), text("enum", s("b"), T::Enum),
        text("date", s("2024-02-28"), T::Date), text("file", {}, T::File), text("keys", {}, T::KeySequence) };
    items[4].setEditable(false);
    for (const char *option : { "a", "b", "c" })
        items[5].addOption({ s(option), s(option), {} });
    return items;
}

/// The row that has the focus, "before" or "after" the sheet, or "" for anywhere else.
QString focusedRow(const SheetDriver &driver)
{
    const QWidget *focus = QApplication::focusWidget();
    if (focus == driver.before || focus == driver.after)
        return focus == driver.before ? s("before") : s("after");
    for (const PropertyItem &each : rows()) {
        const QWidget *editor = driver.editor(qPrintable(each.name()));
        if (editor && editor->isAncestorOf(focus))
            return each.name();
    }
    return {};
}

/// A key as it comes from the window system, to whatever has the focus.
void key(Qt::Key code, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(QGuiApplication::focusWindow(), code, modifiers);
    QCoreApplication::processEvents();
}

/// The rows that a key brings the focus to, one after the other.
QString walked(const SheetDriver &driver, Qt::Key code, Qt::KeyboardModifiers modifiers, int times)
{
    QStringList names;
    for (int i = 0; i < times; ++i) {
        key(code, modifiers);
        names.append(focusedRow(driver));
    }
    return names.join(QLatin1Char(' '));
}

} // namespace

class TestPropertySheetsKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { SheetDriver::bothKinds(); }
    void tabWalksTheRows();
    void choiceIsMadeWithKeysAlone();
    void enterAndEscapeStayInTheSheet();
    void leavingForAnotherWindowKeepsTheText();
    void takesWhatIsDoubtful();
};

void TestPropertySheetsKeyboard::tabWalksTheRows()
{
    QFETCH_GLOBAL(const SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    driver.show(rows());
    QCOMPARE(walked(driver, Qt::Key_Tab, {}, 8), s("string bool text enum date file keys after"));
    QCOMPARE(walked(driver, Qt::Key_Backtab, Qt::ShiftModifier, 8), s("keys file date enum text bool string before"));
    QCOMPARE(driver.spy().count(), 0);
}

void TestPropertySheetsKeyboard::choiceIsMadeWithKeysAlone()
{
    QFETCH_GLOBAL(const SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    driver.show(rows());
    QCOMPARE(walked(driver, Qt::Key_Tab, {}, 4), s("string bool text enum"));
    key(Qt::Key_F4);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QTest::keyClick(QApplication::activePopupWidget()->windowHandle(), Qt::Key_Down);
    // The list is gone with the press.
    QTest::keyPress(QApplication::activePopupWidget()->windowHandle(), Qt::Key_Return);
    QTRY_COMPARE(driver.spy().count(), 1);
    QCOMPARE(driver.value("enum"), QVariant(s("c")));
    // On from there, without touching the window.
    QCOMPARE(walked(driver, Qt::Key_Tab, {}, 1), s("date"));
}

/// In a dialog Enter presses the default button and Escape closes; not while they mean something to a row.
void TestPropertySheetsKeyboard::enterAndEscapeStayInTheSheet()
{
    QFETCH_GLOBAL(const SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    driver.show(rows());
    QDialog dialog;
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &dialog);
    auto *layout = new QVBoxLayout(&dialog);
    layout->addWidget(driver.sheet());
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QSignalSpy finished(&dialog, &QDialog::finished);
    dialog.show();
    dialog.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    driver.enter("string");
    SheetDriver::type(s("typed"));
    key(Qt::Key_Return);
    QVERIFY(dialog.isVisible());
    driver.enter("string");
    SheetDriver::type(s("other"));
    key(Qt::Key_Escape);
    QVERIFY(dialog.isVisible());
    QCOMPARE(driver.value("string"), QVariant(s("typed")));
    // Nothing is left to give up.
    key(Qt::Key_Escape);
    QCOMPARE(finished.count(), 1);
}

void TestPropertySheetsKeyboard::leavingForAnotherWindowKeepsTheText()
{
    QFETCH_GLOBAL(const SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    driver.show({ item(PropertyType::String, "old", { { s("regexp"), "[a-z]+" } }) });
    driver.click("it");
    SheetDriver::type(s("half 1"));
    {
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(!driver.sheet()->isActiveWindow());
    }
    driver.activate();
    QCOMPARE(driver.shown("it"), s("half 1"));
    QVERIFY(driver.isMarked("it"));
    QCOMPARE(driver.spy().count(), 0);
    SheetDriver::type(s("whole"));
    key(Qt::Key_Return);
    QCOMPARE(driver.spy().count(), 1);
}

void TestPropertySheetsKeyboard::takesWhatIsDoubtful()
{
    QFETCH_GLOBAL(const SheetDriver::Kind, kind);
    SheetDriver driver(kind);
    driver.show({ item(
        PropertyType::String, "ok", { { PropertyKey::Doubt, "'\\)" }, { PropertyKey::DoubtHint, "not as it is" } }) });
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
