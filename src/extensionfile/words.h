#pragma once

#include <QCoreApplication>
#include <QString>

namespace ExtensionFile {

/// A reason in the user's language; @p text is marked with QT_TRANSLATE_NOOP("ExtensionFile", …). Any thread.
inline QString say(const char *text)
{
    return QCoreApplication::translate("ExtensionFile", text);
}

} // namespace ExtensionFile
