#include "controller.h"

#include "mainwidgetinterface.h"
#include "pointtreewidgetitem.h"
#include "sourcedatamanager.h"

#include <atomic>
#include <mutex>
#include <type_traits>
#include <utility>

namespace {

template <typename Object>
Object *lastAlive(const QList<QPointer<Object>> &objects)
{
    for (int i = objects.size() - 1; i >= 0; --i) {
        if (objects.at(i))
            return objects.at(i);
    }
    return nullptr;
}

template <typename Object>
void makeLast(QList<QPointer<Object>> &objects, Object *object)
{
    objects.removeAll(object);
    objects.removeAll(nullptr);
    if (object)
        objects.append(object);
}

MainWidgetInterface *interfaceOf(QWidget *widget)
{
    return dynamic_cast<MainWidgetInterface *>(widget);
}

} // namespace

Controller *Controller::instance()
{
    static std::atomic<Controller *> instance { nullptr };
    static std::mutex mutex;
    Controller *controller = instance.load(std::memory_order_acquire);
    if (!controller) {
        const std::lock_guard<std::mutex> lock(mutex);
        controller = instance.load(std::memory_order_relaxed);
        if (!controller) {
            controller = new Controller;
            instance.store(controller, std::memory_order_release);
        }
    }
    return controller;
}

void Controller::setSourceDataManager(SourceDataManager *manager)
{
    makeLast(m_managers, manager);
}

void Controller::setMainWidget(QWidget *widget)
{
    makeLast(m_widgets, widget);
}

SourceDataManager *Controller::sourceDataManager() const
{
    return lastAlive(m_managers);
}

QWidget *Controller::mainWidget() const
{
    return lastAlive(m_widgets);
}

void Controller::addLayout(PointTreeWidgetItem *layout)
{
    if (MainWidgetInterface *widget = interfaceOf(mainWidget()))
        widget->addLayout(layout);
}

void Controller::addFormatRoot(PointTreeWidgetItem *item)
{
    if (MainWidgetInterface *widget = interfaceOf(mainWidget()))
        widget->addFormatRoot(item);
}

template <typename Question>
auto Controller::ask(Question question) const
{
    using Answer = std::decay_t<decltype(question(std::declval<const SourceDataManager &>()))>;
    const SourceDataManager *manager = sourceDataManager();
    return manager ? Answer(question(*manager)) : Answer();
}

QString Controller::filePath() const
{
    return ask([&](const SourceDataManager &manager) { return manager.filePath(); });
}

QString Controller::pluginId() const
{
    return ask([&](const SourceDataManager &manager) { return manager.pluginId(); });
}

PointTreeWidgetItem *Controller::definitionRoot() const
{
    return ask([&](const SourceDataManager &manager) { return manager.definitionRoot(); });
}

PointTreeWidgetItem *Controller::availablePointsRoot() const
{
    return ask([&](const SourceDataManager &manager) { return manager.availablePointsRoot(); });
}

PointTreeWidgetItem *Controller::realizationRoot() const
{
    return ask([&](const SourceDataManager &manager) { return manager.realizationRoot(); });
}

void Controller::addDefinition(PointTreeWidgetItem *parent, PointTreeWidgetItem *child)
{
    if (SourceDataManager *manager = sourceDataManager())
        manager->addDefinition(parent, child);
}

void Controller::offerDefinition(PointTreeWidgetItem *definition, PointTreeWidgetItem *above)
{
    if (SourceDataManager *manager = sourceDataManager())
        manager->offerDefinition(definition, above);
}

void Controller::flushChanges()
{
    if (SourceDataManager *manager = sourceDataManager())
        manager->changes().flush();
}

void Controller::addRealization(PointTreeWidgetItem *node)
{
    if (SourceDataManager *manager = sourceDataManager())
        manager->addRealization(node);
}

void Controller::retire(PointTreeWidgetItem *node)
{
    if (SourceDataManager *manager = sourceDataManager())
        manager->retire(node);
}

OwnRealizations Controller::ownRealizations() const
{
    return ask([&](const SourceDataManager &manager) { return manager.ownRealizations(); });
}

int Controller::formatRevision(const QString &name) const
{
    return ask([&](const SourceDataManager &manager) { return manager.siblings().formatRevision(name); });
}

QStringList Controller::attributeTypes() const
{
    return ask([&](const SourceDataManager &manager) { return manager.attributeTypes(); });
}

QMap<QString, QStringList> Controller::attributeFields() const
{
    return ask([&](const SourceDataManager &manager) { return manager.attributeFields(); });
}

Definitions Controller::definitions() const
{
    return ask([&](const SourceDataManager &manager) { return manager.definitions(); });
}

OwnEdits Controller::ownEdits()
{
    SourceDataManager *manager = sourceDataManager();
    return manager ? manager->ownEdits() : OwnEdits();
}

bool Controller::isScanning() const
{
    return ask([&](const SourceDataManager &manager) { return manager.siblings().isRunning(); });
}
