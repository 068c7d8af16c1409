#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "host/layer_import.h"
#include "tests/host/lottie_document.h"

namespace jostle {

/// Keeps what it is told.
struct MessageLog final : MessageSink {
    void inform(std::string_view title, std::string_view text) override {
        EXPECT_EQ(title, "Jostle");
        texts.emplace_back(text);
    }
    std::vector<std::string> texts;
};

/// A document that was imported into a scene.
struct Imported {
    explicit Imported(std::unique_ptr<Document> document) : hosted(std::move(document)) {
        report = initFromComposition(hosted.context(), scene, &messages);
        EXPECT_EQ(report.error, A_Err_NONE);
        for (const LayerReport& layer : report.layers)
            EXPECT_EQ(layer.error, A_Err_NONE) << layer.name;
    }
    explicit Imported(const std::string& layers) : Imported(lottieDocument(layers)) {}

    [[nodiscard]] BodyRecord& body(std::size_t index = 0) { return scene.bodies.at(index); }
    /// Reads a body's layer once more. @return whether that went well
    bool refresh(int index = 0) { return refreshBody(hosted.context(), scene, index).has_value(); }

    HostedDocument hosted;
    MessageLog messages;
    Scene scene;
    ImportReport report;
};

inline void expectPoint(b2Vec2 actual, b2Vec2 expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-5f);
    EXPECT_NEAR(actual.y, expected.y, 1e-5f);
}

/// What a body is made of, as in "1 circles 2 boxes"; empty for nothing.
inline std::string piecesText(const BodyRecord& body) {
    const BodyPieces pieces = piecesOf(body);
    std::string text;
    const auto add = [&text](int count, const char* what) {
        if (count > 0)
            text += (text.empty() ? "" : " ") + std::to_string(count) + what;
    };
    add(pieces.circles, " circles");
    add(pieces.boxes, " boxes");
    add(pieces.openLines, " lines");
    add(pieces.triangles, " triangles");
    return text;
}

/// Square metres of a body's boxes and triangles, overlaps counted twice.
inline double areaOf(const BodyRecord& body) {
    double sum = 0.0;
    for (const auto& shapes : body.outlines) {
        for (const ShapeDef& shape : shapes) {
            double twice = 0.0;
            for (std::size_t i = 0; shape.closed || shape.isBox ? i < shape.verts.size() : false; ++i)
                twice += static_cast<double>(b2Cross(shape.verts[i], shape.verts[(i + 1) % shape.verts.size()]));
            sum += std::abs(twice) / 2.0;
        }
    }
    return sum;
}

/// A point in metres, of pixels.
inline b2Vec2 at(float x, float y) {
    return {x / pixelsPerMetre, y / pixelsPerMetre};
}

/// The box around all of a body's vertices, in pixels about the body's position.
struct Extent {
    float left, top, right, bottom;
};
inline Extent from(float left, float top, float right, float bottom) {
    return {left, top, right, bottom};
}

/// Expects a body's place in metres, the box around its vertices, and its angle in degrees.
inline void expectPlace(const BodyRecord& body, b2Vec2 position, const Extent& extent, float degrees = 0) {
    expectPoint(body.position, position);
    expectPoint(body.importPosition, position);
    EXPECT_NEAR(radiansToDegrees(body.angle), degrees, 1e-4f);
    b2Vec2 least(1e9f, 1e9f);
    b2Vec2 most(-1e9f, -1e9f);
    for (const auto& shapes : body.outlines)
        for (const ShapeDef& shape : shapes)
            for (const b2Vec2& v : shape.verts) {
                least = b2Min(least, v);
                most = b2Max(most, v);
            }
    expectPoint(least, at(extent.left, extent.top));
    expectPoint(most, at(extent.right, extent.bottom));
}

} // namespace jostle
