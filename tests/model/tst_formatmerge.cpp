#include "modeltesting.h"

#include "model/formatmerger.h"

#include <QDebug>
#include <QLoggingCategory>
#include <QPointer>
#include <QRandomGenerator>
#include <QTest>

using ModelTesting::node;

namespace {

using Node = PointTreeWidgetItem;

/// One node, its neighbours as numbers; -1 is none.
struct Plain
{
    QString kind;
    QString id;     ///< null: the node has none
    QString wanted; ///< its "parent"
    QString text;
    QVector<int> list;
    QVector<int> rows;
    int parent = -1;
    int rowParent = -1;
};

bool operator==(const Plain &left, const Plain &right)
{
    return left.list == right.list && left.rows == right.rows && left.parent == right.parent
        && left.rowParent == right.rowParent && left.text == right.text;
}

bool isSame(const QString &left, const QString &right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

/// What merging has to do, step by step and without regard to time.
class Rule final
{
public:
    QVector<Plain> nodes;

    void merge(int known, int arrived)
    {
        bool moved = false;
        const QVector<int> newcomers = nodes[arrived].list;
        for (int child : newcomers) {
            if (isSame(nodes[child].kind, QStringLiteral("ToolBars"))
                || isSame(nodes[child].kind, QStringLiteral("MenuBar"))) {
                const QVector<int> bars = nodes[known].list;
                for (int bar : bars) {
                    const QVector<int> entries = nodes[child].list;
                    for (int entry : isSame(nodes[bar].kind, nodes[child].kind) ? entries : QVector<int>())
                        moved |= move(entry, child, bar);
                }
            }
            if (!moved)
                move(child, arrived, known);
            if (nodes[child].id.isNull())
                nodes[child].text = nodes[child].kind;
        }
        const QVector<int> children = nodes[known].list;
        for (int child : children) {
            if (!nodes[child].wanted.isEmpty())
                search(known, child);
        }
    }

private:
    void search(int searched, int child)
    {
        const QVector<int> candidates = nodes[searched].list;
        for (int candidate : candidates) {
            if (candidate == child)
                continue;
            if (isSame(nodes[candidate].id, nodes[child].wanted)) {
                move(child, searched, candidate);
                return;
            }
            search(candidate, child);
        }
    }

    bool move(int child, int from, int to)
    {
        if (reaches(child, to))
            return false;
        for (int row = to; row >= 0; row = nodes[row].rowParent) {
            if (row == child)
                return false;
        }
        if (nodes[from].rows.removeOne(child))
            nodes[child].rowParent = -1;
        if (nodes[from].list.removeOne(child) && nodes[child].parent == from)
            nodes[child].parent = -1;
        if (!nodes[to].list.contains(child)) {
            nodes[to].list.append(child);
            nodes[child].parent = to;
        }
        // A row that stands somewhere is not put elsewhere.
        if (nodes[child].rowParent < 0) {
            nodes[to].rows.append(child);
            nodes[child].rowParent = to;
        }
        return true;
    }

    bool reaches(int from, int to)
    {
        bool found = from == to;
        for (int child : qAsConst(nodes[from].list))
            found = found || reaches(child, to);
        return found;
    }
};

/// Trees of nodes that name one another at random, and which of them are merged.
struct Product
{
    Rule rule;
    QVector<QPair<int, int>> merges;

    explicit Product(quint32 seed) : m_random(seed), m_hasRows(m_random.bounded(8) > 0)
    {
        const int rootCount = 2 + m_random.bounded(3);
        QVector<int> formats;
        for (int i = 0; i < rootCount; ++i) {
            const int root = rule.nodes.size();
            growTree();
            if (i > 0)
                merges.append({ 0, root });
            // A format within a format may be of the same target or of another one.
            for (int inner = root + 1; inner < rule.nodes.size(); ++inner) {
                if (rule.nodes[inner].kind != QLatin1String("Format"))
                    continue;
                formats.append(inner);
                merges.append({ m_random.bounded(2) ? 0 : formats[m_random.bounded(formats.size())], inner });
                if (merges.last().first == inner)
                    merges.removeLast();
            }
        }
    }

private:
    QString any(const char *words)
    {
        const QStringList list = QString::fromUtf8(words).split(QLatin1Char(' '));
        return list[m_random.bounded(list.size())];
    }

    void growTree()
    {
        const int root = rule.nodes.size();
        const int size = 1 + m_random.bounded(12);
        QVector<int> levels;
        for (int i = 0; i < size; ++i) {
            Plain plain;
            plain.kind
                = i ? any("MenuBar menubar ToolBars toolbars menu action group Format") : QStringLiteral("Format");
            plain.id = any("a A b B c d \u03c3 \u03c2 - - -").remove(QLatin1Char('-'));
            if (plain.id.isEmpty() && m_random.bounded(6))
                plain.id = QString();
            plain.wanted = any("a b C D \u03a3 - - - -").remove(QLatin1Char('-'));
            plain.text = QString::number(root + i);
            int above = i && m_random.bounded(2) ? m_random.bounded(i) : 0;
            if (i && levels[above] == 3)
                above = 0;
            levels.append(i ? levels[above] + 1 : 0);
            rule.nodes.append(plain);
            if (i == 0)
                continue;
            rule.nodes[root + above].list.append(root + i);
            rule.nodes[root + i].parent = root + above;
            if (m_hasRows) {
                rule.nodes[root + above].rows.append(root + i);
                rule.nodes[root + i].rowParent = root + above;
            }
        }
    }

    QRandomGenerator m_random;
    bool m_hasRows;
};

/// The same nodes as the program has them.
class Real final
{
public:
    explicit Real(const QVector<Plain> &plains)
    {
        for (const Plain &plain : plains) {
            Node *item = node(plain.kind);
            if (!plain.id.isNull())
                item->setProperty(QStringLiteral("id"), plain.id);
            if (!plain.wanted.isEmpty())
                item->setProperty(QStringLiteral("parent"), plain.wanted);
            item->setText(0, plain.text);
            m_items.append(item);
        }
        for (int i = 0; i < plains.size(); ++i) {
            for (int child : plains[i].list)
                m_items[i]->addChild(m_items[child], false);
            for (int row : plains[i].rows)
                m_items[i]->QTreeWidgetItem::addChild(m_items[row]);
        }
    }
    ~Real()
    {
        for (const auto &item : qAsConst(m_items))
            Node::destroySubtree(item);
    }
    Real(const Real &) = delete;
    Real &operator=(const Real &) = delete;

    Node *operator[](int number) const { return m_items[number]; }

    QVector<Plain> plains(QVector<Plain> plains) const
    {
        for (int i = 0; i < plains.size(); ++i) {
            Node *item = m_items[i];
            plains[i].list.clear();
            for (PointObject *child : item->children())
                plains[i].list.append(m_items.indexOf(child->item()));
            plains[i].rows.clear();
            for (int row = 0; row < item->childCount(); ++row)
                plains[i].rows.append(m_items.indexOf(Node::fromRow(item->child(row))));
            plains[i].parent = m_items.indexOf(item->parentItem());
            plains[i].rowParent = m_items.indexOf(Node::fromRow(item->QTreeWidgetItem::parent()));
            plains[i].text = item->text(0);
        }
        return plains;
    }

private:
    QVector<QPointer<Node>> m_items;
};

/// A line each: who it is, where it stands, and what it holds.
QString print(const QVector<Plain> &nodes)
{
    QString text;
    for (const Plain &plain : nodes)
        QDebug(&text) << &plain - nodes.data() << plain.kind << plain.id << plain.wanted << plain.text << plain.parent
                      << plain.rowParent << plain.list << plain.rows << '\n';
    return text;
}

} // namespace

class TestFormatMerge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsTheRule();
};

void TestFormatMerge::followsTheRule()
{
    // Refused rings are ordinary here.
    QLoggingCategory::setFilterRules(QStringLiteral("extpoint.model.warning=false"));
    for (quint32 seed = 1; seed <= 4000; ++seed) {
        Product product(seed);
        const QVector<Plain> before = product.rule.nodes;
        const Real real(before);
        FormatMerger merger;
        for (const auto &[known, arrived] : qAsConst(product.merges)) {
            product.rule.merge(known, arrived);
            merger.merge(real[known], real[arrived]);
            const QVector<Plain> is = real.plains(before);
            if (is == product.rule.nodes)
                continue;
            QFAIL(qPrintable(QStringLiteral("seed %1, %2 into %3\nbefore all:\n%4is:\n%5should be:\n%6")
                                 .arg(seed)
                                 .arg(arrived)
                                 .arg(known)
                                 .arg(print(before), print(is), print(product.rule.nodes))));
        }
    }
}

QTEST_GUILESS_MAIN(TestFormatMerge)
#include "tst_formatmerge.moc"
