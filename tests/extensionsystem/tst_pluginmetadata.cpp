#include "extensionsystem/pluginmetadata.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace ExtensionSystem;

class TestPluginMetaData final : public QObject
{
    Q_OBJECT
private slots:
    void versions_data();
    void versions();
    void completeMetaData();
    void defects_data();
    void defects();
};

namespace {

QJsonObject loaderObject(const QByteArray &metaData)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(metaData, &error);
    if (error.error != QJsonParseError::NoError)
        qFatal("bad test data: %s", metaData.constData());
    return { { QStringLiteral("IID"), QStringLiteral(EXTENSIONSYSTEM_PLUGIN_IID) },
        { QStringLiteral("MetaData"),
            document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object()) } };
}

} // namespace

void TestPluginMetaData::versions_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("printed"); // empty: not a version
    const auto row = [](const char *text, const char *printed) {
        QTest::newRow(text) << QString::fromLatin1(text) << QString::fromLatin1(printed);
    };
    row("4.0.2", "4.0.2");
    row("4.0.2_7", "4.0.2_7");
    row("4.0.2_0", "4.0.2");
    row("999999999.0.0", "999999999.0.0");
    row("1000000000.0.0", "");
    row("", "");
    row("4.0", "");
    row("4.0.2.1", "");
    row("4.0.2_", "");
    row("4.0.2a", "");
    row("4.0.2\n", "");
}

void TestPluginMetaData::versions()
{
    QFETCH(QString, text);
    const std::optional<PluginVersion> version = PluginVersion::fromString(text);
    QTEST(version ? version->toString() : QString(), "printed");
}

void TestPluginMetaData::completeMetaData()
{
    const auto result = PluginMetaData::fromJson(loaderObject(R"({
        "Name": "Painter", "Version": "2.1.0_3", "CompatVersion": "2.0.0", "Category": "Pictures",
        "Description": "Paints.",
        "Dependencies": [{ "Name": "Core", "Version": "4.0.2" },
                         { "Name": "Printer", "Version": "1.0.0", "Type": "optional" }],
        "Unheard": [1] })"));
    QCOMPARE(result.defects, QStringList());
    const PluginMetaData &metaData = result.metaData;
    QCOMPARE(metaData.name, QStringLiteral("Painter"));
    QCOMPARE(metaData.version.toString(), QStringLiteral("2.1.0_3"));
    QCOMPARE(metaData.compatVersion.toString(), QStringLiteral("2.0.0"));
    QCOMPARE(metaData.category, QStringLiteral("Pictures"));
    QCOMPARE(metaData.description, QStringLiteral("Paints."));
    QCOMPARE(metaData.dependencies.size(), 2);
    QCOMPARE(metaData.dependencies.at(0).name, QStringLiteral("Core"));
    QCOMPARE(metaData.dependencies.at(0).version.toString(), QStringLiteral("4.0.2"));
    QVERIFY(!metaData.dependencies.at(0).optional);
    QVERIFY(metaData.dependencies.at(1).optional);

    const auto least = PluginMetaData::fromJson(loaderObject(R"({"Name": "Least", "Version": "1.5.0"})"));
    QCOMPARE(least.defects, QStringList());
    QCOMPARE(least.metaData.compatVersion.toString(), QStringLiteral("1.5.0"));
}

void TestPluginMetaData::defects_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QStringList>("defects");
    const auto row = [](const char *tag, const char *json, const QStringList &defects) {
        QTest::newRow(tag) << QByteArray(json) << defects;
    };
    const auto dependency = [&row](const char *tag, const char *json, const QString &defect) {
        const QByteArray whole = QByteArray(R"({"Name": "n", "Version": "1.0.0", "Dependencies": )") + json + '}';
        row(tag, whole.constData(), { defect });
    };
    row("not an object", "[]", { QStringLiteral("the metadata is not a JSON object") });
    row("empty", "{}",
        { QStringLiteral("the plug-in has no \"Name\""), QStringLiteral("the plug-in has no \"Version\"") });
    row("blank name", R"({"Name": " ", "Version": "1.0.0"})", { QStringLiteral("the plug-in has no \"Name\"") });
    row("name of another type", R"({"Name": 7, "Version": "1.0.0"})",
        { QStringLiteral("the plug-in has no \"Name\"") });
    row("version", R"({"Name": "n", "Version": "1.0"})",
        { QStringLiteral("the \"Version\" \"1.0\" of the plug-in is not of the form \"1.2.3\" or \"1.2.3_4\"") });
    row("compatible version", R"({"Name": "n", "Version": "1.0.0", "CompatVersion": "x"})",
        { QStringLiteral("the \"CompatVersion\" \"x\" of the plug-in is not of the form \"1.2.3\" or \"1.2.3_4\"") });
    row("compatible version too new", R"({"Name": "n", "Version": "1.0.0", "CompatVersion": "1.0.1"})",
        { QStringLiteral("\"CompatVersion\" 1.0.1 is newer than \"Version\" 1.0.0") });
    row("texts of another type", R"({"Name": "n", "Version": "1.0.0", "Category": 1, "Description": []})",
        { QStringLiteral("\"Category\" is not a string"), QStringLiteral("\"Description\" is not a string") });
    dependency("dependencies of another type", "{}", QStringLiteral("\"Dependencies\" is not an array"));
    dependency("dependency of another type", R"(["Core"])", QStringLiteral("dependency 1 is not a JSON object"));
    dependency("dependency without version", R"([{"Name": "m"}])", QStringLiteral("dependency 1 has no \"Version\""));
    dependency("type of a dependency", R"([{"Name": "m", "Version": "1.0.0", "Type": "maybe"}])",
        QStringLiteral("the \"Type\" \"maybe\" of dependency 1 is neither \"required\" nor \"optional\""));
    dependency("dependency on itself", R"([{"Name": "N", "Version": "1.0.0"}])",
        QStringLiteral("dependency 1 is the plug-in itself"));
    dependency("dependency named twice", R"([{"Name": "m", "Version": "1.0.0"}, {"Name": "M", "Version": "1.0.0"}])",
        QStringLiteral("dependency 2 names \"M\" once more"));
}

void TestPluginMetaData::defects()
{
    QFETCH(QByteArray, json);
    const auto result = PluginMetaData::fromJson(loaderObject(json));
    QTEST(result.defects, "defects");

    // Of a file with another interface nothing else is said.
    QJsonObject foreign = loaderObject(json);
    foreign.insert(QStringLiteral("IID"), QStringLiteral("org.elsewhere"));
    QCOMPARE(PluginMetaData::fromJson(foreign).defects,
        QStringList { QStringLiteral("the interface id is \"org.elsewhere\", not \"org.extpoint.host.Plugin/1.0\"") });
}

QTEST_GUILESS_MAIN(TestPluginMetaData)
#include "tst_pluginmetadata.moc"
