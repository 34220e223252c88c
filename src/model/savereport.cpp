#include "savereport.h"

#include "extensionfile/attributes.h"
#include "model/keys.h"
#include "pointtreewidgetitem.h"

#include <algorithm>

namespace {

QString describe(const PointTreeWidgetItem *node)
{
    const QString id = node->properties().text(idKey);
    return id.isEmpty() ? node->kind() : QStringLiteral("%1 \"%2\"").arg(node->kind(), id);
}

} // namespace

void SaveReport::noteValue(const PointTreeWidgetItem *node, const PropertyHash::Entry &entry, const QString &written,
    bool isMarked, bool isDeclared)
{
    const QString value = entry.value.toString();
    if (value.isEmpty())
        return;
    const auto remark = [&](Kind kind, const QString &detail, Reason reason) {
        add({ kind, describe(node), entry.key, value, detail, reason });
    };
    if (entry.origin == PropertyHash::Origin::ReadWithMarks && !isMarked)
        remark(Kind::MarksLost, QString(), isDeclared ? Reason::NotDeclared : Reason::Unknown);
    if (entry.origin == PropertyHash::Origin::Read && isMarked)
        remark(Kind::MarksGained, QString(), Reason::None);
    const QString back = ExtensionFile::withoutTranslationMarks(written.trimmed());
    if (back != value)
        remark(Kind::ReadOtherwise, back, Reason::None);
}

void SaveReport::noteDroppedAttribute(const PointTreeWidgetItem *node, const PropertyHash::Entry &entry)
{
    if (entry.origin != PropertyHash::Origin::Made)
        add({ Kind::AttributeDropped, describe(node), entry.key, entry.value.toString(), QString(), Reason::None });
}

void SaveReport::blame(const QStringList &unread)
{
    if (unread.isEmpty() || count(Kind::MarksLost) == 0)
        return;
    m_unread = unread;
    for (Remark &remark : m_remarks) {
        if (remark.kind == Kind::MarksLost)
            remark.reason = Reason::Unread;
    }
}

int SaveReport::count(Kind kind, Reason reason) const
{
    return int(std::count_if(m_remarks.cbegin(), m_remarks.cend(), [&](const Remark &remark) {
        return remark.kind == kind && (reason == Reason::None || remark.reason == reason);
    }));
}
