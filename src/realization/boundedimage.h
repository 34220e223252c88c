#pragma once

#include <QImage>
#include <QString>
#include <QVector>

/// Reads picture files that nobody vouches for: an extension file can name any file of the machine as an icon. Only
/// regular files are opened, and neither their size nor what they claim to hold can take much memory or time.
namespace BoundedImage {

/// In bytes; a picture for an icon has a few thousand.
constexpr qint64 maximumFileSize = 4 * 1024 * 1024;
/// In pixels of the stored picture, which has to be decoded whole before it is made smaller.
constexpr qint64 maximumPixels = 64 * 1000 * 1000;
/// In pixels: larger pictures are made smaller, in proportion.
constexpr int maximumSide = 256;

/// The picture in the file @p path, a plain file name, in the sizes that an icon wants; one size unless it is drawn
/// from lines. Empty, with the reason logged, when it is no regular file, too large or no picture.
[[nodiscard]] QVector<QImage> read(const QString &path);

} // namespace BoundedImage
