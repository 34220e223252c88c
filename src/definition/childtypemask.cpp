#include "childtypemask.h"

#include "model/pointtreewidgetitem.h"

ChildTypeMask::ChildTypeMask(PointObject *point)
{
    if (!point)
        return;
    for (PointObject *object : point->children()) {
        PointTreeWidgetItem *child = object->item();
        if (!child || !child->isKind(QLatin1String("SubExtPoint")))
            continue;
        const QString key = child->property(QStringLiteral("key")).toString();
        if (m_names.size() < maxBits)
            m_bitOfName.insert(key, 1 << m_names.size());
        m_names.append(key);
    }
}

QVariant ChildTypeMask::valueOf(const QString &stored) const
{
    return m_names.size() <= maxBits ? QVariant(maskOf(stored)) : QVariant(stored);
}

int ChildTypeMask::maskOf(const QString &text) const
{
    int mask = 0;
    const QStringList keys = text.split(QLatin1Char('|'));
    for (const QString &key : keys)
        mask |= m_bitOfName.value(key, 0);
    return mask;
}

QString ChildTypeMask::textOf(const QVariant &value, const QString &stored) const
{
    const bool isMask = value.isValid() && value.userType() != QMetaType::QString;
    const int mask = isMask ? value.toInt() : 0;
    const QStringList given = (isMask ? stored : value.toString()).split(QLatin1Char('|'));
    QStringList keys;
    for (int i = 0; i < m_names.size(); ++i) {
        const bool inMask = isMask && i < maxBits;
        if (inMask ? (mask & (1 << i)) != 0 : given.contains(m_names.at(i)))
            keys.append(m_names.at(i));
    }
    // Not a null string: the property is there, and empty.
    return keys.isEmpty() ? QStringLiteral("") : keys.join(QLatin1Char('|'));
}
