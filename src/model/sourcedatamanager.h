#pragma once

#include "announcement.h"
#include "definitions.h"
#include "formatmerger.h"
#include "modelchanges.h"
#include "modelwriter.h"
#include "nodeindexes.h"
#include "ownpoints.h"
#include "ownrealizations.h"
#include "pointtreewidgetitem.h"
#include "realizationindexing.h"
#include "savereport.h"
#include "scansequence.h"
#include "translatablekeys.h"

#include <QHash>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QVector>

#include <functional>
#include <memory>

namespace ExtensionFile {
class Sink;
}

class Controller;
class OpenedFile;

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
    /// As above, with @p bytes in place of what the file holds; the file need not exist.
    [[nodiscard]] bool load(const QString &fileName, const QByteArray &bytes);

    /// Completes the scan, since translatable keys are known from scanned points only, and writes the opened file as
    /// saveNow() does. When no sibling has arrived for ten seconds it goes on without those that are missing.
    [[nodiscard]] bool save();

    /// Writes the opened file with what is known of the siblings. False, with the old file intact and the reason
    /// logged, when there is no path, when the last load() failed, or when it can't be written.
    [[nodiscard]] bool saveNow();

    /// What saveNow() would write at this moment; empty where it would fail. Learns no translatable keys, so that
    /// asking makes no later save different.
    [[nodiscard]] QByteArray serialized() const;

    /// The same, but with the marks of translatable text also where they were read: whoever loads it can still find out
    /// what is translatable, whatever siblings have been read by now.
    [[nodiscard]] QByteArray recoverable() const;

    /// What saveNow() would do to the file beside.
    [[nodiscard]] SaveReport saveReport() const;

    /// The siblings' files that are still to be read.
    [[nodiscard]] QStringList awaitedFiles() const;
    /// The siblings' files that are there and can't be read, as far as is known.
    [[nodiscard]] const QVector<UnreadableFile> &unreadableFiles() const { return m_unreadable; }

    /// Starts the reading of every sibling of the directory that @p fileName lies in, its own directory included. What
    /// an earlier scan has read is destroyed.
    void startScan(const QString &fileName);

    /// Returns when the scan is over and everything is taken in, or when nothing has arrived for ten seconds. No user
    /// input is handled meanwhile.
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

    /// How views hear of changes. Whoever changes the model flushes it at the end of what the user has asked for.
    [[nodiscard]] ModelChanges &changes() { return m_changes; }

    /// Adds @p child under @p parent in both trees, with the parent's plug-in id.
    void addDefinition(PointTreeWidgetItem *parent, PointTreeWidgetItem *child);
    /// Offers a definition that is no part of the opened file under the plug-in or point @p above. Those of the opened
    /// file are offered by themselves.
    void offerDefinition(PointTreeWidgetItem *definition, PointTreeWidgetItem *above);
    /// Enters @p node in the realization multi-map and, for a format, in the target map. What stands in the opened
    /// file's tree is there already, and is not entered twice.
    void addRealization(PointTreeWidgetItem *node);
    void addTarget(PointTreeWidgetItem *format) { addRealization(format); }
    /// Keeps a node that was taken out of the model but may still be remembered, and takes it, with everything under
    /// it, out of every index. It is destroyed with the manager. Null is allowed.
    void retire(PointTreeWidgetItem *node);

    // Changes of the opened file's realization side.

    /// The first "ExtDataSet"; it is made when there is none. Null only without a model.
    PointTreeWidgetItem *ensureDataSet();
    /// Puts @p node, made for the opened file, under @p parent in both trees and registers it; at the end or, with an
    /// @p index, before the child that stands there.
    void insertRealization(PointTreeWidgetItem *parent, PointTreeWidgetItem *node, int index = -1);
    /// Moves @p node within the opened file, to the end of @p parent or, with an @p index counted after its removal,
    /// before the child that stands there. False, and nothing moved, when it would come to stand under itself.
    bool moveRealization(PointTreeWidgetItem *node, PointTreeWidgetItem *parent, int index = -1);
    /// Stores @p value in @p node and whatever it mirrors, under @p key.
    void setRealizationProperty(PointTreeWidgetItem *node, const QString &key, const QVariant &value);
    /// As above for the "id" of a record: the references to it in the opened file follow. An emptied id is not
    /// followed, since nothing would lead back.
    void renameRecord(PointTreeWidgetItem *record, const QString &id);
    /// Takes @p node out of its parent and of both trees and destroys it with everything under it.
    void destroyRealization(PointTreeWidgetItem *node);
    /// The point @p old is called @p now: what the opened file holds for it follows, unless another point has one of
    /// the names or the file holds something for the new one already.
    void followPointId(const QString &old, const QString &now);

    /// The first definition node stored under @p key; null without one.
    [[nodiscard]] PointTreeWidgetItem *definition(const QString &key) const;
    /// The siblings' realization nodes with this id that are not records of an "ExtData".
    [[nodiscard]] QVector<PointTreeWidgetItem *> data(const QString &id) const;
    /// The sibling's record with this id, the one that came last; null without one.
    [[nodiscard]] PointTreeWidgetItem *dataChild(const QString &id) const;
    /// Every realization node of the opened file, by key, then in document order.
    [[nodiscard]] QVector<PointTreeWidgetItem *> realizations() const;
    [[nodiscard]] QVector<PointTreeWidgetItem *> layouts() const;
    /// The formats of the target map, the first of each target, by target.
    [[nodiscard]] QVector<PointTreeWidgetItem *> targetFormats() const;
    [[nodiscard]] PointTreeWidgetItem *formatOfTarget(const QString &target) const;
    [[nodiscard]] PointTreeWidgetItem *siblingFormatOfTarget(const QString &target) const;

    [[nodiscard]] OwnRealizations ownRealizations() const;
    /// Grows whenever siblings bring something for the tab @p name.
    [[nodiscard]] int formatRevision(const QString &name) const { return m_formatRevisions.value(name); }

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
    /// The opened file is read twice. Of the second reading nothing is taken in but its place in the order of the
    /// plug-ins: what it says stands in the model already and may have been changed since.
    void receive(bool ownFile, const Announcement &announcement);
    void dropOwnReading();
    /// Enters @p root under the name of the tab that it fills; answers the name.
    QString noteSiblingFormat(PointTreeWidgetItem *root);
    /// An attribute of the opened file's root has changed on the definition side.
    void followRoot();
    void addPlugin(PointTreeWidgetItem *plugin);
    /// Puts the rows of the plug-ins that have arrived into the tree. Each time that rows come, a tree lays itself out
    /// and paints, which costs as much as taking in many plug-ins; so they come a few times a second.
    void showArrivedPlugins();
    [[nodiscard]] bool load(const QString &fileName, const std::function<bool(ExtensionFile::Sink &)> &read);
    [[nodiscard]] bool canBeWritten() const;
    [[nodiscard]] QByteArray written(
        TranslatableKeys &keys, ModelWriter::Marks marks, SaveReport *report = nullptr) const;
    void adopt(OpenedFile &file);
    void clearOpenedFile();
    /// Whether there is anything of an earlier scan to clear: right after loading, there is not, and the opened file's
    /// own points need not be made anew.
    [[nodiscard]] bool holdsScannedNodes() const;
    void clearScan();
    [[nodiscard]] Definitions definitions() const { return Definitions(m_indexes); }

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
    ModelChanges m_changes;
    OwnPoints m_ownPoints;
    RealizationIndexing m_realizationIndexing;
    FormatMerger m_formatMerger;
    QStringList m_attributeTypes;
    QMap<QString, QStringList> m_attributeFields;
    QVector<QPointer<PointTreeWidgetItem>> m_retired;
    QVector<QPointer<PointTreeWidgetItem>> m_ownReading;     ///< sets of the second reading, until the scan ends
    QVector<QPointer<PointTreeWidgetItem>> m_arrivedPlugins; ///< in the model, but not in the tree yet
    QTimer m_pluginsTimer;
    QHash<QString, int> m_formatRevisions;
    QStringList m_arrivingLayouts; ///< tabs whose layouts the file that is being taken in brings
    int m_arrivingFile = -1;
    bool m_loadFailed = false;
    QVector<SaveReport::Remark> m_dropped; ///< what the file holds and the model does not
    QVector<UnreadableFile> m_unreadable;
    std::unique_ptr<ScanSequence> m_scan;
};
