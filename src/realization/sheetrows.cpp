#include "sheetrows.h"

#include "attributetypes.h"
#include "extensionfile/attributes.h"
#include "extensionfile/names.h"
#include "model/controller.h"
#include "model/keys.h"
#include "model/patterns.h"
#include "model/pointtreewidgetitem.h"
#include "propertybrowser/propertykeys.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace {

bool isNumber(const QString &text)
{
    bool number = false;
    (void)text.toInt(&number);
    return number;
}

/// A mask is recognised by its number unless a flag has that name; an empty value is one where the default is one.
bool isMask(const QString &key, const QString &value, const Definitions::Attributes &declared)
{
    const QString written = value.isEmpty() ? declared.defaults.value(key).toString() : value;
    const QStringList flags = declared.options.value(key);
    return !flags.isEmpty() && isNumber(written) && !flags.contains(written);
}

} // namespace

Definitions::Attributes SheetRows::declared(const PointTreeWidgetItem *node)
{
    Definitions::Attributes declared;
    if (node)
        (void)Controller::instance()->definitions().attributes(node->kind(), node->pointId(), &declared);
    declared.keys.erase(std::remove_if(declared.keys.begin(), declared.keys.end(),
                            [](const QString &key) { return !ExtensionFile::isName(key); }),
        declared.keys.end());
    return declared;
}

PropertyHash SheetRows::properties(const PointTreeWidgetItem *node, const QStringList &asked)
{
    PropertyHash properties = node->properties();
    for (const QString &key : asked) {
        const QString lowered = key.toLower();
        if (properties.value(key).isNull() && !properties.value(lowered).isNull())
            properties.rename(lowered, key);
    }
    return properties;
}

PropertyItem SheetRows::row(const QString &key, const QVariant &value, const Definitions::Attributes &declared)
{
    const PropertyType type(PropertyType(realizationAttributeToPropertyType(declared.types.value(key))));
    PropertyItem row(type, key, key, value);
    if (type == PropertyType::Flag && isMask(key, value.toString(), declared))
        row.setVal(value.toInt());
    row.setData(PropertyKey::Doubt, ExtensionFile::brokenByTranslationMarks(declared.translatable.contains(key)));
    row.setData(PropertyKey::DoubtHint,
        QCoreApplication::translate("RealizationPageBuilder",
            "The file can't hold this text as it is: \"tr('\" and \"')\" mark what is translatable."));
    if (type == PropertyType::Int || type == PropertyType::Float) {
        for (const auto &bound : { qMakePair(PropertyKey::Min, declared.minima.value(key)),
                 qMakePair(PropertyKey::Max, declared.maxima.value(key)) }) {
            if (bound.second.isValid())
                row.setData(bound.first, bound.second);
        }
    }
    return row;
}

void SheetRows::restrict(PropertyItem *row, int longestId)
{
    const QString pattern = Pattern::realized(row->name(), longestId);
    if (!pattern.isEmpty())
        row->setData(PropertyKey::RegExp, pattern);
}

void SheetRows::add(QList<PropertyItem> *rows, const PropertyItem &row)
{
    if (row.name() == idKey)
        rows->prepend(row);
    else
        rows->append(row);
}

void SheetRows::addChildTypes(QList<PropertyItem> *rows, const PointTreeWidgetItem *node)
{
    QStringList types = Controller::instance()->definitions().childTypes(node->kind().toLower(), node->pointId());
    types.removeAll(QString());
    if (types.isEmpty())
        return;
    const QString key = QStringLiteral("childType");
    PropertyItem row(PropertyType::String, key, key, types);
    row.setEditable(false);
    rows->append(row);
}
