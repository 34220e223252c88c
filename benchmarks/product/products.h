#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

/// Products and files to measure with, made up from a seed: the same arguments give the same bytes on every machine.
namespace Products {

enum class Formats {
    MostlyOwn, ///< four plug-ins of five fill a tab of their own, the fifth one of a few that are merged
    Merged     ///< every plug-in but the first fills one of the few
};

/// The extension file of plug-in number @p index: about 100 elements and 10 KB, with points, sub points, attributes of
/// every type, an enumeration, records of its own points and of those of an earlier plug-in, and a format. No icons.
[[nodiscard]] QByteArray plugin(std::uint32_t seed, int index, Formats formats = Formats::MostlyOwn);

/// How many elements that file has.
[[nodiscard]] int pluginElements(std::uint32_t seed, int index);

/// Writes @p count plug-ins below @p directory, which need not exist. The extension file of the first one, which is
/// first in the listing, too; empty when something can't be written.
[[nodiscard]] QString write(
    const QString &directory, std::uint32_t seed, int count, Formats formats = Formats::MostlyOwn);

/// One file with exactly @p elements elements, the root included: points on one half, records on the other.
[[nodiscard]] QByteArray large(std::uint32_t seed, int elements);

/// A file with the point "bench.views.records" and @p records records of it, the point "bench.views.idle" without any,
/// a tab "bench.views.large" with @p items entries below its root, and a tab "bench.views.small".
[[nodiscard]] QByteArray views(int records, int items);

/// Writes @p text as the extension file of @p directory, which need not exist; the file's path, or empty.
[[nodiscard]] QString writeFile(const QString &directory, const QByteArray &text);

} // namespace Products
