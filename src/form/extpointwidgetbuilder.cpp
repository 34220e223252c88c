#include "extpointwidgetbuilder.h"

ExtPointWidgetBuilder::~ExtPointWidgetBuilder() = default;

void ExtPointWidgetBuilder::build(Ui::ExtPointWidget *ui)
{
    initWidgets(ui);
    loadTree();
    createConnections();
}
