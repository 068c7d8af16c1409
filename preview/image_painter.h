#pragma once

#include "preview/draw_list.h"
#include "preview/view_transform.h"

#include <QImage>

namespace jostle {

/// Paints a drawing over all of an image, antialiased, its background first. Needs no display and no application
/// object.
/// @param view   its width and height are taken as the image's; they may differ by the device's pixel ratio
/// @param image  RGB32 or premultiplied ARGB32, not null
void paintImage(const Drawing& drawing, const ViewTransform& view, QImage& image);

/// The same into a new RGB32 image of the view's size, rounded up.
[[nodiscard]] QImage paintedImage(const Drawing& drawing, const ViewTransform& view);

} // namespace jostle
