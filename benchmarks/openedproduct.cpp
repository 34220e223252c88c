#include "openedproduct.h"

#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "surface/extpointwidget.h"
#include "watchedapplication.h"

#include <QEventLoop>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

OpenedProduct::OpenedProduct() = default;

OpenedProduct::~OpenedProduct() = default;

bool OpenedProduct::open(const QString &fileName)
{
    m_fileName = fileName;
    m_manager = std::make_unique<SourceDataManager>();
    Controller::instance()->setSourceDataManager(m_manager.get());
    m_widget = std::make_unique<ExtPointWidget>();
    if (!m_manager->load(fileName))
        return false;
    m_widget->reloadPages();
    m_widget->resize(size);
    m_widget->show();
    return true;
}

bool OpenedProduct::becomesActive() const
{
    m_widget->activateWindow();
    if (!QTest::qWaitForWindowActive(m_widget.get()))
        return false;
    WatchedApplication::settle();
    return true;
}

void OpenedProduct::startScan() const
{
    m_manager->startScan(m_fileName);
}

void OpenedProduct::waitForScan() const
{
    if (m_manager->siblings().isRunning()) {
        QEventLoop loop;
        QObject::connect(m_manager.get(), &SourceDataManager::scanFinished, &loop, &QEventLoop::quit);
        loop.exec();
    }
    WatchedApplication::settle();
}

void OpenedProduct::showPage(const char *name) const
{
    find<QTabWidget>("tabWidget")->setCurrentWidget(find<QWidget>(name));
}

PointTreeWidgetItem *OpenedProduct::pointRow(const QTreeWidget *tree, const QString &id)
{
    for (QTreeWidgetItemIterator row(const_cast<QTreeWidget *>(tree)); *row; ++row) {
        PointTreeWidgetItem *node = PointTreeWidgetItem::fromRow(*row);
        if (node && node->isKind(QLatin1String("ExtPoint")) && node->pointId() == id)
            return node;
    }
    return nullptr;
}

void OpenedProduct::click(QTreeWidget *tree, PointTreeWidgetItem *row)
{
    tree->scrollToItem(row);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualItemRect(row).center());
}

QWidget *OpenedProduct::found(const char *name) const
{
    auto *widget = m_widget->findChild<QWidget *>(QLatin1String(name));
    if (!widget)
        qFatal("the form has no %s", name);
    return widget;
}
