#include "propertybrowser/editors/choiceeditor.h"

#include "propertybrowser/editors/elidingcombobox.h"
#include "propertybrowser/editors/lineeditor.h"
#include "propertybrowser/editors/propertyeditor.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QIcon>

namespace {

/// The first option equal to the value; the first of all where none is. The item must have options.
int selectedOption(const PropertyItem &item)
{
    const QString value = item.value().toString();
    const QList<PropertyItem::OptionItem> &options = item.options();
    for (int i = 0; i < options.size(); ++i) {
        if (options.at(i).value == value) {
            return i;
        }
    }
    return 0;
}

QString problemOf(const PropertyItem &item)
{
    const QString value = item.value().toString();
    const int selected = selectedOption(item);
    if (value.isEmpty() || item.options().at(selected).value == value) {
        return {};
    }
    return QCoreApplication::translate("PropertyBrowser", "The value is %1, which is none of the choices").arg(value);
}

class Editor final : public PropertyEditor
{
public:
    Editor(const PropertyItem &item, QWidget *parent) : PropertyEditor(item, parent), m_box(new ElidingComboBox(this))
    {
        for (const PropertyItem::OptionItem &option : item.options()) {
            m_box->addItem(option.icon.isEmpty() ? QIcon() : QIcon(option.icon), option.text);
        }
        auto *layout = new QHBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(m_box);
        setInner(m_box);
        Editor::restore();
        connect(m_box, qOverload<int>(&QComboBox::activated), this, [this] {
            m_chosen = true;
            commitChoice();
        });
    }

    [[nodiscard]] QVariant value() const override { return item().options().at(m_box->currentIndex()).value; }

    [[nodiscard]] bool isModified() const override
    {
        // Without a choice of the user, the first option may be shown for a value that none is equal to.
        return m_chosen && value().toString() != item().value().toString();
    }

    void restore() override
    {
        m_chosen = false;
        m_box->setCurrentIndex(selectedOption(item()));
        mark(problemOf(item()));
    }

    void openPopup() override { m_box->showPopup(); }

private:
    ElidingComboBox *m_box;
    bool m_chosen = false;
};

} // namespace

PropertyEditor *ChoiceEditor::create(const PropertyItem &item, QWidget *parent)
{
    if (item.options().isEmpty()) {
        return LineEditor::create(item, parent);
    }
    return new Editor(item, parent);
}

PropertyDisplay ChoiceEditor::display(const PropertyItem &item)
{
    if (item.options().isEmpty()) {
        return LineEditor::display(item);
    }
    const PropertyItem::OptionItem &option = item.options().at(selectedOption(item));
    return { option.text, problemOf(item), QColor(), option.icon };
}
