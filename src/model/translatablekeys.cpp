#include "translatablekeys.h"

#include "definitions.h"
#include "pointtreewidgetitem.h"

bool TranslatableKeys::learn(const PointTreeWidgetItem *node, const Definitions &definitions)
{
    const Definitions::Nodes found = definitions.of(node->kind().toLower(), node->pointId());
    for (const PointTreeWidgetItem *definition : found) {
        const Definitions::Nodes declarations = Definitions::declarations(definition);
        for (PointTreeWidgetItem *declaration : declarations) {
            const QString key = declaration->property(QStringLiteral("key")).toString();
            bool &translatable = m_table[key];
            translatable = translatable || declaration->property(QStringLiteral("trans")).toBool();
        }
    }
    return !found.isEmpty();
}
