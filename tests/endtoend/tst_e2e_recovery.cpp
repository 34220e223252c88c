#include "inputdevices.h"
#include "product.h"
#include "steps.h"

#include <QDir>
#include <QJsonArray>

#include <csignal>

namespace {

const QStringList noDialogs;

/// As a version control system brings another version of a file.
void replaceFile(const QString &path, const QByteArray &content)
{
    const QString beside = path + QStringLiteral(".theirs");
    writeFile(beside, content);
    if (::rename(QFile::encodeName(beside).constData(), QFile::encodeName(path).constData()) != 0)
        qFatal("%s cannot be replaced", qPrintable(path));
}

} // namespace

/// The real program is killed, told to end, and meets files that others change under it.
class tst_E2eRecovery : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void ended_data();
    void ended();
    void killedAgain();
    void discarded();
    void cleanEndLeavesNothing();
    void reloadedQuietly();
    void changedUnderChanges_data();
    void changedUnderChanges();
    void typedWhileOthersWrite();

private:
    [[nodiscard]] bool openSample();
    [[nodiscard]] bool rename(const QString &before, const QString &after, const QString &lastKey);
    [[nodiscard]] QString firstPoint();
    /// What is current and expanded in a tree, and how far it is scrolled.
    [[nodiscard]] QJsonObject viewOf(const QString &tree);
    [[nodiscard]] QStringList copies();
    [[nodiscard]] bool isShown(const char *widget);
    [[nodiscard]] QString textOf(const char *widget);

    std::unique_ptr<Product> m_product;
    std::unique_ptr<WorkbenchDriver> m_workbench;
    QString m_file;
    QByteArray m_original;
};

void tst_E2eRecovery::initTestCase()
{
    // A shell that runs the tests in the background has them, and what they start, ignore it.
    std::signal(SIGINT, SIG_DFL);
}

void tst_E2eRecovery::init()
{
    m_product = std::make_unique<Product>();
    m_workbench = std::make_unique<WorkbenchDriver>();
    m_file = m_product->fileOf(QStringLiteral("chartdesk"));
    m_original = contentOf(m_file);
}

void tst_E2eRecovery::cleanup()
{
    if (QTest::currentTestFailed())
        m_workbench->leavePicture(QString::fromLatin1(QTest::currentTestFunction()) + QLatin1Char('-')
            + QString::fromUtf8(QTest::currentDataTag()));
    const bool running = m_workbench->program().isRunning();
    m_workbench.reset();
    QVERIFY(QTest::currentTestFailed() || !running);
}

bool tst_E2eRecovery::openSample()
{
    return m_workbench->open(m_file)
        && m_workbench->click(Place::tab(QStringLiteral("tabWidget"), QStringLiteral("ExtPointEdit")));
}

bool tst_E2eRecovery::rename(const QString &before, const QString &after, const QString &lastKey)
{
    return m_workbench->click(
               Place::row(QStringLiteral("defintionTree"), { QStringLiteral("saltmere.chartdesk"), before }))
        && m_workbench->typeIntoSheet(QStringLiteral("basicInfo"), QStringLiteral("name"), after, lastKey)
        && m_workbench->waitFor(QStringLiteral("the new name"), [&] { return firstPoint() == after; });
}

/// The first row under the plug-in's in the definition tree.
QString tst_E2eRecovery::firstPoint()
{
    return m_workbench->tree(QStringLiteral("defintionTree")).value(1).trimmed();
}

QJsonObject tst_E2eRecovery::viewOf(const QString &tree)
{
    QJsonObject reply
        = m_workbench->ask({ { QStringLiteral("ask"), QStringLiteral("tree") }, { QStringLiteral("widget"), tree } });
    reply.remove(QStringLiteral("lines"));
    return reply;
}

QStringList tst_E2eRecovery::copies()
{
    return QDir(m_workbench->program().stateDirectory() + QStringLiteral("/extpoint-workbench/recovery"))
        .entryList({ QStringLiteral("*.recovery") }, QDir::Files);
}

bool tst_E2eRecovery::isShown(const char *widget)
{
    return m_workbench->ask(Place::widget(QString::fromLatin1(widget)).request())
        .value(QLatin1String("visible"))
        .toBool();
}

QString tst_E2eRecovery::textOf(const char *widget)
{
    return m_workbench->ask(Place::widget(QString::fromLatin1(widget)).request())
        .value(QLatin1String("value"))
        .toString();
}

