#include "edits.h"

#include "propertybrowser/propertydialogs.h"

#include <QTimeZone>

#include <limits>
#include <optional>

class TestPropertyEdits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void edits_data();
    void edits();
    void lineBreaksSurvive_data();
    void lineBreaksSurvive();
    void showingAgainInsideTheSignal_data();
    void showingAgainInsideTheSignal();
};

void TestPropertyEdits::initTestCase()
{
    QApplication::setStyle(s("Fusion"));
    qRegisterMetaType<PropertyItem>();
    // Where the clocks are put forward and back.
    qputenv("TZ", "Europe/Berlin");
}

void TestPropertyEdits::cleanup()
{
    PropertyDialogs::setFileDialog({});
    PropertyDialogs::setColorDialog({});
    PropertyDialogs::setFontDialog({});
    QVERIFY(QApplication::activePopupWidget() == nullptr);
}

void TestPropertyEdits::edits_data()
{
    QTest::addColumn<SheetDriver::Kind>("kind");
    QTest::addColumn<PropertyItem>("record");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<QVariant>("expected");
    const auto row = addForBothSheets;
    using T = PropertyType;
    const Edit toggle = [](SheetDriver &driver) { driver.click("it"); };

    row("bool", item(T::Bool, false), s("[ ]"), toggle, true);
    row("bool from text true", item(T::Bool, s("true")), s("[x]"), toggle, false);
    row("bool from text 0", item(T::Bool, s("0")), s("[ ]"), toggle, true);
    row("bool from empty text", item(T::Bool, s("")), s("[ ]"), toggle, true);
    row("bool from nothing", item(T::Bool, QVariant()), s("[ ]"), toggle, true);

    row("int", item(T::Int, 5), s("5"), typing("-12"), -12);
    row("int from text", item(T::Int, s("5")), s("5"), typing("12"), s("12"));
    row("int from text, zeros", item(T::Int, s("007")), s("007"), typing("08"), s("8"));
    row("int from nothing", item(T::Int, QVariant()), s(""), typing("7"), 7);
    row("int up", item(T::Int, 5), s("5"), stepping(Qt::Key_Up, 3), 8);
    row("int page up", item(T::Int, 5), s("5"), stepping(Qt::Key_PageUp, 1), 15);
    row("int up to max", item(T::Int, 5, { { s("max"), s("6") } }), s("5"), stepping(Qt::Key_Up, 3), 6);
    row("int down to min", item(T::Int, 5, { { s("min"), 4 } }), s("5"), stepping(Qt::Key_Down, 3), 4);
    row("int least", item(T::Int, 0), s("0"), typing("-2147483648"), std::numeric_limits<int>::min());
    row("int emptied", item(T::Int, 5), s("5"), typing(""), QVariant());
    row("int text emptied", item(T::Int, s("5")), s("5"), typing(""), s(""));
    row("int of a word", item(T::Int, s("left")), s("left"), typing("3"), s("3"));

    row("float", item(T::Float, 0.1), s("0.1"), typing("2.25"), 2.25);
    row("float from text", item(T::Float, s("1.50")), s("1.50"), typing("1e3"), s("1000"));
    row("float from nothing", item(T::Float, QVariant()), s(""), typing("0.5"), 0.5);
    row("float down", item(T::Float, 2.3), s("2.3"), stepping(Qt::Key_Down, 1), 1.3);
    row("float, the zeros stay", item(T::Float, s("1.50")), s("1.50"), stepping(Qt::Key_Up, 1), s("2.50"));
    row("float down through zero", item(T::Float, s("0.30")), s("0.30"), stepping(Qt::Key_Down, 1), s("-0.70"));
    row("float, the last digits stay", item(T::Float, 0.12345678901234568), s("0.12345678901234568"),
        stepping(Qt::Key_Up, 1), 1.1234567890123457);
    row("float, more digits than a double has", item(T::Float, s("-99999999999999999999.000000000000000000001")),
        s("-99999999999999999999.000000000000000000001"), stepping(Qt::Key_Down, 1),
        s("-100000000000000000000.000000000000000000001"));
    row("float typed with many digits", item(T::Float, s("0.123456789012345678901")), s("0.123456789012345678901"),
        typing("0.123456789012345678902"), s("0.123456789012345678902"));
    row("float with an exponent", item(T::Float, s("1.5e3")), s("1.5e3"), stepping(Qt::Key_Down, 1), s("1499"));
    row("float up to max", item(T::Float, s("1.75"), { { s("max"), s("2.5") } }), s("1.75"), stepping(Qt::Key_Up, 3),
        s("2.5"));
    row("float decimals", item(T::Float, 1.0, { { s("decimals"), 2 } }), s("1"), typing("1.25"), 1.25);

    row("string", item(T::String, s("old")), s("old"), typing("new"), s("new"));
    row("string from nothing", item(T::String, QVariant()), s(""), typing("x & <y>"), s("x & <y>"));
    row("string, asked to commit", item(T::String, s("old")), s("old"),
        askingAfter(pressing({ Qt::Key_End, Qt::Key_Y })), s("oldy"));
    row("string emptied", item(T::String, s("old")), s("old"), typing(""), s(""));
    row("no type", item(T::Null, s("old")), s("old"), typing("new"), s("new"));
    row("string from a number", item(T::String, 5), s("5"), typing("6"), s("6"));

    const Edit paragraphs = [](SheetDriver &driver) {
        driver.click("it");
        SheetDriver::type(s("one"));
        SheetDriver::press(Qt::Key_Return);
        QTest::keyClicks(QApplication::focusWidget(), s("two"));
        SheetDriver::press(Qt::Key_Return, Qt::ControlModifier);
    };
    row("text", item(T::Text, s("old")), s("old"), paragraphs, s("one\ntwo"));
    row("text under a limit", item(T::Text, QVariant(), { { s("regexp"), s("^.{0,7}$") } }), s(""), paragraphs,
        s("one\ntwo"));

    row("enum", withOptions(T::Enum, s("a"), abc), s("Aah"), choosing(2), s("c"));
    row("enum in stored order", withOptions(T::Enum, s("b"), abc), s("Bee"), choosing(0), s("a"));
    row("enum of no option takes the first", withOptions(T::Enum, s("z"), abc), s("Aah"), choosing(0), s("a"));
    row("enum of nothing takes the first", withOptions(T::Enum, QVariant(), abc), s("Aah"), choosing(0), s("a"));
    row("enum browsed with arrows, Return", withOptions(T::Enum, s("a"), abc), s("Aah"),
        pressing({ Qt::Key_Down, Qt::Key_Down, Qt::Key_Return }), s("c"));
    row("enum browsed with letters, left", withOptions(T::Enum, s("a"), abc), s("Aah"),
        leavingAfter(pressing({ Qt::Key_B, Qt::Key_Down })), s("c"));
    row("enum browsed, asked to commit", withOptions(T::Enum, s("a"), abc), s("Aah"),
        askingAfter(pressing({ Qt::Key_Down, Qt::Key_End, Qt::Key_Up })), s("b"));
    PropertyItem front = withOptions(T::Enum, s("c"), { abc.at(0), abc.at(1) });
    front.insertOption(0, { s("c"), s("Cee"), QString() });
    row("enum with its value put first", front, s("Cee"), choosing(1), s("a"));
    row("enum without options", item(T::Enum, s("free")), s("free"), typing("other"), s("other"));

    row("flags of a mask", withOptions(T::Flag, 5, abc), s("Aah, Cee"), ticking({ 0, 1 }), 6);
    row("flags all off", withOptions(T::Flag, 2, abc), s("Bee"), ticking({ 1 }), 0);
    row("flags of a text", withOptions(T::Flag, s("c|a"), abc), s("Aah, Cee"), ticking({ 1 }), s("a|b|c"));
    row("flags of nothing", withOptions(T::Flag, QVariant(), abc), s(""), ticking({ 2, 0 }), s("a|c"));
    row("flags of a text without options", item(T::Flag, s("a|b")), s("a|b"), typing("c"), s("c"));
    row("flags of a mask without options", item(T::Flag, 5), s("5"), typing("6"), 6);
    row("flags drop what is none", withOptions(T::Flag, s("gone|b"), abc), s("Bee"), ticking({ 0 }), s("a|b"));

    const QColor red(255, 0, 0);
    row("color", item(T::Color, QColor(1, 2, 3)), s("#010203"), typing("red"), red);
    row("color from text", item(T::Color, s("#010203")), s("#010203"), typing("#80ff0000"), s("#80ff0000"));
    row("color chosen", item(T::Color, s("#010203")), s("#010203"), clickingButton(), s("#0a0b0c"));

    const QDate day(2024, 2, 28);
    row("date", item(T::Date, day), s("2024-02-28"), typing("2025-12-01"), QDate(2025, 12, 1));
    row("date from text", item(T::Date, s("2024-02-28")), s("2024-02-28"), typing("2025-12-01"), s("2025-12-01"));
    row("date from nothing", item(T::Date, QVariant()), s(""), typing("2025-12-01"), s("2025-12-01"));
    row("null date", item(T::Date, QDate()), s(""), typing("2025-12-01"), QDate(2025, 12, 1));
    row("date, year up", item(T::Date, day), s("2024-02-28"), stepping(Qt::Key_Up, 1), QDate(2025, 2, 28));
    row("date, month down", item(T::Date, day), s("2024-02-28"), stepping(Qt::Key_Down, 1, 6), QDate(2024, 1, 28));
    row("date, day up", item(T::Date, day), s("2024-02-28"), stepping(Qt::Key_Up, 2, 9), QDate(2024, 3, 1));
    row("date from the calendar", item(T::Date, s("2024-02-28")), s("2024-02-28"), pickingDay(2), s("2024-03-01"));

    const QDateTime noon(day, QTime(12, 30), Qt::UTC);
    row("datetime", item(T::DateTime, noon), s("2024-02-28T12:30:00Z"), typing("2024-02-28T12:30:01Z"),
        noon.addSecs(1));
    row("datetime from text", item(T::DateTime, s("2024-02-28T12:30:00")), s("2024-02-28T12:30:00"),
        typing("2024-02-29T00:00:00.250"), s("2024-02-29T00:00:00.250"));
    row("datetime, hour up", item(T::DateTime, s("2024-02-28T12:30:00")), s("2024-02-28T12:30:00"),
        stepping(Qt::Key_Up, 1, 12), s("2024-02-28T13:30:00"));
    row("datetime from the calendar", item(T::DateTime, s("2024-02-28T12:30:00+02:00")), s("2024-02-28T12:30:00+02:00"),
        pickingDay(1), s("2024-02-29T12:30:00+02:00"));

    const QTimeZone berlin("Europe/Berlin");
    const QDateTime zoned(day, QTime(12, 30), berlin);
    row("datetime in a zone", item(T::DateTime, zoned), s("2024-02-28T12:30:00 Europe/Berlin"), replacing(":30", ":31"),
        zoned.addSecs(60));
    row("datetime in a zone, to the summer", item(T::DateTime, zoned), s("2024-02-28T12:30:00 Europe/Berlin"),
        replacing("-02-", "-07-"), QDateTime(QDate(2024, 7, 28), QTime(12, 30), berlin));
    row("datetime in a zone, from the calendar", item(T::DateTime, zoned), s("2024-02-28T12:30:00 Europe/Berlin"),
        pickingDay(2), zoned.addDays(2));
    const QTimeZone unlisted("Ship/Deck 2", 5400, s("Ship"), s("SHIP"));
    row("datetime in a zone of its own", item(T::DateTime, QDateTime(day, QTime(12, 30), unlisted)),
        s("2024-02-28T12:30:00 Ship/Deck 2"), replacing(":30", ":31"), QDateTime(day, QTime(12, 31), unlisted));
    const QDateTime elsewhere(QDate(2024, 3, 31), QTime(2, 30), QTimeZone("Asia/Tokyo"));
    row("datetime that is left out at home", item(T::DateTime, elsewhere), s("2024-03-31T02:30:00 Asia/Tokyo"),
        replacing(":30", ":31"), elsewhere.addSecs(60));
    // The hour that comes twice when the summer time ends.
    const QDateTime first = QDateTime(QDate(2024, 10, 27), QTime(0, 30), Qt::UTC).toTimeZone(berlin);
    const QDateTime second = first.addSecs(3600);
    const QString at = s("2024-10-27T02:30:00");
    row("datetime, first of two", item(T::DateTime, first), at + s("+02:00 Europe/Berlin"), replacing(":30", ":31"),
        first.addSecs(60));
    row("datetime, second of two", item(T::DateTime, second), at + s(" Europe/Berlin"), replacing(":30", ":31"),
        second.addSecs(60));
    row("datetime, first of two, up", item(T::DateTime, first), at + s("+02:00 Europe/Berlin"),
        stepping(Qt::Key_Up, 1, 15), first.addSecs(60));

    row("time", item(T::Time, QTime(7, 8, 9)), s("07:08:09"), typing("10:00"), QTime(10, 0));
    row("time from text", item(T::Time, s("07:08:09")), s("07:08:09"), typing("10:00"), s("10:00:00"));
    row("time, minute up", item(T::Time, s("07:08:09")), s("07:08:09"), stepping(Qt::Key_Up, 1, 4), s("07:09:09"));

    row("point", item(T::Point, QPoint(1, -2)), s("1,-2"), typing("3, 4"), QPoint(3, 4));
    row("point from text", item(T::Point, s("1;2")), s("1;2"), typing("3,4"), s("3;4"));
    row("size", item(T::Size, QSize(640, 480)), s("640x480"), typing("800x600"), QSize(800, 600));
    row("size from nothing", item(T::Size, QVariant()), s(""), typing("16x16"), s("16x16"));
    row("size from text", item(T::Size, s("16,24")), s("16,24"), typing("32x32"), s("32,32"));
    row("size, height up", item(T::Size, s("16x24")), s("16x24"), stepping(Qt::Key_Up, 2, 4), s("16x26"));
    row("rect", item(T::Rect, QRect(1, 2, 3, 4)), s("1,2 3x4"), typing("5,6 7x8"), QRect(5, 6, 7, 8));
    row("rect from text", item(T::Rect, s("1,2,3,4")), s("1,2,3,4"), typing("1,2,30,4"), s("1,2,30,4"));

    QFont font(s("DejaVu Sans"), 10);
    QFont bold(s("DejaVu Sans"), 12, QFont::Bold);
    row("font", item(T::Font, font), s("DejaVu Sans, 10 pt"), typing("DejaVu Sans, 12 pt, bold"), bold);
    row("font from text", item(T::Font, font.toString()), s("DejaVu Sans, 10 pt"), typing("DejaVu Sans, 12 pt, bold"),
        bold.toString());
    row("font chosen", item(T::Font, font.toString()), s("DejaVu Sans, 10 pt"), clickingButton(), bold.toString());

    // Only the size is changed.
    const auto sized = [](int size, int weight, QFont::Style style) {
        QFont result(s("DejaVu Sans"), size, weight);
        result.setStyle(style);
        return result;
    };
    const auto sizing = [&](const char *name, const char *words, int weight, QFont::Style style) {
        const QFont old = sized(10, weight, style);
        const QFont bigger = sized(12, weight, style);
        row(name, item(T::Font, old), s(words), replacing("10", "12"), bigger);
        row(qPrintable(s(name) + s(" from text")), item(T::Font, old.toString()), s(words), replacing("10", "12"),
            bigger.toString());
    };
    sizing("font demibold", "DejaVu Sans, 10 pt, demibold", QFont::DemiBold, QFont::StyleNormal);
    sizing("font black oblique", "DejaVu Sans, 10 pt, black, oblique", QFont::Black, QFont::StyleOblique);
    sizing("font of an odd weight", "DejaVu Sans, 10 pt, weight 60, italic", 60, QFont::StyleItalic);
    row("font made lighter", item(T::Font, sized(10, QFont::DemiBold, QFont::StyleNormal)),
        s("DejaVu Sans, 10 pt, demibold"), replacing("demibold", "Light"), sized(10, QFont::Light, QFont::StyleNormal));

    const Edit keys = [](SheetDriver &driver) {
        driver.click("it");
        SheetDriver::press(Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
        SheetDriver::press(Qt::Key_Return);
    };
    const Edit functionKey = [](SheetDriver &driver) {
        driver.click("it");
        SheetDriver::press(Qt::Key_F4);
        SheetDriver::press(Qt::Key_Return);
    };
    const QKeySequence old(s("Ctrl+S"));
    row("keys", item(T::KeySequence, old), s("Ctrl+S"), keys, QKeySequence(s("Ctrl+Shift+K")));
    row("keys from text", item(T::KeySequence, s("Ctrl+S")), s("Ctrl+S"), keys, s("Ctrl+Shift+K"));
    row("keys from nothing", item(T::KeySequence, QVariant()), s(""), keys, s("Ctrl+Shift+K"));
    row("keys, F4 is one", item(T::KeySequence, s("")), s(""), functionKey, s("F4"));
    row("keys removed", item(T::KeySequence, s("Ctrl+S")), s("Ctrl+S"), clickingButton(), s(""));

    row("file typed", item(T::File, s("a.png")), s("a.png"), typing("b.png"), s("b.png"));
    row("file chosen", item(T::File, QVariant()), s(""), clickingButton(), s("/chosen/c.png"));
}

void TestPropertyEdits::edits()
{
    QFETCH(SheetDriver::Kind, kind);
    QFETCH(PropertyItem, record);
    QFETCH(QString, shown);
    QFETCH(Edit, edit);
    QFETCH(QVariant, expected);
    PropertyDialogs::setFileDialog(
        [](QWidget *, const QString &, const QString &, const QString &) { return s("/chosen/c.png"); });
    PropertyDialogs::setColorDialog([](QWidget *, const QColor &) { return QColor(10, 11, 12); });
    PropertyDialogs::setFontDialog(
        [](QWidget *, const QFont &) { return std::optional<QFont>(QFont(s("DejaVu Sans"), 12, QFont::Bold)); });

    SheetDriver driver(kind);
    QVERIFY(driver.ready());
    driver.show({ item(PropertyType::Null, 0), record });
    // The second row of the two, so that the first is told apart by more than its place.
    driver.show({ record, PropertyItem(PropertyType::String, s("other"), s("other"), s("o")) });
    QCOMPARE(driver.shown("it"), shown);
    QCOMPARE(driver.spy().count(), 0);
    edit(driver);
    QTRY_COMPARE(driver.spy().count(), 1);
    driver.before()->setFocus();
    QCoreApplication::processEvents();
    QCOMPARE(driver.spy().count(), 1);
    QCOMPARE(driver.spy().at(0).at(0).toString(), s("it"));
    const QVariant emitted = driver.spy().at(0).at(1).value<QVariant>();
    QCOMPARE(emitted.userType(), expected.userType());
    QCOMPARE(emitted, expected);
    // To the last digit.
    QCOMPARE(emitted.toString(), expected.toString());
    // Date-times are equal wherever they are.
    QCOMPARE(emitted.toDateTime().timeZone(), expected.toDateTime().timeZone());
    QCOMPARE(driver.value("it"), expected);
}

void TestPropertyEdits::lineBreaksSurvive_data()
{
    QTest::addColumn<QString>("old");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<int>("removed");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");
    const auto row
        = [](const char *name, const char *old, int cursor, int removed, const char *typed, const char *expected) {
              QTest::newRow(name) << s(old) << cursor << removed << s(typed) << s(expected);
          };
    row("before all", "a\r\nb\rc\u2028d\u2029e\nf", 0, 0, "x", "xa\r\nb\rc\u2028d\u2029e\nf");
    row("between", "a\r\nb\rc\u2028d\u2029e\nf", 4, 1, "x", "a\r\nb\rx\u2028d\u2029e\nf");
    row("after all", "a\r\nb\rc\u2028d\u2029e\nf", 11, 0, "x", "a\r\nb\rc\u2028d\u2029e\nfx");
    row("a break removed", "a\r\nb\rc\r\n", 3, 1, "", "a\r\nbc\r\n");
    row("the first of two", "\r\n\r\nx", 0, 1, "", "\r\nx");
    row("one more of the same letter", "a\r\nxx\r\n", 2, 0, "x", "a\r\nxxx\r\n");
    row("a break typed after a carriage return", "a\rb", 2, 0, "\n", "a\r\rb");
    row("between a carriage return and a line feed", "a\rx\nb", 2, 1, "", "a\r\rb");
    row("all but the breaks at the ends", "\ra\r\nb\r", 1, 3, "x", "\rx\r");
    row("characters that the toolkit breaks at", "a\ufdd0b\ufdd1c", 5, 0, "x", "a\ufdd0b\ufdd1cx");
    row("none left", "a\r\nb", 0, 3, "", "");
}

void TestPropertyEdits::lineBreaksSurvive()
{
    QFETCH(QString, old);
    QFETCH(int, cursor);
    QFETCH(int, removed);
    QFETCH(QString, typed);
    QFETCH(QString, expected);
    SheetDriver driver(SheetDriver::Group);
    QVERIFY(driver.ready());
    driver.show({ item(PropertyType::Text, old) });
    pressing({})(driver);
    SheetDriver::press(Qt::Key_Home, Qt::ControlModifier);
    for (int i = 0; i < cursor; ++i) {
        SheetDriver::press(Qt::Key_Right);
    }
    for (int i = 0; i < removed; ++i) {
        SheetDriver::press(Qt::Key_Delete);
    }
    for (const QChar c : qAsConst(typed)) {
        SheetDriver::press(c == QLatin1Char('\n') ? Qt::Key_Return : Qt::Key_X);
    }
    SheetDriver::press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(driver.value("it").toString(), expected);
    // The next edit starts from what was handed out.
    SheetDriver::press(Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Y);
    QVERIFY(driver.commit());
    QCOMPARE(driver.value("it").toString(), QString(expected + QLatin1Char('y')));
}

void TestPropertyEdits::showingAgainInsideTheSignal_data()
{
    edits_data();
}

/// What a page does whose rows depend on a value: every commit shows the sheet anew while the old editor is on the
/// stack.
void TestPropertyEdits::showingAgainInsideTheSignal()
{
    QFETCH(SheetDriver::Kind, kind);
    QFETCH(PropertyItem, record);
    QFETCH(Edit, edit);
    QFETCH(QVariant, expected);
    PropertyDialogs::setFileDialog(
        [](QWidget *, const QString &, const QString &, const QString &) { return s("/chosen/c.png"); });
    PropertyDialogs::setColorDialog([](QWidget *, const QColor &) { return QColor(10, 11, 12); });
    PropertyDialogs::setFontDialog(
        [](QWidget *, const QFont &) { return std::optional<QFont>(QFont(s("DejaVu Sans"), 12, QFont::Bold)); });
    SheetDriver driver(kind);
    QVERIFY(driver.ready());
    driver.show({ record });
    const auto again = [&driver, record](const QString & /*name*/, const QVariant &value) {
        PropertyItem changed = record;
        changed.setVal(value);
        driver.show({ PropertyItem(PropertyType::String, s("new"), s("new"), s("n")), changed });
    };
    if (auto *group = qobject_cast<GroupPropertyBrowser *>(driver.sheet())) {
        connect(group, &GroupPropertyBrowser::propertyChanged, this, again);
    } else {
        connect(static_cast<TreePropertyBrowser *>(driver.sheet()), &TreePropertyBrowser::propertyChanged, this, again);
    }
    edit(driver);
    QTRY_COMPARE(driver.spy().count(), 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(driver.value("it"), expected);
    // The new rows work like the old ones.
    driver.click("new");
    SheetDriver::type(s("typed"));
    SheetDriver::press(Qt::Key_Return);
    QCOMPARE(driver.spy().count(), 2);
    QCOMPARE(driver.spy().at(1).at(0).toString(), s("new"));
}

QTEST_MAIN(TestPropertyEdits)
#include "tst_propertyedits.moc"
