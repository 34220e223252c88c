#include "realizationdesk.h"

#include <QDir>

/// What the program does without a person: the real program with the real plug-in, on the sample.
class tst_E2eCli : public QObject
{
    Q_OBJECT

private slots:
    void savingIsStable_data();
    void savingIsStable();
    void saveBroken();
    void saveWithLoss_data();
    void saveWithLoss();
    void fewDescriptors();
};

namespace {

Program::Result runWithSeed(const char *seed, const QStringList &arguments)
{
    Program program;
    program.setVariable(s("QT_HASH_SEED"), QString::fromLatin1(seed));
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
        const Program::Result result = runWithSeed(seeds[i], { s("--save"), files[i] });
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
    const Product untouched;
    const QStringList names = QDir(product.plugins()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        QCOMPARE(QDir(product.plugins() + QLatin1Char('/') + name).entryList(QDir::Files | QDir::Hidden),
            QDir(untouched.plugins() + QLatin1Char('/') + name).entryList(QDir::Files | QDir::Hidden));
        if (name != plugin && QFile::exists(product.fileOf(name)))
            QCOMPARE(contentOf(product.fileOf(name)), contentOf(untouched.fileOf(name)));
    }
}

void tst_E2eCli::saveBroken()
{
    const Product product;
    const QString file = product.fileOf(s("tides"));
    const QByteArray content = "<Plugin id=\"a\">\n  <ExtPointSet>\n</Plugin>\n";
    writeFile(file, content);
    const Program::Result result = runWithSeed("1", { s("--save"), file });
    QCOMPARE(result.code, 1);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.error.count('\n'), 1);
    QVERIFY2(result.error.startsWith("extpoint-workbench: " + QFile::encodeName(file) + ": line 3, column "),
        result.error.constData());
    QCOMPARE(contentOf(file), content);
}

void tst_E2eCli::saveWithLoss_data()
{
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QByteArray>("other");
    QTest::addColumn<bool>("isRefused");
    QTest::addColumn<QByteArray>("told");

    const QByteArray marked
        = "<Plugin id=\"a\"><ExtDataSet><ExtData id=\"p\"><x text=\"tr('Open')\"/></ExtData></ExtDataSet>"
          "</Plugin>";
    QTest::newRow("nothing to tell") << QByteArray("<Plugin id=\"a\"><ExtPointSet/></Plugin>")
                                     << QByteArray("<Plugin/>") << false << QByteArray();
    QTest::newRow("nobody declares it") << marked << QByteArray("<Plugin/>") << false
                                        << QByteArray("no plug-in declares");
    QTest::newRow("a broken file may declare it") << marked << QByteArray("<Plugin") << true << QByteArray("\"other\"");
    QTest::newRow("a set in small letters") << QByteArray("<Plugin id=\"a\"><ExtPointSet/><extdataset/></Plugin>")
                                            << QByteArray("<Plugin/>") << true << QByteArray("<extdataset>");
    QTest::newRow("no set at all") << QByteArray("<Plugin id=\"a\"/>") << QByteArray("<Plugin/>") << true
                                   << QByteArray("XML declaration");
}

void tst_E2eCli::saveWithLoss()
{
    QFETCH(QByteArray, own);
    QFETCH(QByteArray, other);
    QFETCH(bool, isRefused);
    QFETCH(QByteArray, told);
    const Product product({ { s("own/extension.xml"), own }, { s("other/extension.xml"), other } });
    const QString file = product.fileOf(s("own"));
    const Program::Result careful = runWithSeed("1", { s("--save"), file });
    QCOMPARE(careful.code, isRefused ? 3 : 0);
    QVERIFY2(careful.error.contains(told) && careful.error.isEmpty() == told.isEmpty(), careful.error.constData());
    QCOMPARE(contentOf(file) == own, isRefused);
    const Program::Result forced = runWithSeed("1", { s("--save"), s("--force"), file });
    QCOMPARE(forced.code, 0);
    QVERIFY(contentOf(file) != own);
}

/// Either all goes well or the reason is said; from some number on all goes well.
void tst_E2eCli::fewDescriptors()
{
    const Product product;
    const QString file = product.fileOf(s("tides"));
    // There is nothing to tell of a save any more.
    QCOMPARE(runWithSeed("1", { s("--save"), file }).code, 0);
    for (const int most : { 5, 6, 7, 8, 9, 16, 24, 32, 36, 40, 64 }) {
        QProcess program;
        program.start(s("/bin/sh"),
            { s("-c"), s("ulimit -n %1 && exec \"$0\" --save \"$1\"").arg(most),
                QStringLiteral(EXTPOINT_BINARY_DIR "/bin/extpoint-workbench"), file });
        QVERIFY(program.waitForFinished(Program::Patience));
        const QByteArray error = program.readAllStandardError();
        QVERIFY2(program.exitStatus() == QProcess::NormalExit, QByteArray::number(most).constData());
        QVERIFY2(program.exitCode() == (most < 64 && !error.isEmpty() ? 1 : 0), error.constData());
    }
}

QTEST_GUILESS_MAIN(tst_E2eCli)
#include "tst_e2e_cli.moc"
