#pragma once

#include "preview/draw_list.h"
#include "preview/flat_triangles.h"
#include "preview/view_transform.h"

#include <QOpenGLBuffer>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <QSize>
#include <QSurfaceFormat>

#include <optional>
#include <vector>

namespace jostle {

/// Paints a drawing with OpenGL 3.3: all of it in one buffer and one call.
///
/// The fragment shader smooths strokes and discs, and so the edges of bodies, on which their outlines lie. Graphics
/// cards take several samples in each pixel besides, which smooths the rest; without a card that would take most of
/// the time of a frame.
class GlPainter {
public:
    /// What this display offers the painter.
    struct Support {
        QSurfaceFormat format;   ///< of a context that the painter takes
        bool isSoftware = false; ///< the processor does the work of a graphics card
    };
    /// @return nothing if no context can be made, or it does not take the shaders. [user-interface thread]
    [[nodiscard]] static std::optional<Support> support();

    /// Which row of the framebuffer is the picture's uppermost: the last one, as on a screen, or the first one, as in
    /// an image.
    enum class Rows { BottomUp, TopDown };

    /// To be called once in the context that it is to paint in.
    /// @return whether the shaders were taken; if not, `paint` must not be called
    [[nodiscard]] bool initialize();
    /// Gives back what it holds; to be called in that context before it ends.
    void release();

    /// Fills the context's present framebuffer, its background first.
    /// @param view       its width and height are the picture's
    /// @param pixelSize  of the framebuffer
    void paint(const Drawing& drawing, const ViewTransform& view, QSize pixelSize, Rows rows);

private:
    QOpenGLFunctions* gl_ = nullptr;
    QOpenGLShaderProgram program_;
    QOpenGLVertexArrayObject attributes_;
    QOpenGLBuffer buffer_{QOpenGLBuffer::VertexBuffer};
    int toClipLocation_ = -1;
    std::vector<FlatVertex> triangles_; ///< of the last picture, for their memory
};

} // namespace jostle
