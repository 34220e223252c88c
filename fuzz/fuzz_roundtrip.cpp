#include "fuzzing.h"

#include "extensionfile/writer.h"
#include "model/modelwriter.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "model/translatablekeys.h"

#include <QRegularExpression>

namespace {

/// Attributes that are meant to be lost on the way, in any letter case.
bool isDropped(const PointTreeWidgetItem *node, bool realization, const QString &key)
{
    const auto is = [&key](const char *name) { return key.compare(QLatin1String(name), Qt::CaseInsensitive) == 0; };
    if (is("type"))
        return true;
    if (realization && node->kind() == QLatin1String("Meta") && is("key"))
        return true;
    return node->isKind(QLatin1String("ExtData")) && node->hasFormat() && (is("index") || is("parent") || is("key"));
}

void append(const PointObject *node, bool realization, int depth, QString *text)
{
    for (PointObject *child : node->children()) {
        *text += QString::number(depth) + QLatin1Char(' ') + child->item()->kind();
        for (const PropertyHash::Entry &entry : child->properties())
            if (!isDropped(child->item(), realization, entry.key))
                *text += QLatin1Char('|') + entry.key + QLatin1Char('=') + entry.value.toString();
        *text += QLatin1Char('\n');
        append(child, realization, depth + 1, text);
    }
}

QString printed(const SourceDataManager &manager)
{
    QString text;
    append(manager.definitionRoot(), false, 0, &text);
    text += QLatin1String("--\n");
    append(manager.realizationRoot(), true, 0, &text);
    return text;
}

QByteArray written(const SourceDataManager &manager)
{
    TranslatableKeys translatable;
    const Definitions definitions(manager.indexes());
    return ModelWriter(translatable, definitions, QString()).write(manager.definitionRoot(), manager.realizationRoot());
}

} // namespace

/// What is opened and saved is the same when it is opened again, and saved a second time gives the same bytes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static Fuzzing::MemoryFile file;
    file.setContents(Fuzzing::bytesOf(data, size));
    SourceDataManager first;
    if (!first.load(file.path()))
        return 0;
    const QString tree = printed(first);
    // Half a translation mark in a value and a whole one around it are taken off together. Blanks at the ends of a
    // value stood within marks, which nobody declares here, and go with the second reading.
    static const QRegularExpression unsteady(QStringLiteral("tr\\('|'\\)|=[^\\S\\n]|[^\\S\\n](?:\\||$)"),
        QRegularExpression::MultilineOption | QRegularExpression::UseUnicodePropertiesOption);
    if (tree.contains(unsteady))
        return 0;
    Fuzzing::countWarnings();
    const QByteArray bytes = written(first);
    if (Fuzzing::warnings() > 0 || bytes == ExtensionFile::Writer::instructionAlone())
        return 0;
    Fuzzing::demand(!bytes.isEmpty(), "what was read could not be written");
    file.setContents(bytes);
    SourceDataManager second;
    Fuzzing::demand(second.load(file.path()), "not accepted again", QString::fromUtf8(bytes));
    Fuzzing::demand(printed(second) == tree, "read differently", tree + QLatin1String("====\n") + printed(second));
    const QByteArray again = written(second);
    Fuzzing::demand(again == bytes, "written differently", QString::fromUtf8(bytes + "====\n" + again));
    return 0;
}
