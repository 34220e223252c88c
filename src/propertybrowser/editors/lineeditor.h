#pragma once

#include "propertybrowser/editors/propertydisplay.h"

class PropertyEditor;
class PropertyItem;
class QWidget;
struct TextCodec;

/// A text of one line that must match "regexp".
namespace LineEditor {

[[nodiscard]] const TextCodec &codec();
[[nodiscard]] PropertyEditor *create(const PropertyItem &item, QWidget *parent);
[[nodiscard]] PropertyDisplay display(const PropertyItem &item);

} // namespace LineEditor
