#include "inputdevices.h"
#include "product.h"
#include "steps.h"

namespace {

QStringList expectedLines(const char *name)
{
    const QString path = QStringLiteral(EXTPOINT_SOURCE_DIR "/tests/endtoend/expected/") + QString::fromLatin1(name);
    return QString::fromUtf8(contentOf(path)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// What the file of the sample holds after a save without any change.
QByteArray savedUnchanged(const QString &plugin)
{
    Product product;
    Program program;
    program.setVariable(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    const Program::Result result = program.run({ QStringLiteral("--save"), product.fileOf(plugin) });
    return result.code == 0 ? contentOf(product.fileOf(plugin)) : QByteArray();
}

QStringList replaced(QStringList lines, const QString &before, const QString &after)
{
    return lines.replaceInStrings(before, after);
}

} // namespace

/// Opens, changes, saves, closes and reverts the sample in the real program with the pointer and the keys.
class tst_E2eEdit : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void opens();
    void changeIsSaved_data();
    void changeIsSaved();
    void choiceIsSaved();
    void escapeChangesNothing();
    void closingAsks_data();
    void closingAsks();
    void revert();

private:
    [[nodiscard]] bool openSample();
    [[nodiscard]] bool renameFirstPoint();

    const QStringList m_definition = expectedLines("chartdesk-definition.txt");
    const QStringList m_realization = expectedLines("chartdesk-realization.txt");
    QStringList m_renamed;
    const QVariantList m_firstPoint { QStringLiteral("saltmere.chartdesk"), QStringLiteral("Chart layers") };
    std::unique_ptr<Product> m_product;
    std::unique_ptr<WorkbenchDriver> m_workbench;
    QString m_file;
};

void tst_E2eEdit::init()
{
    m_product = std::make_unique<Product>();
    m_workbench = std::make_unique<WorkbenchDriver>();
    m_file = m_product->fileOf(QStringLiteral("chartdesk"));
    m_renamed = replaced(m_definition, QStringLiteral("Chart layers"), QStringLiteral("Sheets"));
}

void tst_E2eEdit::cleanup()
{
    if (QTest::currentTestFailed())
        m_workbench->leavePicture(QString::fromLatin1(QTest::currentTestFunction()) + QLatin1Char('-')
            + QString::fromUtf8(QTest::currentDataTag()));
    const bool running = m_workbench->program().isRunning();
    m_workbench.reset();
    QVERIFY(QTest::currentTestFailed() || !running);
}

bool tst_E2eEdit::openSample()
{
    return m_workbench->open(m_file)
        && m_workbench->click(Place::tab(QStringLiteral("tabWidget"), QStringLiteral("ExtPointEdit")));
}

bool tst_E2eEdit::renameFirstPoint()
{
    return m_workbench->click(Place::row(QStringLiteral("defintionTree"), m_firstPoint))
        && m_workbench->typeIntoSheet(
            QStringLiteral("basicInfo"), QStringLiteral("name"), QStringLiteral("Sheets"), QStringLiteral("Return"))
        && m_workbench->waitFor(QStringLiteral("the new name in the tree"),
            [this] { return m_workbench->tree(QStringLiteral("defintionTree")) == m_renamed; });
}

void tst_E2eEdit::opens()
{
    STEP(*m_workbench, open(m_file));
    QCOMPARE(m_workbench->tabs(QStringLiteral("tabWidget")),
        (QStringList { QStringLiteral("ExtPointEdit"), QStringLiteral("RealizationExit") }));
    EVENTUALLY(m_workbench->tree(QStringLiteral("realizationTree")), m_realization);
    QCOMPARE(m_workbench->tree(QStringLiteral("defintionTree")), m_definition);
    QVERIFY(m_workbench->ask(Place::widget(QStringLiteral("realizationTree")).request())
                .value(QLatin1String("visible"))
                .toBool());
    QVERIFY(!m_workbench->isModified());
    EVENTUALLY(InputDevices::activeTitle().section(QStringLiteral(" — "), 0, 0), QStringLiteral("extension.xml"));

    STEP(*m_workbench, click(Place::tab(QStringLiteral("tabWidget"), QStringLiteral("ExtPointEdit"))));
    STEP(*m_workbench, click(Place::row(QStringLiteral("defintionTree"), m_firstPoint)));
    EVENTUALLY(m_workbench->sheet(QStringLiteral("basicInfo")),
        (QStringList { QStringLiteral("id = saltmere.chart.layers"), QStringLiteral("name = Chart layers"),
            QStringLiteral("displaylabel = Text"), QStringLiteral("displayicon = Icon"),
            QStringLiteral("hasformat = true"),
            QStringLiteral("description = Everything that is drawn on the chart, from the coast line to the wind "
                           "barbs.\nLayers are drawn in the order of the layer tree, the first one at the bottom.") }));
    QCOMPARE(m_workbench->table(QStringLiteral("defintionTable")),
        (QStringList { QStringLiteral("text | Text | String | "), QStringLiteral("toolTip | Tool tip | String | "),
            QStringLiteral("icon | Icon | File | images/layer.svg"), QStringLiteral("source | Source | Enum | Vector"),
            QStringLiteral("visible | Visible at start | Bool | true"),
            QStringLiteral("order | Drawing order | Int | 100"), QStringLiteral("opacity | Opacity | Double | 0.85"),
            QStringLiteral("shortcut | Shortcut | ShortCut | "), QStringLiteral("credits | Credits | Text | ") }));
    const QByteArray original = contentOf(m_file);
    STEP(*m_workbench, close());
    QCOMPARE(contentOf(m_file), original);
}

void tst_E2eEdit::changeIsSaved_data()
{
    QTest::addColumn<QVariantList>("path");
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QByteArray>("savedBefore");
    QTest::addColumn<QByteArray>("savedAfter");

    const QString plugin = QStringLiteral("saltmere.chartdesk");
    const QString name = QStringLiteral("name");
    QTest::newRow("name of a point") << QVariantList { plugin, QStringLiteral("Measuring tools") } << name
                                     << QStringLiteral("Measuring tools") << QStringLiteral("Rulers 2")
                                     << QByteArray("name=\"Measuring tools\"") << QByteArray("name=\"Rulers 2\"");
    QTest::newRow("name of a sub point") << QVariantList { plugin, QStringLiteral("Chart layers"),
        QStringLiteral("Legend entry") } << name
                                         << QStringLiteral("Legend entry") << QStringLiteral("Line of the legend")
                                         << QByteArray("name=\"Legend entry\"")
                                         << QByteArray("name=\"Line of the legend\"");
    QTest::newRow("id of a point") << QVariantList { plugin, QStringLiteral("Projections") } << QStringLiteral("id")
                                   << QString() << QStringLiteral("saltmere.chart.grid")
                                   << QByteArray("id=\"saltmere.chart.projection\"")
                                   << QByteArray("id=\"saltmere.chart.grid\"");
}

void tst_E2eEdit::changeIsSaved()
{
    QFETCH(QVariantList, path);
    QFETCH(QString, row);
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QByteArray, savedBefore);
    QFETCH(QByteArray, savedAfter);
    QByteArray expected = savedUnchanged(QStringLiteral("chartdesk"));
    // What the plug-in has for the point follows its id.
    QCOMPARE(expected.count(savedBefore), row == QLatin1String("id") ? 2 : 1);
    expected.replace(savedBefore, savedAfter);
    const QStringList changed = before.isEmpty() ? m_definition : replaced(m_definition, before, after);

    QVERIFY2(openSample(), qPrintable(m_workbench->problem()));
    STEP(*m_workbench, click(Place::row(QStringLiteral("defintionTree"), path)));
    STEP(*m_workbench, typeIntoSheet(QStringLiteral("basicInfo"), row, after, QStringLiteral("Return")));
    EVENTUALLY(m_workbench->isModified(), true);
    EVENTUALLY(m_workbench->tree(QStringLiteral("defintionTree")), changed);
    EVENTUALLY(InputDevices::activeTitle().section(QStringLiteral(" — "), 0, 0), QStringLiteral("extension.xml*"));
    STEP(*m_workbench, key(QStringLiteral("ctrl+s")));
    EVENTUALLY(m_workbench->isModified(), false);
    QCOMPARE(m_workbench->dialogs(), QStringList());
    EVENTUALLY(InputDevices::activeTitle().section(QStringLiteral(" — "), 0, 0), QStringLiteral("extension.xml"));
    QCOMPARE(contentOf(m_file), expected);
    const QStringList realization = m_workbench->tree(QStringLiteral("realizationTree"));
    STEP(*m_workbench, close());
    QCOMPARE(contentOf(m_file), expected);

    QVERIFY2(openSample(), qPrintable(m_workbench->problem()));
    QCOMPARE(m_workbench->tree(QStringLiteral("defintionTree")), changed);
    EVENTUALLY(m_workbench->tree(QStringLiteral("realizationTree")),
        before.isEmpty() ? m_realization : replaced(m_realization, before, after));
    STEP(*m_workbench,
        click(Place::row(QStringLiteral("defintionTree"),
            before.isEmpty() ? path : path.mid(0, path.size() - 1) + QVariantList { after })));
    EVENTUALLY(m_workbench->sheet(QStringLiteral("basicInfo")).contains(row + QLatin1String(" = ") + after), true);
    STEP(*m_workbench, close());
}

void tst_E2eEdit::choiceIsSaved()
{
    QByteArray expected = savedUnchanged(QStringLiteral("chartdesk"));
    const QByteArray before = "id=\"saltmere.chart.layers\" name=\"Chart layers\" displaylabel=\"text\"";
    QCOMPARE(expected.count(before), 1);
    expected.replace(before, "id=\"saltmere.chart.layers\" name=\"Chart layers\" displaylabel=\"toolTip\"");
    QVERIFY2(openSample(), qPrintable(m_workbench->problem()));
    STEP(*m_workbench, click(Place::row(QStringLiteral("defintionTree"), m_firstPoint)));
    STEP(*m_workbench, click(Place::sheetRow(QStringLiteral("basicInfo"), QStringLiteral("displaylabel"))));
    STEP(*m_workbench, click(Place::listEntry(QStringLiteral("Tool tip"))));
    EVENTUALLY(m_workbench->isModified(), true);
    STEP(*m_workbench, key(QStringLiteral("ctrl+s")));
    EVENTUALLY(m_workbench->isModified(), false);
    QCOMPARE(contentOf(m_file), expected);
    STEP(*m_workbench, close());
}

void tst_E2eEdit::escapeChangesNothing()
{
    const QByteArray original = contentOf(m_file);
    QVERIFY2(openSample(), qPrintable(m_workbench->problem()));
    STEP(*m_workbench, click(Place::row(QStringLiteral("defintionTree"), m_firstPoint)));
    EVENTUALLY(m_workbench->sheet(QStringLiteral("basicInfo")).size(), 6);
    const QStringList sheet = m_workbench->sheet(QStringLiteral("basicInfo"));
    STEP(*m_workbench,
        typeIntoSheet(QStringLiteral("basicInfo"), QStringLiteral("name"), QStringLiteral("Never mind"),
            QStringLiteral("Escape")));
    EVENTUALLY(m_workbench->sheet(QStringLiteral("basicInfo")), sheet);
    // Leaving the row would commit what is still typed there.
    STEP(*m_workbench, click(Place::row(QStringLiteral("defintionTree"), m_firstPoint.mid(0, 1))));
    EVENTUALLY(m_workbench->sheet(QStringLiteral("basicInfo")).value(0), QStringLiteral("id = saltmere.chartdesk"));
    QCOMPARE(m_workbench->tree(QStringLiteral("defintionTree")), m_definition);
    QVERIFY(!m_workbench->isModified());
    STEP(*m_workbench, close());
    QCOMPARE(contentOf(m_file), original);
}

void tst_E2eEdit::closingAsks_data()
{
    QTest::addColumn<QString>("closing");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("saves");
    QTest::addColumn<bool>("closes");

    QTest::newRow("window, save") << QStringLiteral("alt+F4") << QStringLiteral("Save") << true << true;
    QTest::newRow("window, discard") << QStringLiteral("alt+F4") << QStringLiteral("Discard") << false << true;
    QTest::newRow("window, cancel") << QStringLiteral("alt+F4") << QStringLiteral("Cancel") << false << false;
    QTest::newRow("quit, cancel") << QStringLiteral("ctrl+q") << QStringLiteral("Cancel") << false << false;
    QTest::newRow("quit, save") << QStringLiteral("ctrl+q") << QStringLiteral("Save") << true << true;
}

void tst_E2eEdit::closingAsks()
{
    QFETCH(QString, closing);
    QFETCH(QString, answer);
    QFETCH(bool, saves);
    QFETCH(bool, closes);
    const QByteArray original = contentOf(m_file);
    QVERIFY2(openSample(), qPrintable(m_workbench->problem()));
    QVERIFY2(renameFirstPoint(), qPrintable(m_workbench->problem()));
    STEP(*m_workbench, key(closing));
    EVENTUALLY(m_workbench->dialogs(), QStringList { QStringLiteral("savePrompt") });
    STEP(*m_workbench, click(Place::button(QStringLiteral("savePrompt"), answer)));
    if (!closes) {
        EVENTUALLY(m_workbench->dialogs(), QStringList());
        QVERIFY(m_workbench->isModified());
        QCOMPARE(m_workbench->tree(QStringLiteral("defintionTree")), m_renamed);
        QCOMPARE(contentOf(m_file), original);
        STEP(*m_workbench, key(closing));
        STEP(*m_workbench, click(Place::button(QStringLiteral("savePrompt"), QStringLiteral("Discard"))));
    }
    STEP(*m_workbench, ended());
    const QByteArray content = contentOf(m_file);
    QCOMPARE(content != original, saves);
    QCOMPARE(content.contains("name=\"Sheets\""), saves);
}

void tst_E2eEdit::revert()
{
    const QByteArray original = contentOf(m_file);
    QVERIFY2(openSample(), qPrintable(m_workbench->problem()));
    QVERIFY2(renameFirstPoint(), qPrintable(m_workbench->problem()));
    for (const char *answer : { "Cancel", "Revert" }) {
        QVERIFY(m_workbench->isModified());
        QCOMPARE(m_workbench->tree(QStringLiteral("defintionTree")), m_renamed);
        STEP(*m_workbench, chooseFromMenu(QStringLiteral("File"), QStringLiteral("Revert to Saved")));
        STEP(*m_workbench, click(Place::button(QStringLiteral("revertPrompt"), QString::fromLatin1(answer))));
        EVENTUALLY(m_workbench->dialogs(), QStringList());
    }
    EVENTUALLY(m_workbench->isModified(), false);
    EVENTUALLY(m_workbench->tree(QStringLiteral("defintionTree")), m_definition);
    EVENTUALLY(m_workbench->tree(QStringLiteral("realizationTree")), m_realization);
    QCOMPARE(contentOf(m_file), original);

    // The fresh editor is as good as the first.
    STEP(*m_workbench, click(Place::tab(QStringLiteral("tabWidget"), QStringLiteral("ExtPointEdit"))));
    QVERIFY2(renameFirstPoint(), qPrintable(m_workbench->problem()));
    STEP(*m_workbench, key(QStringLiteral("ctrl+s")));
    EVENTUALLY(m_workbench->isModified(), false);
    QVERIFY(contentOf(m_file).contains("name=\"Sheets\""));
    STEP(*m_workbench, close());
}

QTEST_GUILESS_MAIN(tst_E2eEdit)
#include "tst_e2e_edit.moc"
