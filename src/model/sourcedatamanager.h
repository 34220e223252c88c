#pragma once

#include "announcement.h"
#include "definitions.h"
#include "formatmerger.h"
#include "nodeindexes.h"
#include "pointtreewidgetitem.h"
#include "translatablekeys.h"

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

class Controller;
class OpenedFile;
class ScanSequence;

/// The model of one opened extension file, together with what is known of every sibling plug-in.
///
/// Owns the five trees of nodes: the opened file's definition side and realization side, the points of all siblings,
/// the data of all siblings, and a fourth root that is passed to the reading tasks. Created by the document without a
/// parent and deleted by it. GUI thread; reading tasks reach it through a ScanSequence only.
class SourceDataManager final : public QObject
{
    Q_OBJECT

public:
    explicit SourceDataManager(const QString &filePath = QString(), QObject *parent = nullptr);
    ~SourceDataManager() override;

    /// Reads @p fileName into the two roots of the opened file, in place of what an earlier load put there. False, with
    /// the model and every index as they were, when the file can't be read or parsed; the reason has been logged.
    [[nodiscard]] bool load(const QString &fileName);

    /// Completes the scan, since translatable keys are known from scanned points only, and writes the opened file.
    /// False, with the old file intact and the reason logged, when there is no path, when the last load() failed, or
    /// when it can't be written.
    [[nodiscard]] bool save();

    /// Starts the reading of every sibling of the directory that @p fileName lies in, its own directory included. What
    /// an earlier scan has read is destroyed.
    void startScan(const QString &fileName);

    /// Returns when the scan is over and everything is taken in. No user input is handled meanwhile.
    void completeScan();
    [[nodiscard]] bool isScanning() const { return m_scan != nullptr; }

    [[nodiscard]] const QString &filePath() const { return m_filePath; }
    /// The opened file's root "id", the attribute's name compared without letter case.
    [[nodiscard]] const QString &pluginId() const { return m_pluginId; }

    [[nodiscard]] PointTreeWidgetItem *definitionRoot() const { return m_definitionRoot; }
    /// The points of all plug-ins; what the realization page's tree shows.
    [[nodiscard]] PointTreeWidgetItem *availablePointsRoot() const { return m_availablePointsRoot; }
    [[nodiscard]] PointTreeWidgetItem *allDataRoot() const { return m_allDataRoot; }
    [[nodiscard]] PointTreeWidgetItem *fourthRoot() const { return m_fourthRoot; }
    /// The opened file's own realization side; what is saved.
    [[nodiscard]] PointTreeWidgetItem *realizationRoot() const { return m_realizationRoot; }
    [[nodiscard]] const NodeIndexes &indexes() const { return m_indexes; }

    /// Adds @p child under @p parent in both trees, with the parent's plug-in id.
    void addDefinition(PointTreeWidgetItem *parent, PointTreeWidgetItem *child);
    /// Enters a definition made by the user in the point index, like a scanned one: a point under its "id", a sub point
    /// under its "key" in lower case.
    void registerDefinition(PointTreeWidgetItem *node);
    /// Moves @p node, and the nodes that it mirrors, from one key of the point index to another. Nodes that are not
    /// there stay out.
    void rekeyDefinition(PointTreeWidgetItem *node, const QString &oldKey, const QString &newKey);
    /// Enters @p format in the target map, in place of the one that had the same "target".
    void addTarget(PointTreeWidgetItem *format);
    /// Enters @p node in the realization multi-map, under its "id" or, without one, under its kind.
    void addRealization(PointTreeWidgetItem *node);
    /// Keeps a node that was taken out of the model but may still be remembered, and takes it, with everything under
    /// it, out of every index. It is destroyed with the manager. Null is allowed.
    void retire(PointTreeWidgetItem *node);

