#include "realizationdesk.h"

#include <algorithm>

namespace {

const QString definitionTree = s("defintionTree");

} // namespace

/// Points that are made, changed and deleted on the definition page, as the realization page of the real program
/// offers them.
class tst_E2eRealizationDefinitions : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void pointIsMadeUsedAndDeleted();
    void deletedWhateverIsSelected();

private:
    void makesPoint();
    [[nodiscard]] bool typeInto(const char *sheet, const char *row, const char *text);
    [[nodiscard]] bool deletePoint(const QVariantList &path);
    /// What the realization page shows under the plug-in that is edited.
    [[nodiscard]] QStringList ownPoints();

    std::unique_ptr<RealizationDesk> m_desk;
};

void tst_E2eRealizationDefinitions::cleanup()
{
    m_desk->finish();
    m_desk.reset();
}

bool tst_E2eRealizationDefinitions::typeInto(const char *sheet, const char *row, const char *text)
{
    return m_desk->workbench().typeIntoSheet(s(sheet), s(row), s(text), s("Return"));
}

bool tst_E2eRealizationDefinitions::deletePoint(const QVariantList &path)
{
    return m_desk->definitionPage() && m_desk->click(Place::row(definitionTree, path))
        && m_desk->workbench().key(s("Delete"));
}

QStringList tst_E2eRealizationDefinitions::ownPoints()
{
    const QStringList points = m_desk->points();
    const int first = points.indexOf(s("    own")) + 1;
    const auto isBelow = [](const QString &line) { return line.startsWith(s("        ")); };
    const auto end = std::find_if_not(points.begin() + first, points.end(), isBelow);
    return first == 0 ? QStringList() : points.mid(first, int(std::distance(points.begin() + first, end)));
}

void tst_E2eRealizationDefinitions::makesPoint()
{
    WorkbenchDriver &workbench = m_desk->workbench();
    STEP(*m_desk, definitionPage());
    STEP(*m_desk, choose(Place::row(definitionTree, { 0 }), { s("Create Point") }));
    EVENTUALLY(workbench.tree(definitionTree).size(), 2);
    QVERIFY2(typeInto("basicInfo", "id", "own.shapes"), qPrintable(m_desk->problem()));
    QVERIFY2(typeInto("basicInfo", "name", "Shapes"), qPrintable(m_desk->problem()));
    EVENTUALLY(workbench.tree(definitionTree).last(), s("    Shapes"));
    STEP(*m_desk, click(Place::widget(s("pushButton_add_attr"))));
    EVENTUALLY(workbench.table(s("defintionTable")).size(), 1);
    QVERIFY2(typeInto("editInfoWidget", "key", "label"), qPrintable(m_desk->problem()));
    QVERIFY2(typeInto("editInfoWidget", "value", "Circle"), qPrintable(m_desk->problem()));
    EVENTUALLY(workbench.table(s("defintionTable")), QStringList { s("label |  | String | Circle") });
}

