#include "sheetrows.h"

#include "attributetypes.h"
#include "model/controller.h"
#include "model/pointtreewidgetitem.h"
#include "propertybrowser/propertykeys.h"

#include <QStringList>

namespace {

QString patternOf(const QString &key, int idLength)
{
    if (key == QLatin1String("id"))
        return QStringLiteral("[0-9a-zA-Z_.]{0,%1}$").arg(idLength);
    if (key == QLatin1String("text"))
        return QStringLiteral("^.{0,25}$");
    if (key == QLatin1String("toolTip") || key == QLatin1String("statusTip"))
        return QStringLiteral("^.{0,1000}$");
    if (key == QLatin1String("parent"))
        return QStringLiteral("[a-zA-Z][a-zA-Z0-9-_.]{0,249}");
    if (key == QLatin1String("sceneName"))
        return QStringLiteral("[0-9a-zA-Z_.]{0,249}$");
    return {};
}

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
    return isNumber(written) && !declared.options.value(key).contains(written);
}

} // namespace

Definitions::Attributes SheetRows::declared(PointTreeWidgetItem *node)
{
    Definitions::Attributes declared;
    if (!node || !Controller::instance()->attributeDefinitions(node, &declared))
        return {};
    declared.keys.removeAll(QString());
    // Asking for a value under its declared name gives the key this form, in what is saved as well.
    for (PointObject *object = node; object; object = object->link() == object ? nullptr : object->link()) {
        for (const QString &key : qAsConst(declared.keys))
            (void)object->property(key);
    }
    return declared;
}

PropertyItem SheetRows::row(const QString &key, const QVariant &value, const Definitions::Attributes &declared)
{
    const PropertyType type(PropertyType(realizationAttributeToPropertyType(declared.types.value(key))));
    PropertyItem row(type, key, key, value);
    if (type == PropertyType::Flag && isMask(key, value.toString(), declared))
        row.setVal(value.toInt());
    return row;
}

void SheetRows::restrict(PropertyItem *row, int idLength)
{
    const QString pattern = patternOf(row->name(), idLength);
    if (!pattern.isEmpty())
        row->setData(PropertyKey::RegExp, pattern);
}

void SheetRows::add(QList<PropertyItem> *rows, const PropertyItem &row)
{
    if (row.name() == QLatin1String("id"))
        rows->prepend(row);
    else
        rows->append(row);
}

void SheetRows::addChildTypes(QList<PropertyItem> *rows, const PointTreeWidgetItem *node)
{
    QStringList types = Controller::instance()->childTypes(node->kind().toLower(), node->pointId());
    types.removeAll(QString());
    if (types.isEmpty())
        return;
    const QString key = QStringLiteral("childType");
    PropertyItem row(PropertyType::String, key, key, types);
    row.setEditable(false);
    rows->append(row);
}
