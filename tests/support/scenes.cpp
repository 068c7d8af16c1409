#include "tests/support/scenes.h"

#include <cmath>

namespace jostle {

namespace {

constexpr int framesPerSecond = 60;

b2Vec2 onCircle(float radius, float angleRadians) {
    return {radius * std::cos(angleRadians), radius * std::sin(angleRadians)};
}

/// A star of 20 points, cut into 40 triangles about its centre.
std::vector<ShapeDef> starPieces() {
    constexpr int triangles = 40;
    const auto corner = [](int i) {
        return onCircle(i % 2 == 0 ? 0.4f : 0.25f, 2.0f * b2_pi * static_cast<float>(i % triangles) / triangles);
    };
    std::vector<ShapeDef> pieces;
    for (int i = 0; i < triangles; ++i) {
        pieces.push_back(outlineShape({{0, 0}, corner(i), corner(i + 1)}, true));
    }
    return pieces;
}

/// The lower half of a ring, as boxes of half a metre's thickness.
std::vector<ShapeDef> bowlPieces(float radius) {
    constexpr int boxes = 30;
    const auto angle = [](int i) { return b2_pi * static_cast<float>(i) / boxes; };
    std::vector<ShapeDef> pieces;
    for (int i = 0; i < boxes; ++i) {
        ShapeDef& box = pieces.emplace_back();
        box.isBox = true;
        box.verts = {onCircle(radius, angle(i)), onCircle(radius + 0.5f, angle(i)),
                     onCircle(radius + 0.5f, angle(i + 1)), onCircle(radius, angle(i + 1))};
    }
    return pieces;
}

} // namespace

Scene boxPyramid() {
    constexpr float size = 0.4f;
    Scene scene = emptyScene(framesPerSecond);
    addBox(scene, {0, 0.5f}, 40, 1, BodyType::Static);
    for (int row = 0; row < 25; ++row) {
        const int boxes = 32 - row;
        for (int i = 0; i < boxes; ++i) {
            const float column = static_cast<float>(i) - 0.5f * static_cast<float>(boxes - 1);
            addBox(scene, {1.1f * size * column, -size * (static_cast<float>(row) + 0.5f)}, size, size);
        }
    }
    return scene;
}

Scene starsInBowl(int stars) {
    constexpr int columns = 16;
    Scene scene = emptyScene(framesPerSecond);
    addBody(scene, {0, 0}, bowlPieces(9.0f), BodyType::Static);
    for (int i = 0; i < stars; ++i) {
        const auto column = static_cast<float>(i % columns);
        const auto row = static_cast<float>(i / columns);
        addBody(scene, {0.9f * (column - 7.5f), 4.0f - 0.9f * row}, starPieces()).angle = 0.1f * static_cast<float>(i);
    }
    return scene;
}

Scene circlesInBox(int circles) {
    constexpr int columns = 40;
    Scene scene = emptyScene(framesPerSecond);
    addBox(scene, {0, 0.5f}, 14, 1, BodyType::Static);
    addBox(scene, {-6.5f, -10}, 1, 20, BodyType::Static);
    addBox(scene, {6.5f, -10}, 1, 20, BodyType::Static);
    for (int i = 0; i < circles; ++i) {
        const auto column = static_cast<float>(i % columns);
        const auto row = static_cast<float>(i / columns);
        const float shift = i / columns % 2 == 0 ? 0.0f : 0.1f;
        addBody(scene, {0.29f * (column - 19.5f) + shift, -0.5f - 0.4f * row},
                {circleShape(0.1f + 0.01f * static_cast<float>(i % 6))});
    }
    return scene;
}

Scene chainOfPivots() {
    constexpr int pivots = 100;
    constexpr float length = 0.3f;
    Scene scene = emptyScene(framesPerSecond);
    addBox(scene, {0, 0}, length, 0.1f, BodyType::Static);
    for (int i = 1; i <= pivots; ++i) {
        const float x = length * static_cast<float>(i);
        addBox(scene, {x, 0}, length, 0.1f);
        JointRecord& pivot = addJoint(scene, JointType::Pivot, i - 1, i);
        pivot.anchor = {x - length / 2.0f, 0};
        pivot.collideConnected = false;
    }
    for (int link = 1; link < pivots; link += 2) {
        addBox(scene, {length * static_cast<float>(link), 1.0f}, 0.2f, 0.2f);
        JointRecord& spring = addJoint(scene, JointType::Spring, link, scene.bodyCount() - 1);
        spring.desiredLength = 1.0f;
        spring.springiness = 0.05f;
    }
    return scene;
}

} // namespace jostle
