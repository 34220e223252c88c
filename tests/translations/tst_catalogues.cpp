#include "files.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

QString fileOf(const QString &language)
{
    return s(EXTPOINT_SOURCE_DIR "/translations/extpoint_%1.ts").arg(language);
}

/// The placeholders, whether it has an Alt letter, and how it ends: what both have to agree in.
QString shapeOf(const QString &text)
{
    QStringList parts;
    for (auto found = QRegularExpression(s("%(\\d|n)")).globalMatch(text); found.hasNext();)
        parts.append(found.next().captured());
    std::sort(parts.begin(), parts.end());
    parts.append(text.contains(QRegularExpression(s("&[^\\s&]"))) ? s("letter") : QString());
    parts.append(text.endsWith(QChar(0x2026)) ? s("…") : QString());
    return parts.join(QLatin1Char(' '));
}

} // namespace

/// The catalogues beside the sources that they are for.
class tst_Catalogues : public QObject
{
    Q_OBJECT

private slots:
    void areComplete_data();
    void areComplete();
};

void tst_Catalogues::areComplete_data()
{
    QTest::addColumn<int>("forms"); // of a number
    QTest::newRow("de") << 2;
    QTest::newRow("zh_CN") << 1;
}

void tst_Catalogues::areComplete()
{
    const QString language = s(QTest::currentDataTag());
    QFETCH(const int, forms);
    // What the sources say by now changes nothing.
    const QTemporaryDir dir;
    const QString copy = dir.filePath(s("extpoint_%1.ts").arg(language));
    const QByteArray content = contentOf(fileOf(language));
    QVERIFY(QFile::copy(fileOf(language), copy));
    QProcess update;
    update.setWorkingDirectory(s(EXTPOINT_SOURCE_DIR));
    update.start(s(LUPDATE),
        { s("-silent"), s("-no-obsolete"), s("-locations"), s("none"), s("-I"), s("src"), s("-I"), s("host"), s("src"),
            s("host"), s("-ts"), copy });
    QVERIFY(update.waitForFinished() && update.exitCode() == 0);
    QVERIFY2(contentOf(copy) == content, "build the target update-translations, and translate what is new");

    QVERIFY(!content.contains("type=\"unfinished\""));
    QXmlStreamReader reader(content);
    QString source;
    int count = 0;
    int numbers = 0;
    const auto agrees = [&] {
        const QString text = reader.readElementText();
        ++count;
        return !text.trimmed().isEmpty() && shapeOf(text) == shapeOf(source);
    };
    while (!reader.atEnd()) {
        reader.readNext();
        const bool isNumber = reader.name() == QLatin1String("numerusform");
        if (reader.isEndElement() && reader.name() == QLatin1String("message")) {
            QVERIFY2(numbers == 0 || numbers == forms, qPrintable(source));
            numbers = 0;
        } else if (reader.isStartElement() && reader.name() == QLatin1String("source")) {
            source = reader.readElementText();
        } else if (reader.isStartElement() && isNumber) {
            ++numbers;
            QVERIFY2(agrees(), qPrintable(source));
        } else if (reader.isStartElement() && reader.name() == QLatin1String("translation")
            && !source.contains(s("%n"))) {
            QVERIFY2(agrees(), qPrintable(source));
        }
    }
    QVERIFY(!reader.hasError());
    QVERIFY(count > 400);
}

QTEST_MAIN(tst_Catalogues)
#include "tst_catalogues.moc"
