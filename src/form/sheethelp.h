#pragma once

#include "propertybrowser/propertyitem.h"

#include <QList>
#include <QStringList>

class QTableWidget;

/// What the pages add to the rows of their sheets and to the headers of their tables so that they explain themselves.
namespace SheetHelp {

/// Gives rows of the definition side the words for their tool tips.
void explain(QList<PropertyItem> *items);

/// Has the choice of a file start in the directory of the opened file, which paths are stored relative to.
void startInPlugin(QList<PropertyItem> *items);

/// Gives the columns of @p table, which go by @p names, their tool tips.
void explainColumns(QTableWidget *table, const QStringList &names);

} // namespace SheetHelp