void tst_E2eRecovery::ended_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<bool>("atOnce");
    QTest::addColumn<bool>("theirs");
    QTest::addColumn<bool>("moved");

    QTest::newRow("killed") << SIGKILL << false << false << false;
    QTest::newRow("killed, the file changed before the next start") << SIGKILL << false << true << false;
    QTest::newRow("killed, the directory renamed before the next start") << SIGKILL << false << false << true;
    QTest::newRow("told to end") << SIGTERM << true << false << false;
    QTest::newRow("interrupted") << SIGINT << true << false << false;
    QTest::newRow("its terminal closed") << SIGHUP << true << false << false;
    QTest::newRow("its display gone") << 0 << true << false << false;
}

void tst_E2eRecovery::ended()
{
    QFETCH(int, signal);
    QFETCH(bool, atOnce);
    QFETCH(bool, theirs);
    QFETCH(bool, moved);
    QVERIFY2(openSample(), qPrintable(m_workbench->problem()));
    QVERIFY2(rename(QStringLiteral("Chart layers"), QStringLiteral("Sheets"), QStringLiteral("Return")),
        qPrintable(m_workbench->problem()));
    if (!atOnce)
        EVENTUALLY(copies().size(), 1);
    if (signal == 0) {
        QVERIFY(InputDevices::cutOffActiveWindow());
        QCOMPARE(m_workbench->program().result().code, 1);
    } else {
        QVERIFY(m_workbench->program().signal(signal));
    }
    if (signal != SIGKILL && signal != 0)
        STEP(*m_workbench, ended());
    QCOMPARE(contentOf(m_file), m_original);
    QCOMPARE(copies().size(), 1);
    QByteArray onDisk = m_original;
    if (theirs)
        replaceFile(m_file, onDisk.replace("Chart layers", "Their layers"));
    if (moved) {
        QVERIFY(QDir(m_product->plugins()).rename(QStringLiteral("chartdesk"), QStringLiteral("desk")));
        m_file = m_product->fileOf(QStringLiteral("desk"));
    }

    STEP(*m_workbench, open(m_file));
    EVENTUALLY(isShown("recoveryBar"), true);
    QCOMPARE(textOf("recoveryBarText").contains(QLatin1String("changed since")), theirs);
    QCOMPARE(firstPoint(), theirs ? QStringLiteral("Their layers") : QStringLiteral("Chart layers"));
    QVERIFY(!m_workbench->isModified());
    QCOMPARE(m_workbench->dialogs(), noDialogs);
    STEP(*m_workbench, click(Place::widget(QStringLiteral("restoreButton"))));
    EVENTUALLY(firstPoint(), QStringLiteral("Sheets"));
    EVENTUALLY(m_workbench->isModified(), true);
    QVERIFY(!isShown("recoveryBar"));
    QCOMPARE(contentOf(m_file), onDisk);
    EVENTUALLY(m_workbench->state().value(QLatin1String("busy")).toBool(), false);
    STEP(*m_workbench, key(QStringLiteral("ctrl+s")));
    EVENTUALLY(m_workbench->isModified(), false);
    // The whole model came over: nothing but the name is different from what a save of the original gives.
    QByteArray saved = contentOf(m_file);
    QVERIFY(saved.contains("name=\"Sheets\""));
    QCOMPARE(copies(), QStringList());
    STEP(*m_workbench, close());

    Product fresh;
    Program program;
    program.setVariable(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    QCOMPARE(program.run({ QStringLiteral("--save"), fresh.fileOf(QStringLiteral("chartdesk")) }).code, 0);
    QCOMPARE(saved.replace("\"Sheets\"", "\"Chart layers\""), contentOf(fresh.fileOf(QStringLiteral("chartdesk"))));
}

void tst_E2eRecovery::killedAgain()
{
    QVERIFY2(openSample(), qPrintable(m_workbench->problem()));
    QVERIFY2(rename(QStringLiteral("Chart layers"), QStringLiteral("First"), QStringLiteral("Return")),
        qPrintable(m_workbench->problem()));
    EVENTUALLY(copies().size(), 1);
    QVERIFY(m_workbench->program().signal(SIGKILL));
    STEP(*m_workbench, open(m_file));
    STEP(*m_workbench, click(Place::widget(QStringLiteral("restoreButton"))));
    EVENTUALLY(firstPoint(), QStringLiteral("First"));
    // At no moment is there no copy.
    QVERIFY(m_workbench->program().signal(SIGKILL));
    QCOMPARE(copies().size(), 1);
    STEP(*m_workbench, open(m_file));
    STEP(*m_workbench, click(Place::widget(QStringLiteral("restoreButton"))));
    EVENTUALLY(firstPoint(), QStringLiteral("First"));
    EVENTUALLY(m_workbench->state().value(QLatin1String("busy")).toBool(), false);
    STEP(*m_workbench, key(QStringLiteral("ctrl+s")));
    EVENTUALLY(m_workbench->isModified(), false);
    STEP(*m_workbench, close());
    QCOMPARE(copies(), QStringList());
}

void tst_E2eRecovery::discarded()
{
    QVERIFY2(openSample(), qPrintable(m_workbench->problem()));
    QVERIFY2(rename(QStringLiteral("Chart layers"), QStringLiteral("Sheets"), QStringLiteral("Return")),
        qPrintable(m_workbench->problem()));
    EVENTUALLY(copies().size(), 1);
    QVERIFY(m_workbench->program().signal(SIGKILL));
    STEP(*m_workbench, open(m_file));
    STEP(*m_workbench, click(Place::widget(QStringLiteral("discardButton"))));
    EVENTUALLY(isShown("recoveryBar"), false);
    QCOMPARE(copies(), QStringList());
    QCOMPARE(firstPoint(), QStringLiteral("Chart layers"));
    STEP(*m_workbench, close());
    STEP(*m_workbench, open(m_file));
    QVERIFY(!isShown("recoveryBar"));
    STEP(*m_workbench, close());
}

void tst_E2eRecovery::cleanEndLeavesNothing()
{
    QVERIFY2(openSample(), qPrintable(m_workbench->problem()));
    QVERIFY2(rename(QStringLiteral("Chart layers"), QStringLiteral("Sheets"), QStringLiteral("Return")),
        qPrintable(m_workbench->problem()));
    EVENTUALLY(copies().size(), 1);
    STEP(*m_workbench, key(QStringLiteral("alt+F4")));
    STEP(*m_workbench, click(Place::button(QStringLiteral("savePrompt"), QStringLiteral("Discard"))));
    STEP(*m_workbench, ended());
    QCOMPARE(copies(), QStringList());
    QCOMPARE(contentOf(m_file), m_original);

    STEP(*m_workbench, open(m_file));
    QVERIFY(m_workbench->program().signal(SIGTERM));
    STEP(*m_workbench, ended());
    QCOMPARE(copies(), QStringList());
}

void tst_E2eRecovery::reloadedQuietly()
{
    QVERIFY2(openSample(), qPrintable(m_workbench->problem()));
    // A place that nobody is at by default: another page, a row that only the scan brings, in a branch opened by hand.
    const QString tree = QStringLiteral("realizationTree");
    STEP(*m_workbench, click(Place::tab(QStringLiteral("tabWidget"), QStringLiteral("RealizationExit"))));
    const QStringList rows = m_workbench->tree(tree);
    QVERIFY(rows.size() > 10);
    STEP(*m_workbench, click(Place::row(tree, { QStringLiteral("Realization"), 5 })));
    STEP(*m_workbench, key(QStringLiteral("Right")));
    STEP(*m_workbench, key(QStringLiteral("Right")));
    EVENTUALLY(viewOf(tree).value(QLatin1String("current")).toArray().size(), 3);
    const QJsonObject before = viewOf(tree);
    QVERIFY(!before.value(QLatin1String("expanded")).toArray().isEmpty());

    QByteArray theirs = m_original;
    replaceFile(m_file, theirs.replace("Chart layers", "Their layers"));
    EVENTUALLY(firstPoint(), QStringLiteral("Their layers"));
    EVENTUALLY(m_workbench->state().value(QLatin1String("busy")).toBool(), false);
    QVERIFY(isShown("realizationTree"));
    EVENTUALLY(viewOf(tree), before);
    QVERIFY(!m_workbench->isModified() && !isShown("changeBar"));
    QCOMPARE(m_workbench->dialogs(), noDialogs);
    QCOMPARE(m_workbench->tree(tree),
        QStringList(rows).replaceInStrings(QStringLiteral("Chart layers"), QStringLiteral("Their layers")));

    // The fresh editor is the one that is edited and saved.
    STEP(*m_workbench, click(Place::tab(QStringLiteral("tabWidget"), QStringLiteral("ExtPointEdit"))));
    QVERIFY2(rename(QStringLiteral("Their layers"), QStringLiteral("Sheets"), QStringLiteral("Return")),
        qPrintable(m_workbench->problem()));
    STEP(*m_workbench, key(QStringLiteral("ctrl+s")));
    EVENTUALLY(m_workbench->isModified(), false);
    QVERIFY(contentOf(m_file).contains("name=\"Sheets\""));
    STEP(*m_workbench, close());
}

void tst_E2eRecovery::changedUnderChanges_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("name");

    QTest::newRow("reload") << QStringLiteral("reloadButton") << QStringLiteral("Their layers");
    QTest::newRow("keep mine") << QStringLiteral("keepButton") << QStringLiteral("Sheets");
}

