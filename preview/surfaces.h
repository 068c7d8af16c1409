#pragma once

class QWidget;

namespace jostle {

class PreviewWidget;

/// A child that fills the preview with what `PreviewWidget::drawing` gives, by OpenGL.
///
/// With a graphics card it is a widget whose buffer the card puts together with the rest of the window. Without one
/// that putting together, pixel by pixel, takes longer than the picture itself; so the picture is then copied into the
/// window as an image.
/// @return null if no context can be made
[[nodiscard]] QWidget* makeGlSurface(PreviewWidget& preview);

/// The same by the image painter.
[[nodiscard]] QWidget* makeImageSurface(PreviewWidget& preview);

} // namespace jostle
