#include "product.h"
#include "program.h"

#include <QTest>

/// A large file in a process that may have little memory: it runs out of it at another place in each row.
class tst_E2eMemory : public QObject
{
    Q_OBJECT

private slots:
    void save_data();
    void save();
    void cleanupTestCase();

private:
    int m_refused = 0;
};

void tst_E2eMemory::save_data()
{
    QTest::addColumn<int>("mebibytes");
    for (const int mebibytes : { 200, 250, 300, 400 })
        QTest::addRow("%d MiB", mebibytes) << mebibytes;
}

void tst_E2eMemory::save()
{
    QFETCH(int, mebibytes);
    const Product product;
    const QString file = product.fileOf(QStringLiteral("tides"));
    QByteArray old = "<Plugin id=\"tides\"><ExtPointSet>";
    for (int i = 0; old.size() < 5'000'000; ++i)
        old += "<ExtPoint id=\"point" + QByteArray::number(i) + "\" label=\"A label\" tips=\"What a point is for\"/>\n";
    old += "</ExtPointSet></Plugin>\n";
    writeFile(file, old);
    Program program;
    program.limitMemory(mebibytes);
    const Program::Result result = program.run({ QStringLiteral("--save"), file });
    const QByteArray found = contentOf(file);
    if (result.code == 0) {
        QVERIFY(found != old && found.endsWith("</Plugin>\n"));
        QCOMPARE(found.count("<ExtPoint "), old.count("<ExtPoint "));
        return;
    }
    ++m_refused;
    QCOMPARE(result.code, 1);
    // Where the system says so before the program does, it is the system's words.
    QVERIFY2(result.error.contains("Out of memory.\n") || result.error.contains("Cannot allocate memory\n"),
        result.error.constData());
    // Or whole and new, where it ran out of it after the save.
    QVERIFY(found == old || (found.endsWith("</Plugin>\n") && found.count("<ExtPoint ") == old.count("<ExtPoint ")));
}

void tst_E2eMemory::cleanupTestCase()
{
    QVERIFY2(m_refused > 0, "the memory was enough");
}

QTEST_GUILESS_MAIN(tst_E2eMemory)
#include "tst_e2e_memory.moc"