void tst_E2eRecovery::changedUnderChanges()
{
    QFETCH(QString, button);
    QFETCH(QString, name);
    QVERIFY2(openSample(), qPrintable(m_workbench->problem()));
    QVERIFY2(rename(QStringLiteral("Chart layers"), QStringLiteral("Sheets"), QStringLiteral("Return")),
        qPrintable(m_workbench->problem()));
    QByteArray theirs = m_original;
    theirs.replace("Chart layers", "Their layers");
    replaceFile(m_file, theirs);
    EVENTUALLY(isShown("changeBar"), true);
    QCOMPARE(firstPoint(), QStringLiteral("Sheets"));
    // Saving now would destroy what the others wrote.
    STEP(*m_workbench, key(QStringLiteral("ctrl+s")));
    EVENTUALLY(
        m_workbench->state().value(QLatin1String("status")).toString().startsWith(QLatin1String("Not saved")), true);
    QCOMPARE(contentOf(m_file), theirs);
    QCOMPARE(m_workbench->dialogs(), noDialogs);

    STEP(*m_workbench, click(Place::widget(button)));
    EVENTUALLY(isShown("changeBar"), false);
    EVENTUALLY(firstPoint(), name);
    EVENTUALLY(m_workbench->isModified(), button == QLatin1String("keepButton"));
    STEP(*m_workbench, key(QStringLiteral("ctrl+s")));
    EVENTUALLY(contentOf(m_file).contains(name.toUtf8()), true);
    EVENTUALLY(m_workbench->isModified(), false);
    STEP(*m_workbench, close());
    QCOMPARE(copies(), QStringList());
}

