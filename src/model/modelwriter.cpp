#include "modelwriter.h"

#include "definitions.h"
#include "extensionfile/attributes.h"
#include "extensionfile/writer.h"
#include "subtree.h"
#include "translatablekeys.h"

#include <QFileInfo>

namespace {

bool isTypeKey(const QString &key)
{
    return key.compare(QLatin1String("type"), Qt::CaseInsensitive) == 0;
}

/// What a definition node leaves out, beside its "type".
bool leftOutOfDefinition(const PointTreeWidgetItem *node, const QString &key)
{
    return node->isKind(QLatin1String("ExtData")) && node->hasFormat()
        && (key == QLatin1String("index") || key == QLatin1String("parent"));
}

/// What a realization node leaves out. Unlike on the definition side, "type" and the kinds are compared exactly.
bool leftOutOfRealization(const PointTreeWidgetItem *node, const QString &key)
{
    if (key == QLatin1String("type"))
        return true;
    if (node->kind() == QLatin1String("Meta"))
        return key == QLatin1String("key");
    return node->kind() == QLatin1String("ExtData") && node->hasFormat()
        && (key == QLatin1String("index") || key == QLatin1String("parent") || key == QLatin1String("key"));
}

void writeAttributes(ExtensionFile::Writer &writer, const PropertyHash &properties)
{
    for (const PropertyHash::Entry &entry : properties) {
        if (!isTypeKey(entry.key))
            writer.attribute(entry.key, entry.value.toString());
    }
}

} // namespace

ModelWriter::ModelWriter(TranslatableKeys &translatable, const Definitions &definitions, const QString &path)
    : m_translatable(translatable), m_definitions(definitions), m_path(path)
{ }

QByteArray ModelWriter::write(const PointTreeWidgetItem *definitionRoot, const PointTreeWidgetItem *realizationRoot)
{
    ExtensionFile::Writer writer(m_path);
    // As long as the file is now, and as much again as a user may add at a time.
    const qint64 before = QFileInfo(m_path).size();
    writer.reserve(before + before / 4);
    if (!definitionRoot->children().isEmpty() || !realizationRoot->children().isEmpty()) {
        writer.startElement(definitionRoot->kind());
        writeAttributes(writer, definitionRoot->properties());
        for (const auto &side : { definitionRoot, realizationRoot }) {
            for (PointObject *object : side->children()) {
                const PointTreeWidgetItem *set = object->item();
                writer.startElement(set->kind());
                writeAttributes(writer, set->properties());
                for (PointObject *child : set->children()) {
                    walkSubtree(
                        child->item(),
                        [&](const PointTreeWidgetItem *node) {
                            if (side == definitionRoot)
                                startDefinition(writer, node);
                            else
                                startRealization(writer, node);
                        },
                        [&writer](const PointTreeWidgetItem *) { writer.endElement(); });
                }
                writer.endElement();
            }
        }
        writer.endElement();
    }
    return writer.finish();
}

void ModelWriter::startDefinition(ExtensionFile::Writer &writer, const PointTreeWidgetItem *node)
{
    writer.startElement(node->kind());
    for (const PropertyHash::Entry &entry : node->properties()) {
        if (!isTypeKey(entry.key) && !leftOutOfDefinition(node, entry.key))
            writer.attribute(entry.key, entry.value.toString());
    }
}

void ModelWriter::startRealization(ExtensionFile::Writer &writer, const PointTreeWidgetItem *node)
{
    learn(node);
    writer.startElement(node->kind());
    for (const PropertyHash::Entry &entry : node->properties()) {
        if (leftOutOfRealization(node, entry.key))
            continue;
        const QString value = entry.value.toString();
        const bool wrapped = !value.isEmpty() && m_translatable.isTranslatable(entry.key);
        writer.attribute(entry.key, wrapped ? ExtensionFile::withTranslationMarks(value) : value);
    }
}

void ModelWriter::learn(const PointTreeWidgetItem *node)
{
    const QPair<QString, QString> definition(node->kind().toLower(), node->pointId());
    if (m_learned.contains(definition))
        return;
    m_learned.insert(definition);
    m_translatable.learn(node, m_definitions);
}
