#include "preview/gl_painter.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>

#include <cstddef>

namespace jostle {

namespace {

constexpr const char* desktopVersion = "#version 330 core\n";
constexpr const char* embeddedVersion = "#version 300 es\nprecision highp float;\n";

constexpr const char* vertexShader = R"(
layout(location = 0) in vec2 at;
layout(location = 1) in vec4 color;
layout(location = 2) in vec4 shape; // offset, radius, circle
uniform vec4 toClip;
out vec4 fill;
out vec4 off;

void main() {
    fill = color;
    off = shape + vec4(0.0, 0.0, 0.5, 0.0);
    gl_Position = vec4(at * toClip.xy + toClip.zw, 0.0, 1.0);
}
)";

constexpr const char* fragmentShader = R"(
in vec4 fill;
in vec4 off;
out vec4 result;

void main() {
    result = vec4(fill.rgb, fill.a * clamp(off.z - abs(length(off.xy) - off.w), 0.0, 1.0));
}
)";

constexpr unsigned atLocation = 0;
constexpr unsigned colorLocation = 1;
constexpr unsigned shapeLocation = 2;

/// Whether the processor does the work of a graphics card.
bool isSoftware(QOpenGLContext& context) {
    const auto* const name = reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER));
    const QByteArray renderer = QByteArray(name).toLower();
    return renderer.contains("llvmpipe") || renderer.contains("softpipe") || renderer.contains("software") ||
           renderer.contains("swiftshader");
}

} // namespace

std::optional<GlPainter::Support> GlPainter::support() {
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    QOpenGLContext context;
    context.setFormat(format);
    if (!context.create()) {
        return std::nullopt;
    }
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    if (!surface.isValid() || !context.makeCurrent(&surface)) {
        return std::nullopt;
    }
    constexpr int samples = 4;
    const bool software = isSoftware(context);
    format.setSamples(software ? 0 : samples);
    GlPainter painter;
    const bool works = painter.initialize();
    painter.release();
    context.doneCurrent();
    return works ? std::optional(Support{format, software}) : std::nullopt;
}

bool GlPainter::initialize() {
    const QOpenGLContext* const context = QOpenGLContext::currentContext();
    const bool embedded = context->isOpenGLES();
    if (context->format().version() < (embedded ? qMakePair(3, 0) : qMakePair(3, 3))) {
        return false;
    }
    const QByteArray version = embedded ? embeddedVersion : desktopVersion;
    if (!program_.addShaderFromSourceCode(QOpenGLShader::Vertex, version + vertexShader) ||
        !program_.addShaderFromSourceCode(QOpenGLShader::Fragment, version + fragmentShader) || !program_.link()) {
        return false;
    }
    gl_ = context->functions();
    toClipLocation_ = program_.uniformLocation("toClip");
    attributes_.create();
    buffer_.create();
    buffer_.setUsagePattern(QOpenGLBuffer::StreamDraw);
    const QOpenGLVertexArrayObject::Binder bound(&attributes_);
    buffer_.bind();
    const auto describe = [this](unsigned location, int count, unsigned type, std::size_t offset) {
        gl_->glEnableVertexAttribArray(location);
        gl_->glVertexAttribPointer(location, count, type, type != GL_FLOAT, sizeof(FlatVertex),
                                   reinterpret_cast<const void*>(offset));
    };
    describe(atLocation, 2, GL_FLOAT, offsetof(FlatVertex, at));
    describe(colorLocation, 4, GL_UNSIGNED_BYTE, offsetof(FlatVertex, color));
    describe(shapeLocation, 4, GL_FLOAT, offsetof(FlatVertex, offset));
    buffer_.release();
    return true;
}

void GlPainter::release() {
    attributes_.destroy();
    buffer_.destroy();
    program_.removeAllShaders();
}

void GlPainter::paint(const Drawing& drawing, const ViewTransform& view, QSize pixelSize, Rows rows) {
    const auto channel = [](std::uint8_t value) { return static_cast<float>(value) / 255.0f; };
    const Rgba background = drawing.background;
    gl_->glViewport(0, 0, pixelSize.width(), pixelSize.height());
    gl_->glClearColor(channel(background.red), channel(background.green), channel(background.blue), 1.0f);
    gl_->glClear(GL_COLOR_BUFFER_BIT);
    flattenToTriangles(drawing, view, triangles_);
    gl_->glDisable(GL_DEPTH_TEST);
    gl_->glEnable(GL_BLEND);
    // The picture itself stays opaque whatever is drawn on it.
    gl_->glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    program_.bind();
    const float up = rows == Rows::BottomUp ? 1.0f : -1.0f;
    program_.setUniformValue(toClipLocation_, 2.0f / static_cast<float>(view.width),
                             -2.0f * up / static_cast<float>(view.height), -1.0f, up);
    const QOpenGLVertexArrayObject::Binder bound(&attributes_);
    buffer_.bind();
    // A new store each time, so that what is still being drawn from the old one need not be waited for.
    buffer_.allocate(triangles_.data(), static_cast<int>(triangles_.size() * sizeof(FlatVertex)));
    gl_->glDrawArrays(GL_TRIANGLES, 0, static_cast<int>(triangles_.size()));
    buffer_.release();
    program_.release();
}

} // namespace jostle
