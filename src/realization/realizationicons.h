#pragma once

#include <QIcon>
#include <QString>

class PointTreeWidgetItem;

/// The icons that extension files name. GUI thread.
///
/// A value is a plain file name and nothing else: what looks like a URL or like a resource is the name of a file below
/// the directory of the extension file. Files are read when they are first painted, once, and kept while their size and
/// time stay the same. A file that can't be shown gives a neutral placeholder, drawn in the colours of the palette,
/// whose name() is placeholderName(); so a null icon always means that none is named.
namespace RealizationIcons {

/// @p value when a file of this name exists, else @p basePath followed by @p value; empty for an empty value.
[[nodiscard]] QString path(const QString &value, const QString &basePath);

/// The icon that @p value names; null for an empty value.
[[nodiscard]] QIcon icon(const QString &value, const QString &basePath);

/// The icon of the file @p path as it stands; null for an empty path.
[[nodiscard]] QIcon fromFile(const QString &path);

/// The icon that the node's own "icon" names; null for a null node and for one without.
[[nodiscard]] QIcon of(PointTreeWidgetItem *node);

[[nodiscard]] QString placeholderName();

} // namespace RealizationIcons
