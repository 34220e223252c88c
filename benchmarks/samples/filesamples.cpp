#include "samples/sample.h"

#include "hostmemory.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "openedproduct.h"
#include "surface/extpointwidget.h"
#include "watchedapplication.h"

#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QTextStream>

#include <algorithm>
#include <iterator>
#include <unistd.h>
#include <vector>

namespace {

/// What is saved, without the ways of our model: reading that is not what is compared.
struct PlainNode
{
    QString tag;
    QVector<QPair<QString, QString>> attributes;
    std::vector<PlainNode> children;
};

PlainNode plain(const PointObject *node, const QString &tag)
{
    PlainNode copy { tag, {}, {} };
    const QStringList keys = node->properties().keys();
    for (const QString &key : keys)
        copy.attributes.append({ key, node->properties().value(key).toString() });
    for (PointObject *child : node->children())
        copy.children.push_back(plain(child, child->item()->kind()));
    return copy;
}

QDomElement elementOf(QDomDocument *document, const PlainNode &node)
{
    QDomElement element = document->createElement(node.tag);
    for (const auto &attribute : node.attributes)
        element.setAttribute(attribute.first, attribute.second);
    for (const PlainNode &child : node.children)
        element.appendChild(elementOf(document, child));
    return element;
}

/// What a program does that knows nothing better; how long it took in milliseconds, negative when it failed.
double saveAsDom(const PlainNode &root, const QString &fileName)
{
    const qint64 start = WatchedApplication::now();
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(
        QStringLiteral("xml"), QStringLiteral("version=\"1.0\" encoding=\"utf-8\"")));
    document.appendChild(elementOf(&document, root));
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return -1;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    document.save(stream, 4);
    stream.flush();
    if (!file.flush() || ::fsync(file.handle()) != 0)
        return -1;
    return double(WatchedApplication::now() - start) / 1e6;
}

} // namespace

QJsonObject Samples::open(const QJsonObject &arguments)
{
    const QString file = arguments.value(QLatin1String("file")).toString();
    HostMemory::fetch();
    OpenedProduct product;
    bool opened = false;
    const double wall = WatchedApplication::instance()->untilPainted([&]() -> const QWidget * {
        opened = product.open(file);
        product.startScan();
        return product.widget();
    });
    product.waitForScan();
    if (!opened)
        return failure(QStringLiteral("%1 can't be opened").arg(file));
    return { { QStringLiteral("wall"), wall } };
}

QJsonObject Samples::save(const QJsonObject &arguments)
{
    const QString file = arguments.value(QLatin1String("file")).toString();
    const QString other = QFileInfo(file).path() + QLatin1String("/dom.xml");
    OpenedProduct product;
    if (!product.open(file))
        return failure(QStringLiteral("%1 can't be opened").arg(file));
    product.startScan();
    product.waitForScan();
    const PointTreeWidgetItem *definitions = product.manager()->definitionRoot();
    PlainNode root = plain(definitions, definitions->kind());
    PlainNode data = plain(product.manager()->realizationRoot(), QString());
    std::move(data.children.begin(), data.children.end(), std::back_inserter(root.children));
    // One each in a process of its own: what the one has left to the allocator is not for the other to tidy up.
    HostMemory::fetch();
    const bool asDom = arguments.value(QLatin1String("dom")).toBool();
    const qint64 start = WatchedApplication::now();
    double wall = asDom ? saveAsDom(root, other) : -1;
    if (!asDom && product.manager()->save())
        wall = double(WatchedApplication::now() - start) / 1e6;
    if (wall < 0)
        return failure(QStringLiteral("%1 can't be saved").arg(file));
    return { { QStringLiteral("wall"), wall }, { QStringLiteral("bytes"), QFileInfo(asDom ? other : file).size() } };
}
