#pragma once

#include "core/core_global.h"

#include <QString>
#include <QWidget>

class QMenu;
class QTextBrowser;

namespace Core {

/// The user guide in a window of its own, beside which the work goes on. Its parent owns it. GUI thread only.
class CORE_EXPORT GuideWindow final : public QWidget
{
    Q_OBJECT

public:
    explicit GuideWindow(QWidget *parent);

    /// Adds the entries that show the guide to @p help; the window is made when it is first wanted.
    static void addEntries(QMenu *help, QWidget *parent);
    /// Shows the section whose heading makes @p anchor as links in the guide name it; the beginning when it is empty.
    /// False when there is no such section.
    bool showSection(const QString &anchor);

    /// The text of a file that is installed with the guide; empty when it can't be read.
    [[nodiscard]] static QString installedText(const QString &name);

private:
    QTextBrowser *m_browser;
};

} // namespace Core
