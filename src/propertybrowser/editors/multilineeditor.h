#pragma once

#include "propertybrowser/editors/propertydisplay.h"

class PropertyEditor;
class PropertyItem;
class QWidget;

/// A text of many lines that must match "regexp", in which "." matches line breaks. Enter begins a new line and
/// Ctrl+Enter commits. Line breaks of other kinds than the line feed stay where nothing has changed around them.
namespace MultiLineEditor {

[[nodiscard]] PropertyEditor *create(const PropertyItem &item, QWidget *parent);
[[nodiscard]] PropertyDisplay display(const PropertyItem &item);

} // namespace MultiLineEditor
