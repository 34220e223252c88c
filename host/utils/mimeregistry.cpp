#include "utils/mimeregistry.h"

#include <QMimeDatabase>
#include <QSet>
#include <QXmlStreamReader>

#include <algorithm>
#include <mutex>
#include <tuple>

namespace Utils {

namespace {

// Not a QMutex: the thread sanitizer does not see into Qt.
std::mutex currentMutex;

std::shared_ptr<const MimeRegistry> &currentSlot()
{
    static std::shared_ptr<const MimeRegistry> slot = std::make_shared<const MimeRegistry>();
    return slot;
}

template <typename T>
void appendNew(QVector<T> &list, const QVector<T> &additions)
{
    for (const T &addition : additions) {
        if (!list.contains(addition))
            list.append(addition);
    }
}

void merge(MimeTypeRecord &known, const MimeTypeRecord &addition)
{
    if (!addition.comment.isEmpty())
        known.comment = addition.comment;
    known.parents += addition.parents;
    known.parents.removeDuplicates();
    known.aliases += addition.aliases;
    known.aliases.removeDuplicates();
    appendNew(known.globs, addition.globs);
    appendNew(known.rootElements, addition.rootElements);
    appendNew(known.magics, addition.magics);
}

using GlobRank = std::tuple<bool, int, int, bool>;

GlobRank rankOf(const MimeGlob &glob)
{
    return { glob.isLiteral(), glob.weight, glob.pattern.size(), glob.caseSensitive };
}

/// The root element of a document of which \a data is the beginning; both names empty when there is none.
MimeRootElement rootElementOf(const QByteArray &data)
{
    QXmlStreamReader reader(data);
    if (!reader.readNextStartElement())
        return {};
    return { reader.namespaceUri().toString(), reader.name().toString() };
}

bool hasRoot(const MimeTypeRecord &type, const MimeRootElement &root)
{
    return !root.localName.isEmpty()
        && std::any_of(type.rootElements.cbegin(), type.rootElements.cend(), [&root](const MimeRootElement &declared) {
               return declared.namespaceUri == root.namespaceUri
                   && (declared.localName.isEmpty() || declared.localName == root.localName);
           });
}

} // namespace

bool MimeGlob::matches(const QString &fileName) const
{
    if (isLiteral())
        return fileName.compare(pattern, caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive) == 0;
    return wildcards.match(fileName).hasMatch();
}

std::shared_ptr<const MimeRegistry> MimeRegistry::current()
{
    const std::lock_guard<std::mutex> locker(currentMutex);
    return currentSlot();
}

void MimeRegistry::declare(const QVector<MimeTypeRecord> &types)
{
    const std::lock_guard<std::mutex> locker(currentMutex);
    auto next = std::make_shared<MimeRegistry>(*currentSlot());
    for (const MimeTypeRecord &type : types)
        next->add(type);
    currentSlot() = next;
}

void MimeRegistry::add(const MimeTypeRecord &type)
{
    auto record = std::make_shared<MimeTypeRecord>(type);
    int index = m_indexByName.value(type.name.toLower(), -1);
    if (index >= 0) {
        *record = *m_types.at(index);
        merge(*record, type);
        m_types[index] = record;
    } else {
        index = m_types.size();
        m_types.append(record);
        m_indexByName.insert(type.name.toLower(), index);
    }
    for (const QString &alias : type.aliases)
        m_indexByAlias.insert(alias.toLower(), index);
    m_knowsContents = m_knowsContents || !type.magics.isEmpty() || !type.rootElements.isEmpty();
}

MimeTypeRecordPointer MimeRegistry::find(const QString &name) const
{
    const QString key = name.toLower();
    const int index = m_indexByName.value(key, m_indexByAlias.value(key, -1));
    return index < 0 ? nullptr : m_types.at(index);
}

QString MimeRegistry::canonicalName(const QString &name) const
{
    if (const MimeTypeRecordPointer declared = find(name))
        return declared->name;
    const QMimeType known = QMimeDatabase().mimeTypeForName(name);
    return known.isValid() ? known.name() : name;
}

QStringList MimeRegistry::parentsOf(const QString &canonical) const
{
    QStringList result;
    const MimeTypeRecordPointer declared = find(canonical);
    if (declared)
        result = declared->parents;
    const QMimeType known = QMimeDatabase().mimeTypeForName(canonical);
    if (known.isValid())
        result += known.parentMimeTypes();
    // The parents that go without saying.
    if (declared && result.isEmpty()) {
        const bool isText = canonical.startsWith(QLatin1String("text/"));
        result.append(isText ? QStringLiteral("text/plain") : QStringLiteral("application/octet-stream"));
    }
    return result;
}

bool MimeRegistry::inherits(const QString &name, const QString &ancestor) const
{
    const QString wanted = canonicalName(ancestor);
    QStringList open { canonicalName(name) };
    QSet<QString> seen;
    while (!open.isEmpty()) {
        const QString next = open.takeFirst();
        if (next == wanted)
            return true;
        // Nothing keeps documents from declaring a circle.
        if (seen.contains(next))
            continue;
        seen.insert(next);
        const QStringList parents = parentsOf(next);
        for (const QString &parent : parents)
            open.append(canonicalName(parent));
    }
    return false;
}

QVector<MimeTypeRecordPointer> MimeRegistry::bestByName(const QString &fileName) const
{
    QVector<MimeTypeRecordPointer> best;
    GlobRank bestRank;
    for (const MimeTypeRecordPointer &type : m_types) {
        for (const MimeGlob &glob : type->globs) {
            const GlobRank rank = rankOf(glob);
            if ((!best.isEmpty() && rank < bestRank) || !glob.matches(fileName))
                continue;
            if (!best.isEmpty() && rank != bestRank)
                best.clear();
            bestRank = rank;
            if (!best.contains(type))
                best.append(type);
        }
    }
    return best;
}

MimeTypeRecordPointer MimeRegistry::bestByContent(
    const QVector<MimeTypeRecordPointer> &candidates, const QByteArray &data) const
{
    const MimeRootElement root = rootElementOf(data);
    MimeTypeRecordPointer best;
    // A root element says more than the magic of any XML file, which has the usual priority.
    std::pair<int, bool> bestRank { -1, false };
    for (const MimeTypeRecordPointer &type : candidates) {
        const bool rootFits = hasRoot(*type, root);
        const int priority = bestPriority(type->magics, data);
        const std::pair<int, bool> rank { rootFits ? std::max(priority, 50) : priority, rootFits };
        if (rank.first < 0)
            continue;
        const bool moreSpecific = best && rank == bestRank && inherits(type->name, best->name);
        if (!best || rank > bestRank || moreSpecific) {
            best = type;
            bestRank = rank;
        }
    }
    return best;
}

} // namespace Utils
