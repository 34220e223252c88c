#pragma once

#include <QHash>
#include <QString>

class Definitions;
class PointTreeWidgetItem;

/// Which attribute keys hold translatable text, as the declarations of the points say. Filled while a file is written
/// and never cleared: a key once marked stays so, for the rest of the write and for later ones, whatever another point
/// says of the same key.
class TranslatableKeys final
{
public:
    /// Takes in what the definitions of @p node say of their attributes; false when there are none.
    bool learn(const PointTreeWidgetItem *node, const Definitions &definitions);

    [[nodiscard]] bool isTranslatable(const QString &key) const { return m_table.value(key, false); }

private:
    QHash<QString, bool> m_table;
};
