#include "propertybrowser/editortable.h"

#include "extensionfile/showntext.h"
#include "propertybrowser/editors/checkboxeditor.h"
#include "propertybrowser/editors/choiceeditor.h"
#include "propertybrowser/editors/coloreditor.h"
#include "propertybrowser/editors/dateeditor.h"
#include "propertybrowser/editors/datetimeeditor.h"
#include "propertybrowser/editors/fileeditor.h"
#include "propertybrowser/editors/flagseditor.h"
#include "propertybrowser/editors/floateditor.h"
#include "propertybrowser/editors/fonteditor.h"
#include "propertybrowser/editors/integereditor.h"
#include "propertybrowser/editors/keysequenceeditor.h"
#include "propertybrowser/editors/lineeditor.h"
#include "propertybrowser/editors/multilineeditor.h"
#include "propertybrowser/editors/pointeditor.h"
#include "propertybrowser/editors/readonlyeditor.h"
#include "propertybrowser/editors/recteditor.h"
#include "propertybrowser/editors/sizeeditor.h"
#include "propertybrowser/editors/timeeditor.h"

namespace {

const EditorTable::Kind readOnly { PropertyType::Null, ReadOnlyEditor::create, ReadOnlyEditor::display };

const EditorTable::Kind kinds[] = {
    // A key that no table knows is text; there is no other place to change it.
    { PropertyType::Null, LineEditor::create, LineEditor::display },
    { PropertyType::Bool, CheckBoxEditor::create, CheckBoxEditor::display, true },
    { PropertyType::Int, IntegerEditor::create, IntegerEditor::display },
    { PropertyType::Float, FloatEditor::create, FloatEditor::display },
    { PropertyType::String, LineEditor::create, LineEditor::display },
    { PropertyType::Text, MultiLineEditor::create, MultiLineEditor::display },
    { PropertyType::Enum, ChoiceEditor::create, ChoiceEditor::display, false, true },
    { PropertyType::Flag, FlagsEditor::create, FlagsEditor::display, false, true },
    { PropertyType::Color, ColorEditor::create, ColorEditor::display },
    { PropertyType::Date, DateEditor::create, DateEditor::display },
    { PropertyType::DateTime, DateTimeEditor::create, DateTimeEditor::display },
    { PropertyType::Time, TimeEditor::create, TimeEditor::display },
    { PropertyType::Point, PointEditor::create, PointEditor::display },
    { PropertyType::Size, SizeEditor::create, SizeEditor::display },
    { PropertyType::Rect, RectEditor::create, RectEditor::display },
    { PropertyType::Font, FontEditor::create, FontEditor::display },
    { PropertyType::KeySequence, KeySequenceEditor::create, KeySequenceEditor::display },
    { PropertyType::File, FileEditor::create, FileEditor::display },
};

} // namespace

const EditorTable::Kind &EditorTable::kindOf(const PropertyItem &item)
{
    if (item.isEditable() && !isTooLong(item)) {
        for (const Kind &kind : kinds) {
            if (kind.type == item.type()) {
                return kind;
            }
        }
    }
    return readOnly;
}

bool EditorTable::isTooLong(const PropertyItem &item)
{
    const QVariant value = item.value();
    return value.userType() == QMetaType::QString && value.toString().size() > ExtensionFile::maximumEditableLength;
}

bool EditorTable::isEditable(const PropertyItem &item)
{
    return &kindOf(item) != &readOnly;
}
