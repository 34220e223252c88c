#pragma once

#include "core/core_global.h"

#include <QFrame>

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace Core {

/// A bar at the head of the window that tells something and offers answers, while the work goes on below it. Hidden at
/// first; owned by its parent.
class CORE_EXPORT InfoBar final : public QFrame
{
    Q_OBJECT

public:
    InfoBar(const QString &objectName, QWidget *parent);

    /// The label is named as the bar with "Text" after it.
    void tell(const QString &text);
    /// At the right end, after those added before.
    QPushButton *addButton(const QString &objectName, const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QLabel *m_icon;
    QLabel *m_text;
    QHBoxLayout *m_buttons;
};

} // namespace Core
