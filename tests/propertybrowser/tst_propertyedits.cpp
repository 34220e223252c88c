#include "sheetdriver.h"

#include <QCalendarWidget>
#include <QDropEvent>
#include <QMimeData>
#include <QTimeZone>

#include <functional>
#include <limits>
#include <optional>

/// What a person does to the row "it".
using Edit = std::function<void(SheetDriver &)>;
Q_DECLARE_METATYPE(Edit)

namespace {

PropertyItem withOptions(PropertyType type, const Value &value, const char *names = "abc")
{
    PropertyItem result = item(type, value);
    for (const char *name = names; *name; ++name)
        result.addOption({ QChar::fromLatin1(*name),
            *name == 'a'       ? s("Aah")
                : *name == 'b' ? s("Bee")
                               : s("Cee"),
            {} });
    return result;
}

Edit typing(const char *text)
{
    return [text](SheetDriver &driver) {
        driver.click("it");
        SheetDriver::type(s(text));
        SheetDriver::press(Qt::Key_Return);
    };
}

Edit stepping(Qt::Key key, int times, int cursor = 0)
{
    return [=](SheetDriver &driver) {
        driver.click("it");
        SheetDriver::press(Qt::Key_Home);
        for (int i = 0; i < cursor; ++i)
            SheetDriver::press(Qt::Key_Right);
        for (int i = 0; i < times; ++i)
            SheetDriver::press(key);
        SheetDriver::press(Qt::Key_Return);
    };
}

template <typename View = QAbstractItemView>
View *openPopup()
{
    if (!QTest::qWaitFor([] { return QApplication::activePopupWidget() != nullptr; }))
        qFatal("nothing dropped down");
    return QApplication::activePopupWidget()->findChild<View *>();
}

/// The list or the calendar may be gone with the press of the last key.
void walk(QWidget *list, Qt::Key key, int times)
{
    for (int i = 0; i < times; ++i)
        QTest::keyClick(list, key);
    QTest::keyPress(list, Qt::Key_Return);
}

/// Opens the drop-down with the mouse and picks the entry at @p index with the keys.
Edit choosing(int index)
{
    return [index](SheetDriver &driver) {
        driver.click("it");
        QTest::keyClick(openPopup(), Qt::Key_Home);
        walk(openPopup(), Qt::Key_Down, index);
    };
}

Edit pressing(const QVector<Qt::Key> &keys)
{
    return [keys](SheetDriver &driver) {
        driver.enter("it");
        for (const Qt::Key key : keys)
            SheetDriver::press(key);
    };
}

Edit leavingAfter(const Edit &edit)
{
    return [edit](SheetDriver &driver) {
        edit(driver);
        driver.before->setFocus();
    };
}

Edit askingAfter(const Edit &edit)
{
    return [edit](SheetDriver &driver) {
        edit(driver);
        QCOMPARE(driver.spy().count(), 0);
        QVERIFY(driver.commit());
    };
}

/// Types the line's text again with one part of it changed.
Edit replacing(const char *part, const char *by)
{
    return [=](SheetDriver &driver) {
        driver.click("it");
        SheetDriver::type(driver.editor("it")->findChild<QLineEdit *>()->text().replace(s(part), s(by)));
        SheetDriver::press(Qt::Key_Return);
    };
}

Edit ticking(const QVector<int> &indexes)
{
    return [indexes](SheetDriver &driver) {
        driver.click("it");
        auto *list = openPopup<QListWidget>();
        for (const int index : indexes)
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(index)).center());
        QTest::keyPress(list, Qt::Key_Return);
        QTRY_VERIFY(!QApplication::activePopupWidget());
    };
}

void clickButton(SheetDriver &driver)
{
    driver.click("it");
    QTest::mouseClick(driver.editor("it")->findChild<QToolButton *>(), Qt::LeftButton);
}

