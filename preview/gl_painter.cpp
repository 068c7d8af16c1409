#include "preview/gl_painter.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>

#include <initializer_list>

namespace jostle {

namespace {

constexpr const char* desktopVersion = "#version 330 core\n";
constexpr const char* embeddedVersion = "#version 300 es\nprecision highp float;\n";

// A line or a point is one instance of a quad, whose corners are told by gl_VertexID. What is thinner than a pixel is
// drawn a pixel wide and fainter, so that it does not break up between the samples.
constexpr const char* vertexShader = R"(
layout(location = 0) in vec2 from;
layout(location = 1) in vec2 to;
layout(location = 2) in vec4 color;
layout(location = 3) in float size;
uniform vec2 origin;
uniform float scale;
uniform vec2 picture;
uniform int kind;
out vec4 fill;
out vec2 offset;
out float radius;

void main() {
    vec2 at = origin + scale * from;
    fill = color;
    offset = vec2(0.0);
    radius = 1.0;
    vec2 corner = vec2(float(gl_VertexID & 1), float(gl_VertexID >> 1)) * 2.0 - 1.0;
    float width = max(size, 1.0);
    if (kind == 1) {
        vec2 end = origin + scale * to;
        vec2 along = end - at;
        float length_ = length(along);
        vec2 across = length_ > 0.0 ? vec2(-along.y, along.x) / length_ : vec2(0.0);
        at = (corner.x < 0.0 ? at : end) + across * (corner.y * 0.5 * width);
        fill.a *= min(size, 1.0);
    } else if (kind == 2) {
        radius = 0.5 * width;
        offset = corner * (radius + 1.0);
        at += offset;
        fill.a *= min(size, 1.0);
    }
    gl_Position = vec4(at.x / picture.x * 2.0 - 1.0, 1.0 - at.y / picture.y * 2.0, 0.0, 1.0);
}
)";

// The rim of a point fades over a pixel.
constexpr const char* fragmentShader = R"(
in vec4 fill;
in vec2 offset;
in float radius;
out vec4 result;

void main() {
    result = vec4(fill.rgb, fill.a * clamp(radius - length(offset) + 0.5, 0.0, 1.0));
}
)";

constexpr unsigned fromLocation = 0;
constexpr unsigned toLocation = 1;
constexpr unsigned colorLocation = 2;
constexpr unsigned sizeLocation = 3;

} // namespace

QSurfaceFormat GlPainter::format() {
    constexpr int samples = 4;
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setSamples(samples);
    return format;
}

bool GlPainter::isSupported() {
    QOpenGLContext context;
    context.setFormat(format());
    if (!context.create()) {
        return false;
    }
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    if (!surface.isValid() || !context.makeCurrent(&surface)) {
        return false;
    }
    GlPainter painter;
    const bool works = painter.initialize();
    painter.release();
    context.doneCurrent();
    return works;
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
    gl_ = context->extraFunctions();
    originLocation_ = program_.uniformLocation("origin");
    scaleLocation_ = program_.uniformLocation("scale");
    pictureLocation_ = program_.uniformLocation("picture");
    kindLocation_ = program_.uniformLocation("kind");
    describe(triangles, sizeof(Vertex),
             {{fromLocation, 2, GL_FLOAT, offsetof(Vertex, at)},
              {colorLocation, 4, GL_UNSIGNED_BYTE, offsetof(Vertex, color)}});
    describe(lines, sizeof(Line),
             {{fromLocation, 2, GL_FLOAT, offsetof(Line, from)},
              {toLocation, 2, GL_FLOAT, offsetof(Line, to)},
              {colorLocation, 4, GL_UNSIGNED_BYTE, offsetof(Line, color)},
              {sizeLocation, 1, GL_FLOAT, offsetof(Line, width)}});
    describe(points, sizeof(Point),
             {{fromLocation, 2, GL_FLOAT, offsetof(Point, at)},
              {colorLocation, 4, GL_UNSIGNED_BYTE, offsetof(Point, color)},
              {sizeLocation, 1, GL_FLOAT, offsetof(Point, size)}});
    return true;
}

