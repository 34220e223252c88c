#pragma once

#include <QString>
#include <QStringList>

namespace Workbench {

/// Has the application speak the user's language, with the catalogues of the workbench and those of the toolkit for its
/// own texts: the language of the system, or @p wanted ("de", "zh_CN", "en"), which also decides on numbers and dates.
/// What has no catalogue stays English. False when there is none for a language that was asked for. To be called once,
/// right after the application object was made, which owns what is loaded.
[[nodiscard]] bool useLanguage(const QString &wanted);

/// The languages that can be asked for, English included.
[[nodiscard]] QStringList languages();

} // namespace Workbench
