#pragma once

#include "preview/draw_list.h"
#include "preview/view_transform.h"

#include <QOpenGLBuffer>
#include <QOpenGLExtraFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <QSize>
#include <QSurfaceFormat>

#include <array>
#include <cstddef>

namespace jostle {

/// Paints a drawing with OpenGL 3.3: one program, and for each list of the drawing a call for its triangles, its lines
/// and its points, however many they are. Strokes and discs become quads in the vertex shader, so that their widths
/// do not depend on what the driver allows.
class GlPainter {
public:
    /// What the painter needs of a context: version, and several samples in each pixel.
    [[nodiscard]] static QSurfaceFormat format();
    /// Whether such a context can be made on this display, and takes the shaders. [user-interface thread]
    [[nodiscard]] static bool isSupported();

    /// To be called once in the context that it is to paint in.
    /// @return whether the shaders were taken; if not, `paint` must not be called
    [[nodiscard]] bool initialize();
    /// Gives back what it holds; to be called in that context before it ends.
    void release();

    /// Fills the context's present framebuffer, its background first.
    /// @param view       its width and height are the picture's
    /// @param pixelSize  of the framebuffer
    void paint(const Drawing& drawing, const ViewTransform& view, QSize pixelSize);

private:
    /// The same numbers as in the vertex shader.
    enum Kind : int { triangles = 0, lines = 1, points = 2 };
    struct Array {
        QOpenGLVertexArrayObject attributes;
        QOpenGLBuffer buffer{QOpenGLBuffer::VertexBuffer};
    };
    struct Attribute {
        unsigned location;
        int count;
        unsigned type;
        std::size_t offset;
    };

    void describe(Kind kind, std::size_t stride, std::initializer_list<Attribute> attributes);
    void paintList(const DrawList& list, float originX, float originY, float scale);
    void upload(Kind kind, const void* data, std::size_t bytes);

    QOpenGLExtraFunctions* gl_ = nullptr;
    QOpenGLShaderProgram program_;
    std::array<Array, 3> arrays_;
    int originLocation_ = -1;
    int scaleLocation_ = -1;
    int pictureLocation_ = -1;
    int kindLocation_ = -1;
};

} // namespace jostle
