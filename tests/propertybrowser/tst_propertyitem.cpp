#include "propertybrowser/attributetype.h"
#include "propertybrowser/propertyitem.h"
#include "propertybrowser/propertykeys.h"
#include "propertybrowser/propertytypenames.h"

#include <QtTest>

Q_DECLARE_METATYPE(PropertyType)

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
    void copiesAreIndependent();
    void absentDataIsInvalid();
    void constants_data();
    void constants();
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

void TestPropertyItem::copiesAreIndependent()
{
    PropertyItem item(PropertyType::Int, QStringLiteral("min"), QStringLiteral("Least"), 3);
    item.setData(PropertyKey::Max, 10);
    PropertyItem copy;
    QVERIFY(copy.isEditable());
    QCOMPARE(copy.type(), PropertyType::Null);
    copy = item;
    copy.setVal(4);
    copy.setEditable(false);
    copy.setData(PropertyKey::Max, 20);
    copy.setOptionList({ QStringLiteral("x") });
    QCOMPARE(copy.type(), PropertyType::Int);
    QCOMPARE(copy.name(), QStringLiteral("min"));
    QCOMPARE(copy.displayText(), QStringLiteral("Least"));
    QCOMPARE(copy.value(), QVariant(4));
    QCOMPARE(item.value(), QVariant(3));
    QCOMPARE(item.data(PropertyKey::Max), QVariant(10));
    QVERIFY(item.isEditable());
    QVERIFY(item.options().isEmpty());
}

void TestPropertyItem::absentDataIsInvalid()
{
    PropertyItem item;
    QVERIFY(!item.data(PropertyKey::RegExp).isValid());
    QVERIFY(item.dataKeys().isEmpty());
    item.setData(PropertyKey::RegExp, QString());
    QCOMPARE(item.dataKeys(), QStringList { PropertyKey::RegExp });
}

void TestPropertyItem::constants_data()
{
    QTest::addColumn<QStringList>("constants");
    QTest::addColumn<QString>("joined");
    QTest::newRow("data keys") << QStringList { PropertyKey::Name, PropertyKey::Value, PropertyKey::Min,
        PropertyKey::Max, PropertyKey::Type, PropertyKey::Options, PropertyKey::Editable, PropertyKey::Associate,
        PropertyKey::SubItems, PropertyKey::ShowText, PropertyKey::Decimals, PropertyKey::RegExp, PropertyKey::Filter,
        PropertyKey::Directory, PropertyKey::Method, PropertyKey::Title }
                               << QStringLiteral("name value min max type options editable associate subitems showtext "
                                                 "decimals regexp filter directory method title");
    QTest::newRow("record keys") << QStringList { RecordKey::Id, RecordKey::Key, RecordKey::Title, RecordKey::Text,
        RecordKey::Type, RecordKey::HasData, RecordKey::Name, RecordKey::Target, RecordKey::Parent, RecordKey::Icon,
        RecordKey::Value } << QStringLiteral("id key title text type hasdata name target parent icon value");
    QTest::newRow("messages") << QStringList { PropertyMessage::Service, PropertyMessage::Client, PropertyMessage::Type,
        PropertyMessage::Show, PropertyMessage::Hide, PropertyMessage::List }
                              << QStringLiteral(
                                     "message/plugin/propertybrowser/service message/plugin/propertybrowser/client "
                                     "message.type property.show property.hide property.list");
}

void TestPropertyItem::constants()
{
    QFETCH(QStringList, constants);
    QFETCH(QString, joined);
    QCOMPARE(constants.join(QLatin1Char(' ')), joined);
}

QTEST_APPLESS_MAIN(TestPropertyItem)
#include "tst_propertyitem.moc"
