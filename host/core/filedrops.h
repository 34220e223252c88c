#pragma once

#include "core/core_global.h"

#include <QObject>

class QWidget;

namespace Core {

/// Files that are dropped anywhere in a window, on its fields, too, which would type the address of the file instead.
/// A widget that has a use for files of its own says so with the dynamic property "takesFiles", and gets those that it
/// accepts where they are. Made by the window, which owns it. GUI thread only.
class CORE_EXPORT FileDrops final : public QObject
{
    Q_OBJECT

public:
    explicit FileDrops(QWidget *window);

Q_SIGNALS:
    /// Comes after the drop: the program that the file was dragged from waits until that returns.
    void dropped(const QString &path);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_window;
    bool m_asking = false;
};

} // namespace Core
