#pragma once

#include "propertybrowser/editors/propertydisplay.h"

class PropertyEditor;
class PropertyItem;
class QWidget;

/// A whole number with arrows, within "min" and "max" and the range of an int.
namespace IntegerEditor {

[[nodiscard]] PropertyEditor *create(const PropertyItem &item, QWidget *parent);
[[nodiscard]] PropertyDisplay display(const PropertyItem &item);

} // namespace IntegerEditor
