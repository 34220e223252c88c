#pragma once

#include "droptesting.h"
#include "form/realizationtablewidget.h"
#include "form/realizationtreewidget.h"
#include "form/treeitemmimedata.h"

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QListWidget>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>
#include <QWindow>

#include <functional>
#include <memory>

namespace DropTesting {

/// With the handlers in reach.
template <typename Widget>
class Open final : public Widget
{
public:
    using Widget::dragEnterEvent;
    using Widget::dragLeaveEvent;
    using Widget::dragMoveEvent;
    using Widget::dropEvent;
    using Widget::Widget;
};

using OpenTree = Open<RealizationTreeWidget>;
using OpenTable = Open<RealizationTableWidget>;

const QByteArray ownFile = R"(
<ExtDataSet><ExtData id="kit.menus">
  <Format target="bench"><menu id="m1"><Item id="i1"/><Item id="i2"/></menu><menu id="m2"/></Format>
  <Item id="r1" text="Record"/>
</ExtData></ExtDataSet>)";
const QByteArray kitFile = R"(
<ExtDataSet><ExtData id="kit.menus"><Format target="bench"><menu id="t1"/></Format></ExtData></ExtDataSet>)";

/// The four places of the page side by side: the points, a format tree, the table, and something that is none of ours.
class Bench final : public QWidget
{
public:
    Bench() : model(ownFile, kitFile)
    {
        auto *layout = new QHBoxLayout(this);
        points = new OpenTree;
        format = new OpenTree;
        table = new OpenTable;
        other = new QListWidget;
        for (QWidget *widget : { static_cast<QWidget *>(points), static_cast<QWidget *>(format),
                 static_cast<QWidget *>(table), static_cast<QWidget *>(other) })
            layout->addWidget(widget);
        points->addTopLevelItem(model.manager.availablePointsRoot());
        points->expandAll();
        const OwnRealizations realizations = Controller::instance()->ownRealizations();
        shown = std::make_unique<Shown>(realizations.formats(s("bench")) + realizations.siblingFormats(s("bench")));
        format->setColumnCount(2);
        format->addTopLevelItem(shown->tree.takeTopLevelItem(0));
        format->expandAll();
        format->setTabName(s("bench"));
        format->setMergedSources(shown->merged);
        table->setColumnCount(2);
        table->setRowCount(2);
        table->setItem(0, 0, new QTableWidgetItem(s("r1")));
        table->setItem(0, 1, new QTableWidgetItem(s("Record")));
        table->setItem(1, 0, new QTableWidgetItem(s("i1")));
        table->setItem(1, 1, new QTableWidgetItem(s("A reference, no record")));
        other->addItem(s("other"));
        other->setDragEnabled(true);
        resize(1100, 420);
        show();
        if (!QTest::qWaitForWindowActive(this))
            qFatal("no window");
    }
    ~Bench() override
    {
        points->takeTopLevelItem(0);
        if (format)
            shown->tree.addTopLevelItem(format->takeTopLevelItem(0));
    }

    [[nodiscard]] PointTreeWidgetItem *row(const char *name) const { return shown->row(s(name)); }
    [[nodiscard]] QPoint place(const QTreeWidgetItem *row) const
    {
        return row->treeWidget()->visualItemRect(row).center();
    }
    [[nodiscard]] QPoint inWindow(const QAbstractScrollArea *area, const QPoint &pos) const
    {
        return area->viewport()->mapTo(const_cast<Bench *>(this), pos);
    }

    Model model;
    std::unique_ptr<Shown> shown;
    OpenTree *points = nullptr;
    QPointer<OpenTree> format;
    OpenTable *table = nullptr;
    QListWidget *other = nullptr;
};

/// Presses and moves, without a pointer, by exactly @p by pixels.
inline void pressAndMove(QAbstractScrollArea *area, const QPoint &from, const QPoint &by, Qt::MouseButton button)
{
    QWidget *viewport = area->viewport();
    const auto send = [&](QEvent::Type type, const QPoint &pos, Qt::MouseButton which) {
        QMouseEvent event(type, pos, viewport->mapToGlobal(pos), which, button, Qt::NoModifier);
        QApplication::sendEvent(viewport, &event);
    };
    send(QEvent::MouseButtonPress, from, button);
    send(QEvent::MouseMove, from + by, Qt::NoButton);
    QMouseEvent release(
        QEvent::MouseButtonRelease, from + by, viewport->mapToGlobal(from + by), button, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &release);
}

/// Runs @p meanwhile while @p area drags what stands at @p from; false when no drag began.
inline bool whileDragging(QAbstractScrollArea *area, const QPoint &from, const std::function<void()> &meanwhile)
{
    bool ran = false;
    QTimer::singleShot(0, area, [&] {
        ran = true;
        meanwhile();
        QDrag::cancel();
    });
    pressAndMove(area, from, QPoint(0, QApplication::startDragDistance() + 1), Qt::LeftButton);
    const bool began = ran;
    // Where there was no drag the timer is still to come.
    QCoreApplication::processEvents();
    return began;
}

/// Drives a real drag with the pointer, from a place of a window to another.
inline void drag(QWidget *window, const QPoint &from, const QPoint &to)
{
    QWindow *handle = window->windowHandle();
    bool over = false;
    // One timer for each step: the drag runs inside the first, and a timer does not fire within itself.
    const auto at = [window](int msec, const std::function<void()> &step) { QTimer::singleShot(msec, window, step); };
    for (int step = 1; step <= 4; ++step)
        at(30 * step, [=] { QTest::mouseMove(handle, from + (to - from) * step / 4); });
    at(150, [=] { QTest::mouseMove(handle, to + QPoint(1, 1)); });
    at(180, [=] { QTest::mouseRelease(handle, Qt::LeftButton, {}, to); });
    at(210, [&over] {
        QDrag::cancel();
        over = true;
    });
    QTest::mousePress(handle, Qt::LeftButton, {}, from);
    QTRY_VERIFY(over);
}

} // namespace DropTesting
