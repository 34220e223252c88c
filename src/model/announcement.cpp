#include "announcement.h"

#include "pointtreewidgetitem.h"

ScannedFile::~ScannedFile()
{
    // From the last one back, so that a node goes before the one that it hangs under.
    for (size_t i = m_announcements.size(); i > m_next; --i) {
        const Announcement &announcement = m_announcements[i - 1];
        const bool brings
            = announcement.kind == Announcement::AddTopChild || announcement.kind == Announcement::AddObjChild;
        const bool alive = m_guards.empty() || m_guards[i - 1 - m_firstGuarded].node;
        // A definition node hangs under another one already and goes with that one: a set, which comes later in this
        // loop, or a node that belongs to the receiver.
        if (brings && alive && !announcement.node->PointObject::parent())
            PointTreeWidgetItem::destroySubtree(announcement.node);
    }
}

const Announcement *ScannedFile::next()
{
    const size_t index = m_next++;
    const Announcement &announcement = m_announcements[index];
    if (isAlive(index))
        return &announcement;
    if (announcement.kind == Announcement::AddObjChild && m_guards[index - m_firstGuarded].node)
        PointTreeWidgetItem::destroySubtree(announcement.node);
    return nullptr;
}

void ScannedFile::putAside()
{
    if (!m_guards.empty() || atEnd())
        return;
    m_firstGuarded = m_next;
    m_guards.reserve(m_announcements.size() - m_next);
    for (size_t i = m_next; i < m_announcements.size(); ++i)
        m_guards.push_back({ m_announcements[i].parent, m_announcements[i].node });
}

bool ScannedFile::isAlive(size_t index) const
{
    if (m_guards.empty())
        return true;
    const Guard &guard = m_guards[index - m_firstGuarded];
    return guard.node && (guard.parent || !m_announcements[index].parent);
}
