#pragma once

#include "propertybrowser/editors/propertydisplay.h"

class PropertyEditor;
class PropertyItem;
class QWidget;

/// A size, typed as "640x480".
namespace SizeEditor {

[[nodiscard]] PropertyEditor *create(const PropertyItem &item, QWidget *parent);
[[nodiscard]] PropertyDisplay display(const PropertyItem &item);

} // namespace SizeEditor
