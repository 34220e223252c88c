#pragma once

#include "extensionfile/regularfile.h"

#include <QPointer>
#include <QString>
#include <QVector>

#include <memory>
#include <vector>

class PointTreeWidgetItem;

/// One thing that a reading task has to say about the file that it read; the same five things as its signals.
struct Announcement
{
    enum Kind { DefinData, AllFormatRoot, AddTopChild, AddObjChild, LayoutRelization };

    Kind kind;
    PointTreeWidgetItem *parent; ///< for the two "add" kinds, else null
    PointTreeWidgetItem *node;
    QString key; ///< for DefinData, else empty
};

/// What a reading task made of one file: the nodes, complete, and what is to be announced of them, in order.
///
/// Owns every node that is not announced yet. Built on a pool thread, then handed over whole to the GUI thread; it may
/// be destroyed on either, since nothing else knows its nodes before they are announced.
class ScannedFile final
{
public:
    ScannedFile() { m_announcements.reserve(ordinaryLength); }
    ScannedFile(const ScannedFile &) = delete;
    ScannedFile &operator=(const ScannedFile &) = delete;
    ~ScannedFile();

    void append(Announcement announcement) { m_announcements.push_back(std::move(announcement)); }
    [[nodiscard]] const std::vector<Announcement> &announcements() const { return m_announcements; }

    /// This is another reading of the file that is open, by whatever path it was reached.
    void setIsOpenedFile(bool isOpened) { m_isOpenedFile = isOpened; }
    [[nodiscard]] bool isOpenedFile() const { return m_isOpenedFile; }

    [[nodiscard]] bool atEnd() const { return m_next == m_announcements.size(); }

    /// The next announcement; from here on its node belongs to the receiver. Null when the nodes that it speaks of have
    /// been destroyed since the file was put aside.
    [[nodiscard]] const Announcement *next();

    /// To be called before the event loop gets its turn with announcements still to come: what the user deletes
    /// meanwhile may be what they speak of. On the GUI thread, or before the file is handed over.
    void putAside();

private:
    [[nodiscard]] bool isAlive(size_t index) const;

    static constexpr size_t ordinaryLength = 128; // what a file of 10 KB has

    std::vector<Announcement> m_announcements;
    size_t m_next = 0;
    bool m_isOpenedFile = false;

    struct Guard
    {
        QPointer<PointTreeWidgetItem> parent;
        QPointer<PointTreeWidgetItem> node;
    };
    std::vector<Guard> m_guards; ///< empty, or one for each announcement from m_firstGuarded on
    size_t m_firstGuarded = 0;
};

/// What came of reading one file of a scan.
struct ScanResult
{
    std::unique_ptr<ScannedFile> file; ///< null when there was nothing to read
    QString failure;                   ///< "path:line:column: reason" of a file that is there and can't be read
    ExtensionFile::FileStamp stamp {}; ///< from before the reading
    bool isUnchanged = false;          ///< not read, since it is as it was when it was read last
};
