#include "fuzzing.h"

#include "extensionfile/reader.h"
#include "model/announcement.h"
#include "model/openedfilesink.h"
#include "model/pointtreewidgetitem.h"
#include "model/siblingsink.h"

#include <QSet>
#include <QThread>

using namespace ExtensionFile;

namespace {

bool readInto(const QByteArray &bytes, Sink &sink)
{
    ReadError error;
    if (read(bytes, sink, &error))
        return true;
    Fuzzing::demand(!error.reason.isEmpty() && error.where.line > 0 && error.where.column > 0,
        "refused without a reason or a place", error.toString());
    return false;
}

int count(const PointObject *node)
{
    int nodes = 1;
    for (PointObject *child : node->children()) {
        Fuzzing::demand(child->parent() == node && child->item(), "a child that does not know its parent");
        nodes += count(child);
    }
    return nodes;
}

int readAsOpened(const QByteArray &bytes, bool *accepted)
{
    OpenedFile file;
    OpenedFileSink sink(QStringLiteral("/plugins/p/"), &file);
    *accepted = readInto(bytes, sink);
    int nodes = 0;
    for (const PointTreeWidgetItem *set : qAsConst(file.definitionSets) + file.dataSets)
        nodes += count(set);
    return nodes;
}

/// Each node must be announced under a parent that was announced before it, or is one of the roots.
int readAsSibling(const QByteArray &bytes, bool *accepted)
{
    PointTreeWidgetItem points { QString() };
    PointTreeWidgetItem data { QString() };
    SiblingSink sink(QStringLiteral("/plugins/p/"), &points, &data, SiblingSink::EarlierFormats::Omit);
    *accepted = readInto(bytes, sink);
    if (!*accepted)
        return 0;
    const std::unique_ptr<ScannedFile> file = sink.take(QThread::currentThread());
    Fuzzing::demand(file != nullptr, "nothing taken");
    QSet<const PointTreeWidgetItem *> known { &points, &data };
    int nodes = 0;
    for (const Announcement &announcement : file->announcements()) {
        Fuzzing::demand(announcement.node != nullptr, "an announcement of nothing");
        const auto kind = announcement.kind;
        if (kind != Announcement::AddTopChild && kind != Announcement::AddObjChild)
            continue;
        // A definition that is no point has no announcement of its own; what hangs under it has it for a parent.
        const PointTreeWidgetItem *const parent = announcement.parent;
        Fuzzing::demand(known.contains(parent) || (kind == Announcement::AddTopChild && parent->parent()),
            "announced under a stranger", announcement.node->kind());
        known.insert(announcement.node);
        ++nodes;
    }
    return nodes;
}

} // namespace

/// Both ways of reading take and refuse the same files, and what they build hangs together.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzzing::countWarnings();
    const QByteArray bytes = Fuzzing::bytesOf(data, size);
    bool opened = false;
    bool sibling = false;
    const int nodes = readAsOpened(bytes, &opened);
    const int announced = readAsSibling(bytes, &sibling);
    Fuzzing::demand(opened == sibling, "taken by one and refused by the other");
    Fuzzing::demand(!opened || announced <= nodes, "more announced than there is",
        QStringLiteral("%1 of %2").arg(announced).arg(nodes));
    return 0;
}
