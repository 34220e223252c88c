#pragma once

#include "propertybrowser/propertybrowser_global.h"

#include <QColor>
#include <QFont>
#include <QString>

#include <functional>
#include <optional>

class QWidget;

/// The modal dialogs that rows of a sheet open. A host that has dialogs of its own, or a test that must answer without
/// a person, replaces them; an empty function brings the toolkit's own dialog back. GUI thread only.
namespace PropertyDialogs {

/// Gives the chosen path, or an empty string when the user gave up. @p start is a directory or a file in it, absolute
/// or empty; @p filter is in the form that QFileDialog takes and may be empty.
using FileDialog
    = std::function<QString(QWidget *parent, const QString &title, const QString &start, const QString &filter)>;
/// Gives an invalid colour when the user gave up.
using ColorDialog = std::function<QColor(QWidget *parent, const QColor &initial)>;
/// Gives nothing when the user gave up.
using FontDialog = std::function<std::optional<QFont>(QWidget *parent, const QFont &initial)>;

PROPERTYBROWSER_EXPORT void setFileDialog(FileDialog dialog);
PROPERTYBROWSER_EXPORT void setColorDialog(ColorDialog dialog);
PROPERTYBROWSER_EXPORT void setFontDialog(FontDialog dialog);

[[nodiscard]] QString chooseFile(QWidget *parent, const QString &title, const QString &start, const QString &filter);
[[nodiscard]] QColor chooseColor(QWidget *parent, const QColor &initial);
[[nodiscard]] std::optional<QFont> chooseFont(QWidget *parent, const QFont &initial);

} // namespace PropertyDialogs
