#include "curioususer.h"

#include "faulttesting.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <algorithm>

namespace {

constexpr Qt::Key keys[] = { Qt::Key_Delete, Qt::Key_Insert, Qt::Key_F2, Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space,
    Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Home, Qt::Key_End, Qt::Key_Tab, Qt::Key_Backspace,
    Qt::Key_Plus, Qt::Key_Minus, Qt::Key_Asterisk, Qt::Key_A };

const char *const words[] = { "", "a", "new id", "<&\">", "1", "-1", "a|b||c", "tr('x')", "[", "true" };

QVector<QAction *> entriesOf(const QMenu *menu)
{
    QVector<QAction *> entries;
    const QList<QAction *> actions = menu->actions();
    for (QAction *action : actions) {
        if (action->menu())
            entries += entriesOf(action->menu());
        else if (action->isEnabled() && action->isVisible() && !action->isSeparator())
            entries.append(action);
    }
    return entries;
}

} // namespace

CuriousUser::CuriousUser(QWidget *widget, quint32 seed) : m_widget(widget), m_random(seed)
{
    connect(&m_lookout, &QTimer::timeout, this, &CuriousUser::lookAround);
    m_lookout.start(1);
}

template <typename Deed>
void CuriousUser::act(const QString &what, Deed deed)
{
    if (!m_widget)
        return;
    FaultTesting::WorkClock clock;
    clock.start();
    deed();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    lookForStrayRows(what);
    ++m_count;
    if (clock.elapsed() > m_longest) {
        m_longest = clock.elapsed();
        m_longestDeed = what;
    }
}

void CuriousUser::lookForStrayRows(const QString &deed)
{
    if (!m_widget || !m_strayRow.isEmpty())
        return;
    const QList<QTreeWidget *> trees = m_widget->findChildren<QTreeWidget *>();
    for (const QTreeWidget *tree : trees) {
        // Only its address is trustworthy.
        const QTreeWidgetItem *const current = tree->currentItem();
        bool found = !current;
        for (QTreeWidgetItemIterator row(const_cast<QTreeWidget *>(tree)); *row && !found; ++row)
            found = *row == current;
        if (!found)
            m_strayRow = QStringLiteral("%1, in %2").arg(deed, tree->objectName());
    }
}

/// What is on the page shown, in an order of this user's own.
template <typename Kind>
QVector<QPointer<Kind>> CuriousUser::shuffled() const
{
    QVector<QPointer<Kind>> found;
    if (!m_widget)
        return found;
    const QList<Kind *> all = m_widget->findChildren<Kind *>();
    for (Kind *one : all) {
        if (one->isVisible() && one->isEnabled())
            found.append(one);
    }
    std::shuffle(found.begin(), found.end(), m_random);
    return found;
}

int CuriousUser::pageCount() const
{
    const auto *pages = m_widget ? m_widget->findChild<QTabWidget *>(QStringLiteral("tabWidget")) : nullptr;
    return pages ? pages->count() : 0;
}

void CuriousUser::showPage(int page)
{
    act(QStringLiteral("page"), [&] {
        if (auto *pages = m_widget->findChild<QTabWidget *>(QStringLiteral("tabWidget")))
            pages->setCurrentIndex(page);
    });
}

void CuriousUser::tryAnything(int steps)
{
    for (int i = 0; i < steps && m_widget; ++i) {
        const auto widgets = shuffled<QWidget>();
        const QPointer<QWidget> widget = widgets.isEmpty() ? nullptr : widgets.first();
        if (!widget)
            return;
        if (auto *view = qobject_cast<QAbstractItemView *>(widget.data())) {
            const QVector<QModelIndex> indexes = indexesOf(view);
            const QPersistentModelIndex index
                = indexes.isEmpty() ? QModelIndex() : indexes.at(int(m_random.bounded(indexes.size())));
            act(QStringLiteral("click"), [&] { view->setCurrentIndex(index); });
            if (widget && m_random.bounded(2) == 0)
                openMenu(view, index, int(m_random.bounded(8)));
            else if (widget)
                tryKeys(widget);
        } else if (auto *button = qobject_cast<QAbstractButton *>(widget.data())) {
            m_entry = int(m_random.bounded(6));
            act(QStringLiteral("button"), [&] { button->click(); });
        } else if (qobject_cast<QLineEdit *>(widget.data()) || qobject_cast<QTextEdit *>(widget.data())
            || qobject_cast<QPlainTextEdit *>(widget.data())) {
            type(widget);
        } else if (auto *combo = qobject_cast<QComboBox *>(widget.data())) {
            if (combo->count() > 0)
                act(QStringLiteral("choice"), [&] { combo->setCurrentIndex(int(m_random.bounded(combo->count()))); });
        } else if (auto *tabs = qobject_cast<QTabWidget *>(widget.data())) {
            if (tabs->count() > 0)
                act(QStringLiteral("tab"), [&] { tabs->setCurrentIndex(int(m_random.bounded(tabs->count()))); });
        } else {
            act(QStringLiteral("key"),
                [&] { QTest::keyClick(widget.data(), keys[m_random.bounded(int(std::size(keys)))]); });
        }
        if (m_random.bounded(20) == 0)
            showPage(int(m_random.bounded(qMax(1, pageCount()))));
    }
}

