#include "boundedimage.h"

#include "extensionfile/logging.h"
#include "extensionfile/regularfile.h"
#include "model/modellog.h"

#include <QBuffer>
#include <QImageReader>
#include <QXmlStreamReader>

#include <algorithm>
#include <iterator>

namespace {

/// Drawings: what a picture of this kind may hold, so that painting it comes to an end soon. A "use" stands for a whole
/// part of the picture, which may hold further ones, so their number counts more than anything.
constexpr int maximumElements = 10000;
constexpr int maximumUses = 12;
constexpr int maximumDepth = 100;

bool isDrawing(const QByteArray &format)
{
    return format == "svg";
}

/// Other formats that happen to be installed are left alone: a reader of containers, such as "ico", decodes what it
/// finds in them whatever the container says of its size.
bool isKnown(const QByteArray &format)
{
    static const QByteArray formats[] = { "svg", "png", "jpeg", "jpg", "gif", "bmp", "webp", "xpm" };
    return std::find(std::begin(formats), std::end(formats), format) != std::end(formats);
}

/// Whether a drawing can be painted without harm: no other picture and no style sheet, which would be opened by their
/// names, be they pipes, and read without limits; and not too much of everything.
bool isHarmless(const QByteArray &drawing)
{
    QXmlStreamReader reader(drawing);
    int elements = 0;
    int uses = 0;
    int depth = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::ProcessingInstruction
            && reader.processingInstructionTarget() == QLatin1String("xml-stylesheet"))
            return false;
        if (token == QXmlStreamReader::EndElement)
            --depth;
        if (token != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == QLatin1String("use"))
            ++uses;
        if (++elements > maximumElements || ++depth > maximumDepth || uses > maximumUses
            || reader.name() == QLatin1String("image"))
            return false;
    }
    return !reader.hasError();
}

/// Programs write a dozen at most.
bool hasTooManyScans(const QByteArray &jpeg)
{
    return jpeg.count("\xff\xda") > BoundedImage::maximumScans;
}

QSize shrunk(const QSize &size, int side)
{
    return size.scaled(side, side, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

BoundedImage::Picture decoded(const QByteArray &bytes, int side, QString *problem)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead() || !isKnown(reader.format())) {
        *problem = QStringLiteral("No picture.");
        return {};
    }
    const bool drawing = isDrawing(reader.format());
    if (drawing && !isHarmless(bytes)) {
        *problem = QStringLiteral("A damaged drawing, or one with too much in it.");
        return {};
    }
    const QSize size = reader.size();
    if (size.isEmpty()) {
        *problem = QStringLiteral("A picture that does not say its size.");
        return {};
    }
    if (!drawing && qint64(size.width()) * size.height() > BoundedImage::maximumPixels) {
        *problem = QStringLiteral("A picture of %1x%2 pixels.").arg(size.width()).arg(size.height());
        return {};
    }
    if (reader.format() == "jpeg" && hasTooManyScans(bytes)) {
        *problem = QStringLiteral("A picture in more than %1 scans.").arg(BoundedImage::maximumScans);
        return {};
    }
    BoundedImage::Picture picture { {}, drawing ? bytes : QByteArray(), size };
    if (drawing)
        reader.setScaledSize(shrunk(size, side));
    else if (qMax(size.width(), size.height()) > BoundedImage::maximumSide)
        reader.setScaledSize(shrunk(size, BoundedImage::maximumSide));
    picture.image = reader.read();
    if (picture.image.isNull())
        *problem = reader.errorString();
    return picture;
}

} // namespace

int BoundedImage::drawingSide(const QSize &size)
{
    const int wanted = qMax(size.width(), size.height());
    const auto *const side = std::lower_bound(std::begin(drawingSides), std::prev(std::end(drawingSides)), wanted);
    return *side;
}

QSize BoundedImage::drawnSize(const Picture &picture, int side)
{
    return shrunk(picture.size, side);
}

BoundedImage::Picture BoundedImage::read(const QString &path, int side)
{
    QByteArray bytes;
    ExtensionFile::ReadError fileError;
    QString problem;
    Picture picture;
    if (!ExtensionFile::readRegularFile(path, maximumFileSize, &bytes, &fileError))
        problem = fileError.reason;
    else if (bytes.size() > maximumFileSize)
        problem = QStringLiteral("Too large.");
    else
        picture = decoded(bytes, side, &problem);
    if (picture.image.isNull())
        qCWarning(modelLog).noquote() << ExtensionFile::oneLine(
            QStringLiteral("%1: not shown as an icon: %2").arg(path, problem));
    return picture;
}

QImage BoundedImage::drawn(const Picture &picture, int side)
{
    QBuffer buffer;
    buffer.setData(picture.drawing);
    QImageReader reader(&buffer, "svg");
    reader.setScaledSize(drawnSize(picture, side));
    return reader.read();
}