/// On the row's editor, or on the value that stands in its place.
void drop(SheetDriver &driver, const char *file)
{
    QMimeData data;
    data.setUrls({ QUrl::fromLocalFile(s(file)) });
    data.setText(data.urls().first().toString()); // as file managers do
    const QWidget *open = driver.editor("it");
    QWidget *target = open ? open->focusProxy() : driver.treeWidget()->viewport();
    const QPoint at = open ? QPoint(8, 4) : driver.treeWidget()->visualItemRect(driver.row("it")).center();
    QVERIFY(target->property("takesFiles").toBool());
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent dropped(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &dropped);
    QVERIFY(dropped.isAccepted());
    QCoreApplication::processEvents();
}

Edit dropping(const char *file)
{
    return [file](SheetDriver &driver) { drop(driver, file); };
}

Edit pickingDay(int daysOn)
{
    return [daysOn](SheetDriver &driver) {
        clickButton(driver);
        walk(openPopup<QCalendarWidget>()->findChild<QAbstractItemView *>(), Qt::Key_Right, daysOn);
    };
}

} // namespace

class TestPropertyEdits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { SheetDriver::bothKinds(); }
    void initTestCase();
    void cleanup() { QVERIFY(!QApplication::activePopupWidget()); }
    void edits_data();
    void edits();
    void lineBreaksSurvive_data();
    void lineBreaksSurvive();
};

void TestPropertyEdits::initTestCase()
{
    QApplication::setStyle(s("Fusion"));
    // Where the clocks are put forward and back.
    qputenv("TZ", "Europe/Berlin");
    PropertyDialogs::setFileDialog(
        [](QWidget *, const QString &, const QString &, const QString &) { return s("/chosen/c.png"); });
    PropertyDialogs::setColorDialog([](QWidget *, const QColor &) { return QColor(10, 11, 12); });
    PropertyDialogs::setFontDialog(
        [](QWidget *, const QFont &) { return std::optional<QFont>(QFont(s("DejaVu Sans"), 12, QFont::Bold)); });
}

