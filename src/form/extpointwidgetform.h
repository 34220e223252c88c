#pragma once

// The record of the form's widgets, Ui::ExtPointWidget, by object name: made from extpointwidget.ui.
#include "ui_extpointwidget.h" // IWYU pragma: export
