#include "sheethelp.h"

#include "model/controller.h"
#include "propertybrowser/propertykeys.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTableWidget>

namespace {

struct Words
{
    const char *name;
    const char *help;
};

/// By key in lower case.
constexpr Words rows[] = {
    { "hasformat", QT_TRANSLATE_NOOP("SheetHelp", "Whether the records of the point can be put into formats") },
    { "displaylabel", QT_TRANSLATE_NOOP("SheetHelp", "The attribute whose value labels a record in the table") },
    { "displayicon", QT_TRANSLATE_NOOP("SheetHelp", "The attribute whose value is the icon of a record in the table") },
    { "childtype", QT_TRANSLATE_NOOP("SheetHelp", "What may be created under a record in a format") },
    { "trans",
        QT_TRANSLATE_NOOP("SheetHelp", "Whether the values are translatable; they are saved with the mark for that") },
    { "regexp", QT_TRANSLATE_NOOP("SheetHelp", "The regular expression that the value has to match as a whole") },
};

constexpr Words columns[] = {
    { "id", QT_TRANSLATE_NOOP("SheetHelp", "The name that formats refer to the record by") },
    { "displayLabel", QT_TRANSLATE_NOOP("SheetHelp", "The value of the attribute that the point names as its label") },
    { "displayIcon", QT_TRANSLATE_NOOP("SheetHelp", "The icon, from the attribute that the point names for it") },
    { "used", QT_TRANSLATE_NOOP("SheetHelp", "How many entries of formats in this file refer to the record") },
    { "format", QT_TRANSLATE_NOOP("SheetHelp", "Ticked when any entry of a format in this file refers to the record") },
    { "key", QT_TRANSLATE_NOOP("SheetHelp", "The name of the attribute in the files that use the point") },
    { "name", QT_TRANSLATE_NOOP("SheetHelp", "The name that is shown to people") },
    { "type", QT_TRANSLATE_NOOP("SheetHelp", "What kind of value it is, and so how it is edited") },
    { "value", QT_TRANSLATE_NOOP("SheetHelp", "The default that a record gets where it says nothing") },
    { "text", QT_TRANSLATE_NOOP("SheetHelp", "The choice as it is shown and stored") },
    { "icon", QT_TRANSLATE_NOOP("SheetHelp", "The file with the icon of the choice") },
};

template <size_t count>
QString helpOf(const Words (&words)[count], const QString &name)
{
    for (const Words &one : words) {
        if (name == QLatin1String(one.name))
            return QCoreApplication::translate("SheetHelp", one.help);
    }
    return {};
}

} // namespace

void SheetHelp::explain(QList<PropertyItem> *items)
{
    for (PropertyItem &item : *items) {
        const QString help = helpOf(rows, item.name().toLower());
        if (!help.isEmpty())
            item.setData(PropertyKey::Help, help);
    }
}

void SheetHelp::startInPlugin(QList<PropertyItem> *items)
{
    const QString file = Controller::instance()->filePath();
    for (PropertyItem &item : *items) {
        if (item.type() == PropertyType::File && !file.isEmpty())
            item.setData(PropertyKey::Directory, QFileInfo(file).absolutePath());
    }
}

void SheetHelp::explainColumns(QTableWidget *table, const QStringList &names)
{
    for (int column = 0; column < names.size(); ++column) {
        if (QTableWidgetItem *header = table->horizontalHeaderItem(column))
            header->setToolTip(helpOf(columns, names.at(column)));
    }
}
