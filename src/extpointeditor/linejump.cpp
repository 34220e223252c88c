#include "linejump.h"

#include "extpointeditordocument.h"
#include "model/keys.h"
#include "model/modelsearch.h"
#include "model/nodeatline.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"

#include <QCoreApplication>
#include <QEvent>

namespace PointEditor::Internal {

LineJump::LineJump(
    const ExtPointEditorDocument &document, ExtPointWidget &widget, int line, int column, QObject *parent)
    : QObject(parent), m_document(document), m_widget(widget),
      m_node(NodeAtLine::find(document.manager(), line, column))
{
    if (document.manager().siblings().isRunning())
        go();
    QCoreApplication::instance()->installEventFilter(this);
    document.whenScanned(this, [this] {
        go();
        deleteLater();
    });
}

void LineJump::go()
{
    const QLatin1String extData("ExtData");
    // What has no row is shown by the nearest that has one.
    PointTreeWidgetItem *node = m_node;
    while (node && node->parentItem() && ModelSearch::sortOf(node) == NodeSort::Other && !node->isKind(extData))
        node = node->parentItem();
    // A holder stands for the point that it holds records of.
    if (node && node->isKind(extData))
        node = m_document.manager().definitions().first(node->properties().text(idKey));
    (void)m_widget.goTo(node);
}

bool LineJump::eventFilter(QObject *, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (event->spontaneous() && (type == QEvent::MouseButtonPress || type == QEvent::KeyPress || type == QEvent::Wheel))
        deleteLater();
    return false;
}

} // namespace PointEditor::Internal