void GlPainter::describe(Kind kind, std::size_t stride, std::initializer_list<Attribute> attributes) {
    Array& array = arrays_[static_cast<std::size_t>(kind)];
    array.attributes.create();
    array.buffer.create();
    array.buffer.setUsagePattern(QOpenGLBuffer::StreamDraw);
    const QOpenGLVertexArrayObject::Binder bound(&array.attributes);
    array.buffer.bind();
    for (const Attribute& attribute : attributes) {
        gl_->glEnableVertexAttribArray(attribute.location);
        gl_->glVertexAttribPointer(attribute.location, attribute.count, attribute.type, attribute.type != GL_FLOAT,
                                   static_cast<int>(stride), reinterpret_cast<const void*>(attribute.offset));
        gl_->glVertexAttribDivisor(attribute.location, kind == triangles ? 0 : 1);
    }
}

void GlPainter::release() {
    for (Array& array : arrays_) {
        array.attributes.destroy();
        array.buffer.destroy();
    }
    program_.removeAllShaders();
}

void GlPainter::paint(const Drawing& drawing, const ViewTransform& view, QSize pixelSize) {
    const auto channel = [](std::uint8_t value) { return static_cast<float>(value) / 255.0f; };
    const Rgba background = drawing.background;
    gl_->glViewport(0, 0, pixelSize.width(), pixelSize.height());
    gl_->glClearColor(channel(background.red), channel(background.green), channel(background.blue), 1.0f);
    gl_->glClear(GL_COLOR_BUFFER_BIT);
    gl_->glDisable(GL_DEPTH_TEST);
    gl_->glEnable(GL_BLEND);
    gl_->glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    program_.bind();
    program_.setUniformValue(pictureLocation_, static_cast<float>(view.width), static_cast<float>(view.height));
    const auto originX = static_cast<float>(view.originX());
    const auto originY = static_cast<float>(view.originY());
    const auto scale = static_cast<float>(view.scale());
    paintList(drawing.shapes, originX, originY, scale);
    paintList(drawing.overlays, originX, originY, scale);
    paintList(drawing.view, 0.0f, 0.0f, 1.0f);
    program_.release();
}

void GlPainter::paintList(const DrawList& list, float originX, float originY, float scale) {
    program_.setUniformValue(originLocation_, originX, originY);
    program_.setUniformValue(scaleLocation_, scale);
    constexpr int quadCorners = 4;
    if (!list.triangles.empty()) {
        upload(triangles, list.triangles.data(), list.triangles.size() * sizeof(Vertex));
        gl_->glDrawArrays(GL_TRIANGLES, 0, static_cast<int>(list.triangles.size()));
    }
    if (!list.lines.empty()) {
        upload(lines, list.lines.data(), list.lines.size() * sizeof(Line));
        gl_->glDrawArraysInstanced(GL_TRIANGLE_STRIP, 0, quadCorners, static_cast<int>(list.lines.size()));
    }
    if (!list.points.empty()) {
        upload(points, list.points.data(), list.points.size() * sizeof(Point));
        gl_->glDrawArraysInstanced(GL_TRIANGLE_STRIP, 0, quadCorners, static_cast<int>(list.points.size()));
    }
    arrays_[0].attributes.release();
}

// A new store each time, so that what is still being drawn from the old one need not be waited for.
void GlPainter::upload(Kind kind, const void* data, std::size_t bytes) {
    Array& array = arrays_[static_cast<std::size_t>(kind)];
    array.attributes.bind();
    array.buffer.bind();
    array.buffer.allocate(data, static_cast<int>(bytes));
    program_.setUniformValue(kindLocation_, static_cast<int>(kind));
}

} // namespace jostle
