#include "inputdevices.h"
#include "realizationdesk.h"

#include <QDir>
#include <QJsonArray>

#include <csignal>

namespace {

const QStringList noDialogs;

/// As a version control system brings another version of a file.
void replaceFile(const QString &path, const QByteArray &content)
{
    const QString beside = path + s(".theirs");
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
    void changedUnderChanges_data();
    void changedUnderChanges();

private:
    [[nodiscard]] QString problem() const { return m_workbench->problem(); }
    [[nodiscard]] bool openSample();
    [[nodiscard]] bool rename(const QString &before, const QString &after, const QString &lastKey);
    [[nodiscard]] QString firstPoint();
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
    m_file = m_product->fileOf(s("chartdesk"));
    m_original = contentOf(m_file);
}

void tst_E2eRecovery::cleanup()
{
    m_workbench->finish();
}

bool tst_E2eRecovery::openSample()
{
    return m_workbench->open(m_file) && m_workbench->click(Place::tab(s("tabWidget"), s("ExtPointEdit")));
}

bool tst_E2eRecovery::rename(const QString &before, const QString &after, const QString &lastKey)
{
    return m_workbench->click(Place::row(s("defintionTree"), { s("saltmere.chartdesk"), before }))
        && m_workbench->typeIntoSheet(s("basicInfo"), s("name"), after, lastKey)
        && m_workbench->waitFor(s("the new name"), [&] { return firstPoint() == after; });
}

/// The first row under the plug-in's in the definition tree.
QString tst_E2eRecovery::firstPoint()
{
    return m_workbench->tree(s("defintionTree")).value(1).trimmed();
}

QStringList tst_E2eRecovery::copies()
{
    return QDir(m_workbench->program().stateDirectory() + s("/extpoint-workbench/recovery"))
        .entryList({ s("*.recovery") }, QDir::Files);
}

bool tst_E2eRecovery::isShown(const char *widget)
{
    return m_workbench->ask(Place::widget(QString::fromLatin1(widget)).request()).value(s("visible")).toBool();
}

QString tst_E2eRecovery::textOf(const char *widget)
{
    return m_workbench->ask(Place::widget(QString::fromLatin1(widget)).request()).value(s("value")).toString();
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
    QTest::newRow("its display gone") << 0 << true << false << false;
}

void tst_E2eRecovery::ended()
{
    QFETCH(int, signal);
    QFETCH(bool, atOnce);
    QFETCH(bool, theirs);
    QFETCH(bool, moved);
    STEP(*this, openSample());
    STEP(*this, rename(s("Chart layers"), s("Sheets"), s("Return")));
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
        QVERIFY(QDir(m_product->plugins()).rename(s("chartdesk"), s("desk")));
        m_file = m_product->fileOf(s("desk"));
    }

    STEP(*m_workbench, open(m_file));
    EVENTUALLY(isShown("recoveryBar"), true);
    QCOMPARE(textOf("recoveryBarText").contains(s("changed since")), theirs);
    QCOMPARE(firstPoint(), theirs ? s("Their layers") : s("Chart layers"));
    QVERIFY(!m_workbench->isModified());
    QCOMPARE(m_workbench->dialogs(), noDialogs);
    STEP(*m_workbench, click(Place::widget(s("restoreButton"))));
    EVENTUALLY(firstPoint(), s("Sheets"));
    EVENTUALLY(m_workbench->isModified(), true);
    QVERIFY(!isShown("recoveryBar"));
    QCOMPARE(contentOf(m_file), onDisk);
    EVENTUALLY(m_workbench->state().value(s("busy")).toBool(), false);
    STEP(*m_workbench, key(s("ctrl+s")));
    EVENTUALLY(m_workbench->isModified(), false);
    // The whole model came over: nothing but the name is different from what a save of the original gives.
    QByteArray saved = contentOf(m_file);
    QVERIFY(saved.contains("name=\"Sheets\""));
    QCOMPARE(copies(), QStringList());
    STEP(*m_workbench, close());

    Product fresh;
    Program program;
    program.setVariable(s("QT_QPA_PLATFORM"), s("offscreen"));
    QCOMPARE(program.run({ s("--save"), fresh.fileOf(s("chartdesk")) }).code, 0);
    QCOMPARE(saved.replace("\"Sheets\"", "\"Chart layers\""), contentOf(fresh.fileOf(s("chartdesk"))));
}

void tst_E2eRecovery::changedUnderChanges_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("name");

    QTest::newRow("reload") << s("reloadButton") << s("Their layers");
    QTest::newRow("keep mine") << s("keepButton") << s("Sheets");
}

void tst_E2eRecovery::changedUnderChanges()
{
    QFETCH(QString, button);
    QFETCH(QString, name);
    STEP(*this, openSample());
    STEP(*this, rename(s("Chart layers"), s("Sheets"), s("Return")));
    QByteArray theirs = m_original;
    theirs.replace("Chart layers", "Their layers");
    replaceFile(m_file, theirs);
    EVENTUALLY(isShown("changeBar"), true);
    QCOMPARE(firstPoint(), s("Sheets"));
    // Saving now would destroy what the others wrote.
    STEP(*m_workbench, key(s("ctrl+s")));
    EVENTUALLY(m_workbench->state().value(s("status")).toString().startsWith(s("Not saved")), true);
    QCOMPARE(contentOf(m_file), theirs);
    QCOMPARE(m_workbench->dialogs(), noDialogs);

    STEP(*m_workbench, click(Place::widget(button)));
    EVENTUALLY(isShown("changeBar"), false);
    EVENTUALLY(firstPoint(), name);
    EVENTUALLY(m_workbench->isModified(), button == s("keepButton"));
    STEP(*m_workbench, key(s("ctrl+s")));
    EVENTUALLY(contentOf(m_file).contains(name.toUtf8()), true);
    EVENTUALLY(m_workbench->isModified(), false);
    STEP(*m_workbench, close());
    QCOMPARE(copies(), QStringList());
}

QTEST_GUILESS_MAIN(tst_E2eRecovery)
#include "tst_e2e_recovery.moc"
