#include "propertybrowser/attributetype.h"
#include "propertybrowser/propertyitem.h"
#include "propertybrowser/propertykeys.h"
#include "propertybrowser/propertytypenames.h"

#include <QPoint>
#include <QtTest>

#include <functional>

Q_DECLARE_METATYPE(PropertyType)
Q_DECLARE_METATYPE(PropertyItem)

class TestPropertyItem : public QObject
{
    Q_OBJECT

private slots:
    void typeNumbers_data();
    void typeNumbers();
    void typeNamesAreComplete();
    void attributeTypes_data();
    void attributeTypes();
    void optionOrder();
    void equality_data();
    void equality();
    void absentDataIsInvalid();
};

void TestPropertyItem::typeNumbers_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<PropertyType>("type");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("names");
    const auto row = [](int number, PropertyType type, const char *name, const QStringList &otherNames = {}) {
        QTest::newRow(name) << number << type << QString::fromLatin1(name)
                            << QStringList { QString::fromLatin1(name) } + otherNames;
    };
    row(2, PropertyType::Bool, "bool");
    row(3, PropertyType::Int, "int");
    row(4, PropertyType::Float, "float", { QStringLiteral("double") });
    row(5, PropertyType::String, "string");
    row(6, PropertyType::Text, "text");
    row(7, PropertyType::Enum, "enum", { QStringLiteral("stringlist") });
    row(8, PropertyType::Flag, "flag");
    row(9, PropertyType::Color, "color");
    row(10, PropertyType::Date, "date");
    row(11, PropertyType::DateTime, "datetime");
    row(12, PropertyType::Time, "time");
    row(13, PropertyType::Point, "point");
    row(14, PropertyType::Size, "size");
    row(15, PropertyType::Rect, "rect");
    row(16, PropertyType::Font, "font");
    row(17, PropertyType::KeySequence, "keysequence");
    row(18, PropertyType::File, "file");
}

void TestPropertyItem::typeNumbers()
{
    QFETCH(int, number);
    QFETCH(PropertyType, type);
    QFETCH(QString, name);
    QFETCH(QStringList, names);
    QCOMPARE(static_cast<int>(type), number);
    QCOMPARE(PropertyTypeNames::nameByNumber().value(number), name);
    for (const QString &each : qAsConst(names)) {
        QCOMPARE(PropertyTypeNames::numberByName().value(each, -1), number);
    }
}

void TestPropertyItem::typeNamesAreComplete()
{
    // 17 kinds with two second names; "null" is a name of 0 that names nothing.
    QCOMPARE(PropertyTypeNames::numberByName().size(), 19);
    QCOMPARE(PropertyTypeNames::nameByNumber().size(), 18);
    QCOMPARE(PropertyTypeNames::nameByNumber().value(0), QStringLiteral("null"));
    QVERIFY(!PropertyTypeNames::numberByName().contains(QStringLiteral("null")));
    QVERIFY(!PropertyTypeNames::nameByNumber().contains(1));
}

void TestPropertyItem::attributeTypes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("number");
    QTest::newRow("String") << QStringLiteral("String") << 5;
    QTest::newRow("Bool") << QStringLiteral("Bool") << 2;
    QTest::newRow("ShortCut") << QStringLiteral("ShortCut") << 17;
    QTest::newRow("File") << QStringLiteral("File") << 18;
    QTest::newRow("Int") << QStringLiteral("Int") << 3;
    QTest::newRow("Double") << QStringLiteral("Double") << 4;
    QTest::newRow("Enum") << QStringLiteral("Enum") << 7;
    QTest::newRow("Size") << QStringLiteral("Size") << 14;
    QTest::newRow("Flag") << QStringLiteral("Flag") << 8;
    QTest::newRow("Text") << QStringLiteral("Text") << 6;
    QTest::newRow("empty") << QString() << 5;
    QTest::newRow("unknown") << QStringLiteral("Colour") << 5;
    QTest::newRow("other case") << QStringLiteral("bool") << 5;
    QTest::newRow("a prefix") << QStringLiteral("Integer") << 5;
}

void TestPropertyItem::attributeTypes()
{
    QFETCH(QString, name);
    QFETCH(int, number);
    QCOMPARE(attributeTypeToPropertyType(name), number);
}

