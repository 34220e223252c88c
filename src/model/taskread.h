#pragma once

#include "announcement.h"

#include <QObject>
#include <QRunnable>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>

class PointTreeWidgetItem;
class QThread;
class ScanBudget;
class ScanHandover;
class SiblingSink;

/// Reads one sibling plug-in's "extension.xml" off the GUI thread, builds its nodes completely and then announces them.
///
/// In a scan the announcements are handed over whole and reach the manager's slots of the same names on the GUI thread,
/// in the order below. A task without a handover emits them as signals from run(); its nodes then belong to the
/// receivers. Deleted by the pool after run().
class TaskRead final : public QObject, public QRunnable
{
    Q_OBJECT

public:
    /// @p pointsRoot becomes the parent of the "ExtPointSet" nodes, @p dataRoot of the "ExtDataSet" nodes; both are
    /// only passed on. @p thirdRoot is kept and not read.
    TaskRead(const QString &path, PointTreeWidgetItem *pointsRoot, PointTreeWidgetItem *dataRoot,
        PointTreeWidgetItem *thirdRoot);
    ~TaskRead() override;

    /// The result goes to slot @p index of @p handover. Call before the task is started.
    void setHandover(std::shared_ptr<ScanHandover> handover, int index);

    void run() override;

    /// Does not read the file when it is still as it was at @p known. Call before setHandover().
    void setKnown(const ExtensionFile::FileStamp &known) { m_known = known; }

    /// Reads @p path for a scan, and calls @p whenRead once its bytes are there. What brings more than is left of @p
    /// budget (null: any amount) is logged and counts as unreadable; a file that is as it was at @p known is not read.
    /// The nodes get the affinity of @p thread. Any thread.
    [[nodiscard]] static ScanResult read(const QString &path, PointTreeWidgetItem *pointsRoot,
        PointTreeWidgetItem *dataRoot, QThread *thread, ScanBudget *budget = nullptr,
        const std::function<void()> &whenRead = {}, const ExtensionFile::FileStamp &known = {});

Q_SIGNALS:
    void definData(QString key, PointTreeWidgetItem *item);
    void allFormatRoot(PointTreeWidgetItem *item);
    void addTopChild(PointTreeWidgetItem *parent, PointTreeWidgetItem *child);
    void addObjChild(PointTreeWidgetItem *parent, PointTreeWidgetItem *child);
    void layoutRelization(PointTreeWidgetItem *layout);

private:
    [[nodiscard]] static ScanResult build(const QString &path, SiblingSink &sink, QThread *thread, ScanBudget *budget);
    void announce(const Announcement &announcement);

    QString m_path;
    PointTreeWidgetItem *m_pointsRoot;
    PointTreeWidgetItem *m_dataRoot;
    PointTreeWidgetItem *m_thirdRoot;
    QThread *m_nodeThread;
    ExtensionFile::FileStamp m_known;
    std::shared_ptr<ScanHandover> m_handover;
    int m_index = 0;
    /// Published last by the maker and read first by run(): the pool orders the two as well, but in a library that the
    /// thread sanitizer does not see into.
    std::atomic<bool> m_ready { false };
};
