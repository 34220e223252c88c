#pragma once

#include "extensionfile/regularfile.h"
#include "scansequence.h"

#include <QHash>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVector>

class OwnPoints;
class NodeIndexes;
class PointTreeWidgetItem;

/// A sibling's file that is there and can't be read.
struct UnreadableFile
{
    QString path;
    QString reason; ///< "path:line:column: reason", in one line
};

/// Which file of a sibling was read when, and which points came of it. When a file has been read again its points
/// become what it says now: what both have stays the same nodes, at which views go on looking. Owned by SiblingScan;
/// owns no node but those of readings that it is given. GUI thread.
class SiblingFiles final
{
public:
    using Sets = QVector<QPointer<PointTreeWidgetItem>>;

    /// What came of reading a file, and the plug-in nodes of it that stand nowhere yet.
    struct Reading
    {
        FileNews news;
        Sets sets;
    };

    SiblingFiles(NodeIndexes *indexes, OwnPoints *ownPoints) : m_indexes(indexes), m_ownPoints(ownPoints) { }

    void clear();
    /// A scan begins: these are its files, and @p ownPath (empty for none) is the opened one.
    void list(const QStringList &paths, const QString &ownPath);
    void note(const FileNews &news) { note(m_listing.at(news.index), news); }
    void addSet(int index, PointTreeWidgetItem *set) { m_files[m_listing.at(index)].sets.append(set); }

    /// How these files were when they were read last; an empty stamp for one that was not.
    [[nodiscard]] QVector<ExtensionFile::FileStamp> stamps(const QStringList &paths) const;
    /// In the order of the listing.
    [[nodiscard]] QVector<UnreadableFile> unreadable() const;

    /// Has the points under @p points be those of these readings, one for each path of a new listing. A file that can't
    /// be read any more keeps its points, and one that has gone, too: it may be about to come back, as in a change of
    /// branches, and without them a save would take the marks off texts that they say are translatable. The sets are
    /// destroyed or find their place. True when there is anything else now; views are to be told.
    [[nodiscard]] bool takeIn(PointTreeWidgetItem *points, const QStringList &paths, const QVector<Reading> &readings);

private:
    struct File
    {
        ExtensionFile::FileStamp stamp;
        QString failure;
        Sets sets;
    };

    void note(const QString &path, const FileNews &news);
    /// What is listed, with what was listed before and has gone.
    void relist(const QStringList &paths);
    [[nodiscard]] bool replace(PointTreeWidgetItem *points, const QString &path, const Sets &fresh);
    [[nodiscard]] bool follow(PointTreeWidgetItem *set, PointTreeWidgetItem *fresh);
    void insert(PointTreeWidgetItem *points, const QString &path, PointTreeWidgetItem *set);
    void enter(PointTreeWidgetItem *set);

    NodeIndexes *m_indexes;
    OwnPoints *m_ownPoints;
    QStringList m_listing;
    QString m_ownPath;
    QHash<QString, File> m_files;
};
