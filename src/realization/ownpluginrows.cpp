#include "ownpluginrows.h"

#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"

#include <QEvent>
#include <QScrollBar>
#include <QTreeWidget>

namespace {

// Points of the plug-in that are brought into sight along with it.
constexpr int pointsInSight = 8;

} // namespace

OwnPluginRows::OwnPluginRows(QTreeWidget *tree, QObject *parent) : QObject(parent), m_tree(tree)
{
    connect(tree->model(), &QAbstractItemModel::rowsInserted, this, &OwnPluginRows::lookLater);
    if (SourceDataManager *manager = Controller::instance()->sourceDataManager())
        connect(manager, &SourceDataManager::scanFinished, this, [this] {
            look();
            m_following = false;
        });
    tree->installEventFilter(this);
}

bool OwnPluginRows::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show)
        lookLater();
    return QObject::eventFilter(watched, event);
}

void OwnPluginRows::lookLater()
{
    if (m_lookPending)
        return;
    m_lookPending = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_lookPending = false;
            look();
        },
        Qt::QueuedConnection);
}

void OwnPluginRows::look()
{
    const SourceDataManager *manager = Controller::instance()->sourceDataManager();
    if (!m_tree || !manager)
        return;
    const auto plugins = manager->ownPlugins();
    for (PointTreeWidgetItem *plugin : plugins) {
        // With two files open the rows may be those of the other one.
        if (plugin->treeWidget() != m_tree)
            return;
        if (plugin->font(0).bold())
            continue;
        QFont font = m_tree->font();
        font.setBold(true);
        plugin->setFont(0, font);
        plugin->setExpanded(true);
    }
    if (m_following && !plugins.isEmpty() && m_tree->isVisible())
        keepInSight(plugins.first());
}

void OwnPluginRows::keepInSight(QTreeWidgetItem *row)
{
    QScrollBar *bar = m_tree->verticalScrollBar();
    m_following = !m_tree->currentItem() && bar->value() == m_scrolledTo;
    if (!m_following)
        return;
    if (row->childCount() > 0)
        m_tree->scrollToItem(row->child(qMin(row->childCount(), pointsInSight) - 1));
    m_tree->scrollToItem(row);
    m_scrolledTo = bar->value();
}
