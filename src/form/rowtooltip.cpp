#include "rowtooltip.h"

#include "extensionfile/showntext.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "problemmark.h"
#include "realizationtreewidget.h"

#include <QStringList>

namespace {

/// The plug-in that holds the node, also where the node says the one whose point it realizes.
QString owningPlugin(PointTreeWidgetItem *node)
{
    const Controller *controller = Controller::instance();
    return controller->ownRealizations().isOwn(node) ? controller->pluginId() : node->pluginId();
}

} // namespace

QString RowToolTip::text(PointTreeWidgetItem *node)
{
    if (!node)
        return {};
    QStringList lines;
    const auto add = [&lines](const QString &label, const QString &value) {
        if (!value.isEmpty())
            lines.append(label.arg(ExtensionFile::shown(value).toHtmlEscaped()));
    };
    const auto value = [node](const char *key) { return node->properties().value(QLatin1String(key)).toString(); };
    const bool isSubPoint = node->isKind(QLatin1String("SubExtPoint"));
    if (isSubPoint || node->isKind(QLatin1String("ExtPoint")))
        add(RealizationTreeWidget::tr("Name: %1"), value("name"));
    const QString id = value("id");
    if (id.isEmpty() && isSubPoint) {
        add(RealizationTreeWidget::tr("Key: %1"), value("key"));
        add(RealizationTreeWidget::tr("Point: %1"), node->pointId());
    } else {
        add(RealizationTreeWidget::tr("Id: %1"), id);
    }
    add(RealizationTreeWidget::tr("Plug-in: %1"), owningPlugin(node));
    add(QStringLiteral("%1"), ProblemMark::reasons(node));
    return lines.isEmpty()
        ? QString()
        : QLatin1String("<p style='white-space:pre'>") + lines.join(QLatin1String("<br/>")) + QLatin1String("</p>");
}
