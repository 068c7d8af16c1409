#include "standalone/document/evaluate.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace jostle::standalone {
namespace {

Stream fixed(double x, double y) {
    Stream stream;
    stream.components = 2;
    stream.value = {x, y, 0};
    return stream;
}

Stream single(std::vector<double> frames, std::vector<double> values) {
    Stream stream;
    stream.keys = {std::move(frames), std::move(values), {}};
    return stream;
}

KeySegment eased(double outX, double outY, double inX, double inY) {
    return {.linear = false,
            .outX = {outX, outX, outX},
            .outY = {outY, outY, outY},
            .inX = {inX, inX, inX},
            .inY = {inY, inY, inY}};
}

Stream curved(Components from, Components to, Components out, Components in) {
    Stream stream = single({0, 30}, {from[0], from[1], from[2], to[0], to[1], to[2]});
    stream.components = 3;
    stream.keys.segments = {{.spatial = true, .outTangent = out, .inTangent = in}, {}};
    return stream;
}

TEST(ValueAt, BetweenAndBeyondKeys) {
    Stream stream = single({0, 30, 40}, {40, 160, 100});
    const std::pair<double, double> cases[] = {
        {7, 68}, {22, 128}, {-5, 40}, {30, 160}, {99, 100}}; // 40 + 120 * 7 / 30 and 40 + 120 * 22 / 30
    for (const auto& [frame, value] : cases)
        EXPECT_DOUBLE_EQ(valueAt(stream, frame)[0], value);
    stream.keys.segments = {{.hold = true}, {.hasEnd = true, .end = {200, 0, 0}}, {}};
    EXPECT_EQ(valueAt(stream, 29.9)[0], 40) << "held until the next key";
    EXPECT_DOUBLE_EQ(valueAt(stream, 35)[0], 180) << "an end of its own: half way from 160 to 200";
    EXPECT_EQ(valueAt(stream, 40)[0], 100);
    EXPECT_EQ(valueAt(single({5}, {3}), 0)[0], 3) << "a lone key is a constant";
    EXPECT_EQ(valueAt(fixed(4, 5), 9), (Components{4, 5, 0}));
}

// With handles at a third and two thirds of the time the cubic's time is its parameter s, so that the share of the
// way is 3 (1-s)^2 s y1 + 3 (1-s) s^2 y2 + s^3.
TEST(ValueAt, EasesByTheCubic) {
    const std::tuple<const char*, KeySegment, double, double> cases[] = {
        {"3 * 9/16 * 1/4 + 1/64", eased(1 / 3.0, 1, 2 / 3.0, 0), 0.25, 0.4375},
        {"beyond the end: 3 * 1/4 * 9/16 * 2 + 27/64", eased(1 / 3.0, 0, 2 / 3.0, 2), 0.75, 1.265625},
        {"symmetric at half", eased(0.9, 0, 0.1, 1), 0.5, 0.5},
        {"out x = y, in x = y is linear", eased(0.2, 0.2, 0.7, 0.7), 0.3, 0.3},
        // x(s) = s^3 and y(s) = 3 s^2 - 2 s^3: at time 1/8, s is a half.
        {"flat start of time", eased(0, 0, 0, 1), 0.125, 0.5},
        {"handles outside of 0 to 1 count as 0", eased(-4, 0, -1, 1), 0.125, 0.5},
    };
    for (const auto& [name, segment, time, share] : cases) {
        Stream stream = single({10, 20}, {1000, 3000});
        stream.keys.segments = {segment, KeySegment{}};
        EXPECT_NEAR(valueAt(stream, 10 + 10 * time)[0], 1000 + 2000 * share, 1e-4) << name;
    }
}

TEST(ValueAt, ComponentsEaseByTheirOwnHandles) {
    Stream stream = single({0, 10}, {0, 0, 100, 100});
    stream.components = 2;
    stream.keys.segments = {eased(1 / 3.0, 1, 2 / 3.0, 0), {}};
    stream.keys.segments[0].outY[1] = 1 / 3.0;
    stream.keys.segments[0].inY[1] = 2 / 3.0;
    EXPECT_NEAR(valueAt(stream, 2.5)[0], 43.75, 1e-6);
    EXPECT_NEAR(valueAt(stream, 2.5)[1], 25, 1e-9);
}

// Tangents on the line itself: as if there were none, even beyond the end.
TEST(ValueAt, CurvesThatAreStraightEaseLikeLines) {
    Stream straight = curved({0, 0, 0}, {90, 120, 0}, {30, 40, 0}, {-3, -4, 0});
    EXPECT_NEAR(valueAt(straight, 10)[0], 30, 1e-9);
    KeySegment& way = straight.keys.segments[0];
    const KeySegment easing = eased(1 / 3.0, 0, 2 / 3.0, 2);
    std::tie(way.linear, way.outX, way.inX, way.inY) = std::tie(easing.linear, easing.outX, easing.inX, easing.inY);
    EXPECT_NEAR(valueAt(straight, 22.5)[1], 120 * 1.265625, 1e-4);
}

/// Point at a share of a cubic's length, by a polyline of very many points. That of players has 150.
Components pointByPolyline(const Components& from, const Components& out, const Components& in, const Components& to,
                           double share) {
    constexpr int count = 200000;
    std::vector<Components> points{from};
    std::vector<double> reached{0};
    for (int i = 1; i <= count; ++i) {
        const double t = static_cast<double>(i) / count, r = 1 - t;
        Components next{};
        for (std::size_t c = 0; c < 3; ++c)
            next[c] = r * r * r * from[c] + 3 * r * r * t * (from[c] + out[c]) + 3 * r * t * t * (to[c] + in[c]) +
                      t * t * t * to[c];
        const Components& last = points.back();
        reached.push_back(reached.back() + std::hypot(next[0] - last[0], next[1] - last[1], next[2] - last[2]));
        points.push_back(next);
    }
    const auto at = std::lower_bound(reached.begin(), reached.end(), share * reached.back()) - reached.begin();
    return points[static_cast<std::size_t>(at)];
}

TEST(ValueAt, CurvesAreWithinHundredthsOfAPixel) {
    const std::tuple<const char*, Components, Components, Components, Components> cases[] = {
        {"uneven speed", {0, 0, 0}, {300, 0, 0}, {0, -400, 0}, {-10, 0, 0}},
        {"a loop", {0, 0, 0}, {100, 0, 0}, {400, 300, 0}, {-400, 300, 0}},
        {"a cusp", {0, 0, 0}, {100, 0, 0}, {100, 300, 0}, {-100, 300, 0}},
        {"start is end", {50, 50, 0}, {50, 50, 0}, {800, 0, 0}, {0, 800, 0}},
        {"depth too", {0, 0, 0}, {500, 100, 300}, {0, 0, 600}, {0, -200, 0}},
        {"one tangent only", {0, 0, 0}, {1000, 500, 0}, {}, {-700, 300, 0}},
    };
    for (const auto& [name, from, to, out, in] : cases) {
        SCOPED_TRACE(name);
        const Stream stream = curved(from, to, out, in);
        for (const double share : {0.1, 0.37, 0.5, 0.9}) {
            const Components expected = pointByPolyline(from, out, in, to, share);
            const Components value = valueAt(stream, 30 * share);
            for (std::size_t i = 0; i < 3; ++i)
                EXPECT_NEAR(value[i], expected[i], 0.05) << share;
        }
    }
}

Layer atOrigin() {
    Layer layer;
    layer.transform.position = layer.transform.anchor = fixed(0, 0);
    layer.transform.scale = fixed(100, 100);
    return layer;
}

void expectAt(const Matrix4d& matrix, double x, double y, double expectedX, double expectedY) {
    EXPECT_NEAR(x * matrix.m[0][0] + y * matrix.m[1][0] + matrix.m[3][0], expectedX, 1e-12);
    EXPECT_NEAR(x * matrix.m[0][1] + y * matrix.m[1][1] + matrix.m[3][1], expectedY, 1e-12);
}

TEST(Matrices, SkewLeansTheTopToTheRight) {
    Layer layer = atOrigin();
    layer.transform.skew.value[0] = 45;
    expectAt(localMatrix(layer, 0), 0, -10, 10, -10);
    // At axis 90: (10, 0) turned to (0, 10), sheared to (-10, 10), turned back to (10, 10).
    layer.transform.skewAxis.value[0] = 90;
    expectAt(localMatrix(layer, 0), 10, 0, 10, 10);
}

TEST(Matrices, AutoOrientFollowsTheWay) {
    Layer layer = atOrigin();
    layer.autoOrient = true;
    EXPECT_EQ(travelDirection(layer.transform, 3), 0) << "at rest";
    layer.transform.position.keys = {{0, 10, 20}, {0, 0, 0, 100, -100, 100}, {}}; // down, then to the left
    EXPECT_NEAR(travelDirection(layer.transform, -3), 90, 1e-6) << "before the first key";
    EXPECT_NEAR(travelDirection(layer.transform, 5), 90, 1e-6);
    EXPECT_NEAR(travelDirection(layer.transform, 10), 90, 1e-6) << "at a key the way that led there counts";
    EXPECT_NEAR(travelDirection(layer.transform, 50), 180, 1e-6) << "after the last key";
    layer.transform.rotation.value[0] = 90;
    EXPECT_NEAR(localMatrix(layer, 5).m[0][0], -1, 1e-9) << "90 of its own and 90 of the way: half a turn";
    // A quarter of a circle of radius 100 around the origin.
    layer.transform.position = curved({100, 0, 0}, {0, 100, 0}, {0, 55.2284749831, 0}, {55.2284749831, 0, 0});
    EXPECT_NEAR(travelDirection(layer.transform, 15), 135, 0.01) << "the tangent of a quarter circle at half";
    layer.transform.separated = true;
    layer.transform.dimensions.own().x = single({0, 10}, {0, 10});
    layer.transform.dimensions.own().y = single({10, 20}, {0, 20});
    EXPECT_EQ(positionAt(layer.transform, 15), (Components{10, 10, 0}));
    EXPECT_NEAR(travelDirection(layer.transform, 2), 0, 1e-6) << "of dimensions of their own";
    EXPECT_NEAR(travelDirection(layer.transform, 15), 90, 1e-6);
    EXPECT_NEAR(travelDirection(layer.transform, 25), 90, 1e-6);
}

} // namespace
} // namespace jostle::standalone