void TestPropertyItem::optionOrder()
{
    PropertyItem item(PropertyType::Enum, QStringLiteral("type"), QStringLiteral("Type"), QStringLiteral("b"));
    const auto option = [](const char *value) {
        return PropertyItem::OptionItem { QLatin1String(value), QString(), QString() };
    };
    item.setOptionList({ QStringLiteral("gone") });
    item.setOptionList({ QStringLiteral("a"), QStringLiteral("c") });
    QCOMPARE(item.options().first().text, QStringLiteral("a"));
    item.addOption(option("d"));
    item.insertOption(0, option("b"));
    item.insertOption(99, option("last"));
    item.insertOption(-7, option("first"));
    QStringList values;
    for (const PropertyItem::OptionItem &each : item.options()) {
        values.append(each.value);
    }
    QCOMPARE(values.join(QLatin1Char(' ')), QStringLiteral("first b a c d last"));
}

void TestPropertyItem::equality_data()
{
    QTest::addColumn<PropertyItem>("one");
    QTest::addColumn<PropertyItem>("other");
    QTest::addColumn<bool>("equal");
    const auto of = [](const QVariant &value) {
        return PropertyItem(PropertyType::Enum, QStringLiteral("n"), QStringLiteral("N"), value);
    };
    const auto row = [&](const char *name, const QVariant &one, const QVariant &other, bool equal) {
        QTest::newRow(name) << of(one) << of(other) << equal;
    };
    row("same", 5, 5, true);
    row("a number and its text", 5, QStringLiteral("5"), true);
    row("a truth value and its text", true, QStringLiteral("true"), true);
    row("nothing, and an empty text", QVariant(), QStringLiteral(""), true);
    row("another number", 5, 6, false);
    row("written in another way", QStringLiteral("05"), 5, false);
    row("nothing, and a number", QVariant(), 0, false);
    row("points", QPoint(1, 2), QPoint(1, 2), true);
    row("other points", QPoint(1, 2), QPoint(1, 3), false);
    row("a point at 0, and nothing", QPoint(), QVariant(), false);
    row("lists", QStringList { QStringLiteral("a"), QStringLiteral("b") },
        QStringList { QStringLiteral("a"), QStringLiteral("c") }, false);

    const auto changed = [&](const char *name, const std::function<void(PropertyItem &)> &change) {
        PropertyItem one = of(1);
        one.setData(PropertyKey::Max, 3);
        one.setOptionList({ QStringLiteral("a"), QStringLiteral("b") });
        PropertyItem other = one;
        change(other);
        QTest::newRow(name) << one << other << false;
    };
    changed("other data", [](PropertyItem &item) { item.setData(PropertyKey::Max, 4); });
    changed("more data", [](PropertyItem &item) { item.setData(PropertyKey::Min, QVariant()); });
    changed("options in another order", [](PropertyItem &item) {
        item.setOptionList({ QStringLiteral("b"), QStringLiteral("a") });
    });
    const QString a = QStringLiteral("a");
    const QString other = QStringLiteral("c");
    const auto withOption = [&](const char *name, const PropertyItem::OptionItem &option) {
        changed(name, [option](PropertyItem &item) {
            item.setOptionList({ QStringLiteral("b") });
            item.insertOption(0, option);
        });
    };
    withOption("option of another value", { other, a, QString() });
    withOption("option of another text", { a, other, QString() });
    withOption("option of another icon", { a, a, other });
    changed("not editable", [](PropertyItem &item) { item.setEditable(false); });
    QTest::newRow("type") << of(1) << PropertyItem(PropertyType::Flag, of(1).name(), of(1).displayText(), 1) << false;
    QTest::newRow("name") << of(1) << PropertyItem(of(1).type(), QString(), of(1).displayText(), 1) << false;
    QTest::newRow("label") << of(1) << PropertyItem(of(1).type(), of(1).name(), QString(), 1) << false;
}

void TestPropertyItem::equality()
{
    QFETCH(PropertyItem, one);
    QFETCH(PropertyItem, other);
    QFETCH(bool, equal);
    QCOMPARE(one == other, equal);
    QCOMPARE(other != one, !equal);
}

void TestPropertyItem::absentDataIsInvalid()
{
    PropertyItem item;
    QVERIFY(!item.data(PropertyKey::RegExp).isValid());
    QVERIFY(item.dataKeys().isEmpty());
    item.setData(PropertyKey::RegExp, QString());
    QCOMPARE(item.dataKeys(), QStringList { PropertyKey::RegExp });
}

QTEST_APPLESS_MAIN(TestPropertyItem)
#include "tst_propertyitem.moc"
