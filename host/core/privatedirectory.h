#pragma once

#include <QString>

namespace Core {

/// Makes the directory @p path for this user alone, with those above it where they are missing; takes the rights of
/// others from one that is there. False, with the reason in errno, when it can't be made or is somebody else's. Any
/// thread.
[[nodiscard]] bool makePrivateDirectory(const QString &path);

} // namespace Core
