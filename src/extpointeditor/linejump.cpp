#include "linejump.h"

#include "extpointeditordocument.h"
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
    // What has no row is shown by the nearest that has one.
    PointTreeWidgetItem *node = m_node;
    while (node && node->parentItem() && ModelSearch::sortOf(node) == NodeSort::Other
        && !node->isKind(QLatin1String("ExtData")))
        node = node->parentItem();
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
