#pragma once

#include "propertybrowser/editors/propertydisplay.h"

class PropertyEditor;
class PropertyItem;
class QWidget;

/// A drop-down of the record's options. The one equal to the value is selected, the first one where none is; a record
/// without options takes any text. Picking from the list is a commit; the keys of the closed box only browse.
namespace ChoiceEditor {

[[nodiscard]] PropertyEditor *create(const PropertyItem &item, QWidget *parent);
[[nodiscard]] PropertyDisplay display(const PropertyItem &item);

} // namespace ChoiceEditor
