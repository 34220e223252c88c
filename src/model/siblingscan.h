#pragma once

#include "siblingfiles.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QVector>

#include <functional>
#include <memory>
#include <utility>

class NodeIndexes;
class OwnPoints;
class PointTreeWidgetItem;
class SourceDataManager;

/// The reading of the siblings, as the manager's model sees it: what a scan brings is handed to the manager's slots in
/// the order of the listing, and the rows of the plug-ins go into the tree a few times a second. Owned by the manager.
/// GUI thread.
class SiblingScan final : public QObject
{
    Q_OBJECT

public:
    SiblingScan(SourceDataManager *manager, NodeIndexes *indexes, OwnPoints *ownPoints);
    ~SiblingScan() override;

    /// Reads every sibling of the directory that @p fileName lies in, its own directory included. Nothing of an earlier
    /// scan may be left. @p isLoaded tells whether the file is the one that the manager holds.
    void start(const QString &fileName, bool isLoaded);
    /// Returns when the scan is over and everything is taken in, or when nothing has arrived for ten seconds. No user
    /// input is handled meanwhile.
    void complete();
    /// Ends a scan that is under way and forgets what it said about files. The nodes that it has brought stay.
    void clear();

    /// Reads again, in the background, the files that have been written since they were read, or have come or gone
    /// since the directory was listed, and has their points be what they say now. Their records and formats stay as
    /// they were when the opened file was. Nothing happens while files are being read.
    void lookAgain();
    /// What a look has brought is taken in when @p mayTakeIn says so, which is asked a few times a second: the user may
    /// be in the middle of something.
    void setReadiness(std::function<bool()> mayTakeIn) { m_mayTakeIn = std::move(mayTakeIn); }
    [[nodiscard]] bool isLooking() const { return m_look || !m_readings.isEmpty(); }

    [[nodiscard]] bool isRunning() const { return m_sequence != nullptr; }
    /// The files that are still to be read.
    [[nodiscard]] QStringList awaitedFiles() const;
    /// The files that are there and can't be read, as far as is known.
    [[nodiscard]] QVector<UnreadableFile> unreadableFiles() const { return m_unlisted + m_files.unreadable(); }

    /// Grows whenever siblings bring something for the tab @p name.
    [[nodiscard]] int formatRevision(const QString &name) const { return m_formatRevisions.value(name); }
    /// A sibling fills the tab @p name. What stands in a layout is announced after the layout, so its tab is noted once
    /// more when the portion has been taken in.
    void noteFormat(const QString &name, bool isLayout);

Q_SIGNALS:
    /// A portion of what was read has been taken in.
    void progressed();
    /// The scan is over and everything that it read has been taken in.
    void finished();

private:
    /// The files of all plug-ins.
    struct Listing
    {
        QStringList paths;
        int own = -1; ///< which of them is the opened one; -1 for none
    };

    [[nodiscard]] Listing list();
    [[nodiscard]] std::unique_ptr<ScanSequence> sequence(const Listing &listing, ScanSequence::Receiver receiver) const;
    /// Of a file that is read again nothing is taken in but the plug-ins that it declares points for.
    void receiveAgain(int index, bool ownFile, const Announcement &announcement);
    void takeInAgain();

    /// The opened file is read twice. Of the second reading nothing is taken in but its place in the order of the
    /// plug-ins: what it says stands in the model already and may have been changed since.
    void receive(bool ownFile, const Announcement &announcement);
    void dropUnwanted();
    void addPlugin(PointTreeWidgetItem *plugin);
    /// Each time that rows come, a tree lays itself out and paints, which costs as much as taking in many plug-ins.
    void showArrivedPlugins();
    void conclude();

    SourceDataManager *m_manager;
    OwnPoints *m_ownPoints;
    QVector<QPointer<PointTreeWidgetItem>> m_unwanted;       ///< sets that are taken in nowhere, until the scan ends
    QVector<QPointer<PointTreeWidgetItem>> m_arrivedPlugins; ///< in the model, but not in the tree yet
    QTimer m_pluginsTimer;
    QHash<QString, int> m_formatRevisions;
    QStringList m_arrivingLayouts; ///< tabs whose layouts the file that is being taken in brings
    int m_arrivingFile = -1;
    QString m_fileName;
    bool m_isLoaded = false;
    QVector<UnreadableFile> m_unlisted; ///< the directory, when it can't be listed
    SiblingFiles m_files;
    std::unique_ptr<ScanSequence> m_sequence;

    std::unique_ptr<ScanSequence> m_look;
    Listing m_lookedAt;
    QVector<SiblingFiles::Reading> m_readings; ///< of the files that m_look has come to
    QTimer m_retry;
    std::function<bool()> m_mayTakeIn;
};
