#include "realizationtablewidget.h"

RealizationTableWidget::RealizationTableWidget(QWidget *parent) : QTableWidget(parent) { }

RealizationTableWidget::~RealizationTableWidget() = default;
