#include "definitions.h"

#include "extensionfile/names.h"
#include "model/keys.h"
#include "nodeindexes.h"
#include "pointtreewidgetitem.h"

namespace {

QString lastSegment(const QString &id)
{
    return id.section(QLatin1Char('.'), -1, -1, QString::SectionSkipEmpty);
}

} // namespace

Definitions::Definitions(const NodeIndexes &indexes) : m_indexes(&indexes) { }

Definitions::Nodes Definitions::find(const QString &key, const QString &pointId) const
{
    return m_indexes ? m_indexes->definitions(key, pointId) : Nodes();
}

PointTreeWidgetItem *Definitions::first(const QString &key) const
{
    return m_indexes ? (*m_indexes)[NodeIndexes::Points].first(key) : nullptr;
}

Definitions::Nodes Definitions::of(const QString &key, const QString &pointId) const
{
    const Nodes stored = find(key, pointId);
    return stored.isEmpty() ? find(pointId, pointId) : stored;
}

bool Definitions::attributes(const QString &kind, const QString &pointId, Attributes *attributes) const
{
    const Nodes definitions = of(kind.toLower(), pointId);
    if (definitions.isEmpty())
        return false;
    const Nodes declared = declarations(definitions.constFirst()).mid(0, mostDeclarations);
    for (PointTreeWidgetItem *declaration : declared) {
        const QString key = declaration->property(QStringLiteral("key")).toString();
        if (!attributes->types.contains(key))
            attributes->keys.append(key);
        attributes->defaults.insert(key, declaration->property(QStringLiteral("value")));
        attributes->types.insert(key, declaration->kind());
        if (declaration->property(QStringLiteral("trans")).toBool())
            attributes->translatable.insert(key);
        for (const auto &bound : { qMakePair(QStringLiteral("min"), &attributes->minima),
                 qMakePair(QStringLiteral("max"), &attributes->maxima) }) {
            const QVariant value = declaration->property(bound.first);
            if (!value.toString().isEmpty())
                bound.second->insert(key, value);
        }
        QStringList options;
        for (PointObject *entry : declaration->children())
            options.append(entry->property(QStringLiteral("text")).toString());
        if (!options.isEmpty())
            attributes->options.insert(key, options);
    }
    return true;
}

QStringList Definitions::childTypes(const QString &key, const QString &pointId) const
{
    const Nodes definitions = find(key, pointId);
    if (definitions.isEmpty())
        return {};
    return definitions.constFirst()->property(QStringLiteral("childType")).toString().split(QLatin1Char('|'));
}

QString Definitions::childTypes(const QString &key, const QString &pointId, bool *exists) const
{
    const Nodes definitions = find(key, pointId);
    if (definitions.isEmpty())
        return {};
    const QVariant childType = definitions.constFirst()->property(QStringLiteral("childType"));
    *exists = childType.isValid();
    return childType.toString();
}

bool Definitions::hasFormat(const QString &pointId) const
{
    PointTreeWidgetItem *point = first(pointId);
    return point && point->property(QStringLiteral("hasformat")).toBool();
}

Definitions::Nodes Definitions::declarations(const PointTreeWidgetItem *definition)
{
    Nodes declarations;
    for (PointObject *child : definition->children()) {
        PointTreeWidgetItem *node = child->item();
        if (node && !node->isKind(QLatin1String("SubExtPoint")))
            declarations.append(node);
    }
    return declarations;
}

QString Definitions::keyValue(const PointTreeWidgetItem *node)
{
    if (!node)
        return {};
    for (PointObject *child : node->children()) {
        const QString key = child->property(QStringLiteral("key")).toString();
        if (key.compare(QLatin1String("key"), Qt::CaseInsensitive) == 0)
            return child->property(QStringLiteral("value")).toString();
    }
    return {};
}

QString Definitions::realizedKind(const PointTreeWidgetItem *definition)
{
    if (!definition)
        return {};
    QString kind = definition->properties().text(QStringLiteral("key"));
    if (kind.isEmpty())
        kind = keyValue(definition);
    if (kind.isEmpty())
        kind = lastSegment(definition->properties().text(idKey));
    if (kind.isEmpty())
        kind = lastSegment(definition->pointId());
    return ExtensionFile::nameFrom(kind);
}

PropertyHash Definitions::defaults(const PointTreeWidgetItem *definition)
{
    PropertyHash defaults;
    const Nodes declared = declarations(definition).mid(0, mostDeclarations);
    for (PointTreeWidgetItem *declaration : declared) {
        const QString key = declaration->property(QStringLiteral("key")).toString();
        if (ExtensionFile::isName(key))
            defaults.insert(key, declaration->property(QStringLiteral("value")));
    }
    return defaults;
}
