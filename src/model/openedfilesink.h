#pragma once

#include "extensionfile/sink.h"
#include "propertyhash.h"
#include "savereport.h"

#include <QList>
#include <QString>
#include <QVector>

class PointTreeWidgetItem;
class QTreeWidgetItem;

/// What was read from the opened file, before any of it is part of the model. Owns its nodes until release().
class OpenedFile final
{
public:
    OpenedFile() = default;
    OpenedFile(const OpenedFile &) = delete;
    OpenedFile &operator=(const OpenedFile &) = delete;
    ~OpenedFile();

    QString rootTag;
    PropertyHash rootProperties;
    QString pluginId; ///< the root's "id", whatever its letter case
    QVector<PointTreeWidgetItem *> definitionSets;
    QVector<PointTreeWidgetItem *> dataSets;
    /// Rows of the points, in document order; they go directly under the definition root.
    QList<QTreeWidgetItem *> pointRows;

    /// What the model has no place for.
    QVector<SaveReport::Remark> dropped;

    /// The nodes belong to the caller from here on.
    void release();
};

/// The rules by which the opened file becomes nodes. They differ from those for siblings: attribute names of the
/// definition side are lowered, tags are compared without regard to letter case, a realization node without "id" shows
/// its tag, and the nodes are linked at once. What a node is by its place is said when it enters the model, by the two
/// functions here. GUI thread.
class OpenedFileSink final : public ExtensionFile::Sink
{
public:
    /// @p basePath is the directory of the file with a trailing "/".
    OpenedFileSink(const QString &basePath, OpenedFile *file);

    /// Text, point and plug-in of a definition under @p parent, as its attributes have them.
    static void describeDefinition(
        PointTreeWidgetItem *node, const PointTreeWidgetItem &parent, const QString &pluginId);
    /// Text, point, plug-in, directory and whether it belongs to a format, of a realization node under @p parent.
    static void describeRealization(
        PointTreeWidgetItem *node, const PointTreeWidgetItem &parent, const QString &pluginId, const QString &basePath);

    void aside(ExtensionFile::Aside what, const QString &text) override;
    void startElement(
        const QString &name, const ExtensionFile::Attributes &attributes, const ExtensionFile::Locator &where) override;
    void endElement() override;

private:
    enum Side { Root, DefinitionSide, RealizationSide };

    struct Level
    {
        Side side;
        PointTreeWidgetItem *node;
    };

    void noteDropped(const QString &tag);
    void startRoot(const QString &tag, const ExtensionFile::Attributes &attributes);
    PointTreeWidgetItem *startDefinition(
        PointTreeWidgetItem *parent, const QString &tag, const ExtensionFile::Attributes &attributes);
    PointTreeWidgetItem *startRealization(
        PointTreeWidgetItem *parent, const QString &tag, const ExtensionFile::Attributes &attributes);
    PointTreeWidgetItem *newNode(const QString &text);

    QString m_basePath;
    OpenedFile *m_file;
    QVector<Level> m_levels;
    int m_ignoredDepth = 0;
};
