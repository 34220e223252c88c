#include "problems.h"

#include "extensionfile/showntext.h"
#include "extensionfile/textpattern.h"
#include "keys.h"
#include "nodeindexes.h"
#include "patterns.h"
#include "pointtreewidgetitem.h"
#include "sourcedatamanager.h"
#include "subtree.h"

#include <QCoreApplication>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

using Node = PointTreeWidgetItem;
using Severity = Problem::Severity;
using Nodes = QVector<Node *>;

const QString keyKey = QStringLiteral("key");
const QString valueKey = QStringLiteral("value");

QString say(const char *text)
{
    return QCoreApplication::translate("Problems", text);
}

QString quoted(const QString &text)
{
    return ExtensionFile::shown(text);
}

bool isPoint(const Node *node)
{
    return node->kind() == QLatin1String("ExtPoint");
}

bool isSubPoint(const Node *node)
{
    return node->kind() == QLatin1String("SubExtPoint");
}

/// What the value of an attribute has to be besides what its field asks for.
struct Declared
{
    QString type;
    QStringList options;
    QVariant minimum;
    QVariant maximum;
};

QString outOfBounds(double number, const Declared &declared)
{
    bool hasMinimum = false;
    bool hasMaximum = false;
    const double minimum = declared.minimum.toDouble(&hasMinimum);
    const double maximum = declared.maximum.toDouble(&hasMaximum);
    if (hasMinimum && std::isfinite(minimum) && number < minimum)
        return say(QT_TRANSLATE_NOOP("Problems", "Must be at least %1")).arg(declared.minimum.toString());
    if (hasMaximum && std::isfinite(maximum) && number > maximum)
        return say(QT_TRANSLATE_NOOP("Problems", "Must be at most %1")).arg(declared.maximum.toString());
    return {};
}

/// Why @p value, which is not empty, does not fit its declaration; empty when it does.
QString misfit(const QString &value, const Declared &declared)
{
    bool isNumber = true;
    double number = 0;
    if (declared.type == QLatin1String("Int")) {
        number = value.toInt(&isNumber);
        if (!isNumber)
            return say(QT_TRANSLATE_NOOP("Problems", "Must be a whole number"));
        return outOfBounds(number, declared);
    }
    if (declared.type == QLatin1String("Double")) {
        number = value.toDouble(&isNumber);
        if (!isNumber)
            return say(QT_TRANSLATE_NOOP("Problems", "Must be a number"));
        return outOfBounds(number, declared);
    }
    if (declared.type == QLatin1String("Enum") && !declared.options.isEmpty() && !declared.options.contains(value)) {
        return say(QT_TRANSLATE_NOOP("Problems", "Must be one of: %1"))
            .arg(quoted(declared.options.join(QLatin1String(", "))));
    }
    return {};
}

QString mismatch(const QString &value, const QString &pattern, TextPattern::Lines lines = TextPattern::Lines::One)
{
    return value.isEmpty() || TextPattern::matches(pattern, value, lines) ? QString() : TextPattern::inWords(pattern);
}

/// Goes through one file once.
class Judge final
{
public:
    Judge(const SourceDataManager &manager, bool withSiblings)
        : m_manager(manager), m_definitions(manager.definitions()), m_realizations(manager.ownRealizations()),
          m_withSiblings(withSiblings)
    { }

    QVector<Problem> judge()
    {
        noteNames();
        look(m_manager.definitionRoot(), [this](Node *node) { judgeDefinition(node); });
        look(m_manager.realizationRoot(), [this](Node *node) { judgeRealization(node); });
        if (m_looked > Problems::mostNodes) {
            add(nullptr, QString(),
                say(QT_TRANSLATE_NOOP("Problems", "The file is very large: only its first %1 nodes were looked at"))
                    .arg(Problems::mostNodes),
                Severity::Warning);
        }
        return std::move(m_problems);
    }

private:
    using Attributes = QHash<QString, Declared>;

    template <typename Visitor>
    void look(Node *root, Visitor visit)
    {
        forSubtree(root, [&](Node *node) {
            if (node != root && ++m_looked <= Problems::mostNodes)
                visit(node);
        });
    }

    void add(Node *node, const QString &key, const QString &text, Severity severity)
    {
        if (!text.isEmpty())
            m_problems.append({ severity, node, key, text });
    }

