#pragma once

#include "propertybrowser/editors/propertydisplay.h"
#include "propertybrowser/propertyitem.h"

class PropertyEditor;
class QWidget;

/// The one place that knows which editor serves which kind of row.
namespace EditorTable {

struct Kind
{
    PropertyType type;
    PropertyEditor *(*create)(const PropertyItem &item, QWidget *parent);
    PropertyDisplay (*display)(const PropertyItem &item);
    bool stays = false;     ///< in a tree the editor stands all the time instead of opening in place
    bool dropsDown = false; ///< an editor that opens in place opens its list, too
};

/// That of a read-only text for what is not editable, has an unknown type or is too long for any field.
[[nodiscard]] const Kind &kindOf(const PropertyItem &item);
/// Whether the value is too long for a field to work on it in time.
[[nodiscard]] bool isTooLong(const PropertyItem &item);
/// Whether the row can be changed, so that Tab stops there.
[[nodiscard]] bool isEditable(const PropertyItem &item);

} // namespace EditorTable
