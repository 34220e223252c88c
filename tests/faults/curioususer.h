#pragma once

#include <QPointer>
#include <QRandomGenerator>
#include <QString>
#include <QTimer>
#include <QVector>

class QAbstractItemView;
class QMenu;
class QModelIndex;
class QWidget;

/// Somebody who tries everything that a widget offers, without knowing what it is: every row, button, menu entry,
/// action and key, found by walking the widgets. Menus and dialogs that come up meanwhile are used or closed, so
/// nothing ever waits for a person. Owned by the test, GUI thread.
class CuriousUser final : public QObject
{
    Q_OBJECT

public:
    explicit CuriousUser(QWidget *widget, quint32 seed);

    /// Anything, so many times.
    void tryAnything(int steps);

    /// How long the longest single deed took, in ms, and what it was.
    [[nodiscard]] qint64 longest() const { return m_longest; }
    [[nodiscard]] QString longestDeed() const { return m_longestDeed; }
    /// The first deed after which a tree's current row was none of its own rows: it would outlive itself there. Empty
    /// if there was none.
    [[nodiscard]] QString strayRow() const { return m_strayRow; }
    /// How many deeds there were.
    [[nodiscard]] int count() const { return m_count; }

private:
    template <typename Deed>
    void act(const QString &what, Deed deed);

    template <typename Kind>
    QVector<QPointer<Kind>> shuffled() const;
    void showPage(int page);
    [[nodiscard]] int pageCount() const;

    void openMenu(QAbstractItemView *view, const QModelIndex &index, int entry);
    void tryKeys(QWidget *widget);
    void type(QWidget *widget);
    void lookForStrayRows(const QString &deed);
    void lookAround();
    void useMenu(QMenu *menu);
    [[nodiscard]] static QVector<QModelIndex> indexesOf(QAbstractItemView *view);

    QPointer<QWidget> m_widget;
    mutable QRandomGenerator m_random;
    QTimer m_lookout;
    int m_entry = -1;   ///< of the next menu to come up, in the order shown; none: it is closed
    int m_patience = 0; ///< looks at one and the same dialog
    QPointer<QWidget> m_dialog;
    qint64 m_longest = 0;
    QString m_longestDeed;
    QString m_strayRow;
    int m_count = 0;
};
