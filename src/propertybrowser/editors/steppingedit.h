#pragma once

#include "propertybrowser/propertyitem.h"
#include "propertybrowser/propertykeys.h"

#include <QAbstractSpinBox>

struct TextCodec;

/// A line with arrows whose text and steps come from a codec. Unlike the toolkit's spin boxes it can be empty and takes
/// any text: showing a value never alters it, and what is typed never loses the characters that make it wrong.
class SteppingEdit final : public QAbstractSpinBox
{
    Q_OBJECT
    // By these names assistive technology asks any spin box.
    Q_PROPERTY(QString value READ text USER true)
    Q_PROPERTY(QVariant minimum READ minimum)
    Q_PROPERTY(QVariant maximum READ maximum)

public:
    /// @p codec must have @p step and live as long as the widget.
    SteppingEdit(const PropertyItem &item, const TextCodec &codec, QWidget *parent);

    [[nodiscard]] QLineEdit *line() const { return lineEdit(); }
    /// Invalid where there is none.
    [[nodiscard]] QVariant minimum() const { return m_item.data(PropertyKey::Min); }
    [[nodiscard]] QVariant maximum() const { return m_item.data(PropertyKey::Max); }

    void stepBy(int steps) override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    [[nodiscard]] StepEnabled stepEnabled() const override;

private:
    PropertyItem m_item;
    const TextCodec &m_codec;
};
