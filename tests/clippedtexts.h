#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QStringList>
#include <QTabBar>

/// What somebody with large letters can't read: texts that have less room than they take, and widgets that reach out of
/// what holds them. What is cut short on purpose, with a tool tip that has all of it, is left out.
namespace ClippedTexts {

inline QString nameOf(const QWidget *widget)
{
    QStringList names;
    for (; widget; widget = widget->parentWidget())
        names.prepend(
            widget->objectName().isEmpty() ? QLatin1String(widget->metaObject()->className()) : widget->objectName());
    return names.join(QLatin1Char('/'));
}

/// The least that @p widget needs for its text, in both directions; nothing where it shows none or scrolls.
inline QSize neededBy(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget)) {
        const bool isShortened = label->inherits("ElidedLabel") || !label->toolTip().isEmpty();
        if (label->text().isEmpty() || isShortened)
            return { 0, label->text().isEmpty() ? 0 : label->fontMetrics().height() };
        return label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : label->minimumSizeHint();
    }
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        return button->text().isEmpty() ? QSize() : button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
    if (qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QComboBox *>(widget))
        return { 0, widget->fontMetrics().height() };
    if (const auto *box = qobject_cast<const QGroupBox *>(widget))
        return { box->fontMetrics().horizontalAdvance(box->title()), 0 };
    return {};
}

inline QStringList in(const QWidget *window)
{
    QStringList found;
    const auto complain = [&found](const QWidget *widget, const QString &what) {
        found.append(nameOf(widget) + QLatin1String(": ") + what);
    };
    const auto all = window->findChildren<QWidget *>();
    for (const QWidget *widget : all) {
        if (!widget->isVisibleTo(window))
            continue;
        const QSize needed = neededBy(widget);
        if (widget->width() < needed.width() || widget->height() < needed.height())
            complain(widget,
                QStringLiteral("%1x%2 of %3x%4")
                    .arg(widget->width())
                    .arg(widget->height())
                    .arg(needed.width())
                    .arg(needed.height()));
        const QWidget *parent = widget->parentWidget();
        const auto *area = qobject_cast<const QAbstractScrollArea *>(parent->parentWidget());
        const bool scrolls = area && area->viewport() == parent;
        const bool isOnTop = qobject_cast<const QTabBar *>(parent) || widget->isWindow();
        if (!scrolls && !isOnTop && !widget->visibleRegion().isEmpty() && !parent->rect().contains(widget->geometry()))
            complain(widget, QStringLiteral("reaches out of its parent"));
        if (const auto *view = qobject_cast<const QAbstractItemView *>(widget)) {
            const QModelIndex first = view->model() ? view->model()->index(0, 0) : QModelIndex();
            const int height = first.isValid() ? view->visualRect(first).height() : 0;
            if (height > 0 && height < view->fontMetrics().height())
                complain(view, QStringLiteral("rows are too low"));
        }
        if (const auto *bar = qobject_cast<const QMenuBar *>(widget)) {
            for (const QAction *action : bar->actions()) {
                if (action->isVisible() && !bar->rect().contains(bar->actionGeometry(const_cast<QAction *>(action))))
                    complain(bar, action->text());
            }
        }
    }
    return found;
}

} // namespace ClippedTexts
