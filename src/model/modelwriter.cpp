#include "modelwriter.h"

#include "definitions.h"
#include "extensionfile/attributes.h"
#include "extensionfile/writer.h"
#include "model/keys.h"
#include "savereport.h"
#include "subtree.h"
#include "translatablekeys.h"

#include <QFileInfo>

namespace {

/// What a definition node, a set and the root leave out.
bool leftOutOfDefinition(const PointTreeWidgetItem *node, const QString &key)
{
    if (key.compare(QLatin1String("type"), Qt::CaseInsensitive) == 0)
        return true;
    return node->isKind(QLatin1String("ExtData")) && node->hasFormat()
        && (key == QLatin1String("index") || key == parentKey);
}

/// What a realization node leaves out. Unlike on the definition side, "type" and the kinds are compared exactly.
bool leftOutOfRealization(const PointTreeWidgetItem *node, const QString &key)
{
    if (key == QLatin1String("type"))
        return true;
    if (node->kind() == QLatin1String("Meta"))
        return key == QLatin1String("key");
    return node->kind() == QLatin1String("ExtData") && node->hasFormat()
        && (key == QLatin1String("index") || key == parentKey || key == QLatin1String("key"));
}

} // namespace

ModelWriter::ModelWriter(
    TranslatableKeys &translatable, const Definitions &definitions, const QString &path, Marks marks)
    : m_translatable(translatable), m_definitions(definitions), m_path(path), m_marks(marks)
{ }

QByteArray ModelWriter::write(PointTreeWidgetItem *definitionRoot, PointTreeWidgetItem *realizationRoot)
{
    ExtensionFile::Writer writer(m_path);
    // As long as the file is now, and as much again as a user may add at a time.
    const qint64 before = QFileInfo(m_path).size();
    writer.reserve(before + before / 4);
    if (!definitionRoot->children().isEmpty() || !realizationRoot->children().isEmpty()) {
        startDefinition(writer, definitionRoot);
        for (const auto &side : { definitionRoot, realizationRoot }) {
            for (PointObject *object : side->children()) {
                PointTreeWidgetItem *set = object->item();
                startDefinition(writer, set);
                for (PointObject *child : set->children()) {
                    walkSubtree(
                        child->item(),
                        [&](PointTreeWidgetItem *node) {
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
    const QByteArray bytes = writer.finish();
    if (m_report) {
        for (const QString &what : writer.omitted())
            m_report->add({ SaveReport::Kind::CannotBeWritten, {}, {}, {}, what });
        if (bytes == ExtensionFile::Writer::instructionAlone() && !definitionRoot->kind().isEmpty())
            m_report->add({ SaveReport::Kind::NothingLeft, definitionRoot->kind(), {}, {}, {} });
    }
    return bytes;
}

void ModelWriter::startDefinition(ExtensionFile::Writer &writer, PointTreeWidgetItem *node)
{
    writer.startElement(node->kind());
    for (const PropertyHash::Entry &entry : node->properties()) {
        if (leftOutOfDefinition(node, entry.key)) {
            leaveOut(node, entry);
            continue;
        }
        writer.attribute(entry.key, entry.value.toString());
        noteOrigin(node, entry, PropertyHash::Origin::Read);
    }
}

void ModelWriter::startRealization(ExtensionFile::Writer &writer, PointTreeWidgetItem *node)
{
    const bool isDeclared = learn(node);
    writer.startElement(node->kind());
    for (const PropertyHash::Entry &entry : node->properties()) {
        if (leftOutOfRealization(node, entry.key)) {
            leaveOut(node, entry);
            continue;
        }
        const QString value = entry.value.toString();
        const bool isMarked = !value.isEmpty()
            && (m_translatable.isTranslatable(entry.key)
                || (m_marks == Marks::AsRead && entry.origin == PropertyHash::Origin::ReadWithMarks));
        const QString written = isMarked ? ExtensionFile::withTranslationMarks(value) : value;
        writer.attribute(entry.key, written);
        if (m_report)
            m_report->noteValue(node, entry, written, isMarked, isDeclared);
        noteOrigin(node, entry, isMarked ? PropertyHash::Origin::ReadWithMarks : PropertyHash::Origin::Read);
    }
}

void ModelWriter::leaveOut(PointTreeWidgetItem *node, const PropertyHash::Entry &entry)
{
    if (m_report)
        m_report->noteDroppedAttribute(node, entry);
    noteOrigin(node, entry, PropertyHash::Origin::Made);
}

void ModelWriter::noteOrigin(PointTreeWidgetItem *node, const PropertyHash::Entry &entry, PropertyHash::Origin origin)
{
    if (entry.origin != origin)
        m_changes.append({ node, entry.key, origin });
}

bool ModelWriter::learn(const PointTreeWidgetItem *node)
{
    const QPair<QString, QString> definition(node->kind().toLower(), node->pointId());
    const auto known = m_learned.constFind(definition);
    if (known != m_learned.constEnd())
        return known.value();
    return m_learned[definition] = m_translatable.learn(node, m_definitions);
}
