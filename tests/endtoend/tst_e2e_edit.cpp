#include "inputdevices.h"
#include "realizationdesk.h"

namespace {

QStringList expectedLines(const char *name)
{
    return linesOf(QString::fromUtf8(contentOf(s(EXTPOINT_SOURCE_DIR "/tests/endtoend/expected/") + s(name))));
}

/// What the file of the sample holds after a save without any change.
QByteArray savedUnchanged(const QString &plugin)
{
    Product product;
    Program program;
    program.setVariable(s("QT_QPA_PLATFORM"), s("offscreen"));
    const Program::Result result = program.run({ s("--save"), product.fileOf(plugin) });
    return result.code == 0 ? contentOf(product.fileOf(plugin)) : QByteArray();
}

} // namespace

/// Opens, changes, saves, closes and reverts the sample in the real program with the pointer and the keys.
class tst_E2eEdit : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void changeIsSaved();
    void closingAsks_data();
    void closingAsks();
    void revert();

private:
    [[nodiscard]] QString problem() const { return m_workbench->problem(); }
    [[nodiscard]] QStringList definition() { return m_workbench->tree(s("defintionTree")); }
    [[nodiscard]] QStringList realization() { return m_workbench->tree(s("realizationTree")); }
    [[nodiscard]] static QString title() { return InputDevices::activeTitle().section(s(" — "), 0, 0); }
    [[nodiscard]] bool openSample();
    /// Types into the sheet of a point.
    [[nodiscard]] bool change(const char *point, const char *row, const char *text);
    [[nodiscard]] bool renameFirstPoint();

    const QStringList m_definition = expectedLines("chartdesk-definition.txt");
    const QStringList m_realization = expectedLines("chartdesk-realization.txt");
    QStringList m_renamed;
    std::unique_ptr<Product> m_product;
    std::unique_ptr<WorkbenchDriver> m_workbench;
    QString m_file;
};

void tst_E2eEdit::init()
{
    m_product = std::make_unique<Product>();
    m_workbench = std::make_unique<WorkbenchDriver>();
    m_file = m_product->fileOf(s("chartdesk"));
    m_renamed = m_definition;
    m_renamed.replaceInStrings(s("Chart layers"), s("Sheets"));
}

void tst_E2eEdit::cleanup()
{
    m_workbench->finish();
}

bool tst_E2eEdit::openSample()
{
    return m_workbench->open(m_file) && m_workbench->click(Place::tab(s("tabWidget"), s("ExtPointEdit")));
}

bool tst_E2eEdit::change(const char *point, const char *row, const char *text)
{
    return m_workbench->click(Place::row(s("defintionTree"), { s("saltmere.chartdesk"), s(point) }))
        && m_workbench->typeIntoSheet(s("basicInfo"), s(row), s(text), s("Return"));
}

bool tst_E2eEdit::renameFirstPoint()
{
    return change("Chart layers", "name", "Sheets")
        && m_workbench->waitFor(s("the new name in the tree"), [this] { return definition() == m_renamed; });
}

void tst_E2eEdit::changeIsSaved()
{
    QByteArray expected = savedUnchanged(s("chartdesk"));
    // What the plug-in has for the point follows its id.
    QCOMPARE(expected.count("id=\"saltmere.chart.projection\""), 2);
    expected.replace("id=\"saltmere.chart.projection\"", "id=\"saltmere.chart.grid\"");

    STEP(*m_workbench, open(m_file));
    EVENTUALLY(realization(), m_realization);
    QCOMPARE(definition(), m_definition);
    EVENTUALLY(title(), s("extension.xml"));
    STEP(*m_workbench, click(Place::tab(s("tabWidget"), s("ExtPointEdit"))));
    STEP(*this, change("Projections", "id", "saltmere.chart.grid"));
    EVENTUALLY(m_workbench->isModified(), true);
    EVENTUALLY(title(), s("extension.xml*"));
    STEP(*m_workbench, key(s("ctrl+s")));
    EVENTUALLY(m_workbench->isModified(), false);
    QCOMPARE(m_workbench->dialogs(), QStringList());
    EVENTUALLY(title(), s("extension.xml"));
    QCOMPARE(contentOf(m_file), expected);
    STEP(*m_workbench, close());
    QCOMPARE(contentOf(m_file), expected);

    STEP(*this, openSample());
    QCOMPARE(definition(), m_definition);
    EVENTUALLY(realization(), m_realization);
    STEP(*m_workbench, click(Place::row(s("defintionTree"), { s("saltmere.chartdesk"), s("Projections") })));
    EVENTUALLY(m_workbench->sheet(s("basicInfo")).contains(s("id = saltmere.chart.grid")), true);
    STEP(*m_workbench, close());
}

void tst_E2eEdit::closingAsks_data()
{
    QTest::addColumn<QString>("closing");
    QTest::addColumn<bool>("saves");

    QTest::newRow("window, save") << s("alt+F4") << true;
    QTest::newRow("quit, cancel, discard") << s("ctrl+q") << false;
}

void tst_E2eEdit::closingAsks()
{
    QFETCH(QString, closing);
    QFETCH(bool, saves);
    const QByteArray original = contentOf(m_file);
    STEP(*this, openSample());
    STEP(*this, renameFirstPoint());
    STEP(*m_workbench, key(closing));
    STEP(*m_workbench, click(Place::button(s("savePrompt"), saves ? s("Save") : s("Cancel"))));
    if (!saves) {
        EVENTUALLY(m_workbench->dialogs(), QStringList());
        QVERIFY(m_workbench->isModified());
        QCOMPARE(definition(), m_renamed);
        STEP(*m_workbench, key(closing));
        STEP(*m_workbench, click(Place::button(s("savePrompt"), s("Discard"))));
    }
    STEP(*m_workbench, ended());
    QCOMPARE(contentOf(m_file) != original, saves);
    QCOMPARE(contentOf(m_file).contains("name=\"Sheets\""), saves);
}

void tst_E2eEdit::revert()
{
    const QByteArray original = contentOf(m_file);
    STEP(*this, openSample());
    STEP(*this, renameFirstPoint());
    for (const char *answer : { "Cancel", "Revert" }) {
        QVERIFY(m_workbench->isModified());
        QCOMPARE(definition(), m_renamed);
        STEP(*m_workbench, chooseFromMenu(s("File"), s("Revert to Saved")));
        STEP(*m_workbench, click(Place::button(s("revertPrompt"), s(answer))));
        EVENTUALLY(m_workbench->dialogs(), QStringList());
    }
    EVENTUALLY(m_workbench->isModified(), false);
    EVENTUALLY(definition(), m_definition);
    EVENTUALLY(realization(), m_realization);
    QCOMPARE(contentOf(m_file), original);

    // The fresh editor is as good as the first.
    STEP(*m_workbench, click(Place::tab(s("tabWidget"), s("ExtPointEdit"))));
    STEP(*this, renameFirstPoint());
    STEP(*m_workbench, key(s("ctrl+s")));
    EVENTUALLY(m_workbench->isModified(), false);
    QVERIFY(contentOf(m_file).contains("name=\"Sheets\""));
    STEP(*m_workbench, close());
}

QTEST_GUILESS_MAIN(tst_E2eEdit)
#include "tst_e2e_edit.moc"
