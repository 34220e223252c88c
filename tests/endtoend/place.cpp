#include "place.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

QJsonObject entryWithText(const QJsonArray &entries, const QString &text)
{
    for (const QJsonValue &entry : entries)
        if (entry.toObject().value(QLatin1String("text")).toString() == text)
            return entry.toObject();
    return {};
}

QJsonObject buttonIn(const QJsonObject &reply, const QString &dialog, const QString &text)
{
    const QJsonArray dialogs = reply.value(QLatin1String("dialogs")).toArray();
    for (const QJsonValue &entry : dialogs)
        if (entry.toObject().value(QLatin1String("name")).toString() == dialog)
            return entryWithText(entry.toObject().value(QLatin1String("buttons")).toArray(), text);
    return {};
}

QJsonObject menuEntryIn(const QJsonObject &reply, const QString &text)
{
    const QJsonArray open = reply.value(QLatin1String("open")).toArray();
    for (const QJsonValue &menu : open) {
        const QJsonObject entry = entryWithText(menu.toObject().value(QLatin1String("entries")).toArray(), text);
        if (!entry.isEmpty())
            return entry;
    }
    return entryWithText(reply.value(QLatin1String("bar")).toArray(), text);
}

} // namespace

Place Place::widget(const QString &name)
{
    return Place({ { QStringLiteral("ask"), QStringLiteral("widget") }, { QStringLiteral("widget"), name } });
}

Place Place::row(const QString &view, const QVariantList &path, int column)
{
    return Place({ { QStringLiteral("ask"), QStringLiteral("item") }, { QStringLiteral("widget"), view },
        { QStringLiteral("path"), QJsonArray::fromVariantList(path) }, { QStringLiteral("column"), column } });
}

Place Place::cell(const QString &table, int row, int column)
{
    return Place::row(table, { row }, column);
}

Place Place::tab(const QString &tabs, const QString &text)
{
    return Place({ { QStringLiteral("ask"), QStringLiteral("tab") }, { QStringLiteral("widget"), tabs },
        { QStringLiteral("tab"), text } });
}

Place Place::sheetRow(const QString &sheet, const QString &row)
{
    return Place({ { QStringLiteral("ask"), QStringLiteral("sheetRow") }, { QStringLiteral("widget"), sheet },
        { QStringLiteral("row"), row } });
}

Place Place::listEntry(const QString &text)
{
    return Place({ { QStringLiteral("ask"), QStringLiteral("item") }, { QStringLiteral("popup"), true },
        { QStringLiteral("path"), QJsonArray { text } } });
}

Place Place::button(const QString &dialog, const QString &text)
{
    return Place({ { QStringLiteral("ask"), QStringLiteral("dialogs") }, { QStringLiteral("dialog"), dialog },
        { QStringLiteral("text"), text } });
}

Place Place::menuEntry(const QString &text)
{
    return Place({ { QStringLiteral("ask"), QStringLiteral("menus") }, { QStringLiteral("text"), text } });
}

QJsonObject Place::find(const QJsonObject &reply) const
{
    const QString ask = m_request.value(QLatin1String("ask")).toString();
    const QString text = m_request.value(QLatin1String("text")).toString();
    QJsonObject found = reply;
    if (ask == QLatin1String("dialogs"))
        found = buttonIn(reply, m_request.value(QLatin1String("dialog")).toString(), text);
    else if (ask == QLatin1String("menus"))
        found = menuEntryIn(reply, text);
    if (found.isEmpty())
        found.insert(QStringLiteral("error"), QStringLiteral("not there"));
    return found;
}

QString Place::toString() const
{
    return QString::fromUtf8(QJsonDocument(m_request).toJson(QJsonDocument::Compact));
}
