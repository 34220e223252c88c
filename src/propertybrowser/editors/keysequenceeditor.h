#pragma once

#include "propertybrowser/editors/propertydisplay.h"

class PropertyEditor;
class PropertyItem;
class QWidget;

/// A keyboard shortcut, entered by pressing it. Alone, Enter and Escape keep their meaning in a sheet and
/// Backspace empties the row, so these three can't be entered.
namespace KeySequenceEditor {

[[nodiscard]] PropertyEditor *create(const PropertyItem &item, QWidget *parent);
[[nodiscard]] PropertyDisplay display(const PropertyItem &item);

} // namespace KeySequenceEditor
