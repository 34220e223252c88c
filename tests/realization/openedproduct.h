#pragma once

#include "model/controller.h"
#include "model/modeltesting.h"
#include "model/sourcedatamanager.h"

#include <QDir>

namespace RealizationTesting {

inline QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/// A product whose plug-in "own" is opened and whose siblings have been scanned.
class OpenedProduct final
{
public:
    explicit OpenedProduct(const QByteArray &own, const QByteArray &sibling = QByteArray())
    {
        Controller::instance()->setSourceDataManager(&manager);
        if (!sibling.isEmpty())
            product.add(s("other"), "<Plugin id=\"other\">" + sibling + "</Plugin>");
        const QString path = product.add(s("own"), "<Plugin id=\"own\">" + own + "</Plugin>");
        if (!manager.load(path))
            qFatal("not loaded");
        manager.startScan(path);
        manager.completeScan();
    }
    OpenedProduct(const OpenedProduct &) = delete;
    OpenedProduct &operator=(const OpenedProduct &) = delete;

    [[nodiscard]] QString directory(const char *plugin) const { return product.path() + s("/") + s(plugin) + s("/"); }

    /// The point or sub point stored under this id or key.
    [[nodiscard]] PointTreeWidgetItem *point(const char *key) const { return manager.definitions().first(s(key)); }
    [[nodiscard]] PointTreeWidgetItem *record(const char *id) const
    {
        return manager.ownRealizations().anyRecord(s(id));
    }
    /// The first node with this id that is no record.
    [[nodiscard]] PointTreeWidgetItem *reference(const char *id) const
    {
        const OwnRealizations::Nodes nodes = manager.ownRealizations().withId(s(id));
        for (PointTreeWidgetItem *node : nodes) {
            if (!node->parentItem()->isKind(QLatin1String("ExtData")))
                return node;
        }
        qFatal("no reference to %s", id);
        return nullptr;
    }

    ModelTesting::Product product;
    SourceDataManager manager;
};

} // namespace RealizationTesting