    /// How often each name is there that must not be there twice.
    void noteNames()
    {
        look(m_manager.definitionRoot(), [this](Node *node) {
            if (isPoint(node)) {
                m_ownOffers.insert(node->master()->item());
                ++m_names[{ nullptr, node->properties().text(idKey) }];
            } else if (const Node *above = owner(node)) {
                ++m_names[{ above, nameIn(node) }];
            }
        });
        look(m_manager.realizationRoot(), [this](Node *node) {
            if (const Node *holder = holderOf(node))
                ++m_records[{ holder->properties().text(idKey), node->properties().text(idKey) }];
        });
        m_looked = 0;
    }

    /// The point or sub point that a sub point or an attribute stands in; null for anything else.
    static const Node *owner(const Node *node)
    {
        const Node *above = node->parentItem();
        return above && !isPoint(node) && (isPoint(above) || isSubPoint(above)) ? above : nullptr;
    }

    /// The "key" in a form in which two that clash are equal: sub points are found without letter case.
    static QString nameIn(const Node *node)
    {
        const QString key = node->properties().text(keyKey);
        if (key.isEmpty())
            return {};
        return isSubPoint(node) ? QLatin1Char('<') + key.toLower() : key;
    }

    /// Where a record stands. A format is none, though it may stand in the same place.
    static const Node *holderOf(const Node *node)
    {
        const bool isRecord = OwnRealizations::isRecord(node) && !node->isKind(QLatin1String("Format"));
        return isRecord ? node->parentItem() : nullptr;
    }

    // Definition side -------------------------------------------------------------------------------------------------

    void judgeDefinition(Node *node)
    {
        const PropertyHash &values = node->properties();
        if (isPoint(node)) {
            judgePointId(node);
            addMismatch(node, idKey, Pattern::pointId());
        } else if (isSubPoint(node)) {
            judgeKey(node);
            addMismatch(node, keyKey, Pattern::key());
        } else if (owner(node)) {
            judgeKey(node);
            addMismatch(node, keyKey, Pattern::key());
            addMismatch(node, nameKey, Pattern::name());
            judgeDefault(node);
            return;
        } else {
            return;
        }
        addMismatch(node, nameKey, Pattern::name());
        const QString description = QStringLiteral("description");
        add(node, description, mismatch(values.text(description), Pattern::description(), TextPattern::Lines::Many),
            Severity::Warning);
    }

    void judgePointId(Node *point)
    {
        const QString id = point->properties().text(idKey);
        if (id.isEmpty())
            return;
        if (m_names.value({ nullptr, id }) > 1) {
            add(point, idKey, say(QT_TRANSLATE_NOOP("Problems", "Another point of this plug-in has the same id")),
                Severity::Error);
        }
        if (!m_withSiblings)
            return;
        const Nodes offered = m_manager.indexes()[NodeIndexes::Points].nodes(id);
        for (Node *other : offered) {
            if (!isPoint(other) || m_ownOffers.contains(other))
                continue;
            add(point, idKey,
                say(QT_TRANSLATE_NOOP("Problems", "A point of the plug-in %1 has the same id"))
                    .arg(quoted(other->pluginId())),
                Severity::Error);
            return;
        }
    }

    void judgeKey(Node *node)
    {
        const QString name = nameIn(node);
        const Node *above = owner(node);
        if (name.isEmpty() || !above || m_names.value({ above, name }) < 2)
            return;
        add(node, keyKey,
            isSubPoint(node) ? say(QT_TRANSLATE_NOOP("Problems", "Another sub point of this point has the same key"))
                             : say(QT_TRANSLATE_NOOP("Problems", "Another attribute beside it has the same key")),
            Severity::Error);
    }

    void judgeDefault(Node *attribute)
    {
        const PropertyHash &values = attribute->properties();
        const QString value = values.text(valueKey);
        if (value.isEmpty())
            return;
        Declared declared { attribute->kind(), {}, values.value(QStringLiteral("min")),
            values.value(QStringLiteral("max")) };
        for (PointObject *entry : attribute->children())
            declared.options.append(entry->properties().text(QStringLiteral("text")));
        add(attribute, valueKey, misfit(value, declared), Severity::Warning);
        if (attribute->kind() == QLatin1String("String"))
            addMismatch(attribute, valueKey, values.text(QStringLiteral("regexp")));
    }

    void addMismatch(Node *node, const QString &key, const QString &pattern)
    {
        add(node, key, mismatch(node->properties().text(key), pattern), Severity::Warning);
    }

    // Realization side ------------------------------------------------------------------------------------------------

