#pragma once

#include "propertybrowser/editors/propertydisplay.h"

class PropertyEditor;
class PropertyItem;
class QString;
class QWidget;

/// A file path, typed, dropped, or chosen in a dialog that honours "title", "directory" and "filter".
namespace FileEditor {

[[nodiscard]] PropertyEditor *create(const PropertyItem &item, QWidget *parent);
[[nodiscard]] PropertyDisplay display(const PropertyItem &item);
/// Commits the file @p path, as if it had been chosen in the dialog of @p editor, which create() has made.
void take(PropertyEditor *editor, const QString &path);

} // namespace FileEditor
