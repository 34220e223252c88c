#pragma once

namespace Workbench {

/// Has windows scaled by just the density that the user has chosen, 1.25 for instance, where the X server states one
/// ("Xft.dpi" of its resources, which desktops write there). Elsewhere the toolkit goes on rounding: it takes the
/// density from the size of the screen in whole millimetres then, 96.08 for 96, and everything would fall between
/// pixels. The environment variable QT_SCALE_FACTOR_ROUNDING_POLICY has its way. To be called before there is an
/// application object.
void scaleAsChosen();

} // namespace Workbench
