#include "realizationtreewidget.h"

RealizationTreeWidget::RealizationTreeWidget(QWidget *parent) : QTreeWidget(parent) { }

RealizationTreeWidget::~RealizationTreeWidget() = default;
