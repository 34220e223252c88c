#pragma once

#include "propertyhash.h"

#include <QByteArray>
#include <QHash>
#include <QPair>
#include <QString>
#include <QVector>

class Definitions;
class PointTreeWidgetItem;
class SaveReport;
class TranslatableKeys;

namespace ExtensionFile {
class Writer;
}

/// Turns the two sides of the opened file into the bytes of an extension file. GUI thread.
class ModelWriter final
{
public:
    enum class Marks {
        AsDeclared, ///< on what the points declare translatable, as in a saved file
        AsRead      ///< also on what was read with marks: for a copy that must not depend on who has been read yet
    };

    /// @p translatable learns from every realization node before it is written.
    /// @p path is only named in the log.
    ModelWriter(TranslatableKeys &translatable, const Definitions &definitions, const QString &path,
        Marks marks = Marks::AsDeclared);

    /// @p report, which must outlive the writing, hears what the document will not say as the file did.
    void setReport(SaveReport *report) { m_report = report; }

    /// How the document has a value, where that differs from what its node says; Made for one that it does not have.
    struct Change
    {
        PointTreeWidgetItem *node;
        QString key;
        PropertyHash::Origin origin;
    };
    /// Of the last writing, in order.
    [[nodiscard]] const QVector<Change> &changes() const { return m_changes; }

    /// The root element is that of @p definitionRoot. With no children on either side the document is the processing
    /// instruction alone. Empty when the tree can't be written at all; the reason has been logged.
    [[nodiscard]] QByteArray write(PointTreeWidgetItem *definitionRoot, PointTreeWidgetItem *realizationRoot);

private:
    void startDefinition(ExtensionFile::Writer &writer, PointTreeWidgetItem *node);
    void startRealization(ExtensionFile::Writer &writer, PointTreeWidgetItem *node);
    void leaveOut(PointTreeWidgetItem *node, const PropertyHash::Entry &entry);
    void noteOrigin(PointTreeWidgetItem *node, const PropertyHash::Entry &entry, PropertyHash::Origin origin);

    /// Whether anybody declares such a node.
    bool learn(const PointTreeWidgetItem *node);

    TranslatableKeys &m_translatable;
    const Definitions &m_definitions;
    QString m_path;
    Marks m_marks;
    SaveReport *m_report = nullptr;
    QVector<Change> m_changes;
    QHash<QPair<QString, QString>, bool> m_learned; ///< kind in lower case and point id: nodes share their definitions
};
