#pragma once

#include "propertybrowser/editors/propertydisplay.h"

class PropertyEditor;
class PropertyItem;
class QWidget;

/// A number with arrows, within "min" and "max" and with at most "decimals" digits after the point. Always written with
/// a point, as in files.
namespace FloatEditor {

[[nodiscard]] PropertyEditor *create(const PropertyItem &item, QWidget *parent);
[[nodiscard]] PropertyDisplay display(const PropertyItem &item);

} // namespace FloatEditor
