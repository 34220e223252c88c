#include "treemenu.h"

#include "pointcreation.h"

TreeMenu::TreeMenu()
    : m_createPoint(addAction(createPointText())), m_createSubPoint(addAction(createSubPointText())),
      m_deletePoint(addAction(deletePointText()))
{ }

void TreeMenu::fitTo(const PointTreeWidgetItem *item)
{
    const PointCreation::Role role = PointCreation::roleOf(item);
    const bool other = role == PointCreation::Role::Other;
    m_createPoint->setVisible(other || role == PointCreation::Role::Plugin);
    m_createSubPoint->setVisible(other || role == PointCreation::Role::Point);
    m_deletePoint->setVisible(other || role == PointCreation::Role::Point || role == PointCreation::Role::SubPoint);
}
