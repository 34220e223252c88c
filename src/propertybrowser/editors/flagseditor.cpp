#include "propertybrowser/editors/flagseditor.h"

#include "propertybrowser/editors/flagsbox.h"
#include "propertybrowser/editors/lineeditor.h"
#include "propertybrowser/editors/propertyeditor.h"
#include "propertybrowser/editors/textcodec.h"
#include "propertybrowser/editors/textentryeditor.h"

#include <QHBoxLayout>
#include <QSet>
#include <QStringList>

namespace {

constexpr int MaskBits = 32;
const QLatin1Char separator('|');

bool isMask(const PropertyItem &item)
{
    return item.value().isValid() && item.value().userType() != QMetaType::QString;
}

QVector<bool> chosenOf(const PropertyItem &item)
{
    const QList<PropertyItem::OptionItem> &options = item.options();
    const QStringList given = item.value().toString().split(separator);
    const QSet<QString> parts(given.cbegin(), given.cend());
    const auto mask = static_cast<quint32>(item.value().toInt());
    QVector<bool> chosen;
    for (int i = 0; i < options.size(); ++i) {
        const bool inMask = i < MaskBits && (mask & (1U << i)) != 0;
        chosen.append(isMask(item) ? inMask : parts.contains(options.at(i).value));
    }
    return chosen;
}

QVariant valueOf(const PropertyItem &item, const QVector<bool> &chosen)
{
    quint32 mask = 0;
    QStringList parts;
    for (int i = 0; i < chosen.size(); ++i) {
        if (chosen.at(i)) {
            mask |= i < MaskBits ? 1U << i : 0U;
            parts.append(item.options().at(i).value);
        }
    }
    return isMask(item) ? QVariant(static_cast<int>(mask)) : QVariant(parts.join(separator));
}

/// Of a row without options. A mask stays a number as long as a number is typed.
const TextCodec &plainCodec()
{
    static const TextCodec codec = [] {
        TextCodec c = LineEditor::codec();
        c.parse = [](const PropertyItem &item, const QString &text) {
            const QVariant typed = LineEditor::codec().parse(item, text);
            bool isNumber = false;
            const int mask = text.toInt(&isNumber);
            return isNumber && isMask(item) && typed.isValid() ? QVariant(mask) : typed;
        };
        return c;
    }();
    return codec;
}

class Editor final : public PropertyEditor
{
public:
    Editor(const PropertyItem &item, QWidget *parent)
        : PropertyEditor(item, parent), m_box(new FlagsBox(item.options(), this))
    {
        auto *layout = new QHBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(m_box);
        setInner(m_box);
        Editor::restore();
        connect(m_box, &FlagsBox::choiceMade, this, &Editor::commitChoice);
    }

    [[nodiscard]] QVariant value() const override { return valueOf(item(), m_box->chosen()); }
    [[nodiscard]] bool isModified() const override { return m_box->chosen() != chosenOf(item()); }
    void restore() override { m_box->setChosen(chosenOf(item())); }
    void openPopup() override { m_box->showPopup(); }

private:
    FlagsBox *m_box;
};

} // namespace

PropertyEditor *FlagsEditor::create(const PropertyItem &item, QWidget *parent)
{
    if (item.options().isEmpty()) {
        return new TextEntryEditor(item, plainCodec(), parent);
    }
    return new Editor(item, parent);
}

PropertyDisplay FlagsEditor::display(const PropertyItem &item)
{
    if (item.options().isEmpty()) {
        return LineEditor::display(item);
    }
    const QVector<bool> chosen = chosenOf(item);
    QStringList texts;
    for (int i = 0; i < chosen.size(); ++i) {
        if (chosen.at(i)) {
            texts.append(item.options().at(i).text);
        }
    }
    return { texts.join(QLatin1String(", ")) };
}