    void judgeRealization(Node *node)
    {
        if (node->isKind(QLatin1String("ExtData"))) {
            judgeHolder(node);
            return;
        }
        const bool isRecord = OwnRealizations::isRecord(node);
        const bool isRoot = OwnRealizations::isRoot(node);
        const bool isEntry
            = !isRecord && !isRoot && !node->isKind(QLatin1String("Meta")) && OwnRealizations::isEntry(node);
        if (!isRecord && !isRoot && !isEntry)
            return;
        if (const Node *holder = holderOf(node))
            judgeRecordId(node, holder);
        if (isEntry && m_withSiblings) {
            judgeReference(node);
            judgeParent(node);
        }
        judgeValues(node, isRecord ? Pattern::recordIdLength : Pattern::entryIdLength);
    }

    void judgeHolder(Node *holder)
    {
        const QString id = holder->properties().text(idKey);
        if (!m_withSiblings || id.isEmpty() || m_definitions.first(id) || !m_definitions.of(id, id).isEmpty())
            return;
        add(holder, idKey, say(QT_TRANSLATE_NOOP("Problems", "No plug-in declares the point %1")).arg(quoted(id)),
            Severity::Error);
    }

    void judgeRecordId(Node *record, const Node *holder)
    {
        const QString id = record->properties().text(idKey);
        if (id.isEmpty() || m_records.value({ holder->properties().text(idKey), id }) < 2)
            return;
        add(record, idKey, say(QT_TRANSLATE_NOOP("Problems", "Another record of this point has the same id")),
            Severity::Error);
    }

    void judgeReference(Node *entry)
    {
        const QString id = entry->properties().text(idKey);
        if (id.isEmpty() || m_realizations.anyRecord(id) || standsForItself(entry, id) || !isRecordsKind(entry))
            return;
        add(entry, idKey, say(QT_TRANSLATE_NOOP("Problems", "No plug-in has a record %1")).arg(quoted(id)),
            Severity::Error);
    }

    /// Whether it says itself how it is shown, or has the form of id that "Child Type" or a drop gives.
    bool standsForItself(const Node *entry, const QString &id) const
    {
        constexpr int mostDigits = 4;
        for (const QString &label : { QStringLiteral("text"), QStringLiteral("title") }) {
            if (!entry->properties().text(label).isEmpty())
                return true;
        }
        const QString begin = m_manager.pluginId() + QLatin1Char('.') + entry->kind();
        if (!id.startsWith(begin, Qt::CaseInsensitive))
            return false;
        // A drop leaves the dot out.
        const int dot = id.midRef(begin.size()).startsWith(QLatin1Char('.')) ? 1 : 0;
        const QString number = id.mid(begin.size() + dot);
        return !number.isEmpty() && number.size() <= mostDigits
            && std::all_of(number.cbegin(), number.cend(), [](QChar c) { return c.isDigit(); });
    }

    /// Whether the records of the entry's point are of its kind.
    bool isRecordsKind(const Node *entry)
    {
        const QPair<QString, QString> asked(entry->kind().toLower(), entry->pointId());
        const auto known = m_recordKinds.constFind(asked);
        if (known != m_recordKinds.constEnd())
            return *known;
        const Nodes definitions = m_definitions.of(asked.first, asked.second);
        const bool is = std::any_of(definitions.cbegin(), definitions.cend(), [&](const Node *definition) {
            return Definitions::realizedKind(definition).compare(asked.first, Qt::CaseInsensitive) == 0;
        });
        m_recordKinds.insert(asked, is);
        return is;
    }

    void judgeParent(Node *entry)
    {
        const QString parent = entry->properties().text(parentKey);
        const Node *root = entry->parentItem();
        if (parent.isEmpty() || !OwnRealizations::isRoot(root))
            return;
        const QString sought = parent.toCaseFolded();
        bool hasTab = false;
        for (const QString &key : { idKey, targetKey }) {
            const QString tab = root->properties().text(key);
            if (tab.isEmpty())
                continue;
            hasTab = true;
            if (rowsOf(tab).contains(sought))
                return;
        }
        if (!hasTab)
            return;
        add(entry, parentKey, say(QT_TRANSLATE_NOOP("Problems", "Its tab has no entry %1")).arg(quoted(parent)),
            Severity::Error);
    }

