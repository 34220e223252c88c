#include "propertybrowser/editors/keysequenceeditor.h"

#include "propertybrowser/editors/propertyeditor.h"

#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QKeySequenceEdit>
#include <QLineEdit>
#include <QToolButton>

namespace {

bool isText(const PropertyItem &item)
{
    return !item.value().isValid() || item.value().userType() == QMetaType::QString;
}

QKeySequence sequenceOf(const PropertyItem &item)
{
    if (!isText(item)) {
        return item.value().value<QKeySequence>();
    }
    return QKeySequence::fromString(item.value().toString(), QKeySequence::PortableText);
}

/// A text that names no keys is read as unknown ones, or as none at all.
bool isReadable(const PropertyItem &item)
{
    const QKeySequence sequence = sequenceOf(item);
    for (int i = 0; i < sequence.count(); ++i) {
        if ((sequence[static_cast<uint>(i)] & ~static_cast<int>(Qt::KeyboardModifierMask)) == Qt::Key_unknown) {
            return false;
        }
    }
    return !isText(item) || item.value().toString().isEmpty() || !sequence.isEmpty();
}

QString problemOf(const PropertyItem &item)
{
    if (isReadable(item)) {
        return {};
    }
    return QCoreApplication::translate("PropertyBrowser", "The value is %1, which is no shortcut")
        .arg(item.value().toString());
}

class Editor final : public PropertyEditor
{
public:
    Editor(const PropertyItem &item, QWidget *parent) : PropertyEditor(item, parent), m_edit(new QKeySequenceEdit(this))
    {
        // The toolkit has none for it, and would call it a part of the window that is nothing in itself.
        QAccessible::registerAccessibleInterface(new QAccessibleWidget(m_edit, QAccessible::HotkeyField));
        const auto lines = m_edit->findChildren<QLineEdit *>();
        for (QLineEdit *line : lines)
            line->setAccessibleName(item.displayText());
        auto *clear = new QToolButton(this);
        clear->setText(QStringLiteral("\u00d7"));
        const QString name = QCoreApplication::translate("PropertyBrowser", "No shortcut");
        clear->setToolTip(QCoreApplication::translate("PropertyBrowser", "%1 (Backspace)").arg(name));
        clear->setAccessibleName(name);
        clear->setFocusPolicy(Qt::NoFocus);
        clear->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
        clear->setFixedWidth(buttonWidth());
        auto *layout = new QHBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(2);
        layout->addWidget(m_edit, 1);
        layout->addWidget(clear);
        setInner(m_edit);
        Editor::restore();
        connect(clear, &QToolButton::clicked, this, [this] {
            clearKeys();
            commitChoice();
        });
    }

    [[nodiscard]] QVariant value() const override
    {
        const QKeySequence sequence = m_edit->keySequence();
        return isText(item()) ? QVariant(sequence.toString(QKeySequence::PortableText)) : QVariant(sequence);
    }

    [[nodiscard]] bool isModified() const override
    {
        return m_edit->keySequence() != m_shown || (m_emptied && !isReadable(item()));
    }

    void restore() override
    {
        m_shown = isReadable(item()) ? sequenceOf(item()) : QKeySequence();
        m_edit->setKeySequence(m_shown);
        m_emptied = false;
        mark(problemOf(item()));
    }

protected:
    [[nodiscard]] bool isCommitKey(const QKeyEvent &event) const override
    {
        return (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    }

    [[nodiscard]] bool takesFunctionKeys() const override { return true; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == m_edit && event->type() == QEvent::KeyPress) {
            const auto *key = static_cast<QKeyEvent *>(event);
            if (key->key() == Qt::Key_Backspace && key->modifiers() == Qt::NoModifier) {
                clearKeys();
                return true;
            }
        }
        return PropertyEditor::eventFilter(watched, event);
    }

private:
    void clearKeys()
    {
        m_edit->clear();
        m_emptied = true;
    }

    QKeySequenceEdit *m_edit;
    QKeySequence m_shown;
    bool m_emptied = false;
};

} // namespace

PropertyEditor *KeySequenceEditor::create(const PropertyItem &item, QWidget *parent)
{
    return new Editor(item, parent);
}

PropertyDisplay KeySequenceEditor::display(const PropertyItem &item)
{
    if (!isReadable(item)) {
        return { item.value().toString(), problemOf(item) };
    }
    return { sequenceOf(item).toString(QKeySequence::NativeText) };
}