    /// The first definition node stored under @p key; null without one.
    [[nodiscard]] PointTreeWidgetItem *definition(const QString &key) const;
    /// The siblings' realization nodes with this id that are not records of an "ExtData".
    [[nodiscard]] QVector<PointTreeWidgetItem *> data(const QString &id) const;
    /// The sibling's record with this id, the one that came last; null without one.
    [[nodiscard]] PointTreeWidgetItem *dataChild(const QString &id) const;
    /// Every realization node of the opened file, by key, then in document order.
    [[nodiscard]] QVector<PointTreeWidgetItem *> realizations() const;
    [[nodiscard]] QVector<PointTreeWidgetItem *> layouts() const;
    /// The formats of the target map, by target.
    [[nodiscard]] QVector<PointTreeWidgetItem *> targetFormats() const;
    [[nodiscard]] PointTreeWidgetItem *formatOfTarget(const QString &target) const;
    [[nodiscard]] PointTreeWidgetItem *siblingFormatOfTarget(const QString &target) const;

    [[nodiscard]] bool pointHasFormat(const PointTreeWidgetItem *node) const;
    [[nodiscard]] QStringList attributeTypes() const { return m_attributeTypes; }
    [[nodiscard]] QMap<QString, QStringList> attributeFields() const { return m_attributeFields; }
    [[nodiscard]] QStringList childTypes(const QString &key, const QString &pointId) const;
    [[nodiscard]] QString childTypes(const QString &key, const QString &pointId, bool *exists) const;
    /// The children with a non-empty "id" of each node stored under @p key in the realization multi-map.
    [[nodiscard]] QVector<PointTreeWidgetItem *> realizationItems(const QString &key) const;
    /// Those of them whose kind is @p kind, compared without letter case.
    [[nodiscard]] QVector<PointTreeWidgetItem *> realizationItems(const QString &key, const QString &kind) const;
    /// False, with @p attributes untouched, when no definition of @p item is known.
    [[nodiscard]] bool attributeDefinitions(const PointTreeWidgetItem *item, Definitions::Attributes *attributes) const;
    /// The "value" of the declaration with key "key" among the children of @p node; empty for null.
    [[nodiscard]] QString keyValue(const PointTreeWidgetItem *node) const { return Definitions::keyValue(node); }

public Q_SLOTS:
    void onDefinData(QString key, PointTreeWidgetItem *item);
    void layoutRelization(PointTreeWidgetItem *layout);
    void addTopChild(PointTreeWidgetItem *parent, PointTreeWidgetItem *child);
    void addObjChild(PointTreeWidgetItem *parent, PointTreeWidgetItem *child);
    void allFormatRoot(PointTreeWidgetItem *item);

Q_SIGNALS:
    /// A portion of what the scan read has been taken in.
    void scanProgressed();
    /// The scan is over and everything that it read has been taken in.
    void scanFinished();

private:
    /// The opened file is read twice. Of the second reading only the points are taken in: its realization side is the
    /// opened file's own, which stands in the model already and may have been changed since.
    void receive(bool ownFile, const Announcement &announcement);
    void dropOwnReading();
    /// What the user created before the scan came to the opened file stands under a plug-in of its own, which only the page
    /// made (it has no plug-in id). It moves to @p set, so that the plug-in is shown once.
    void takeOverCreatedPoints(PointTreeWidgetItem *set);
    void adopt(OpenedFile &file);
    void clearOpenedFile();
    void clearScan();
    void indexRealizations(PointTreeWidgetItem *node);
    [[nodiscard]] Definitions definitions() const { return Definitions(m_indexes[NodeIndexes::Points]); }

    Controller *m_controller;
    QString m_filePath;
    QString m_pluginId;
    TranslatableKeys m_translatableKeys;
    // Guarded, since a tree widget that dies with a root in it destroys the root.
    QPointer<PointTreeWidgetItem> m_definitionRoot;
    QPointer<PointTreeWidgetItem> m_availablePointsRoot;
    QPointer<PointTreeWidgetItem> m_allDataRoot;
    QPointer<PointTreeWidgetItem> m_fourthRoot;
    QPointer<PointTreeWidgetItem> m_realizationRoot;
    NodeIndexes m_indexes;
    FormatMerger m_formatMerger;
    QStringList m_attributeTypes;
    QMap<QString, QStringList> m_attributeFields;
    QVector<QPointer<PointTreeWidgetItem>> m_retired;
    QVector<QPointer<PointTreeWidgetItem>>
        m_ownReading; ///< realization sets of the second reading, until the scan ends
    bool m_loadFailed = false;
    std::unique_ptr<ScanSequence> m_scan;
};
