#pragma once

#include "extensionfile/limits.h"
#include "propertyhash.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

class NodeIndexes;
class PointTreeWidgetItem;

/// What the points of the product say about the nodes that realize them: a view on the indexes, made where it is
/// needed. One made without indexes knows nothing. GUI thread.
class Definitions final
{
public:
    using Nodes = QVector<PointTreeWidgetItem *>;

    /// The attribute declarations of a definition, by attribute key.
    struct Attributes
    {
        QHash<QString, QVariant> defaults;
        QHash<QString, QString> types;
        QHash<QString, QStringList> options; ///< only for attributes that have any
        QSet<QString> translatable;
        QHash<QString, QVariant> minima; ///< "min" of those that declare one
        QHash<QString, QVariant> maxima; ///< the same for "max"
        QStringList keys;                ///< in the order of the declarations
    };

    Definitions() = default;
    explicit Definitions(const NodeIndexes &indexes);

    /// The first definition stored under @p key; null without one.
    [[nodiscard]] PointTreeWidgetItem *first(const QString &key) const;

    /// The definitions stored under @p key that belong to the point @p pointId (compared without letter case). Another
    /// plug-in may use the same key for a sub point of its own, so where none under the key belongs to the point, the
    /// ones stored under the point id answer.
    [[nodiscard]] Nodes of(const QString &key, const QString &pointId) const;

    /// Declarations that a record follows: the first ones, so that with what it has of its own it stays within what
    /// the reader takes.
    static constexpr int mostDeclarations = ExtensionFile::Limits().maximumAttributesPerElement - 50;

    /// False, with @p attributes untouched, when nothing defines a node of this kind at this point.
    [[nodiscard]] bool attributes(const QString &kind, const QString &pointId, Attributes *attributes) const;

    /// "childType" of the first definition under @p key that belongs to the point, split at "|", empty parts kept;
    /// empty when nothing matches. Unlike of() this does not fall back to the point id, else every node of an unknown
    /// kind would take what its point takes.
    [[nodiscard]] QStringList childTypes(const QString &key, const QString &pointId) const;

    /// "childType" unsplit; @p exists tells whether the property is there and stays untouched when nothing matches.
    /// Must not be null.
    [[nodiscard]] QString childTypes(const QString &key, const QString &pointId, bool *exists) const;

    /// Whether the first point stored under @p pointId has formats.
    [[nodiscard]] bool hasFormat(const QString &pointId) const;

    /// The declarations among the model children of @p definition, in order: every child that is no sub point.
    [[nodiscard]] static Nodes declarations(const PointTreeWidgetItem *definition);

    /// The kind of the nodes that realize @p definition: its "key", else the value of its declaration with that key,
    /// else the last segment of its "id", or of its owner's where a sub point has none. It becomes the name of an
    /// element: what a name can't have is "_" there, and what it can't begin with has "_" before it. Never empty.
    [[nodiscard]] static QString realizedKind(const PointTreeWidgetItem *definition);

    /// What a fresh node for @p definition holds: the defaults of the declarations that belong to it, in order. A
    /// declaration whose key no file can hold has none.
    [[nodiscard]] static PropertyHash defaults(const PointTreeWidgetItem *definition);

    /// The "value" of the first model child of @p node whose "key" is "key" in any letter case; empty without one.
    [[nodiscard]] static QString keyValue(const PointTreeWidgetItem *node);

private:
    [[nodiscard]] Nodes find(const QString &key, const QString &pointId) const;

    const NodeIndexes *m_indexes = nullptr;
};
