#include "dropplan.h"

#include "model/pointtreewidgetitem.h"

DropPlan DropPlan::refusal(const QString &reason)
{
    DropPlan plan;
    plan.reason = reason;
    return plan;
}

DropPlan DropPlan::at(Place other) const
{
    DropPlan plan = *this;
    plan.place = other;
    return plan;
}

void DropOutcome::add(PointTreeWidgetItem *format, PointTreeWidgetItem *row)
{
    additions.append(Addition { format, row });
}
