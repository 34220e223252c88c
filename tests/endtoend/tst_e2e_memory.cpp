#include "product.h"
#include "program.h"

#include <QTest>

/// A large file in a process that may have little memory.
class tst_E2eMemory : public QObject
{
    Q_OBJECT

private slots:
    void save();
};

void tst_E2eMemory::save()
{
    QByteArray points;
    for (int i = 0; points.size() < 5'000'000; ++i)
        points
            += "<ExtPoint id=\"point" + QByteArray::number(i) + "\" label=\"A label\" tips=\"What a point is for\"/>\n";
    const QByteArray old = pluginFile("tides", "<ExtPointSet>" + points + "</ExtPointSet>");
    int refused = 0;
    // It runs out of it at another place each time.
    for (const int mebibytes : { 200, 250, 300, 400 }) {
        const Product product({ { s("tides/extension.xml"), old } });
        Program program;
        program.limitMemory(mebibytes);
        const Program::Result result = program.run({ s("--save"), product.fileOf(s("tides")) });
        const QByteArray found = contentOf(product.fileOf(s("tides")));
        const bool isWhole = found.endsWith("</Plugin>\n") && found.count("<ExtPoint ") == old.count("<ExtPoint ");
        // Where it ran out of it after the save, the file is new, too.
        QVERIFY2(isWhole && (result.code != 0 || found != old), QByteArray::number(mebibytes).constData());
        refused += result.code != 0;
        // Where the system says so before the program does, it is the system's words.
        QVERIFY2(result.code == 0
                || (result.code == 1
                    && (result.error.contains("Out of memory.\n")
                        || result.error.contains("Cannot allocate memory\n"))),
            result.error.constData());
    }
    QVERIFY2(refused > 0, "the memory was enough");
}

QTEST_GUILESS_MAIN(tst_E2eMemory)
#include "tst_e2e_memory.moc"
