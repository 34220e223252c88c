#include "ownchange.h"

#include "model/keys.h"
#include "ownstates.h"

#include <QHash>
#include <QSet>
#include <QVector>

namespace {

using Part = OwnState::Part;

const OwnState::Identity *whoIs(const Part &part)
{
    return part->identity.get();
}

template <typename Visitor>
void forParts(const Part &top, Visitor visit)
{
    std::vector<Part> open { top };
    while (!open.empty()) {
        const Part part = open.back();
        open.pop_back();
        visit(part);
        open.insert(open.end(), part->children.cbegin(), part->children.cend());
    }
}

QSet<const OwnState::Identity *> allBelow(const QVector<Part> &tops)
{
    QSet<const OwnState::Identity *> all;
    for (const Part &top : tops)
        forParts(top, [&all](const Part &part) { all.insert(whoIs(part)); });
    return all;
}

/// One side, compared. What both states share is passed over.
class Comparison final
{
public:
    Comparison(const Part &before, const Part &after, bool definition) : m_after(after), m_definition(definition)
    {
        compare(before, after);
    }

    [[nodiscard]] OwnChange change() const
    {
        const QSet<const OwnState::Identity *> gone = allBelow(m_gone);
        const QSet<const OwnState::Identity *> come = allBelow(m_come);
        QVector<Part> removed;
        QVector<Part> moved = m_reordered;
        for (const Part &part : m_gone)
            (come.contains(whoIs(part)) ? moved : removed).append(part);
        QVector<Part> added;
        for (const Part &part : m_come) {
            if (!gone.contains(whoIs(part)))
                added.append(part);
        }
        if (!removed.isEmpty())
            return about(OwnChange::What::Removed, removed);
        if (!added.isEmpty())
            return about(OwnChange::What::Added, { whatIsMeant(added.constLast()) });
        if (!moved.isEmpty())
            return about(OwnChange::What::Moved, moved);
        OwnChange change;
        if (m_edited) {
            change = about(OwnChange::What::Edited, { m_edited });
            change.root = m_edited == m_after;
            change.key = m_key;
        }
        return change;
    }

private:
    void compare(const Part &before, const Part &after)
    {
        if (before == after)
            return;
        compareAttributes(before, after);
        if (before->kind != after->kind && !m_edited) {
            m_edited = after;
            m_key = QStringLiteral("type");
        }
        QHash<const OwnState::Identity *, Part> old;
        for (const Part &child : before->children)
            old.insert(whoIs(child), child);
        QVector<Part> stayed;
        for (const Part &child : after->children) {
            if (const Part known = old.take(whoIs(child))) {
                compare(known, child);
                stayed.append(child);
            } else {
                m_come.append(child);
            }
        }
        QVector<Part> stayedBefore;
        for (const Part &child : before->children)
            (old.contains(whoIs(child)) ? m_gone : stayedBefore).append(child);
        for (int i = 0; i < stayed.size(); ++i) {
            if (whoIs(stayed.at(i)) == whoIs(stayedBefore.at(i)))
                continue;
            // Either this one came up, or the one that stood here went down.
            const bool wentDown = whoIs(stayedBefore.at(i + 1)) == whoIs(stayed.at(i));
            m_reordered.append(wentDown ? stayedBefore.at(i) : stayed.at(i));
            break;
        }
    }

    /// Of several attributes that are different the first one that was there before is what somebody has typed.
    void compareAttributes(const Part &before, const Part &after)
    {
        for (const PropertyHash::Entry &entry : after->properties) {
            const bool wasThere = before->properties.contains(entry.key);
            const bool better = !m_edited || (wasThere && !m_wasThere);
            if (better && !PropertyHash::isSame(before->properties.value(entry.key), entry.value)) {
                m_edited = after;
                m_key = entry.key;
                m_wasThere = wasThere;
            }
        }
        for (const PropertyHash::Entry &entry : before->properties) {
            if (!m_edited && !after->properties.contains(entry.key)) {
                m_edited = after;
                m_key = entry.key;
            }
        }
    }

    /// A first record brings what holds it along.
    [[nodiscard]] static Part whatIsMeant(Part part)
    {
        static const QStringList holders
            = { QStringLiteral("extpointset"), QStringLiteral("extdataset"), QStringLiteral("extdata") };
        while (!part->children.empty()
            && (holders.contains(part->kind.toLower()) || part->kind == QLatin1String("Format")))
            part = part->children.back();
        return part;
    }

    [[nodiscard]] OwnChange about(OwnChange::What what, const QVector<Part> &parts) const
    {
        OwnChange change;
        change.what = what;
        change.definition = m_definition;
        change.number = parts.size();
        const Part &part = parts.constFirst();
        if (parts.size() == 1) {
            change.kind = part->kind;
            for (const QString &key : { idKey, QStringLiteral("key"), nameKey }) {
                if (change.name.isEmpty())
                    change.name = part->properties.text(key);
            }
        }
        forParts(part, [&change](const Part &) { ++change.below; });
        --change.below;
        return change;
    }

    Part m_after;
    bool m_definition;
    QVector<Part> m_gone;
    QVector<Part> m_come;
    QVector<Part> m_reordered;
    Part m_edited;
    QString m_key;
    bool m_wasThere = false;
};

} // namespace

OwnChange OwnChange::between(const OwnState &before, const OwnState &after)
{
    if (!before.definitions() || !after.definitions())
        return {};
    const OwnChange change = Comparison(before.definitions(), after.definitions(), true).change();
    return change.what != What::Nothing ? change
                                        : Comparison(before.realizations(), after.realizations(), false).change();
}
