#include "propertybrowser/editors/choiceeditor.h"

#include "propertybrowser/editors/elidingcombobox.h"
#include "propertybrowser/editors/lineeditor.h"
#include "propertybrowser/editors/propertyeditor.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QScopedValueRollback>

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

/// Knows whether the choice is changed by the keys of the closed box, which only browse.
class ChoiceBox final : public ElidingComboBox
{
public:
    using ElidingComboBox::ElidingComboBox;

    [[nodiscard]] bool isBrowsing() const { return m_browsing; }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const QScopedValueRollback<bool> browsing(m_browsing, true);
        ElidingComboBox::keyPressEvent(event);
    }

private:
    bool m_browsing = false;
};

class Editor final : public PropertyEditor
{
public:
    Editor(const PropertyItem &item, QWidget *parent) : PropertyEditor(item, parent), m_box(new ChoiceBox(this))
    {
        for (const PropertyItem::OptionItem &option : item.options()) {
            m_box->addItem(option.icon.isEmpty() ? QIcon() : QIcon(option.icon), option.text);
        }
        auto *layout = new QHBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(m_box);
        setInner(m_box);
        Editor::restore();
        connect(m_box, qOverload<int>(&QComboBox::activated), this, &Editor::onActivated);
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
    void onActivated(int index)
    {
        // Where the first option is shown for a value that none is equal to, coming back to it chooses nothing.
        m_chosen = !m_box->isBrowsing() || index != selectedOption(item());
        mark(m_chosen ? QString() : problemOf(item()));
        if (!m_box->isBrowsing()) {
            commitChoice();
        }
    }

    ChoiceBox *m_box;
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