    /// What a "parent" can name in the tab, without letter case: ids, and the kinds of what has none.
    const QSet<QString> &rowsOf(const QString &tab)
    {
        const auto known = m_rows.constFind(tab);
        if (known != m_rows.constEnd())
            return *known;
        QSet<QString> names;
        for (const Nodes &roots : { m_realizations.formats(tab), m_realizations.siblingFormats(tab) }) {
            for (Node *root : roots) {
                forSubtree(root, [&names](const Node *node) {
                    const QString id = node->properties().text(idKey);
                    names.insert((id.isEmpty() ? node->kind() : id).toCaseFolded());
                });
            }
        }
        return *m_rows.insert(tab, names);
    }

    void judgeValues(Node *node, int longestId)
    {
        const Attributes &declared = attributesOf(node);
        for (const PropertyHash::Entry &entry : node->properties()) {
            const QString value = entry.value.toString();
            if (value.isEmpty())
                continue;
            const auto attribute = declared.constFind(entry.key);
            const bool isDeclared = attribute != declared.constEnd();
            const QString pattern = Pattern::realized(entry.key, longestId);
            // A choice is limited by its choices.
            if (isDeclared && (pattern.isEmpty() || !attribute->options.isEmpty()))
                add(node, entry.key, misfit(value, *attribute), Severity::Warning);
            else if (!pattern.isEmpty())
                add(node, entry.key, mismatch(value, pattern), Severity::Warning);
        }
    }

    const Attributes &attributesOf(const Node *node)
    {
        const QPair<QString, QString> asked(node->kind().toLower(), node->pointId());
        const auto known = m_attributes.constFind(asked);
        if (known != m_attributes.constEnd())
            return *known;
        Definitions::Attributes declared;
        (void)m_definitions.attributes(asked.first, asked.second, &declared);
        Attributes attributes;
        for (const QString &key : qAsConst(declared.keys)) {
            attributes.insert(key,
                { declared.types.value(key), declared.options.value(key), declared.minima.value(key),
                    declared.maxima.value(key) });
        }
        return *m_attributes.insert(asked, attributes);
    }

    const SourceDataManager &m_manager;
    const Definitions m_definitions;
    const OwnRealizations m_realizations;
    const bool m_withSiblings;
    int m_looked = 0;
    QVector<Problem> m_problems;
    QSet<const Node *> m_ownOffers;                     ///< what offers the own points to the product
    QHash<QPair<const Node *, QString>, int> m_names;   ///< by what they must be unique in; points by null
    QHash<QPair<QString, QString>, int> m_records;      ///< by point and id
    QHash<QPair<QString, QString>, bool> m_recordKinds; ///< by kind and point
    QHash<QPair<QString, QString>, Attributes> m_attributes;
    QHash<QString, QSet<QString>> m_rows; ///< by tab
};

} // namespace

QVector<Problem> Problems::of(const SourceDataManager &manager, bool withSiblings)
{
    return Judge(manager, withSiblings).judge();
}

QString Problems::ofTyped(
    const SourceDataManager &manager, PointTreeWidgetItem *node, const QString &key, const QString &text)
{
    if (!node || text.isEmpty())
        return {};
    const auto has = [&](PointObject *other, Qt::CaseSensitivity letterCase = Qt::CaseSensitive) {
        return other != node && other->properties().text(key).compare(text, letterCase) == 0;
    };
    const Node *above = node->parentItem();
    if (isPoint(node) && key == idKey) {
        const Nodes points = manager.indexes()[NodeIndexes::Points].nodes(text);
        for (Node *point : points) {
            if (isPoint(point) && point != node->master()->item())
                return say(QT_TRANSLATE_NOOP("Problems", "A point of %1 has the same id"))
                    .arg(quoted(point->pluginId()));
        }
    } else if (key == idKey && OwnRealizations::isRecord(node)) {
        const Nodes holders = manager.ownRealizations().holders(above->properties().text(idKey));
        for (const Node *holder : holders) {
            for (PointObject *child : holder->children()) {
                if (has(child) && !child->item()->isKind(QLatin1String("Format")))
                    return say(QT_TRANSLATE_NOOP("Problems", "A record (%1) of this point has the same id"))
                        .arg(quoted(child->item()->kind()));
            }
        }
    } else if (key == keyKey && above && (isPoint(above) || isSubPoint(above))) {
        for (PointObject *child : above->children()) {
            // The index of points has the keys of sub points in lower case.
            const bool sub = isSubPoint(node);
            if (has(child, sub ? Qt::CaseInsensitive : Qt::CaseSensitive) && isSubPoint(child->item()) == sub)
                return say(QT_TRANSLATE_NOOP("Problems", "%1 beside it has the same key"))
                    .arg(quoted(child->item()->kind()));
        }
    }
    return {};
}