QVector<QModelIndex> CuriousUser::indexesOf(QAbstractItemView *view)
{
    QVector<QModelIndex> found;
    const QAbstractItemModel *model = view ? view->model() : nullptr;
    if (!model)
        return found;
    QVector<QModelIndex> open { view->rootIndex() };
    while (!open.isEmpty() && found.size() < 400) {
        const QModelIndex parent = open.takeFirst();
        for (int row = 0; row < model->rowCount(parent); ++row) {
            for (int column = 0; column < model->columnCount(parent); ++column)
                found.append(model->index(row, column, parent));
            open.append(model->index(row, 0, parent));
        }
    }
    return found;
}

void CuriousUser::openMenu(QAbstractItemView *view, const QModelIndex &index, int entry)
{
    m_entry = entry;
    const QPointer<QAbstractItemView> guard(view);
    const QPersistentModelIndex row(index);
    act(QStringLiteral("menu entry %1 of %2").arg(entry).arg(view->objectName()), [&] {
        QWidget *viewport = guard->viewport();
        const QPoint place
            = row.isValid() ? guard->visualRect(row).center() : viewport->rect().bottomRight() - QPoint(3, 3);
        if (guard->contextMenuPolicy() == Qt::CustomContextMenu) {
            QMetaObject::invokeMethod(guard, "customContextMenuRequested", Q_ARG(QPoint, place));
        } else {
            QContextMenuEvent event(QContextMenuEvent::Mouse, place, viewport->mapToGlobal(place));
            QCoreApplication::sendEvent(viewport, &event);
        }
        // A menu that is only shown does not wait.
        if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget()))
            useMenu(menu);
    });
    m_entry = -1;
}

void CuriousUser::tryKeys(QWidget *widget)
{
    const QPointer<QWidget> guard(widget);
    const int first = int(m_random.bounded(int(std::size(keys))));
    for (int i = 0; i < int(std::size(keys)) && guard && guard->isVisible(); ++i) {
        const Qt::Key key = keys[(first + i) % int(std::size(keys))];
        act(QStringLiteral("key %1 in %2").arg(int(key)).arg(guard->objectName()), [&] {
            QWidget *inside = guard->focusWidget() ? guard->focusWidget() : guard.data();
            QTest::keyClick(inside, key);
        });
    }
}

void CuriousUser::type(QWidget *widget)
{
    const QPointer<QWidget> guard(widget);
    act(QStringLiteral("typing"), [&] {
        guard->setFocus();
        QTest::keyClick(guard.data(), Qt::Key_A, Qt::ControlModifier);
        if (guard)
            QTest::keyClicks(guard.data(), QString::fromLatin1(words[m_random.bounded(int(std::size(words)))]));
        if (guard)
            QTest::keyClick(guard.data(), m_random.bounded(3) == 0 ? Qt::Key_Escape : Qt::Key_Return);
    });
}

void CuriousUser::useMenu(QMenu *menu)
{
    const QVector<QAction *> entries = entriesOf(menu);
    const QPointer<QAction> entry
        = m_entry >= 0 && m_entry < entries.size() ? entries.at(m_entry) : static_cast<QAction *>(nullptr);
    m_entry = -1;
    // As a click does: the menu goes first.
    const QPointer<QMenu> guard(menu);
    if (entry)
        menu->setActiveAction(entry);
    if (entry && guard && guard->activeAction() == entry && entries.size() == guard->actions().size())
        QTest::keyClick(guard.data(), Qt::Key_Return);
    else if (entry)
        entry->trigger();
    while (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
}

/// Runs while a menu or a dialog has an event loop of its own. What it does comes later: it may open the next dialog,
/// and a timer that is still at work would not look at that one.
void CuriousUser::lookAround()
{
    if (QWidget *popup = QApplication::activePopupWidget()) {
        if (popup != m_dialog) {
            m_dialog = popup;
            QTimer::singleShot(0, popup, [this, popup] {
                if (auto *menu = qobject_cast<QMenu *>(popup))
                    useMenu(menu);
                else
                    popup->close();
                m_dialog = nullptr;
            });
        }
        return;
    }
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (!dialog)
        return;
    m_patience = dialog == m_dialog ? m_patience + 1 : 0;
    m_dialog = dialog;
    QList<QAbstractButton *> buttons = dialog->findChildren<QAbstractButton *>();
    buttons.erase(std::remove_if(buttons.begin(), buttons.end(),
                      [](const QAbstractButton *button) { return !button->isVisible() || !button->isEnabled(); }),
        buttons.end());
    // Only dialogs of the editor's own are worth a closer look.
    if (m_patience > 5 || buttons.isEmpty() || qstrncmp(dialog->metaObject()->className(), "Q", 1) == 0) {
        dialog->reject();
    } else {
        QAbstractButton *const button = buttons.at(int(m_random.bounded(buttons.size())));
        QTimer::singleShot(0, button, &QAbstractButton::click);
    }
}
