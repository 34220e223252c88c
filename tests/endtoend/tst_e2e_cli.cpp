#include "product.h"
#include "program.h"

#include <QDir>
#include <QTest>

/// What the program does without a person: the real program with the real plug-in, on the sample.
class tst_E2eCli : public QObject
{
    Q_OBJECT

private slots:
    void savingIsStable_data();
    void savingIsStable();
    void savesOrRefuses_data();
    void savesOrRefuses();
    void fewDescriptors();
};

namespace {

Program::Result run(const QStringList &arguments, const char *seed = "1")
{
    Program program;
    program.setVariable(s("QT_HASH_SEED"), s(seed));
    return program.run(arguments);
}

} // namespace

void tst_E2eCli::savingIsStable_data()
{
    QTest::addColumn<QString>("plugin");
    for (const char *name : { "shell", "chartdesk", "tides" })
        QTest::newRow(name) << s(name);
}

void tst_E2eCli::savingIsStable()
{
    QFETCH(QString, plugin);
    const Product product;
    const Product other;
    const QByteArray original = contentOf(product.fileOf(plugin));
    QByteArray saved[3];
    const QString files[] = { product.fileOf(plugin), product.fileOf(plugin), other.fileOf(plugin) };
    const char *seeds[] = { "1", "77", "4242" };
    for (int i = 0; i < 3; ++i) {
        const Program::Result result = run({ s("--save"), files[i] }, seeds[i]);
        // What the first save changes beside is told, and nothing else.
        const QList<QByteArray> lines = result.error.split('\n');
        for (const QByteArray &line : lines)
            QVERIFY2(line.isEmpty() || line.startsWith("extpoint-workbench: " + QFile::encodeName(files[i]) + ": "),
                line.constData());
        QVERIFY2(i != 1 || result.error.isEmpty(), result.error.constData());
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(result.code, 0);
        saved[i] = contentOf(files[i]);
    }
    QVERIFY(saved[0] != original);
    QCOMPARE(saved[1], saved[0]);
    QCOMPARE(saved[2], saved[0]);
    // Nothing but the file itself is written.
    QVERIFY(product.filesWithout(plugin) == Product().filesWithout(plugin));
    QCOMPARE(QDir(QFileInfo(files[0]).path()).entryList(QDir::Files | QDir::Hidden), QStringList(s("extension.xml")));
}

void tst_E2eCli::savesOrRefuses_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QByteArray>("other");
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("told");

    const QByteArray marked
        = "<Plugin id=\"a\"><ExtDataSet><ExtData id=\"p\"><x text=\"tr('Open')\"/></ExtData></ExtDataSet>"
          "</Plugin>";
    const auto row = [](const char *name, const QByteArray &own, int code, const char *told,
                         const QByteArray &other = "<Plugin/>") {
        QTest::newRow(name) << own << other << code << QByteArray(told);
    };
    row("nothing to tell", "<Plugin id=\"a\"><ExtPointSet/></Plugin>", 0, "");
    row("nobody declares it", marked, 0, "no plug-in declares");
    row("a broken file may declare it", marked, 3, "\"other\"", "<Plugin");
    row("a set in small letters", "<Plugin id=\"a\"><ExtPointSet/><extdataset/></Plugin>", 3, "<extdataset>");
    row("no set at all", "<Plugin id=\"a\"/>", 3, "XML declaration");
    row("broken", "<Plugin id=\"a\">\n  <ExtPointSet>\n</Plugin>\n", 1, "line 3, column ");
}

void tst_E2eCli::savesOrRefuses()
{
    QFETCH(QByteArray, own);
    QFETCH(QByteArray, other);
    QFETCH(int, code);
    QFETCH(QByteArray, told);
    const Product product({ { s("own/extension.xml"), own }, { s("other/extension.xml"), other } });
    const QString file = product.fileOf(s("own"));
    const Program::Result careful = run({ s("--save"), file });
    QCOMPARE(careful.code, code);
    QVERIFY2(careful.error.contains(told) && careful.error.isEmpty() == told.isEmpty(), careful.error.constData());
    QCOMPARE(contentOf(file) == own, code != 0);
    const bool readable = code != 1;
    QCOMPARE(run({ s("--save"), s("--force"), file }).code, readable ? 0 : 1);
    QCOMPARE(contentOf(file) != own, readable);
}

/// Either all goes well or the reason is said; from some number on all goes well.
void tst_E2eCli::fewDescriptors()
{
    const Product product;
    const QString file = product.fileOf(s("tides"));
    // There is nothing to tell of a save any more.
    QCOMPARE(run({ s("--save"), file }).code, 0);
    for (const int most : { 5, 6, 7, 8, 9, 16, 24, 32, 36, 40, 64 }) {
        QProcess program;
        program.start(s("/bin/sh"),
            { s("-c"), s("ulimit -n %1 && exec \"$0\" --save \"$1\"").arg(most),
                s(EXTPOINT_BINARY_DIR "/bin/extpoint-workbench"), file });
        QVERIFY(program.waitForFinished(Program::Patience));
        const QByteArray error = program.readAllStandardError();
        QVERIFY2(program.exitStatus() == QProcess::NormalExit, QByteArray::number(most).constData());
        QVERIFY2(program.exitCode() == (most < 64 && !error.isEmpty() ? 1 : 0), error.constData());
    }
}

QTEST_GUILESS_MAIN(tst_E2eCli)
#include "tst_e2e_cli.moc"
