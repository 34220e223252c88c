#include "modelchanges.h"

#include "pointtreewidgetitem.h"

#include <algorithm>
#include <utility>

bool ModelChange::touches(const QString &key) const
{
    return std::any_of(edits.cbegin(), edits.cend(), [&key](const Edit &edit) { return edit.key == key; });
}

ModelChanges::ModelChanges(QObject *parent) : QObject(parent)
{
    m_turn.setSingleShot(true);
    m_turn.setInterval(0);
    connect(&m_turn, &QTimer::timeout, this, &ModelChanges::flush);
}

void ModelChanges::noteEdit(PointTreeWidgetItem *node, const QString &key, const QVariant &old)
{
    m_collected.edits.append({ node, key, old });
    announceLater();
}

void ModelChanges::noteRecord(const QString &id)
{
    if (id.isEmpty())
        return;
    m_collected.records.insert(id);
    announceLater();
}

void ModelChanges::noteDefinitions()
{
    m_collected.definitions = true;
    announceLater();
}

void ModelChanges::noteStructure()
{
    m_collected.structure = true;
    announceLater();
}

void ModelChanges::discard()
{
    m_collected = {};
    m_turn.stop();
}

void ModelChanges::announceLater()
{
    if (!m_turn.isActive())
        m_turn.start();
}

void ModelChanges::flush()
{
    if (m_announcing)
        return;
    m_announcing = true;
    const QPointer<ModelChanges> alive(this);
    while (alive && !m_collected.isEmpty())
        Q_EMIT changed(std::exchange(m_collected, {}));
    if (!alive)
        return;
    m_announcing = false;
    m_turn.stop();
}
