#pragma once

#include "propertybrowser/editors/propertydisplay.h"

class PropertyEditor;
class PropertyItem;
class QWidget;

/// A date with a time of day, typed as yyyy-MM-ddTHH:mm:ss with an optional offset or zone ("Z", "+02:00",
/// " Europe/Berlin"), its day also chosen in a calendar.
namespace DateTimeEditor {

[[nodiscard]] PropertyEditor *create(const PropertyItem &item, QWidget *parent);
[[nodiscard]] PropertyDisplay display(const PropertyItem &item);

} // namespace DateTimeEditor
