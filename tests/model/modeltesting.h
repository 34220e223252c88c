#pragma once

#include "model/modelwriter.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "model/translatablekeys.h"

#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// Reads what production code only writes.
struct PointTreeWidgetItemTestAccess
{
    static bool isNew(const PointTreeWidgetItem &item) { return item.m_isNew; }
    static bool isDroppedCopy(const PointTreeWidgetItem &item) { return item.m_isDroppedCopy; }
};

namespace ModelTesting {

inline QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/// "kind key=value key=value", one line per node, two spaces per level; the node itself is left out.
inline QStringList tree(const PointObject *node, int depth = 0)
{
    QStringList lines;
    for (PointObject *child : node->children()) {
        QString line = QString(depth * 2, QLatin1Char(' ')) + child->item()->kind();
        for (const PropertyHash::Entry &entry : child->properties())
            line += QLatin1Char(' ') + entry.key + QLatin1Char('=') + entry.value.toString();
        lines << line << tree(child, depth + 1);
    }
    return lines;
}

/// The texts of column 0, one line per row, two spaces per level.
inline QStringList rows(const QTreeWidgetItem *row, int depth = 0)
{
    QStringList lines;
    for (int i = 0; i < row->childCount(); ++i)
        lines << QString(depth * 2, QLatin1Char(' ')) + row->child(i)->text(0) << rows(row->child(i), depth + 1);
    return lines;
}

/// What a first save would write.
inline QByteArray written(const SourceDataManager &manager)
{
    TranslatableKeys keys;
    const Definitions known = manager.definitions();
    return ModelWriter(keys, known, manager.filePath()).write(manager.definitionRoot(), manager.realizationRoot());
}

inline PointTreeWidgetItem *node(const QString &kind, const PropertyHash &properties = {})
{
    auto *item = new PointTreeWidgetItem(QString());
    item->setKind(kind);
    item->setProperties(properties);
    return item;
}

/// A directory of plug-in directories.
class Product final
{
public:
    [[nodiscard]] QString path() const { return m_dir.path() + QLatin1String("/plugins"); }
    [[nodiscard]] QString file(const QString &plugin) const
    {
        return path() + QLatin1Char('/') + plugin + QLatin1String("/extension.xml");
    }

    QString add(const QString &plugin, const QByteArray &content) const
    {
        QDir().mkpath(path() + QLatin1Char('/') + plugin);
        QFile file(this->file(plugin));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("can't write %s", qPrintable(file.fileName()));
        return file.fileName();
    }

    [[nodiscard]] static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }

private:
    QTemporaryDir m_dir;
};

} // namespace ModelTesting
