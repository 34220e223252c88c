#include "dropplan.h"

#include "model/pointtreewidgetitem.h"

void DropOutcome::add(PointTreeWidgetItem *format, PointTreeWidgetItem *row)
{
    additions.append(Addition { format, row });
}
