#pragma once

#include <QPointer>
#include <QString>

class PointTreeWidgetItem;

/// Where in the opened file's realization side dropped things are kept: its "ExtDataSet", the "ExtData" of a point in
/// it and their "Format"s. What is made here is registered, except where something else is said. GUI thread.
namespace OwnSlots {

/// What stands first: the first data set, the first data record in it and the first format in that. It remembers what
/// an earlier walk found where a later one finds nothing.
struct FirstFound
{
    QPointer<PointTreeWidgetItem> dataSet;
    QPointer<PointTreeWidgetItem> data;
    QPointer<PointTreeWidgetItem> format;

    /// Walks from the children of @p root, which may be null: the first child of one of the three kinds is taken and
    /// entered, other kinds are passed over, and a format ends the walk.
    void find(PointTreeWidgetItem *root);
};

/// The first child of the opened file's root that is an "ExtDataSet"; null without one.
[[nodiscard]] PointTreeWidgetItem *firstDataSet();

/// The id of the point that @p definition, a point or a sub point, belongs to.
[[nodiscard]] QString pointIdOf(const PointTreeWidgetItem *definition);

/// The first "ExtData" for the point of @p definition; null without one.
[[nodiscard]] PointTreeWidgetItem *data(const PointTreeWidgetItem *definition);

/// A new "ExtData" for the point of @p definition, which stands nowhere yet and is not registered.
[[nodiscard]] PointTreeWidgetItem *makeData(const PointTreeWidgetItem *definition);

/// data(); it is made at the end of the first "ExtDataSet", and that one as well, where there is none. Null only
/// without a model.
PointTreeWidgetItem *ensureData(const PointTreeWidgetItem *definition);

/// The first "Format" under @p data that belongs to the tab @p tabName: its "target" is that name; or it has no
/// "target" and that name as its "id", or neither. Null without one.
[[nodiscard]] PointTreeWidgetItem *format(const PointTreeWidgetItem *data, const QString &tabName);

/// A new "Format" as the first child of @p data, with the fields of @p like. Its "target" is set by whoever shows the
/// tab.
PointTreeWidgetItem *addFormat(PointTreeWidgetItem *data, const PointTreeWidgetItem &like);

/// The directory of the opened file with a trailing "/", as the nodes read from it have it; empty without a file.
[[nodiscard]] QString basePath();

/// How an entry names @p node in its "parent": by "id", or by kind where there is none.
[[nodiscard]] QString parentName(const PointTreeWidgetItem *node);

} // namespace OwnSlots
