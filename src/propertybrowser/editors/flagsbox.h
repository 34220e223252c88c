#pragma once

#include "propertybrowser/editors/elidingcombobox.h"
#include "propertybrowser/propertyitem.h"

#include <QVector>

/// A drop-down whose list has a check box per option and stays open while they are ticked. Escape gives up, everything
/// else that closes it keeps the choice.
class FlagsBox final : public ElidingComboBox
{
    Q_OBJECT

public:
    FlagsBox(const QList<PropertyItem::OptionItem> &options, QWidget *parent);

    /// One entry per option.
    [[nodiscard]] QVector<bool> chosen() const { return m_chosen; }
    void setChosen(const QVector<bool> &chosen);

    void showPopup() override;
    void hidePopup() override;

Q_SIGNALS:
    /// The list was closed with another choice than it was opened with.
    void choiceMade();

protected:
    [[nodiscard]] QString shownText() const override;

private:
    void take(const QVector<bool> &chosen);

    QList<PropertyItem::OptionItem> m_options;
    QVector<bool> m_chosen;
    bool m_open = false;
};
