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
        EXPECT_TRUE(hosted.host.balance().allReturned()) << hosted.host.balance().text();
    }
    explicit Imported(const std::string& layers) : Imported(lottieDocument(layers)) {}

    [[nodiscard]] BodyRecord& body(std::size_t index = 0) { return scene.bodies.at(index); }

    HostedDocument hosted;
    MessageLog messages;
    Scene scene;
    ImportReport report;
};

inline void expectPoint(b2Vec2 actual, float x, float y) {
    EXPECT_NEAR(actual.x, x, 2e-5f);
    EXPECT_NEAR(actual.y, y, 2e-5f);
}

inline std::string piecesText(const BodyRecord& body) {
    const BodyPieces pieces = piecesOf(body);
    return std::to_string(pieces.circles) + " circles, " + std::to_string(pieces.boxes) + " boxes, " +
           std::to_string(pieces.openLines) + " lines, " + std::to_string(pieces.triangles) + " triangles";
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

/// The corners of the box around all of a body's vertices, in metres.
inline std::pair<b2Vec2, b2Vec2> extentOf(const BodyRecord& body) {
    b2Vec2 least(1e9f, 1e9f);
    b2Vec2 most(-1e9f, -1e9f);
    for (const auto& shapes : body.outlines)
        for (const ShapeDef& shape : shapes)
            for (const b2Vec2& v : shape.verts) {
                least = b2Min(least, v);
                most = b2Max(most, v);
            }
    return {least, most};
}

} // namespace jostle
