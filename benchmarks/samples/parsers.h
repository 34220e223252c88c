#pragma once

#include <QString>
#include <QStringList>

/// What an editor of these files could do at the least: read them and parse them. Any thread.
namespace Parsers {

/// Reads and parses one file and answers how long that took, in nanoseconds; -1 when it failed. Taking the outcome
/// apart again doesn't count, as it doesn't for the editor.
using Parser = qint64 (*)(const QString &fileName);

/// "stream": QXmlStreamReader to the end; "dom": QDomDocument; "pugixml". Null for another name and for a parser that
/// the program was built without.
[[nodiscard]] Parser byName(const QString &name);

/// The extension files of the plug-ins in @p directory, in the order of the listing.
[[nodiscard]] QStringList filesBelow(const QString &directory);

} // namespace Parsers
