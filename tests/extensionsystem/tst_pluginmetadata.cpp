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
    void versions();
    void completeMetaData();
    void defects_data();
    void defects();
};

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

QJsonObject loaderObject(const QByteArray &metaData, const char *iid = EXTENSIONSYSTEM_PLUGIN_IID)
{
    const QJsonDocument document = QJsonDocument::fromJson(metaData);
    if (document.isNull())
        qFatal("bad test data: %s", metaData.constData());
    return { { s("IID"), s(iid) },
        { s("MetaData"), document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object()) } };
}

} // namespace

void TestPluginMetaData::versions()
{
    const auto printed = [](const char *text) {
        const std::optional<PluginVersion> version = PluginVersion::fromString(s(text));
        return version ? version->toString() : s("none");
    };
    for (const char *text : { "4.0.2", "4.0.2_7", "999999999.0.0" })
        QCOMPARE(printed(text), s(text));
    QCOMPARE(printed("4.0.2_0"), s("4.0.2"));
    for (const char *text : { "1000000000.0.0", "", "4.0", "4.0.2.1", "4.0.2_", "4.0.2a", "4.0.2\n" })
        QCOMPARE(printed(text), s("none"));
}

void TestPluginMetaData::completeMetaData()
{
    const auto picture = [](const char *json) {
        const auto [metaData, defects] = PluginMetaData::fromJson(loaderObject(json));
        QStringList words { metaData.name, metaData.version.toString(), metaData.compatVersion.toString(),
            metaData.category, metaData.description };
        for (const PluginDependency &each : metaData.dependencies)
            words += { each.name, each.version.toString(), s(each.optional ? "optional" : "required") };
        return (words + defects).join(QLatin1Char(' '));
    };
    QCOMPARE(picture(R"({ "Name": "Painter", "Version": "2.1.0_3", "CompatVersion": "2.0.0", "Category": "Pictures",
                          "Description": "Paints.",
                          "Dependencies": [{ "Name": "Core", "Version": "4.0.2" },
                                           { "Name": "Printer", "Version": "1.0.0", "Type": "optional" }],
                          "Unheard": [1] })"),
        s("Painter 2.1.0_3 2.0.0 Pictures Paints. Core 4.0.2 required Printer 1.0.0 optional"));
    QCOMPARE(picture(R"({"Name": "Least", "Version": "1.5.0"})").trimmed(), s("Least 1.5.0 1.5.0"));
}

void TestPluginMetaData::defects_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("defects");
    const auto row = [](const char *tag, const QByteArray &json, const char *defects) {
        QTest::newRow(tag) << json << s(defects);
    };
    row("not an object", "[]", "the metadata is not a JSON object");
    row("empty", "{}", "the plug-in has no \"Name\" / the plug-in has no \"Version\"");
    row("blank name", R"({"Name": " ", "Version": "1.0.0"})", "the plug-in has no \"Name\"");
    row("name of another type", R"({"Name": 7, "Version": "1.0.0"})", "the plug-in has no \"Name\"");
    const auto more = [&row](const char *tag, const QByteArray &json, const char *defects) {
        row(tag, R"({"Name": "n", "Version": "1.0.0", )" + json + '}', defects);
    };
    row("version", R"({"Name": "n", "Version": "1.0"})",
        "the \"Version\" \"1.0\" of the plug-in is not of the form \"1.2.3\" or \"1.2.3_4\"");
    more("compatible version", R"("CompatVersion": "x")",
        "the \"CompatVersion\" \"x\" of the plug-in is not of the form \"1.2.3\" or \"1.2.3_4\"");
    more("compatible version too new", R"("CompatVersion": "1.0.1")",
        "\"CompatVersion\" 1.0.1 is newer than \"Version\" 1.0.0");
    more("texts of another type", R"("Category": 1, "Description": [])",
        "\"Category\" is not a string / \"Description\" is not a string");
    more("dependencies of another type", R"("Dependencies": {})", "\"Dependencies\" is not an array");
    more("dependency of another type", R"("Dependencies": ["Core"])", "dependency 1 is not a JSON object");
    more("dependency without version", R"("Dependencies": [{"Name": "m"}])", "dependency 1 has no \"Version\"");
    more("type of a dependency", R"("Dependencies": [{"Name": "m", "Version": "1.0.0", "Type": "maybe"}])",
        "the \"Type\" \"maybe\" of dependency 1 is neither \"required\" nor \"optional\"");
    more("dependency on itself", R"("Dependencies": [{"Name": "N", "Version": "1.0.0"}])",
        "dependency 1 is the plug-in itself");
    more("dependency named twice",
        R"("Dependencies": [{"Name": "m", "Version": "1.0.0"}, {"Name": "M", "Version": "1.0.0"}])",
        "dependency 2 names \"M\" once more");
}

void TestPluginMetaData::defects()
{
    QFETCH(QByteArray, json);
    QTEST(PluginMetaData::fromJson(loaderObject(json)).defects.join(s(" / ")), "defects");
    // Of a file with another interface nothing else is said.
    QCOMPARE(PluginMetaData::fromJson(loaderObject(json, "org.elsewhere")).defects,
        QStringList { s("the interface id is \"org.elsewhere\", not \"org.extpoint.host.Plugin/1.0\"") });
}

QTEST_GUILESS_MAIN(TestPluginMetaData)
#include "tst_pluginmetadata.moc"
