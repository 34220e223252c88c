#pragma once

#include "propertybrowser/propertyitem.h"

#include <QAbstractSpinBox>

struct TextCodec;

/// A line with arrows whose text, steps and keys come from a codec. Unlike the toolkit's spin boxes it can be empty and
/// can hold a text that is no value of its kind, so that showing a value never alters it.
class SteppingEdit final : public QAbstractSpinBox
{
    Q_OBJECT

public:
    /// `codec` must have `step` and live as long as the widget.
    SteppingEdit(const PropertyItem &item, const TextCodec &codec, QWidget *parent);

    [[nodiscard]] QLineEdit *line() const { return lineEdit(); }

    void stepBy(int steps) override;
    [[nodiscard]] QValidator::State validate(QString &input, int &position) const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    [[nodiscard]] StepEnabled stepEnabled() const override;

private:
    PropertyItem m_item;
    const TextCodec &m_codec;
};
