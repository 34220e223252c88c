#pragma once

#include <QApplication>
#include <QSet>
#include <QTest>
#include <QWidget>

/// The rule of the Tab key: from any control of a window it leads to every other one that can be used, to each once,
/// and back to where it began.
class TabCycle final
{
public:
    /// Goes round once first, since a view that the focus comes to may show more; takes what can be used then.
    explicit TabCycle(QWidget *window)
    {
        for (int i = 0; i < warmUp; ++i)
            press(false);
        QSet<QWidget *> reachable;
        QList<QWidget *> inOrder;
        const auto all = window->findChildren<QWidget *>();
        for (QWidget *widget : all) {
            while (widget->focusProxy())
                widget = widget->focusProxy();
            if (!widget->isVisible() || !widget->isEnabled() || !(widget->focusPolicy() & Qt::TabFocus))
                continue;
            if (!reachable.contains(widget))
                inOrder.append(widget);
            reachable.insert(widget);
        }
        // An editor that stands in a view belongs to it.
        for (QWidget *widget : qAsConst(inOrder)) {
            const QWidget *above = widget->parentWidget();
            while (above && !reachable.contains(const_cast<QWidget *>(above)))
                above = above->parentWidget();
            if (!above)
                m_controls.append(widget);
        }
    }

    [[nodiscard]] int size() const { return m_controls.size(); }

    /// What is wrong with the way through them, empty for nothing.
    [[nodiscard]] QString complaint(bool backwards) const
    {
        if (m_controls.isEmpty())
            return QStringLiteral("nothing to visit");
        m_controls.first()->setFocus(backwards ? Qt::BacktabFocusReason : Qt::TabFocusReason);
        QList<QWidget *> visited;
        constexpr int patience = 400;
        for (int i = 0; i < patience; ++i) {
            QWidget *control = controlOf(QApplication::focusWidget());
            if (!control)
                return QStringLiteral("lost after ") + names(visited);
            if (visited.isEmpty() || visited.last() != control) {
                if (visited.contains(control))
                    return judge(visited, control);
                visited.append(control);
            }
            press(backwards);
        }
        return QStringLiteral("stays at the end of ") + names(visited);
    }

private:
    static constexpr int warmUp = 60;

    static void press(bool backwards)
    {
        QTest::keyClick(QGuiApplication::focusWindow(), backwards ? Qt::Key_Backtab : Qt::Key_Tab,
            backwards ? Qt::ShiftModifier : Qt::NoModifier);
        QCoreApplication::processEvents();
    }
    [[nodiscard]] QWidget *controlOf(QWidget *focus) const
    {
        while (focus && !m_controls.contains(focus))
            focus = focus->parentWidget();
        return focus;
    }
    [[nodiscard]] QString judge(const QList<QWidget *> &visited, QWidget *again) const
    {
        QList<QWidget *> missing;
        for (QWidget *control : m_controls) {
            if (!visited.contains(control))
                missing.append(control);
        }
        if (missing.isEmpty() && again == visited.first())
            return {};
        return QStringLiteral("%1; then again %2; never %3").arg(names(visited), names({ again }), names(missing));
    }
    [[nodiscard]] static QString names(const QList<QWidget *> &widgets)
    {
        QStringList names;
        for (const QWidget *widget : widgets) {
            QString name = widget->objectName();
            for (const QWidget *above = widget; name.isEmpty() && above; above = above->parentWidget())
                name = above->objectName();
            names.append(name + QLatin1Char(':') + QLatin1String(widget->metaObject()->className()));
        }
        return names.join(QLatin1String(", "));
    }

    QList<QWidget *> m_controls;
};
