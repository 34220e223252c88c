#pragma once

#include "core/core_global.h"

#include <QIcon>

class QFileInfo;
class QString;

namespace Core {

/// The icons of files: what the desktop shows, with a badge painted over those that plug-ins registered one for.
/// GUI thread only.
namespace FileIconProvider {

/// @p iconPath is an image (a resource, usually) that is stretched over the whole file icon. The suffix matches a file
/// whose name equals it or ends with "." and it; a later registration of the same suffix replaces the earlier one.
/// An image that can't be read leaves the icon as it is.
CORE_EXPORT void registerIconOverlayForSuffix(const QString &iconPath, const QString &suffix);

/// Never null. Looks at the file's name, and at the file system only for files without a registered suffix.
[[nodiscard]] CORE_EXPORT QIcon icon(const QFileInfo &file);

/// @p base with @p overlay painted over each of the common icon sizes.
[[nodiscard]] CORE_EXPORT QIcon overlaid(const QIcon &base, const QIcon &overlay);

} // namespace FileIconProvider

} // namespace Core
