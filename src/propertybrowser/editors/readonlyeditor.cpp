#include "propertybrowser/editors/readonlyeditor.h"

#include "propertybrowser/editors/propertyeditor.h"
#include "propertybrowser/editortable.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QStyle>

namespace {

QString textOf(const PropertyItem &item)
{
    const QVariant value = item.value();
    if (value.userType() == QMetaType::QStringList || value.userType() == QMetaType::QVariantList) {
        return value.toStringList().join(QLatin1String(", "));
    }
    PropertyItem editable = item;
    editable.setEditable(true);
    // What has no type, or one that is not known, has no editor but this one.
    const EditorTable::Kind &kind = EditorTable::kindOf(editable);
    return kind.type == PropertyType::Null ? value.toString() : kind.display(editable).text;
}

class Editor final : public PropertyEditor
{
public:
    Editor(const PropertyItem &item, QWidget *parent) : PropertyEditor(item, parent)
    {
        auto *line = new QLineEdit(textOf(item), this);
        line->setReadOnly(true);
        line->setFrame(false);
        line->setCursorPosition(0);
        line->setMinimumWidth(fontMetrics().averageCharWidth() * 6);
        // Reached with the mouse to select from; Tab goes on to what can be changed.
        line->setFocusPolicy(Qt::ClickFocus);
        QPalette flat = line->palette();
        flat.setBrush(QPalette::Base, Qt::NoBrush);
        line->setPalette(flat);
        line->setToolTip(line->text().toHtmlEscaped());
        auto *layout = new QHBoxLayout(this);
        // Where the text of a line with a frame begins.
        layout->setContentsMargins(style()->pixelMetric(QStyle::PM_DefaultFrameWidth), 0, 0, 0);
        layout->addWidget(line);
        setInner(line);
    }

    [[nodiscard]] QVariant value() const override { return item().value(); }
    [[nodiscard]] bool isModified() const override { return false; }
    void restore() override { }
};

} // namespace

PropertyEditor *ReadOnlyEditor::create(const PropertyItem &item, QWidget *parent)
{
    return new Editor(item, parent);
}

PropertyDisplay ReadOnlyEditor::display(const PropertyItem &item)
{
    return { textOf(item) };
}
