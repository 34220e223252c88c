#pragma once

#include <QBasicTimer>
#include <QHash>
#include <QPair>
#include <QSize>
#include <QTabBar>
#include <QVector>

class QStylePainter;
class QTabWidget;

/// A tab bar for the thousands of formats of a large product. A plain one measures the text of every tab whenever it
/// lays itself out, which it does for each tab that comes or goes, and whenever it paints; this one measures a text
/// once and paints what is in sight. It looks just the same, but for its first picture: reading icons would keep the
/// user from seeing the window, so they follow in the next one. Tabs stand in a row and can't be moved.
///
/// A point or a record that is held over a tab in a drag has it shown after a moment. Entries of the tab in sight
/// don't: they go nowhere else. GUI thread.
class FormatTabBar final : public QTabBar
{
    Q_OBJECT

public:
    /// Puts one into @p tabs, which own it and have no page yet.
    static void putInto(QTabWidget *tabs);

    /// Milliseconds that a drag is held over a tab before that is shown.
    static constexpr int hoverDelay = 600;

protected:
    [[nodiscard]] QSize tabSizeHint(int index) const override;
    /// Labels are shown whole, so this is the same.
    [[nodiscard]] QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    using QTabBar::QTabBar;

    void hover(int index);
    void paintTab(QStylePainter &painter, int index);
    void paintTear(QStylePainter &painter, int index, bool left);

    using Look = QPair<QString, bool>; ///< the label, and whether it has an icon beside it

    /// What a tab looked like when it was measured last.
    struct Measured
    {
        QString label;
        bool hasIcon = false;
        QSize size;
    };

    mutable QHash<Look, QSize> m_sizes;   ///< until the font or the style changes
    mutable QVector<Measured> m_measured; ///< of each tab, by index; the same until then
    bool m_showsIcons = false;            ///< since the first picture
    QBasicTimer m_hoverTimer;
    int m_hovered = -1; ///< the tab that something is held over
};
