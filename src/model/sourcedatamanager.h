#pragma once

#include "definitions.h"
#include "formatmerger.h"
#include "modelchanges.h"
#include "modelwriter.h"
#include "nodeindexes.h"
#include "ownedits.h"
#include "ownpoints.h"
#include "ownrealizations.h"
#include "ownstates.h"
#include "pointtreewidgetitem.h"
#include "problemwatch.h"
#include "realizationindexing.h"
#include "savereport.h"
#include "siblingscan.h"
#include "translatablekeys.h"

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

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

    /// What saveNow() would write at this moment, but with the marks of translatable text also where they were read:
    /// whoever loads it can still find out what is translatable, whatever siblings have been read by now. Empty where
    /// saving would fail. Learns no translatable keys, so that asking makes no later save different.
    [[nodiscard]] QByteArray recoverable() const;

    /// What saveNow() would do to the file beside.
    [[nodiscard]] SaveReport saveReport() const;

    /// Starts the reading of every sibling of the directory that @p fileName lies in, its own directory included. What
    /// an earlier scan has read is destroyed.
    void startScan(const QString &fileName);

    /// Returns when the scan is over and everything is taken in, or when nothing has arrived for ten seconds. No user
    /// input is handled meanwhile.
    void completeScan();
    [[nodiscard]] const SiblingScan &siblings() const { return m_siblings; }
    [[nodiscard]] SiblingScan &siblings() { return m_siblings; }

    [[nodiscard]] const QString &filePath() const { return m_filePath; }
    /// The opened file's root "id", the attribute's name compared without letter case.
    [[nodiscard]] const QString &pluginId() const { return m_pluginId; }

    [[nodiscard]] PointTreeWidgetItem *definitionRoot() const { return m_definitionRoot; }
    /// The points of all plug-ins; what the realization page's tree shows.
    [[nodiscard]] PointTreeWidgetItem *availablePointsRoot() const { return m_availablePointsRoot; }
    /// The nodes under it that stand for the opened file.
    [[nodiscard]] QVector<PointTreeWidgetItem *> ownPlugins() const { return m_ownPoints.plugins(); }
    [[nodiscard]] PointTreeWidgetItem *allDataRoot() const { return m_allDataRoot; }
    [[nodiscard]] PointTreeWidgetItem *fourthRoot() const { return m_fourthRoot; }
    /// The opened file's own realization side; what is saved.
    [[nodiscard]] PointTreeWidgetItem *realizationRoot() const { return m_realizationRoot; }
    [[nodiscard]] const NodeIndexes &indexes() const { return m_indexes; }

    /// How views hear of changes. Whoever changes the model flushes it at the end of what the user has asked for.
    [[nodiscard]] ModelChanges &changes() { return m_changes; }
    /// What is wrong in the opened file.
    [[nodiscard]] const ProblemWatch &problems() const { return m_problems; }

    /// Adds @p child under @p parent in both trees, with the parent's plug-in id.
    void addDefinition(PointTreeWidgetItem *parent, PointTreeWidgetItem *child);
    /// Offers a definition that is no part of the opened file under the plug-in or point @p above. Those of the opened
    /// file are offered by themselves.
    void offerDefinition(PointTreeWidgetItem *definition, PointTreeWidgetItem *above);
    /// Enters @p node in the realization multi-map and, for a format, in the target map. What stands in the opened
    /// file's tree is there already, and is not entered twice.
    void addRealization(PointTreeWidgetItem *node);
    /// Keeps a node that was taken out of the model but may still be remembered, and takes it, with everything under
    /// it, out of every index. It is destroyed with the manager. Null is allowed.
    void retire(PointTreeWidgetItem *node);

    /// What the opened file realizes.
    [[nodiscard]] OwnRealizations ownRealizations() const;
    /// How that is changed. Views hear of it as of every change.
    [[nodiscard]] OwnEdits ownEdits();
    /// What it was at some moment, and the way back there.
    [[nodiscard]] OwnStates &ownStates() { return m_ownStates; }
    /// What the points of the product say.
    [[nodiscard]] Definitions definitions() const { return Definitions(m_indexes); }

    [[nodiscard]] QStringList attributeTypes() const { return m_attributeTypes; }
    [[nodiscard]] QMap<QString, QStringList> attributeFields() const { return m_attributeFields; }

public Q_SLOTS:
    void onDefinData(const QString &key, PointTreeWidgetItem *item);
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
    /// Enters @p root under the name of the tab that it fills; answers the name.
    QString enterSiblingFormat(PointTreeWidgetItem *root);
    /// An attribute of the opened file's root has changed on the definition side.
    void followRoot();
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
    ProblemWatch m_problems;
    OwnPoints m_ownPoints;
    RealizationIndexing m_realizationIndexing;
    OwnStates m_ownStates;
    FormatMerger m_formatMerger;
    SiblingScan m_siblings;
    QStringList m_attributeTypes;
    QMap<QString, QStringList> m_attributeFields;
    QVector<QPointer<PointTreeWidgetItem>> m_retired;
    bool m_loadFailed = false;
    QVector<SaveReport::Remark> m_dropped; ///< what the file holds and the model does not
};
