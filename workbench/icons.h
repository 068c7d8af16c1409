#pragma once

#include <QIcon>

namespace jostle {

/// The signs of the window's buttons, drawn from shapes so that they are sharp at any size.
enum class Sign { Restart, Play, Pause, Step, Repeat, ZoomOut, ZoomIn, ZoomFit, ViewOptions };

/// @param sign       of a button
/// @param checkedAs  what it shows while it is checked, in the accent colour
[[nodiscard]] QIcon icon(Sign sign, Sign checkedAs);
[[nodiscard]] inline QIcon icon(Sign sign) {
    return icon(sign, sign);
}

} // namespace jostle
