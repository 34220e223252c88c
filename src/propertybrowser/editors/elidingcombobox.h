#pragma once

#include <QComboBox>

/// A drop-down that fits a narrow sheet: it may become small and then shows its text with an ellipsis. The wheel
/// scrolls the sheet instead of changing the choice.
class ElidingComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ElidingComboBox(QWidget *parent);

protected:
    [[nodiscard]] virtual QString shownText() const { return currentText(); }

    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
};
