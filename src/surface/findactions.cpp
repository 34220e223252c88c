#include "findactions.h"

#include "form/extpointwidgetform.h"
#include "form/filterline.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"

#include <QApplication>

FindActions::FindActions(const Ui::ExtPointWidget &ui, QWidget *widget)
    : QObject(widget), m_ui(ui), m_widget(widget), m_users(new QAction(tr("Find &Users"), widget))
{
    auto *find = new QAction(tr("&Find"), widget);
    find->setObjectName(QStringLiteral("findAction"));
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, this, [this] {
        if (FilterLine *line = FilterLine::of(view()))
            line->open();
    });
    m_users->setObjectName(QStringLiteral("findUsersAction"));
    m_users->setShortcut(QKeySequence(Qt::Key_F7));
    m_users->setVisible(false);
    connect(m_users, &QAction::triggered, this, &FindActions::findUsers);
    widget->addActions({ find, m_users });
    ui.realizationTree->addAction(m_users);
    ui.realizTable->addAction(m_users);
    ui.defintionTree->addAction(m_users);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget * /*old*/, QWidget *now) { noteFocus(now); });
}

void FindActions::noteFocus(QWidget *now)
{
    static const QStringList names { QStringLiteral("realizationTree"), QStringLiteral("realizTable"),
        QStringLiteral("formatTree"), QStringLiteral("defintionTree") };
    if (!now || !m_widget->isAncestorOf(now))
        return;
    for (QWidget *widget = now; widget != m_widget; widget = widget->parentWidget()) {
        auto *view = qobject_cast<QAbstractItemView *>(widget);
        if (view && names.contains(view->objectName()))
            m_last = view;
    }
}

QAbstractItemView *FindActions::view() const
{
    if (m_last && m_last->isVisible())
        return m_last;
    if (m_ui.defintionTree->isVisible())
        return m_ui.defintionTree;
    return m_ui.realizationTree->isVisible() ? m_ui.realizationTree : nullptr;
}

void FindActions::findUsers()
{
    QAbstractItemView *asked = view();
    PointTreeWidgetItem *node = nullptr;
    if (const auto *tree = qobject_cast<QTreeWidget *>(asked)) {
        node = PointTreeWidgetItem::fromRow(tree->currentItem());
        // A row of a format stands for a node of a file.
        if (node && tree != m_ui.defintionTree && node->master())
            node = node->master()->item();
    } else if (asked) {
        const auto *point = PointTreeWidgetItem::fromRow(m_ui.realizationTree->currentItem());
        node = Controller::instance()->ownRealizations().recordsOf(point).value(m_ui.realizTable->currentRow());
    }
    if (node)
        Q_EMIT usersWanted(node);
}
