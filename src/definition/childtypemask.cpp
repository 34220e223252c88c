#include "childtypemask.h"

#include "model/pointtreewidgetitem.h"

ChildTypeMask::ChildTypeMask(PointObject *point)
{
    if (!point)
        return;
    for (PointObject *object : point->children()) {
        PointTreeWidgetItem *child = object->item();
        if (!child || !child->isKind(QLatin1String("SubExtPoint")) || m_names.size() == maxBits)
            continue;
        const QString key = child->property(QStringLiteral("key")).toString();
        const int bit = 1 << m_names.size();
        m_names.append(key);
        m_bits.append(bit);
        m_bitOfName.insert(key, bit);
    }
}

int ChildTypeMask::maskOf(const QString &text) const
{
    int mask = 0;
    const QStringList keys = text.split(QLatin1Char('|'));
    for (const QString &key : keys)
        mask |= m_bitOfName.value(key, 0);
    return mask;
}

QString ChildTypeMask::textOf(int mask) const
{
    QStringList keys;
    for (int i = 0; i < m_names.size(); ++i) {
        if (mask & m_bits.at(i))
            keys.append(m_names.at(i));
    }
    // Not a null string: the property is there, and empty.
    return keys.isEmpty() ? QStringLiteral("") : keys.join(QLatin1Char('|'));
}
