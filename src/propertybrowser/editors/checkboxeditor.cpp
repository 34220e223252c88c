#include "propertybrowser/editors/checkboxeditor.h"

#include "propertybrowser/editors/propertyeditor.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QHBoxLayout>

namespace {

class Editor final : public PropertyEditor
{
public:
    Editor(const PropertyItem &item, QWidget *parent) : PropertyEditor(item, parent), m_box(new QCheckBox(this))
    {
        auto *layout = new QHBoxLayout(this);
        layout->setContentsMargins(2, 0, 0, 0);
        layout->addWidget(m_box);
        layout->addStretch();
        setInner(m_box);
        Editor::restore();
        connect(m_box, &QCheckBox::clicked, this, &Editor::commitChoice);
    }

    [[nodiscard]] QVariant value() const override { return m_box->isChecked(); }
    [[nodiscard]] bool isModified() const override { return m_box->isChecked() != item().value().toBool(); }
    void restore() override { m_box->setChecked(item().value().toBool()); }

private:
    QCheckBox *m_box;
};

} // namespace

PropertyEditor *CheckBoxEditor::create(const PropertyItem &item, QWidget *parent)
{
    return new Editor(item, parent);
}

PropertyDisplay CheckBoxEditor::display(const PropertyItem &item)
{
    return { item.value().toBool() ? QCoreApplication::translate("PropertyBrowser", "Yes")
                                   : QCoreApplication::translate("PropertyBrowser", "No") };
}
