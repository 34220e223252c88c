#include "ownslots.h"

#include "model/controller.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"

#include <QFileInfo>

namespace {

const QLatin1String extDataSet("ExtDataSet");
const QLatin1String extData("ExtData");
const QLatin1String formatKind("Format");

QString valueOf(const PointTreeWidgetItem *node, const QString &key)
{
    return node->properties().value(key).toString();
}

} // namespace

void OwnSlots::FirstFound::find(PointTreeWidgetItem *root)
{
    PointTreeWidgetItem *node = root;
    while (node) {
        PointTreeWidgetItem *next = nullptr;
        for (PointObject *object : node->children()) {
            PointTreeWidgetItem *child = object->item();
            if (child->isKind(formatKind)) {
                format = child;
                return;
            }
            if (child->isKind(extDataSet) || child->isKind(extData)) {
                (child->isKind(extDataSet) ? dataSet : data) = child;
                next = child;
                break;
            }
        }
        node = next;
    }
}

PointTreeWidgetItem *OwnSlots::firstDataSet()
{
    const PointTreeWidgetItem *root = Controller::instance()->realizationRoot();
    if (!root)
        return nullptr;
    for (PointObject *child : root->children()) {
        if (child->item()->isKind(extDataSet))
            return child->item();
    }
    return nullptr;
}

QString OwnSlots::pointIdOf(const PointTreeWidgetItem *definition)
{
    return definition->pointId().isEmpty() ? valueOf(definition, idKey) : definition->pointId();
}

PointTreeWidgetItem *OwnSlots::data(const PointTreeWidgetItem *definition)
{
    const OwnRealizations::Nodes holders = Controller::instance()->ownRealizations().holders(pointIdOf(definition));
    return holders.isEmpty() ? nullptr : holders.constFirst();
}

PointTreeWidgetItem *OwnSlots::makeData(const PointTreeWidgetItem *definition)
{
    const QString pluginId = Controller::instance()->pluginId();
    // A sub point has no "id" as a rule, and its records are its owner's.
    const QString own = definition->isKind(QLatin1String("SubExtPoint")) ? QString() : valueOf(definition, idKey);
    const QString id = own.isEmpty() ? pointIdOf(definition) : own;
    auto *data = new PointTreeWidgetItem(QString());
    data->setKind(extData);
    data->setProperty(QStringLiteral("plugin"), pluginId);
    data->setProperty(idKey, id);
    data->setProperty(QStringLiteral("extPlugin"), definition->pluginId());
    data->setPointId(id);
    data->setPluginId(pluginId);
    data->setBasePath(basePath());
    data->setText(0, id);
    return data;
}

PointTreeWidgetItem *OwnSlots::ensureData(const PointTreeWidgetItem *definition)
{
    if (PointTreeWidgetItem *known = data(definition))
        return known;
    PointTreeWidgetItem *set = Controller::instance()->ownEdits().ensureDataSet();
    if (!set)
        return nullptr;
    PointTreeWidgetItem *made = makeData(definition);
    OwnEdits::insert(set, made);
    return made;
}

PointTreeWidgetItem *OwnSlots::format(const PointTreeWidgetItem *data, const QString &tabName)
{
    for (PointObject *child : data->children()) {
        PointTreeWidgetItem *node = child->item();
        if (!node->isKind(formatKind))
            continue;
        const QString target = valueOf(node, targetKey);
        const QString id = valueOf(node, idKey);
        if (target.isEmpty() ? id.isEmpty() || id == tabName : target == tabName)
            return node;
    }
    return nullptr;
}

PointTreeWidgetItem *OwnSlots::addFormat(PointTreeWidgetItem *data, const PointTreeWidgetItem &like)
{
    auto *format = new PointTreeWidgetItem(formatKind);
    format->assignFields(like);
    format->setKind(formatKind);
    OwnEdits::insert(data, format, 0);
    return format;
}

QString OwnSlots::basePath()
{
    const QString path = Controller::instance()->filePath();
    return path.isEmpty() ? QString() : QFileInfo(path).absolutePath() + QLatin1Char('/');
}

QString OwnSlots::parentName(const PointTreeWidgetItem *node)
{
    const QString id = valueOf(node, idKey);
    return id.isEmpty() ? node->kind() : id;
}
