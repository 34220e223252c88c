#pragma once

#include <QString>

class QWidget;

/// A line that a widget has the status line of its window show while something hovers over it. A window without one
/// passes over it. GUI thread.
class StatusTip final
{
public:
    /// Shows @p text, from @p widget, in place of what was shown last.
    void show(QWidget *widget, const QString &text);
    /// Takes away what was shown; leaves alone what others have there when it was nothing.
    void clear(QWidget *widget) { show(widget, QString()); }

private:
    QString m_shown;
};
