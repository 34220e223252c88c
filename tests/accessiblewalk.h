#pragma once

#include <QAccessible>
#include <QApplication>
#include <QStringList>
#include <QWidget>

/// What somebody who only hears a window can't make out: goes through all that assistive technology is told of it.
namespace AccessibleWalk {

inline QString placeOf(QAccessibleInterface *node)
{
    QStringList names;
    for (; node; node = node->parent()) {
        if (const QObject *object = node->object())
            names.prepend(
                QLatin1String(object->metaObject()->className()) + QLatin1Char(' ') + object->objectName().trimmed());
    }
    return names.join(QLatin1String(" > "));
}

/// A widget that stands within another control is told of as that one: the line of a spin box.
inline bool isPart(const QAccessibleInterface *node)
{
    const auto *widget = qobject_cast<const QWidget *>(node->object());
    const QWidget *above = widget ? widget->parentWidget() : nullptr;
    return above
        && (above->focusProxy() == widget || above->inherits("QAbstractSpinBox") || above->inherits("QComboBox"));
}

/// Controls that take the focus and have no name, and those of one kind and one name under one parent.
inline QString complaints(QWidget *window)
{
    QStringList found;
    QVector<QAccessibleInterface *> open { QAccessible::queryAccessibleInterface(window) };
    while (!open.isEmpty()) {
        QAccessibleInterface *node = open.takeLast();
        if (!node || node->state().invisible)
            continue;
        const bool isCell = node->role() == QAccessible::Cell || node->role() == QAccessible::TreeItem
            || node->role() == QAccessible::ListItem || node->role() == QAccessible::ColumnHeader
            || node->role() == QAccessible::RowHeader;
        if (isCell)
            continue;
        if (node->state().focusable && !isPart(node) && node->text(QAccessible::Name).trimmed().isEmpty())
            found.append(QLatin1String("no name: ") + placeOf(node));
        QStringList siblings;
        for (int i = 0; i < node->childCount(); ++i) {
            QAccessibleInterface *child = node->child(i);
            open.append(child);
            if (!child || child->state().invisible || !child->state().focusable || isPart(child))
                continue;
            const QString name = QString::number(child->role()) + QLatin1Char(' ') + child->text(QAccessible::Name);
            if (siblings.contains(name) && child->object() && child->role() != QAccessible::Cell
                && child->role() != QAccessible::TreeItem && child->role() != QAccessible::ListItem)
                found.append(QLatin1String("twice: ") + name + QLatin1String(" in ") + placeOf(child));
            siblings.append(name);
        }
    }
    return found.join(QLatin1Char(10));
}

} // namespace AccessibleWalk
