#include "product.h"
#include "steps.h"

#include <QRegularExpression>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/// What the page of the test's own plug-in is made of, besides the trees.
struct Attribute
{
    const char *key;
    const char *type;
};

constexpr Attribute attributes[] = {
    { "label", "String" },
    { "shape", "Enum" },
    { "visible", "Bool" },
    { "order", "Int" },
    { "icon", "File" },
    { "keys", "ShortCut" },
};

const QByteArray expected
    = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
      "<Plugin id=\"demo\">\n"
      "    <ExtPointSet>\n"
      "        <ExtPoint id=\"demo.shapes\" name=\"Shapes\">\n"
      "            <String key=\"label\" name=\"\" value=\"\" regexp=\"\" tips=\"\" trans=\"\"/>\n"
      "            <Enum key=\"shape\" name=\"\" value=\"\" mode=\"\">\n"
      "                <Data key=\"TIME\" text=\"one\" icon=\"\"/>\n"
      "                <Data key=\"TIME\" text=\"two\" icon=\"\"/>\n"
      "                <Data key=\"TIME\" text=\"three\" icon=\"\"/>\n"
      "            </Enum>\n"
      "            <Bool key=\"visible\" name=\"\" value=\"\"/>\n"
      "            <Int key=\"order\" name=\"\" value=\"\" min=\"\" max=\"\"/>\n"
      "            <File key=\"icon\" name=\"\" value=\"\" filter=\"\" title=\"\" method=\"\"/>\n"
      "            <ShortCut key=\"keys\" name=\"\" value=\"\" regexp=\"\" tips=\"\" trans=\"\"/>\n"
      "            <SubExtPoint key=\"group\" name=\"SubPoint\"/>\n"
      "            <SubExtPoint key=\"leaf\" name=\"SubPoint\" childtype=\"group|leaf\"/>\n"
      "        </ExtPoint>\n"
      "    </ExtPointSet>\n"
      "</Plugin>\n";

} // namespace

/// Declares a point with everything that can be declared, with the pointer and the keys alone.
class tst_E2eDefinition : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void declaresAPoint();

private:
    void addAttributes();
    void addSubPoint(const QString &key);

    const QVariantList m_plugin { 0 };
    const QVariantList m_point { 0, 0 };
    Product m_product;
    WorkbenchDriver m_workbench;
};

void tst_E2eDefinition::cleanup()
{
    if (QTest::currentTestFailed())
        m_workbench.leavePicture(QString::fromLatin1(QTest::currentTestFunction()));
}

void tst_E2eDefinition::declaresAPoint()
{
    const QString file = m_product.fileOf(s("branding"));
    writeFile(file, "<Plugin id=\"demo\"/>");
    STEP(m_workbench, open(file));
    STEP(m_workbench, click(Place::tab(s("tabWidget"), s("ExtPointEdit"))));
    STEP(m_workbench, click(Place::row(s("defintionTree"), m_plugin), 3));
    STEP(m_workbench, click(Place::menuEntry(s("Create Point"))));
    EVENTUALLY(m_workbench.tree(s("defintionTree")), (QStringList { s("demo"), s("    Piont") }));
    STEP(m_workbench, typeIntoSheet(s("basicInfo"), s("id"), s("demo.shapes"), s("Return")));
    STEP(m_workbench, typeIntoSheet(s("basicInfo"), s("name"), s("Shapes"), s("Return")));
    EVENTUALLY(m_workbench.tree(s("defintionTree")).last(), s("    Shapes"));

    addAttributes();
    if (QTest::currentTestFailed())
        return;
    for (const char *key : { "group", "leaf" }) {
        addSubPoint(s(key));
        if (QTest::currentTestFailed())
            return;
    }

    STEP(m_workbench, click(Place::widget(s("addPropertyButton"))));
    STEP(m_workbench, click(Place::menuEntry(s("childtype"))));
    for (const char *key : { "group", "leaf" }) {
        STEP(m_workbench, click(Place::sheetRow(s("basicInfo"), s("childtype"))));
        STEP(m_workbench, click(Place::listEntry(s(key))));
        STEP(m_workbench, key(s("Return")));
    }
    EVENTUALLY(m_workbench.sheet(s("basicInfo")).last(), s("childtype = group, leaf"));

    STEP(m_workbench, key(s("ctrl+s")));
    EVENTUALLY(m_workbench.isModified(), false);
    const QStringList tree = m_workbench.tree(s("defintionTree"));
    QString saved = QString::fromUtf8(contentOf(file));
    saved.replace(QRegularExpression(s("key=\"\\d{10}\"")), s("key=\"TIME\""));
    QCOMPARE(saved, QString::fromUtf8(expected));
    STEP(m_workbench, close());

    STEP(m_workbench, open(file));
    EVENTUALLY(m_workbench.tree(s("defintionTree")), tree);
    STEP(m_workbench, click(Place::tab(s("tabWidget"), s("ExtPointEdit"))));
    STEP(m_workbench, click(Place::row(s("defintionTree"), m_point)));
    EVENTUALLY(m_workbench.table(s("defintionTable")).size(), int(std::size(attributes)));
    EVENTUALLY(m_workbench.sheet(s("basicInfo")), (QStringList { s("id = demo.shapes"), s("name = Shapes") }));
    STEP(m_workbench, close());
}

void tst_E2eDefinition::addAttributes()
{
    int row = 0;
    for (const Attribute &attribute : attributes) {
        STEP(m_workbench, click(Place::widget(s("pushButton_add_attr"))));
        EVENTUALLY(m_workbench.table(s("defintionTable")).size(), row + 1);
        STEP(m_workbench, typeIntoSheet(s("editInfoWidget"), s("key"), s(attribute.key), s("Return")));
        EVENTUALLY(m_workbench.table(s("defintionTable")).last(), s(attribute.key) + s(" |  | String | "));
        if (qstrcmp(attribute.type, "String") != 0) {
            STEP(m_workbench, click(Place::sheetRow(s("editInfoWidget"), s("type"))));
            STEP(m_workbench, click(Place::listEntry(s(attribute.type))));
            EVENTUALLY(m_workbench.table(s("defintionTable")).last(),
                s(attribute.key) + s(" |  | ") + s(attribute.type) + s(" | "));
        }
        if (qstrcmp(attribute.type, "Enum") == 0) {
            int entry = 0;
            for (const char *text : { "one", "two", "three" }) {
                STEP(m_workbench, click(Place::widget(s("pushButton_add_enum"))));
                ++entry;
                EVENTUALLY(m_workbench.table(s("enumTable")).size(), entry);
                STEP(m_workbench, typeIntoSheet(s("editInfoWidget"), s("text"), s(text), s("Return")));
            }
        }
        ++row;
    }
}

void tst_E2eDefinition::addSubPoint(const QString &key)
{
    const int rows = m_workbench.tree(s("defintionTree")).size();
    STEP(m_workbench, click(Place::row(s("defintionTree"), m_point), 3));
    STEP(m_workbench, click(Place::menuEntry(s("Create Sub Point"))));
    EVENTUALLY(m_workbench.tree(s("defintionTree")).size(), rows + 1);
    STEP(m_workbench, typeIntoSheet(s("basicInfo"), s("key"), key, s("Return")));
}

QTEST_GUILESS_MAIN(tst_E2eDefinition)
#include "tst_e2e_definition.moc"