void tst_E2eRecovery::typedWhileOthersWrite()
{
    // What stands in a field that nobody has left yet is a change, too, and not lost by a quiet reload.
    QVERIFY2(openSample(), qPrintable(m_workbench->problem()));
    STEP(*m_workbench,
        click(Place::row(QStringLiteral("defintionTree"),
            { QStringLiteral("saltmere.chartdesk"), QStringLiteral("Chart layers") })));
    STEP(*m_workbench, click(Place::sheetRow(QStringLiteral("basicInfo"), QStringLiteral("name"))));
    STEP(*m_workbench, key(QStringLiteral("ctrl+a")));
    STEP(*m_workbench, type(QStringLiteral("Half typed")));
    EVENTUALLY(m_workbench->state().value(QLatin1String("focus")).toObject().value(QLatin1String("value")).toString(),
        QStringLiteral("Half typed"));
    QVERIFY(!m_workbench->isModified());
    QByteArray theirs = m_original;
    replaceFile(m_file, theirs.replace("Chart layers", "Their layers"));
    EVENTUALLY(isShown("changeBar"), true);
    EVENTUALLY(firstPoint(), QStringLiteral("Half typed"));
    STEP(*m_workbench, click(Place::widget(QStringLiteral("reloadButton"))));
    EVENTUALLY(firstPoint(), QStringLiteral("Their layers"));
    STEP(*m_workbench, key(QStringLiteral("ctrl+s")));
    EVENTUALLY(contentOf(m_file).contains("Their layers"), true);
    QVERIFY(!contentOf(m_file).contains("Half typed"));
    STEP(*m_workbench, close());
}

QTEST_GUILESS_MAIN(tst_E2eRecovery)
#include "tst_e2e_recovery.moc"
