#include "dropwords.h"

#include "dropsite.h"
#include "model/pointtreewidgetitem.h"

#include <QCoreApplication>

namespace {

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(DropWords)
};

/// So much of a name that a status line has room for the sentence.
QString shortened(const QString &name)
{
    constexpr int most = 40;
    const QString line = name.simplified();
    return line.size() <= most ? line : line.left(most - 1) + QChar(0x2026);
}

/// A row by its label, else by what stands in its first column.
QString nameOf(const PointTreeWidgetItem *row)
{
    const QString label = row->text(1).isEmpty() ? row->text(0) : row->text(1);
    return shortened(label.isEmpty() ? row->kind() : label);
}

} // namespace

QString DropWords::of(const DropPlan &plan, const DropSite &site)
{
    if (!plan || !site.row)
        return plan.reason;
    const QString name = nameOf(site.row);
    switch (plan.place) {
    case DropPlan::Place::Into:
        return plan.recorded ? Words::tr("Into '%1', recorded in this plug-in's file").arg(name)
                             : Words::tr("Into '%1'").arg(name);
    case DropPlan::Place::Before:
        return Words::tr("Before '%1'").arg(name);
    case DropPlan::Place::After:
        return Words::tr("After '%1'").arg(name);
    case DropPlan::Place::Nothing:
        break;
    }
    return {};
}

QString DropWords::noRow()
{
    return Words::tr("There is no row here to drop onto");
}

QString DropWords::noFile()
{
    return Words::tr("There is no file that this could be recorded in");
}

QString DropWords::gone()
{
    return Words::tr("What is being dragged has gone, or is no record");
}

QString DropWords::notTaken(const PointTreeWidgetItem *row, const QString &kind)
{
    return Words::tr("'%1' takes no '%2'").arg(nameOf(row), shortened(kind));
}

QString DropWords::takenAlready(const PointTreeWidgetItem *row, const QString &kind)
{
    return Words::tr("'%1' has a '%2' already").arg(nameOf(row), shortened(kind));
}

QString DropWords::foreignEntry(const PointTreeWidgetItem *dragged)
{
    return Words::tr("'%1' belongs to another plug-in").arg(nameOf(dragged));
}

QString DropWords::foreignFormat()
{
    return Words::tr("The entries of this format belong to other plug-ins");
}

QString DropWords::besideForeign()
{
    return Words::tr("Nothing can be placed beside an entry of another plug-in");
}

QString DropWords::intoItself(const PointTreeWidgetItem *dragged)
{
    return Words::tr("'%1' can't go to where it is itself").arg(nameOf(dragged));
}

QString DropWords::notMovable(const PointTreeWidgetItem *dragged)
{
    return Words::tr("'%1' can't be moved to there").arg(nameOf(dragged));
}

QString DropWords::newRecord(const PointTreeWidgetItem *point)
{
    return Words::tr("A new record of '%1'").arg(nameOf(point));
}

QString DropWords::noPoint()
{
    return Words::tr("Only points and sub points become records");
}

QString DropWords::pointWithoutId()
{
    return Words::tr("The records of a point without an id are shown nowhere");
}
