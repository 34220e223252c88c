#include "siblingfiles.h"

#include "extensionfile/logging.h"
#include "model/keys.h"
#include "modellog.h"
#include "nodeindexes.h"
#include "ownpoints.h"
#include "pointtreewidgetitem.h"
#include "rows.h"
#include "siblingsink.h"
#include "subtree.h"

#include <QSet>

#include <algorithm>

namespace {

using Node = PointTreeWidgetItem;

QString pointKey(const Node *node)
{
    return SiblingSink::indexKey(node->kind(), node->properties());
}

bool hasRow(const Node *node)
{
    return node->isKind(QLatin1String("ExtPoint")) || node->isKind(QLatin1String("SubExtPoint"));
}

bool saysTheSame(const Node *left, const Node *right)
{
    const auto same = [](PointObject *one, PointObject *other) { return saysTheSame(one->item(), other->item()); };
    return left->kind() == right->kind() && left->properties().isIdenticalTo(right->properties())
        && std::equal(left->children().cbegin(), left->children().cend(), right->children().cbegin(),
            right->children().cend(), same);
}

/// By what a reader would call it the same declaration after an edit.
QString nameOf(const Node *node)
{
    const QString key = pointKey(node);
    return node->kind() + QLatin1Char('\n') + (key.isEmpty() ? node->properties().text(QStringLiteral("key")) : key);
}

/// Gives @p node what @p fresh says, and takes out of that what @p node has no counterpart of.
void becomeLike(Node *node, Node *fresh)
{
    node->showProperties(fresh->properties());
    QHash<QString, QList<Node *>> known;
    for (PointObject *child : node->children())
        known[nameOf(child->item())].append(child->item());
    QList<Node *> wanted;
    const QList<PointObject *> freshChildren = fresh->children();
    for (PointObject *child : freshChildren) {
        Node *wantedChild = child->item();
        QList<Node *> &counterparts = known[nameOf(wantedChild)];
        if (!counterparts.isEmpty()) {
            Node *counterpart = counterparts.takeFirst();
            becomeLike(counterpart, wantedChild);
            wantedChild = counterpart;
        } else {
            fresh->detachChild(wantedChild);
            wantedChild->takeRow();
        }
        wanted.append(wantedChild);
    }
    for (const QList<Node *> &gone : qAsConst(known)) {
        for (Node *child : gone)
            Node::destroySubtree(child);
    }
    QList<Node *> rows;
    for (int i = 0; i < wanted.size(); ++i) {
        Node *child = wanted.at(i);
        if (hasRow(child))
            rows.append(child);
        if (i < node->children().size() && node->children().at(i) == child)
            continue;
        node->detachChild(child);
        node->insertIntoListOnly(i, child);
    }
    setRows(node, rows);
}

QString goneReason(const QString &path)
{
    return ExtensionFile::oneLine(path) + QLatin1String(": No longer there.");
}

} // namespace

void SiblingFiles::clear()
{
    m_listing.clear();
    m_ownPath.clear();
    m_files.clear();
}

void SiblingFiles::list(const QStringList &paths, const QString &ownPath)
{
    m_listing = paths;
    m_ownPath = ownPath;
}

void SiblingFiles::note(const QString &path, const FileNews &news)
{
    File &file = m_files[path];
    file.stamp = news.stamp;
    file.failure = news.reason;
    if (news.outcome == FileNews::Missing && !file.sets.isEmpty())
        file.failure = goneReason(path);
}

void SiblingFiles::relist(const QStringList &paths)
{
    const QSet<QString> present(paths.cbegin(), paths.cend());
    QStringList all = paths;
    for (int i = m_listing.size() - 1; i >= 0; --i) {
        const QString &path = m_listing.at(i);
        if (present.contains(path) || m_files.value(path).sets.isEmpty())
            continue;
        File &file = m_files[path];
        file.failure = goneReason(path);
        file.stamp = {};
        const int next = i + 1 < m_listing.size() ? all.indexOf(m_listing.at(i + 1)) : -1;
        all.insert(next < 0 ? all.size() : next, path);
    }
    m_listing = all;
}

QVector<ExtensionFile::FileStamp> SiblingFiles::stamps(const QStringList &paths) const
{
    QVector<ExtensionFile::FileStamp> stamps;
    stamps.reserve(paths.size());
    for (const QString &path : paths)
        stamps.append(m_files.value(path).stamp);
    return stamps;
}

QVector<UnreadableFile> SiblingFiles::unreadable() const
{
    QVector<UnreadableFile> found;
    for (const QString &path : m_listing) {
        const auto file = m_files.constFind(path);
        if (file != m_files.cend() && !file->failure.isEmpty())
            found.append({ path, file->failure });
    }
    return found;
}

bool SiblingFiles::takeIn(Node *points, const QStringList &paths, const QVector<Reading> &readings)
{
    bool differs = false;
    relist(paths);
    for (const Reading &reading : readings) {
        if (reading.news.outcome == FileNews::Unchanged)
            continue;
        const QString &path = paths.at(reading.news.index);
        note(path, reading.news);
        if (path == m_ownPath || reading.news.outcome != FileNews::Read || !replace(points, path, reading.sets))
            continue;
        qCInfo(scanLog, "%s: read again", qUtf8Printable(path));
        differs = true;
    }
    return differs;
}

bool SiblingFiles::replace(Node *points, const QString &path, const Sets &fresh)
{
    const Sets known = m_files.value(path).sets;
    Sets sets;
    bool differs = false;
    for (int i = 0; i < qMax(known.size(), fresh.size()); ++i) {
        Node *set = known.value(i);
        Node *wanted = fresh.value(i);
        if (set && wanted) {
            differs |= follow(set, wanted);
            Node::destroySubtree(wanted);
        } else if (set) {
            Node::destroySubtree(set);
            differs = true;
        } else if (wanted) {
            insert(points, path, wanted);
            set = wanted;
            differs = true;
        }
        if (wanted)
            sets.append(set);
    }
    m_files[path].sets = sets;
    return differs;
}

bool SiblingFiles::follow(Node *set, Node *fresh)
{
    if (saysTheSame(set, fresh))
        return false;
    forSubtree(set, [this](Node *node) { (void)m_indexes->remove(NodeIndexes::Points, pointKey(node), node); });
    becomeLike(set, fresh);
    const QString id = set->properties().text(idKey);
    set->QTreeWidgetItem::setText(0, id);
    set->setPluginId(id);
    enter(set);
    return true;
}

void SiblingFiles::insert(Node *points, const QString &path, Node *set)
{
    // Before what comes next in the listing; the opened file's own stand at the end while their place is not known.
    Node *next = nullptr;
    for (int i = m_listing.indexOf(path) + 1; i < m_listing.size() && !next; ++i) {
        if (m_listing.at(i) == m_ownPath)
            next = m_ownPoints->waiting() == 0 ? m_ownPoints->plugins().value(0) : nullptr;
        else
            next = m_files.value(m_listing.at(i)).sets.value(0);
    }
    const int end = m_ownPoints->waiting();
    points->insertChild(next ? points->children().indexOf(next) : points->children().size() - end, set);
    points->QTreeWidgetItem::insertChild(next ? points->indexOfChild(next) : points->childCount() - end, set);
    enter(set);
}

void SiblingFiles::enter(Node *set)
{
    forSubtree(set, [this, set](Node *node) {
        if (node != set)
            SiblingSink::describe(node, node->parentItem());
        if (const QString key = pointKey(node); !key.isEmpty())
            m_ownPoints->enter(key, node);
    });
}
