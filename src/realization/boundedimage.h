#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

/// Reads picture files that nobody vouches for: an extension file can name any file of the machine as an icon. Only
/// regular files are opened, and neither their size nor what they claim to hold can take much memory or time.
namespace BoundedImage {

/// In bytes; a picture for an icon has a few thousand.
constexpr qint64 maximumFileSize = 4 * 1024 * 1024;
/// In pixels of the stored picture, which has to be decoded whole before it is made smaller, while it is painted: a
/// screenful of the largest ones is not to take a second.
constexpr qint64 maximumPixels = 1024 * 1024;
/// Times that a picture may go over itself to become clearer; each takes as long as decoding a whole one.
constexpr int maximumScans = 30;
/// In pixels: larger pictures are made smaller, in proportion.
constexpr int maximumSide = 256;

struct Picture
{
    QImage image;       ///< null when there is none
    QByteArray drawing; ///< of a picture that is drawn from lines: what further sizes of it are drawn from
    QSize size;         ///< in pixels, as the file has it
};

/// In pixels: the sizes in which a drawing is wanted, those of small icons, once and twice and four times as dense.
constexpr int drawingSides[] = { 16, 32, 64 };
/// The smallest of them that covers @p size.
[[nodiscard]] int drawingSide(const QSize &size);
/// What @p picture is drawn as for a side.
[[nodiscard]] QSize drawnSize(const Picture &picture, int side);

/// The picture in the file @p path, a plain file name; one that is drawn from lines is drawn for @p side. Null, with
/// the reason logged, when it is no regular file, too large or no picture.
[[nodiscard]] Picture read(const QString &path, int side);
/// A picture that is drawn from lines, for another side.
[[nodiscard]] QImage drawn(const Picture &picture, int side);

} // namespace BoundedImage
