#include "nodeatline.h"

#include "extensionfile/reader.h"
#include "model/keys.h"
#include "pointtreewidgetitem.h"
#include "sourcedatamanager.h"

#include <vector>

namespace {

/// Where an element stands under the one around it.
struct Step
{
    QString tag;
    QString id;
    int index = 0; ///< Among all; for a set among those of its side.
};

/// Remembers every element that becomes a node, and which one is at the place.
class PlaceSink final : public ExtensionFile::Sink
{
public:
    PlaceSink(int line, int column) : m_line(line), m_column(column) { }

    void startElement(
        const QString &name, const ExtensionFile::Attributes &attributes, const ExtensionFile::Locator &where) override
    {
        const bool isSet = m_open.size() == 1;
        const bool isDefinition = name == QLatin1String("ExtPointSet");
        // The others do not become nodes, nor what stands in them.
        if (m_ignoredDepth > 0 || (isSet && !isDefinition && name != QLatin1String("ExtDataSet"))) {
            ++m_ignoredDepth;
            return;
        }
        Element element { { name, idOf(attributes), 0 }, m_open.empty() ? -1 : m_open.back(), 0 };
        if (isSet)
            element.step.index = isDefinition ? m_definitionSets++ : m_dataSets++;
        else if (!m_open.empty())
            element.step.index = m_elements[size_t(m_open.back())].children++;
        m_elements.push_back(element);
        m_open.push_back(int(m_elements.size()) - 1);
        if (isWanted(where.element()))
            m_found = m_open.back();
    }

    void endElement() override
    {
        if (m_ignoredDepth > 0)
            --m_ignoredDepth;
        else
            m_open.pop_back();
    }

    /// From the set on; empty for the root.
    [[nodiscard]] std::vector<Step> path() const
    {
        std::vector<Step> steps;
        for (int i = m_found; i > 0; i = m_elements[size_t(i)].parent)
            steps.insert(steps.begin(), m_elements[size_t(i)].step);
        return steps;
    }

private:
    struct Element
    {
        Step step;
        int parent;
        int children;
    };

    [[nodiscard]] static QString idOf(const ExtensionFile::Attributes &attributes)
    {
        for (const ExtensionFile::Attribute &attribute : attributes)
            if (attribute.name.compare(idKey, Qt::CaseInsensitive) == 0)
                return attribute.value.trimmed();
        return {};
    }

    [[nodiscard]] bool isWanted(const ExtensionFile::Location &at)
    {
        if (m_column > 0)
            return at.line < m_line || (at.line == m_line && at.column <= m_column);
        const bool isFirst = at.line == m_line && !m_onLine;
        m_onLine = m_onLine || isFirst;
        return at.line < m_line || isFirst;
    }

    const int m_line;
    const int m_column;
    std::vector<Element> m_elements;
    std::vector<int> m_open;
    int m_definitionSets = 0;
    int m_dataSets = 0;
    int m_ignoredDepth = 0;
    int m_found = 0;
    bool m_onLine = false;
};

bool isOf(const PointTreeWidgetItem *node, const QString &tag)
{
    return node->kind().compare(tag, Qt::CaseInsensitive) == 0;
}

PointTreeWidgetItem *childAt(const PointTreeWidgetItem *parent, const Step &step)
{
    const QList<PointObject *> &children = parent->children();
    PointTreeWidgetItem *inPlace = step.index < children.size() ? children.at(step.index)->item() : nullptr;
    const auto fits = [&step](const PointTreeWidgetItem *node) {
        return node && isOf(node, step.tag) && node->properties().text(idKey) == step.id;
    };
    if (fits(inPlace))
        return inPlace;
    for (PointObject *child : children)
        if (!step.id.isEmpty() && fits(child->item()))
            return child->item();
    return inPlace && isOf(inPlace, step.tag) ? inPlace : nullptr;
}

} // namespace

PointTreeWidgetItem *NodeAtLine::find(const SourceDataManager &manager, int line, int column)
{
    PlaceSink sink(line, column);
    if (!ExtensionFile::readFile(manager.filePath(), sink, nullptr))
        return nullptr;
    const std::vector<Step> path = sink.path();
    PointTreeWidgetItem *node = path.empty() || path.front().tag == QLatin1String("ExtPointSet")
        ? manager.definitionRoot()
        : manager.realizationRoot();
    for (const Step &step : path) {
        PointTreeWidgetItem *child = childAt(node, step);
        if (!child)
            break;
        node = child;
    }
    return node;
}
