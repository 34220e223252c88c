#pragma once

#include "propertybrowser/editors/propertydisplay.h"

class PropertyEditor;
class PropertyItem;
class QWidget;

/// A drop-down of check boxes, one per option. A number is a mask in which bit i stands for option i; a text, or no
/// value, is the list of the chosen options' values in option order, joined with "|". Parts that are no option are
/// dropped with the next change. A record without options is a line of text.
namespace FlagsEditor {

[[nodiscard]] PropertyEditor *create(const PropertyItem &item, QWidget *parent);
[[nodiscard]] PropertyDisplay display(const PropertyItem &item);

} // namespace FlagsEditor
