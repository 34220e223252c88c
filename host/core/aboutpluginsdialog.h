#pragma once

#include "core/core_global.h"

#include <QDialog>

namespace Core {

/// Lists the files of the plug-in directories: what was loaded, what not, and why not. Shows the state at the moment of
/// its construction.
class CORE_EXPORT AboutPluginsDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit AboutPluginsDialog(QWidget *parent = nullptr);
};

} // namespace Core
