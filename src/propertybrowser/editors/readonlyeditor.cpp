#include "propertybrowser/editors/readonlyeditor.h"

#include "extensionfile/showntext.h"
#include "propertybrowser/editors/propertyeditor.h"
#include "propertybrowser/editortable.h"

#include <QCoreApplication>
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

/// Why a value that may be changed can't be changed here; empty for all others.
QString reasonOf(const PropertyItem &item)
{
    if (!item.isEditable() || !EditorTable::isTooLong(item)) {
        return {};
    }
    return QCoreApplication::translate(
        "PropertyBrowser", "Too long to be edited here: %1 characters, of which these are the first")
        .arg(item.value().toString().size());
}

class Editor final : public PropertyEditor
{
public:
    Editor(const PropertyItem &item, QWidget *parent) : PropertyEditor(item, parent)
    {
        auto *line = new QLineEdit(ExtensionFile::shown(textOf(item)), this);
        line->setReadOnly(true);
        line->setFrame(false);
        line->setCursorPosition(0);
        line->setMinimumWidth(fontMetrics().averageCharWidth() * 6);
        // Reached with the mouse to select from; Tab goes on to what can be changed.
        line->setFocusPolicy(Qt::ClickFocus);
        QPalette flat = line->palette();
        flat.setBrush(QPalette::Base, Qt::NoBrush);
        line->setPalette(flat);
        const QString reason = reasonOf(item);
        line->setToolTip((reason.isEmpty() ? line->text() : reason).toHtmlEscaped());
        line->setAccessibleDescription(reason);
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
    return { textOf(item), reasonOf(item) };
}
