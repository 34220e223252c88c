#pragma once

#include "propertybrowser/editors/propertyeditor.h"

#include <functional>

class QLineEdit;
class QToolButton;
struct TextCodec;

/// The editor of every kind that is typed into one line: with arrows where the codec steps, and with a button where
/// there is something to choose from.
class TextEntryEditor final : public PropertyEditor
{
    Q_OBJECT

public:
    /// @p codec must live as long as the editor.
    TextEntryEditor(const PropertyItem &item, const TextCodec &codec, QWidget *parent);

    /// Adds a button that runs @p choose, as F4 and Alt+Down do. @p name is its tool tip and accessible name.
    QToolButton *addButton(const QString &text, const QString &name, std::function<void(TextEntryEditor *)> choose);
    [[nodiscard]] QLineEdit *line() const { return m_line; }
    /// The value of the typed text in the kind's own type, invalid when it is empty or refused.
    [[nodiscard]] QVariant typedValue() const;
    /// Takes a chosen value as if it had been typed, and commits it.
    void choose(const QString &text);

    [[nodiscard]] QVariant value() const override;
    [[nodiscard]] bool isModified() const override;
    [[nodiscard]] bool isAcceptable() const override;
    void restore() override;
    void openPopup() override;
    void putBack(const QString &text) override;

protected:
    [[nodiscard]] QString typedText() const override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void onTextChanged();

    const TextCodec &m_codec;
    QLineEdit *m_line;
    QString m_shown;
    std::function<void(TextEntryEditor *)> m_choose;
};