void tst_E2eRealizationDefinitions::pointIsMadeUsedAndDeleted()
{
    m_desk = std::make_unique<RealizationDesk>(pluginFile("own", ""), Product::Files { { s("shell"), shellFile() } });
    WorkbenchDriver &workbench = m_desk->workbench();
    STEP(*m_desk, open());
    makesPoint();
    if (QTest::currentTestFailed())
        return;

    STEP(*m_desk, realizationPage());
    EVENTUALLY(ownPoints(), QStringList { s("        Shapes") });
    STEP(*m_desk, unfold(s("own")));
    STEP(*m_desk, dragToTable(RealizationDesk::point({ s("own"), s("Shapes") })));
    EVENTUALLY(m_desk->records(), QStringList { s("own.shapes# |  | ") });
    EVENTUALLY(m_desk->sheet(), (QStringList { s("id = own.shapes#"), s("label = Circle") }));
    STEP(*m_desk, edit(s("label"), s("Ring")));

    // Another name and id, with the record selected; and a sub point.
    STEP(*m_desk, definitionPage());
    STEP(*m_desk, click(Place::row(definitionTree, { 0, 0 })));
    QVERIFY2(typeInto("basicInfo", "name", "Figures"), qPrintable(m_desk->problem()));
    QVERIFY2(typeInto("basicInfo", "id", "own.figures"), qPrintable(m_desk->problem()));
    STEP(*m_desk, choose(Place::row(definitionTree, { 0, 0 }), { s("Create Sub Point") }));
    EVENTUALLY(workbench.tree(definitionTree).size(), 3);
    QVERIFY2(typeInto("basicInfo", "key", "corner"), qPrintable(m_desk->problem()));
    STEP(*m_desk, realizationPage());
    EVENTUALLY(ownPoints(), (QStringList { s("        Figures"), s("            SubPoint") }));
    EVENTUALLY(m_desk->records(), QStringList { s("own.shapes# |  | ") });
    EVENTUALLY(m_desk->sheet(), (QStringList { s("id = own.shapes#"), s("label = Ring") }));
    STEP(*m_desk, unfold(s("own")));
    STEP(*m_desk, dragToTable(RealizationDesk::point({ s("own"), s("Figures"), s("SubPoint") })));
    EVENTUALLY(m_desk->records(), QStringList { s("own.corner# |  | ") });
    STEP(*m_desk, save());
    QCOMPARE(m_desk->saved(), savedFile(R"xml(
    <ExtPointSet>
        <ExtPoint id="own.figures" name="Figures">
            <String key="label" name="" value="Circle" regexp="" tips="" trans=""/>
            <SubExtPoint key="corner" name="SubPoint"/>
        </ExtPoint>
    </ExtPointSet>
    <ExtDataSet>
        <ExtData plugin="own" id="own.figures" extPlugin="own">
            <shapes id="own.shapes#" label="Ring"/>
            <corner id="own.corner#"/>
        </ExtData>
    </ExtDataSet>
)xml"));
    m_desk->leavePicture(s("story-7"));

    QVERIFY2(deletePoint({ 0, 0, 0 }), qPrintable(m_desk->problem()));
    EVENTUALLY(workbench.tree(definitionTree).size(), 2);
    STEP(*m_desk, realizationPage());
    EVENTUALLY(m_desk->points().filter(s("SubPoint")), QStringList());
    // Deleting it has gone to nothing else there.
    EVENTUALLY(m_desk->records(), QStringList());
    STEP(*m_desk, click(RealizationDesk::point({ s("own"), s("Figures") })));
    EVENTUALLY(m_desk->records(), (QStringList { s("own.shapes# |  | "), s("own.corner# |  | ") }));
    STEP(*m_desk, click(RealizationDesk::record(0)));
    QVERIFY2(deletePoint({ 0, 0 }), qPrintable(m_desk->problem()));
    EVENTUALLY(workbench.tree(definitionTree), QStringList { s("own") });
    STEP(*m_desk, realizationPage());
    EVENTUALLY(m_desk->points().filter(s("Figures")), QStringList());
    EVENTUALLY(m_desk->records(), QStringList());
    STEP(*m_desk, save());
    // What realized the point stays for whoever declares it again.
    QCOMPARE(m_desk->saved(), savedFile(R"xml(
    <ExtPointSet/>
    <ExtDataSet>
        <ExtData plugin="own" id="own.figures" extPlugin="own" label="Circle">
            <shapes id="own.shapes#" label="Ring"/>
            <corner id="own.corner#"/>
        </ExtData>
    </ExtDataSet>
)xml"));
    QCOMPARE(m_desk->points().filter(s("    own")).size(), 1);
    STEP(*m_desk, close());

    STEP(*m_desk, open());
    EVENTUALLY(m_desk->points().filter(s("    own")).size(), 1);
    QCOMPARE(ownPoints(), QStringList());
    STEP(*m_desk, close());
}

void tst_E2eRealizationDefinitions::deletedWhateverIsSelected()
{
    QByteArray own = "<ExtPointSet>";
    for (const char *name : { "a", "b", "c", "d", "e" })
        own += "<ExtPoint id='own." + QByteArray(name) + "' name='" + name
            + "' hasformat='true'><String key='text' value='new'/><SubExtPoint key='thing' name='Thing'/></ExtPoint>";
    own += "</ExtPointSet><ExtDataSet>";
    for (const char *name : { "a", "b", "c", "d", "e" })
        own += "<ExtData plugin='own' id='own." + QByteArray(name) + "' extPlugin='own'><format target='window." + name
            + "' title='In " + name + "'><thing id='own.thing." + name + "'/></format><thing id='own.thing." + name
            + "' text='Thing of " + name + "'/></ExtData>";
    own += "</ExtDataSet>";
    m_desk = std::make_unique<RealizationDesk>(pluginFile("own", own), Product::Files { { s("shell"), shellFile() } });
    STEP(*m_desk, open());
    STEP(*m_desk, unfold(s("own")));
    const QList<QList<Place>> selections {
        { RealizationDesk::point({ s("own"), s("a") }) },
        { RealizationDesk::point({ s("own"), s("b"), s("Thing") }) },
        { RealizationDesk::point({ s("own"), s("c") }), RealizationDesk::record(0) },
        { RealizationDesk::point({ s("own"), s("d") }), Place::tab(s("formatTab"), s("In d")),
            RealizationDesk::entry({ 0, 0 }) },
        { RealizationDesk::point({ s("own") }) },
    };
    QStringList rows = m_desk->points();
    for (const QList<Place> &selection : selections) {
        for (const Place &place : selection)
            STEP(*m_desk, click(place));
        QVERIFY2(deletePoint({ 0, 0 }), qPrintable(m_desk->problem()));
        rows.erase(rows.begin() + 2, rows.begin() + 4);
        STEP(*m_desk, realizationPage());
        EVENTUALLY(m_desk->points(), rows);
    }
    STEP(*m_desk, unfold(s("shell")));
    STEP(*m_desk, dragToTable(RealizationDesk::point({ s("shell"), s("Panels") })));
    EVENTUALLY(m_desk->records(), QStringList { s("own.panel# | Panel | ") });
    STEP(*m_desk, save());
    const QString saved = m_desk->saved().join(QLatin1Char('\n'));
    QCOMPARE(saved.count(s("<ExtPoint ")), 0);
    for (const char *name : { "a", "b", "c", "d", "e" })
        QCOMPARE(saved.count(s("<thing id=\"own.thing.") + s(name)), 2);
    m_desk->leavePicture(s("story-7-deleted"));
    STEP(*m_desk, close());
}

QTEST_GUILESS_MAIN(tst_E2eRealizationDefinitions)
#include "tst_e2e_realization_definitions.moc"
