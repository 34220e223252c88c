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

QByteArray png(const QSize &size, QColor colour = Qt::red)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!image.save(&buffer, "png"))
        qFatal("no picture");
    return bytes;
}

/// A grey picture of 1000 x 1000 pixels that goes over itself this many times.
QByteArray jpeg(int scans)
{
    QImage image(1000, 1000, QImage::Format_Grayscale8);
    image.fill(Qt::gray);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(scans > 1);
    if (!writer.write(image))
        qFatal("no picture");
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
    void pipe();
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
    QTest::addColumn<QSize>("largest"); // empty: not shown
    const QSize no;
    QTest::newRow("png") << png({ 20, 10 }) << QSize(20, 10);
    QTest::newRow("large png is made smaller") << png({ 1000, 500 }) << QSize(256, 128);
    QTest::newRow("a line stays a line") << png({ 2000, 1 }) << QSize(256, 1);
    QTest::newRow("drawing") << svg("<rect width=\"24\" height=\"24\"/>") << QSize(64, 64);
    const QByteArray picture = png({ 20, 10 });
    const int most = 4 * 1024 * 1024;
    QTest::newRow("just small enough") << picture + QByteArray(most - picture.size(), ' ') << QSize(20, 10);
    QTest::newRow("too large a file") << picture + QByteArray(most - picture.size() + 1, ' ') << no;
    QTest::newRow("too many pixels") << png({ 7999, 7999 }) << no;
    QTest::newRow("jpeg") << jpeg(1) << QSize(256, 256);
    QTest::newRow("jpeg of too many scans") << jpeg(1'000) << no;
    QTest::newRow("huge sides") << bitmap(0x7fffffff, 0x7fffffff) << no;
    QTest::newRow("empty") << QByteArray() << no;
    QTest::newRow("text") << QByteArray("Not a picture, whatever its name.") << no;
    QTest::newRow("cut off in its head") << png({ 20, 10 }).left(20) << no;
    QTest::newRow("drawing cut off") << svg("<rect width=\"24\" height=\"24\"/>").chopped(6) << no;
    QTest::newRow("drawing with a picture") << svg("<g><image xlink:href=\"there.png\"/></g>") << no;
    QTest::newRow("drawing with a style sheet")
        << svg(QByteArray(), "<?xml-stylesheet type=\"text/css\" href=\"there.css\"?>") << no;
    QByteArray uses = "<g id=\"g0\"><rect width=\"4\" height=\"4\"/></g>";
    for (int i = 0; i < 40; ++i) {
        const QByteArray use = "<use xlink:href=\"#g" + QByteArray::number(i) + "\"/>";
        uses += "<g id=\"g" + QByteArray::number(i + 1) + "\">" + use + use + "</g>";
    }
    QTest::newRow("drawing that doubles again and again") << svg(uses) << no;
    QTest::newRow("deep drawing") << svg(QByteArray("<g>").repeated(500) + QByteArray("</g>").repeated(500)) << no;
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

void TestRealizationIcons::pipe()
{
    const QString path = m_base + s("pipe");
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    QVERIFY(isPlaceholder(RealizationIcons::fromFile(path)));
    QVERIFY(isPlaceholder(RealizationIcons::icon(s("pipe"), m_base)));
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
