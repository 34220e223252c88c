#include "realization/realizationicons.h"

#include "model/modeltesting.h"

#include <QDateTime>
#include <QDir>
#include <QImage>
#include <QImageWriter>
#include <QPixmap>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

QByteArray png(const QSize &size, QColor colour = Qt::red, const char *format = "png", bool progressive = false)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, format);
    writer.setProgressiveScanWrite(progressive);
    if (!writer.write(image))
        qFatal("no picture");
    return bytes;
}

/// A grey picture of 1000 x 1000 pixels that goes over itself this many times.
QByteArray jpeg(int scans)
{
    const QByteArray bytes = png({ 1000, 1000 }, Qt::gray, "jpeg", scans > 1);
    // The last scan over and over.
    const QByteArray last = bytes.mid(bytes.lastIndexOf("\xff\xda")).chopped(2);
    return scans > 1 ? bytes.chopped(2) + last.repeated(scans) + bytes.right(2) : bytes;
}

/// A bitmap of this size whose picture data ends early.
QByteArray bitmap(qint32 width, qint32 height)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.writeRawData("BM", 2);
    stream << quint32(154) << quint32(0) << quint32(54);
    stream << quint32(40) << width << height << quint16(1) << quint16(24) << quint32(0) << quint32(0) << qint32(0)
           << qint32(0) << quint32(0) << quint32(0);
    bytes.append(100, '\x7f');
    return bytes;
}

QByteArray svg(const QByteArray &content, const QByteArray &before = QByteArray())
{
    return "<?xml version=\"1.0\"?>" + before
        + "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"24\" "
          "height=\"24\">"
        + content + "</svg>";
}

} // namespace

class TestRealizationIcons : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void lookup_data();
    void lookup();
    void files_data();
    void files();
    void missingAndChanging();

private:
    QString write(const char *name, const QByteArray &bytes) const
    {
        QFile file(m_base + s(name));
        QDir().mkpath(QFileInfo(file).path());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("can't write %s", name);
        return file.fileName();
    }
    [[nodiscard]] static bool isPlaceholder(const QIcon &icon)
    {
        return icon.name() == RealizationIcons::placeholderName();
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_base;
};

void TestRealizationIcons::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_base = m_dir->path() + s("/");
}

void TestRealizationIcons::lookup_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("asStored");
    QTest::newRow("relative") << s("icons/there.png") << false;
    QTest::newRow("absolute and there") << s("%1there.png") << true;
    QTest::newRow("absolute and missing") << s("/nowhere/there.png") << false;
    QTest::newRow("a directory") << s("%1icons") << false;
    QTest::newRow("a pipe") << s("%1pipe") << false;
    QTest::newRow("a resource") << s(":/qt-project.org/styles/commonstyle/images/standardbutton-apply-16.png") << false;
    QTest::newRow("a prefix") << s("prefix:there.png") << false;
    QTest::newRow("a URL of a file") << s("file://%1there.png") << false;
    QTest::newRow("a URL") << s("http://localhost/there.png") << false;
}

void TestRealizationIcons::lookup()
{
    QFETCH(QString, value);
    QFETCH(bool, asStored);
    write("there.png", png({ 8, 8 }));
    write("icons/other.png", png({ 8, 8 }));
    QCOMPARE(::mkfifo(QFile::encodeName(m_base + s("pipe")).constData(), 0600), 0);
    QDir::setSearchPaths(s("prefix"), { m_base });
    value = value.contains(s("%1")) ? value.arg(m_base) : value;
    QCOMPARE(RealizationIcons::path(value, s("/base/")), asStored ? value : s("/base/") + value);
    QCOMPARE(isPlaceholder(RealizationIcons::icon(value, s("/base/"))), !asStored);
    // A created node has no base.
    QCOMPARE(isPlaceholder(RealizationIcons::icon(value, QString())), !asStored);
    QVERIFY(RealizationIcons::path(QString(), m_base).isEmpty());
    QVERIFY(RealizationIcons::icon(QString(), m_base).isNull());
}

void TestRealizationIcons::files_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("largest");
    const auto row = [](const char *name, const QByteArray &bytes, const QSize &largest) {
        QTest::newRow(name) << bytes << largest;
    };
    const QSize none;
    const QByteArray picture = png({ 20, 10 });
    const QByteArray room(4 * 1024 * 1024 - picture.size(), ' ');
    const QByteArray rect = "<rect width=\"24\" height=\"24\"/>";
    row("png", picture, { 20, 10 });
    row("large png is made smaller", png({ 1000, 500 }), { 256, 128 });
    row("a line stays a line", png({ 2000, 1 }), { 256, 1 });
    row("drawing", svg(rect), { 64, 64 });
    row("just small enough", picture + room, { 20, 10 });
    row("too large a file", picture + room + " ", none);
    row("too many pixels", png({ 7999, 7999 }), none);
    row("jpeg", jpeg(1), { 256, 256 });
    row("jpeg of too many scans", jpeg(1'000), none);
    row("huge sides", bitmap(0x7fffffff, 0x7fffffff), none);
    row("empty", "", none);
    row("text", "Not a picture, whatever its name.", none);
    row("cut off in its head", picture.left(20), none);
    row("drawing cut off", svg(rect).chopped(6), none);
    row("drawing with a picture", svg("<g><image xlink:href=\"there.png\"/></g>"), none);
    row("drawing with a style sheet", svg("", "<?xml-stylesheet type=\"text/css\" href=\"there.css\"?>"), none);
    QByteArray uses = "<g id=\"g0\"><rect width=\"4\" height=\"4\"/></g>";
    for (int i = 0; i < 40; ++i) {
        const QByteArray use = "<use xlink:href=\"#g" + QByteArray::number(i) + "\"/>";
        uses += "<g id=\"g" + QByteArray::number(i + 1) + "\">" + use + use + "</g>";
    }
    row("drawing that doubles again and again", svg(uses), none);
    row("deep drawing", svg(QByteArray("<g>").repeated(500) + QByteArray("</g>").repeated(500)), none);
}

void TestRealizationIcons::files()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QSize, largest);
    write("there.png", png({ 8, 8 }));
    const QIcon icon = RealizationIcons::fromFile(write("an icon", bytes));
    QVERIFY(!icon.isNull());
    QCOMPARE(isPlaceholder(icon), largest.isEmpty());
    QSize found;
    const QList<QSize> sizes = icon.availableSizes();
    for (const QSize &size : sizes)
        found = found.expandedTo(size);
    QCOMPARE(found.isEmpty() ? QSize() : found, largest);
    for (const QSize &size : sizes)
        QCOMPARE(icon.pixmap(size).size(), size);
}

void TestRealizationIcons::missingAndChanging()
{
    const QString path = m_base + s("late.png");
    const auto colour = [&] { return RealizationIcons::fromFile(path).pixmap(16).toImage().pixelColor(8, 8); };
    QVERIFY(isPlaceholder(RealizationIcons::fromFile(path)));
    write("late.png", png({ 16, 16 }, Qt::red));
    QCOMPARE(colour(), QColor(Qt::red));
    write("late.png", png({ 16, 17 }, Qt::blue));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(5), QFileDevice::FileModificationTime));
    file.close();
    QCOMPARE(colour(), QColor(Qt::blue));
    QVERIFY(QFile::remove(path));
    QVERIFY(isPlaceholder(RealizationIcons::fromFile(path)));
}

QTEST_MAIN(TestRealizationIcons)
#include "tst_realizationicons.moc"
