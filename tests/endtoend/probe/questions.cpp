#include "probe/questions.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTextDocumentFragment>
#include <QWidget>

QJsonObject Probe::error(const QString &reason)
{
    return { { QStringLiteral("error"), reason } };
}

QWidget *Probe::find(const QJsonObject &request)
{
    const QString name = request.value(QLatin1String("widget")).toString();
    QWidget *found = nullptr;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget *candidate : widgets)
        if (candidate->objectName() == name && (!found || (candidate->isVisible() && !found->isVisible())))
            found = candidate;
    return found;
}

QJsonObject Probe::notFound(const QJsonObject &request)
{
    return error(QStringLiteral("no such widget: %1").arg(request.value(QLatin1String("widget")).toString()));
}

QJsonObject Probe::place(const QWidget *widget, const QRect &part)
{
    const QRect seen = part & widget->visibleRegion().boundingRect();
    const QPoint corner = widget->mapToGlobal(seen.topLeft());
    const QPoint middle = widget->mapToGlobal(seen.center());
    const QWidget *hit = seen.isEmpty() ? nullptr : QApplication::widgetAt(middle);
    const QWidget *modal = QApplication::activeModalWidget();
    const bool blocked = modal && widget->window() != modal && !modal->isAncestorOf(widget);
    const qreal ratio = widget->devicePixelRatioF();
    return {
        { QStringLiteral("rect"),
            QJsonArray { corner.x() * ratio, corner.y() * ratio, seen.width() * ratio, seen.height() * ratio } },
        { QStringLiteral("reachable"),
            hit && (hit == widget || widget->isAncestorOf(hit)) && widget->isEnabled() && widget->updatesEnabled()
                && !blocked },
    };
}

QString Probe::valueOf(const QWidget *widget)
{
    if (const auto *line = qobject_cast<const QLineEdit *>(widget))
        return line->text();
    if (const auto *text = qobject_cast<const QPlainTextEdit *>(widget))
        return text->toPlainText();
    // A list of check boxes has no current entry; its tool tip names all that are ticked.
    if (const auto *box = qobject_cast<const QComboBox *>(widget))
        return box->currentIndex() < 0 ? QTextDocumentFragment::fromHtml(box->toolTip()).toPlainText()
                                       : box->currentText();
    if (const auto *spin = qobject_cast<const QAbstractSpinBox *>(widget))
        return spin->text();
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return label->text();
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    if (!button)
        return QString();
    if (!button->isCheckable())
        return withoutMnemonic(button->text());
    return button->isChecked() ? QStringLiteral("true") : QStringLiteral("false");
}

QString Probe::withoutMnemonic(QString text)
{
    static const QRegularExpression mark(QStringLiteral("&(.)"));
    return text.replace(mark, QStringLiteral("\\1"));
}