void TestPropertyEdits::edits_data()
{
    QTest::addColumn<PropertyItem>("record");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<QVariant>("expected");
    const auto row
        = [](const char *name, const PropertyItem &record, const char *shown, const Edit &edit, const Value &expected) {
              QTest::newRow(name) << record << s(shown) << edit << QVariant(expected);
          };
    using T = PropertyType;
    const QVariant nothing;
    const Edit toggle = [](SheetDriver &driver) { driver.click("it"); };

    row("bool", item(T::Bool, false), "[ ]", toggle, true);
    row("bool from text true", item(T::Bool, "true"), "[x]", toggle, false);
    row("bool from text 0", item(T::Bool, "0"), "[ ]", toggle, true);
    row("bool from empty text", item(T::Bool, ""), "[ ]", toggle, true);

    row("int", item(T::Int, 5), "5", typing("-12"), -12);
    row("int from text, zeros", item(T::Int, "007"), "007", typing("08"), "8");
    row("int from nothing", item(T::Int, nothing), "", typing("7"), 7);
    row("int up", item(T::Int, 5), "5", stepping(Qt::Key_Up, 3), 8);
    row("int page up", item(T::Int, 5), "5", stepping(Qt::Key_PageUp, 1), 15);
    row("int up to max", item(T::Int, 5, { { s("max"), "6" } }), "5", stepping(Qt::Key_Up, 3), 6);
    row("int down to min", item(T::Int, 5, { { s("min"), 4 } }), "5", stepping(Qt::Key_Down, 3), 4);
    row("int least", item(T::Int, 0), "0", typing("-2147483648"), std::numeric_limits<int>::min());
    row("int emptied", item(T::Int, 5), "5", typing(""), nothing);
    row("int text emptied", item(T::Int, "5"), "5", typing(""), "");
    row("int of a word", item(T::Int, "left"), "left", typing("3"), "3");

    row("float", item(T::Float, 0.1), "0.1", typing("2.25"), 2.25);
    row("float from text", item(T::Float, "1.50"), "1.50", typing("1e3"), "1000");
    row("float from nothing", item(T::Float, nothing), "", typing("0.5"), 0.5);
    row("float, the zeros stay", item(T::Float, "1.50"), "1.50", stepping(Qt::Key_Up, 1), "2.50");
    row("float down through zero", item(T::Float, "0.30"), "0.30", stepping(Qt::Key_Down, 1), "-0.70");
    row("float, the last digits stay", item(T::Float, 0.12345678901234568), "0.12345678901234568",
        stepping(Qt::Key_Up, 1), 1.1234567890123457);
    row("float, more digits than a double has", item(T::Float, "-99999999999999999999.000000000000000000001"),
        "-99999999999999999999.000000000000000000001", stepping(Qt::Key_Down, 1),
        "-100000000000000000000.000000000000000000001");
    row("float typed with many digits", item(T::Float, "0.123456789012345678901"), "0.123456789012345678901",
        typing("0.123456789012345678902"), "0.123456789012345678902");
    row("float with an exponent", item(T::Float, "1.5e3"), "1.5e3", stepping(Qt::Key_Down, 1), "1499");
    row("float up to max", item(T::Float, "1.75", { { s("max"), "2.5" } }), "1.75", stepping(Qt::Key_Up, 3), "2.5");
    row("float decimals", item(T::Float, 1.0, { { s("decimals"), 2 } }), "1", typing("1.25"), 1.25);

    row("string", item(T::String, "old"), "old", typing("new"), "new");
    row("string from nothing", item(T::String, nothing), "", typing("x & <y>"), "x & <y>");
    row("string, asked to commit", item(T::String, "old"), "old", askingAfter(pressing({ Qt::Key_End, Qt::Key_Y })),
        "oldy");
    row("no type", item(T::Null, "old"), "old", typing("new"), "new");
    row("string from a number", item(T::String, 5), "5", typing("6"), "6");

    const Edit paragraphs = [](SheetDriver &driver) {
        driver.click("it");
        SheetDriver::type(s("one"));
        SheetDriver::press(Qt::Key_Return);
        QTest::keyClicks(QApplication::focusWidget(), s("two"));
        SheetDriver::press(Qt::Key_Return, Qt::ControlModifier);
    };
    row("text under a limit", item(T::Text, nothing, { { s("regexp"), "^.{0,7}$" } }), "", paragraphs, "one\ntwo");

    row("enum", withOptions(T::Enum, "a"), "Aah", choosing(2), "c");
    row("enum in stored order", withOptions(T::Enum, "b"), "Bee", choosing(0), "a");
    row("enum of no option takes the first", withOptions(T::Enum, "z"), "Aah", choosing(0), "a");
    row("enum of nothing takes the first", withOptions(T::Enum, nothing), "Aah", choosing(0), "a");
    row("enum browsed with arrows, Return", withOptions(T::Enum, "a"), "Aah",
        pressing({ Qt::Key_Down, Qt::Key_Down, Qt::Key_Return }), "c");
    row("enum browsed with letters, left", withOptions(T::Enum, "a"), "Aah",
        leavingAfter(pressing({ Qt::Key_B, Qt::Key_Down })), "c");
    row("enum browsed, asked to commit", withOptions(T::Enum, "a"), "Aah",
        askingAfter(pressing({ Qt::Key_Down, Qt::Key_End, Qt::Key_Up })), "b");
    PropertyItem front = withOptions(T::Enum, "c", "ab");
    front.insertOption(0, { s("c"), s("Cee"), {} });
    row("enum with its value put first", front, "Cee", choosing(1), "a");
    row("enum without options", item(T::Enum, "free"), "free", typing("other"), "other");

    row("flags of a mask", withOptions(T::Flag, 5), "Aah, Cee", ticking({ 0, 1 }), 6);
    row("flags all off", withOptions(T::Flag, 2), "Bee", ticking({ 1 }), 0);
    row("flags of a text", withOptions(T::Flag, "c|a"), "Aah, Cee", ticking({ 1 }), "a|b|c");
    row("flags of nothing", withOptions(T::Flag, nothing), "", ticking({ 2, 0 }), "a|c");
    row("flags of a text without options", item(T::Flag, "a|b"), "a|b", typing("7"), "7");
    row("flags of a mask without options", item(T::Flag, 5), "5", typing("6"), 6);
    row("flags of a mask without options, named", item(T::Flag, 5), "5", typing("a|b"), "a|b");
    row("flags drop what is none", withOptions(T::Flag, "gone|b"), "Bee", ticking({ 0 }), "a|b");

    row("color", item(T::Color, QColor(1, 2, 3)), "#010203", typing("red"), QColor(255, 0, 0));
    row("color from text", item(T::Color, "#010203"), "#010203", typing("#80ff0000"), "#80ff0000");
    row("color chosen", item(T::Color, "#010203"), "#010203", clickButton, "#0a0b0c");

    const QDate day(2024, 2, 28);
    row("date", item(T::Date, day), "2024-02-28", typing("2025-12-01"), QDate(2025, 12, 1));
    row("date from text", item(T::Date, "2024-02-28"), "2024-02-28", typing("2025-12-01"), "2025-12-01");
    row("date from nothing", item(T::Date, nothing), "", typing("2025-12-01"), "2025-12-01");
    row("null date", item(T::Date, QDate()), "", typing("2025-12-01"), QDate(2025, 12, 1));
    row("date, year up", item(T::Date, day), "2024-02-28", stepping(Qt::Key_Up, 1), QDate(2025, 2, 28));
    row("date, month down", item(T::Date, day), "2024-02-28", stepping(Qt::Key_Down, 1, 6), QDate(2024, 1, 28));
    row("date, day up", item(T::Date, day), "2024-02-28", stepping(Qt::Key_Up, 2, 9), QDate(2024, 3, 1));
    row("date from the calendar", item(T::Date, "2024-02-28"), "2024-02-28", pickingDay(2), "2024-03-01");

    const char *const at = "2024-02-28T12:30:00";
    const QDateTime noon(day, QTime(12, 30), Qt::UTC);
    row("datetime", item(T::DateTime, noon), "2024-02-28T12:30:00Z", typing("2024-02-28T12:30:01Z"), noon.addSecs(1));
    row("datetime from text", item(T::DateTime, at), at, typing("2024-02-29T00:00:00.250"), "2024-02-29T00:00:00.250");
    row("datetime, hour up", item(T::DateTime, at), at, stepping(Qt::Key_Up, 1, 12), "2024-02-28T13:30:00");
    row("datetime from the calendar", item(T::DateTime, "2024-02-28T12:30:00+02:00"), "2024-02-28T12:30:00+02:00",
        pickingDay(1), "2024-02-29T12:30:00+02:00");
    const QTimeZone berlin("Europe/Berlin");
    const QDateTime zoned(day, QTime(12, 30), berlin);
    row("datetime in a zone, to the summer", item(T::DateTime, zoned), "2024-02-28T12:30:00 Europe/Berlin",
        replacing("-02-", "-07-"), QDateTime(QDate(2024, 7, 28), QTime(12, 30), berlin));
    row("datetime in a zone, from the calendar", item(T::DateTime, zoned), "2024-02-28T12:30:00 Europe/Berlin",
        pickingDay(2), zoned.addDays(2));
    const QTimeZone unlisted("Ship/Deck 2", 5400, s("Ship"), s("SHIP"));
    row("datetime in a zone of its own", item(T::DateTime, QDateTime(day, QTime(12, 30), unlisted)),
        "2024-02-28T12:30:00 Ship/Deck 2", replacing(":30", ":31"), QDateTime(day, QTime(12, 31), unlisted));
    const QDateTime elsewhere(QDate(2024, 3, 31), QTime(2, 30), QTimeZone("Asia/Tokyo"));
    row("datetime that is left out at home", item(T::DateTime, elsewhere), "2024-03-31T02:30:00 Asia/Tokyo",
        replacing(":30", ":31"), elsewhere.addSecs(60));
    // The hour that comes twice when the summer time ends.
    const QDateTime first = QDateTime(QDate(2024, 10, 27), QTime(0, 30), Qt::UTC).toTimeZone(berlin);
    const QDateTime second = first.addSecs(3600);
    const char *const early = "2024-10-27T02:30:00+02:00 Europe/Berlin";
    row("datetime, first of two", item(T::DateTime, first), early, replacing(":30", ":31"), first.addSecs(60));
    row("datetime, second of two", item(T::DateTime, second), "2024-10-27T02:30:00 Europe/Berlin",
        replacing(":30", ":31"), second.addSecs(60));
    row("datetime, first of two, up", item(T::DateTime, first), early, stepping(Qt::Key_Up, 1, 15), first.addSecs(60));

    row("time", item(T::Time, QTime(7, 8, 9)), "07:08:09", typing("10:00"), QTime(10, 0));
    row("time from text", item(T::Time, "07:08:09"), "07:08:09", typing("10:00"), "10:00:00");
    row("time, minute up", item(T::Time, "07:08:09"), "07:08:09", stepping(Qt::Key_Up, 1, 4), "07:09:09");

    row("point", item(T::Point, QPoint(1, -2)), "1,-2", typing("3, 4"), QPoint(3, 4));
    row("point from text", item(T::Point, "1;2"), "1;2", typing("3,4"), "3;4");
    row("size", item(T::Size, QSize(640, 480)), "640x480", typing("800x600"), QSize(800, 600));
    row("size from nothing", item(T::Size, nothing), "", typing("16x16"), "16x16");
    row("size from text", item(T::Size, "16,24"), "16,24", typing("32x32"), "32,32");
    row("size, height up", item(T::Size, "16x24"), "16x24", stepping(Qt::Key_Up, 2, 4), "16x26");
    row("rect", item(T::Rect, QRect(1, 2, 3, 4)), "1,2 3x4", typing("5,6 7x8"), QRect(5, 6, 7, 8));
    row("rect from text", item(T::Rect, "1,2,3,4"), "1,2,3,4", typing("1,2,30,4"), "1,2,30,4");

    const auto font = [](int size, int weight, QFont::Style style = QFont::StyleNormal) {
        QFont result(s("DejaVu Sans"), size, weight);
        result.setStyle(style);
        return result;
    };
    const QString plain = font(10, QFont::Normal).toString();
    const QFont bold = font(12, QFont::Bold);
    row("font", item(T::Font, font(10, QFont::Normal)), "DejaVu Sans, 10 pt", typing("DejaVu Sans, 12 pt, bold"), bold);
    row("font chosen", item(T::Font, plain), "DejaVu Sans, 10 pt", clickButton, bold.toString());
    row("font demibold", item(T::Font, font(10, QFont::DemiBold).toString()), "DejaVu Sans, 10 pt, demibold",
        replacing("10", "12"), font(12, QFont::DemiBold).toString());
    row("font black oblique", item(T::Font, font(10, QFont::Black, QFont::StyleOblique)),
        "DejaVu Sans, 10 pt, black, oblique", replacing("10", "12"), font(12, QFont::Black, QFont::StyleOblique));
    row("font of an odd weight", item(T::Font, font(10, 60, QFont::StyleItalic)),
        "DejaVu Sans, 10 pt, weight 60, italic", replacing("10", "12"), font(12, 60, QFont::StyleItalic));
    row("font made lighter", item(T::Font, font(10, QFont::DemiBold)), "DejaVu Sans, 10 pt, demibold",
        replacing("demibold", "Light"), font(10, QFont::Light));

    const auto keys = [](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        return [=](SheetDriver &driver) {
            driver.click("it");
            SheetDriver::press(key, modifiers);
            SheetDriver::press(Qt::Key_Return);
        };
    };
    const Edit three = keys(Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
    row("keys", item(T::KeySequence, QKeySequence(s("Ctrl+S"))), "Ctrl+S", three, QKeySequence(s("Ctrl+Shift+K")));
    row("keys from text", item(T::KeySequence, "Ctrl+S"), "Ctrl+S", three, "Ctrl+Shift+K");
    row("keys from nothing", item(T::KeySequence, nothing), "", three, "Ctrl+Shift+K");
    row("keys, F4 is one", item(T::KeySequence, ""), "", keys(Qt::Key_F4), "F4");
    row("keys removed", item(T::KeySequence, "Ctrl+S"), "Ctrl+S", clickButton, "");

    row("file typed", item(T::File, "a.png"), "a.png", typing("b.png"), "b.png");
    row("file chosen", item(T::File, nothing), "", clickButton, "/chosen/c.png");
    const QVector<QPair<QString, Value>> directory { { s("directory"), "/all/mine" } };
    row("file dropped", item(T::File, nothing, directory), "", dropping("/all/mine/images/b c.png"), "images/b c.png");
    row("file dropped, of elsewhere", item(T::File, "/a.png", directory), "/a.png", dropping("/b.png"), "/b.png");
    row("file dropped, the name stays relative", item(T::File, "a.png", directory), "a.png", dropping("/all/b.png"),
        "../b.png");
    const Edit whileTyping = [](SheetDriver &driver) {
        driver.click("it");
        SheetDriver::press(Qt::Key_X);
        drop(driver, "/b.png");
    };
    row("file dropped on what is typed", item(T::File, ""), "", whileTyping, "/b.png");
}

void TestPropertyEdits::edits()
{
    QFETCH_GLOBAL(const SheetDriver::Kind, kind);
    QFETCH(const PropertyItem, record);
    QFETCH(const QString, shown);
    QFETCH(const Edit, edit);
    QFETCH(const QVariant, expected);
    SheetDriver driver(kind);
    driver.show({ item(PropertyType::Null, 0), record });
    // The first row of the two, so that it is told apart by more than its place.
    driver.show({ record, text("other", s("o")) });
    QCOMPARE(driver.shown("it"), shown);
    QCOMPARE(driver.spy().count(), 0);
    edit(driver);
    QTRY_COMPARE(driver.spy().count(), 1);
    driver.before->setFocus();
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

    // What a page does whose rows depend on a value: every commit shows the sheet anew while the old editor is on the
    // stack.
    SheetDriver again(kind);
    again.show({ record });
    again.onChange([&again, record](const QString &, const QVariant &value) {
        PropertyItem changed = record;
        changed.setVal(value);
        again.show({ text("new", s("n")), changed });
    });
    edit(again);
    QTRY_COMPARE(again.spy().count(), 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(again.value("it"), expected);
    again.click("new");
    SheetDriver::type(s("typed"));
    SheetDriver::press(Qt::Key_Return);
    QCOMPARE(again.spy().value(1).value(0).toString(), s("new"));
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
    QFETCH_GLOBAL(const SheetDriver::Kind, kind);
    QFETCH(const QString, old);
    QFETCH(const int, cursor);
    QFETCH(const int, removed);
    QFETCH(const QString, typed);
    QFETCH(const QString, expected);
    SheetDriver driver(kind);
    driver.show({ item(PropertyType::Text, old) });
    driver.enter("it");
    SheetDriver::press(Qt::Key_Home, Qt::ControlModifier);
    for (int i = 0; i < cursor; ++i)
        SheetDriver::press(Qt::Key_Right);
    for (int i = 0; i < removed; ++i)
        SheetDriver::press(Qt::Key_Delete);
    for (const QChar c : typed)
        SheetDriver::press(c == QLatin1Char('\n') ? Qt::Key_Return : Qt::Key_X);
    SheetDriver::press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(driver.value("it").toString(), expected);
    // The next edit starts from what was handed out.
    driver.enter("it");
    SheetDriver::press(Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Y);
    QVERIFY(driver.commit());
    QCOMPARE(driver.value("it").toString(), QString(expected + QLatin1Char('y')));
}

QTEST_MAIN(TestPropertyEdits)
#include "tst_propertyedits.moc"
