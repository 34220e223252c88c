#pragma once

#include "propertybrowser/editors/propertydisplay.h"

class PropertyEditor;
class PropertyItem;
class QWidget;

/// A font, typed as "Family, 10 pt, bold, italic" or chosen in a dialog. Every weight has a word, "demibold" for
/// instance, or a number, "weight 60". Texts in files have the form of QFont::toString().
namespace FontEditor {

[[nodiscard]] PropertyEditor *create(const PropertyItem &item, QWidget *parent);
[[nodiscard]] PropertyDisplay display(const PropertyItem &item);

} // namespace FontEditor
