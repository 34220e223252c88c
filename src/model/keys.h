#pragma once

#include <QString>

/// The attributes of a node that the editor itself reads and writes, as they are named in a file. Property hashes take
/// them in any letter case.

inline const QString idKey = QStringLiteral("id");
inline const QString iconKey = QStringLiteral("icon");
inline const QString nameKey = QStringLiteral("name");
inline const QString parentKey = QStringLiteral("parent");
inline const QString targetKey = QStringLiteral("target");
