#include "utils/filename.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

using Utils::FileName;

class TestFileName final : public QObject
{
    Q_OBJECT
private slots:
    void parts_data();
    void parts();
    void appendPath_data();
    void appendPath();
    void nullAndEmpty();
    void comparing();
    void exists();
};

void TestFileName::parts_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("cleaned");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("parent");
    const auto row = [](const char *path, const char *cleaned, const char *name, const char *parent) {
        QTest::newRow(*path ? path : "empty") << QString::fromUtf8(path) << QString::fromUtf8(cleaned)
                                              << QString::fromUtf8(name) << QString::fromUtf8(parent);
    };
    row("/a/b/extension.xml", "/a/b/extension.xml", "extension.xml", "/a/b");
    row("/a//b/./c/../d/", "/a/b/d", "d", "/a/b");
    row("/a", "/a", "a", "/");
    row("/", "/", "", "");
    row("/..", "/", "", "");
    row("/../../a", "/a", "a", "/");
    row("", "", "", "");
    row("a", "a", "a", ".");
    row("a/b", "a/b", "b", "a");
    row(".", ".", ".", "..");
    row("a/..", ".", ".", "..");
    row("..", "..", "..", "../..");
    row("../a", "../a", "a", "..");
    row("../..", "../..", "..", "../../..");
    row("/a/back\\slash", "/a/back\\slash", "back\\slash", "/a");
    row("/größe/ä ö", "/größe/ä ö", "ä ö", "/größe");
    row(":/pictures/x.png", ":/pictures/x.png", "x.png", ":/pictures");
}

void TestFileName::parts()
{
    QFETCH(QString, path);
    const FileName file = FileName::fromString(path);
    QTEST(file.toString(), "cleaned");
    QTEST(file.fileName(), "name");
    QTEST(file.parentDir().toString(), "parent");
    QCOMPARE(file.toFileInfo().filePath(), file.toString());
    QCOMPARE(FileName::fromString(file.toString()), file);
}

void TestFileName::appendPath_data()
{
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("joined");
    const auto row = [](const char *base, const char *path, const char *joined) {
        QTest::addRow("%s + %s", base, path)
            << QString::fromLatin1(base) << QString::fromLatin1(path) << QString::fromLatin1(joined);
    };
    row("/a", "b", "/a/b");
    row("/a", "b/c.xml", "/a/b/c.xml");
    row("/a", "/b", "/a/b");
    row("/a", "../b", "/b");
    row("/a", "", "/a");
    row("/", "a", "/a");
    row("", "a", "a");
    row("", "/a", "/a");
    row(".", "a", "a");
}

void TestFileName::appendPath()
{
    QFETCH(QString, base);
    QFETCH(QString, path);
    QTEST(FileName::fromString(base).appendPath(path).toString(), "joined");
}

void TestFileName::nullAndEmpty()
{
    QVERIFY(FileName().isNull());
    QVERIFY(FileName().isEmpty());
    QVERIFY(FileName::fromString(QStringLiteral("")).isEmpty());
    QVERIFY(!FileName::fromString(QStringLiteral("/")).isEmpty());
    QVERIFY(!FileName::fromString(QStringLiteral("a")).isNull());
}

void TestFileName::comparing()
{
    const FileName direct = FileName::fromString(QStringLiteral("/a/b"));
    const FileName roundabout = FileName::fromString(QStringLiteral("/a/c/..//b/"));
    const FileName other = FileName::fromString(QStringLiteral("/a/B"));
    QVERIFY(direct == roundabout);
    QVERIFY(!(direct != roundabout));
    QVERIFY(direct != other);
    QCOMPARE(qHash(direct, 7), qHash(roundabout, 7));
    QHash<FileName, int> hash { { direct, 1 } };
    hash.insert(roundabout, 2);
    hash.insert(other, 3);
    QCOMPARE(hash.size(), 2);
    QCOMPARE(hash.value(direct), 2);

    QVector<FileName> sorted { direct, other, FileName() };
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(sorted, (QVector<FileName> { FileName(), other, direct }));
}

void TestFileName::exists()
{
    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const FileName base = FileName::fromString(directory.path());
    const FileName file = base.appendPath(QStringLiteral("f"));
    const FileName link = base.appendPath(QStringLiteral("link"));
    QVERIFY(base.exists());
    QVERIFY(!file.exists());
    QVERIFY(QFile::link(file.toString(), link.toString()));
    QVERIFY(!link.exists());
    QVERIFY(QFile(file.toString()).open(QIODevice::WriteOnly));
    QVERIFY(file.exists());
    QVERIFY(link.exists());
    QVERIFY(!FileName().exists());
}

QTEST_APPLESS_MAIN(TestFileName)
#include "tst_filename.moc"
