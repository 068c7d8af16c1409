#include "simulation/keyframe_reduction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace jostle {
namespace {

using Indices = std::vector<std::size_t>;

/// How far the lines between keys, and the last value after them, are from the samples at worst.
double worstError(const std::vector<double>& samples, const std::vector<double>& written, std::size_t components,
                  const Indices& keys) {
    double worst = 0;
    const std::size_t count = samples.size() / components;
    for (std::size_t i = 0; i < count; ++i) {
        const auto next = std::upper_bound(keys.begin(), keys.end(), i);
        const std::size_t from = *(next - 1);
        const std::size_t to = next == keys.end() ? from : *next;
        const double way = to == from ? 0 : static_cast<double>(i - from) / static_cast<double>(to - from);
        double squared = 0;
        for (std::size_t c = 0; c < components; ++c) {
            const double begin = written[from * components + c];
            const double end = written[to * components + c];
            squared += std::pow(begin + (end - begin) * way - samples[i * components + c], 2);
        }
        worst = std::max(worst, std::sqrt(squared));
    }
    return worst;
}

TEST(KeyframeReduction, keepsWhatALineCannotTell) {
    struct Case {
        const char* name;
        std::vector<double> samples;
        double tolerance;
        Indices expected;
    };
    const Case cases[] = {
        {"no samples, no keys", {}, 1, {}},
        {"one sample is a key", {5}, 1, {0}},
        {"a rest is one key", {5, 5, 5, 5}, 0.1, {0}},
        {"a trembling within the tolerance is a rest", {5, 5.4, 4.6, 5}, 0.5, {0}},
        {"a line is its two ends", {0, 1, 2, 3, 4}, 0.1, {0, 4}},
        {"a rest after a move ends with its first key", {0, 4, 8, 8, 8, 8}, 0.1, {0, 2}},
        {"a rest between moves keeps both ends", {0, 4, 8, 8, 8, 8, 4, 0}, 0.1, {0, 2, 5, 7}},
        {"a peak of one frame stays", {0, 0, 7, 0, 0}, 0.1, {0, 1, 2, 3}},
        // Frame 2 of the line from 0 to 16 in four frames is 8, and the sample is 4; in two frames the middle is 1 off.
        {"a curve is cut where a chord leaves it", {0, 1, 4, 9, 16}, 1, {0, 2, 4}},
        {"with no tolerance every bend is a key", {0, 1, 4, 9, 16}, 0, {0, 1, 2, 3, 4}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(reducedKeyIndices(c.samples, c.samples, 1, c.tolerance), c.expected);
    }
}

TEST(KeyframeReduction, comparesBothCoordinatesAtOnce) {
    // Off the line by 0.8 in either coordinate, and so by 1.13 in the plane.
    const std::vector<double> corner{0, 0, 0.8, 0.8, 0, 0, 5, 5};
    EXPECT_EQ(reducedKeyIndices(corner, corner, 2, 1.2), (Indices{0, 2, 3}));
    EXPECT_EQ(reducedKeyIndices(corner, corner, 2, 1.0), (Indices{0, 1, 2, 3}));
}

TEST(KeyframeReduction, staysWithinTheToleranceAfterRounding) {
    // A ball that bounces, at odd places: 300 frames of parabolas with ever less height, drifting sideways.
    std::vector<double> samples;
    std::vector<double> written;
    double height = 300;
    double speed = 0;
    for (int frame = 0; frame < 300; ++frame) {
        speed -= 0.27;
        height += speed;
        if (height < 0) {
            height = -height;
            speed *= -0.7;
        }
        for (const double value : {frame / 7.0, height}) {
            samples.push_back(value);
            written.push_back(std::round(value * 10) / 10);
        }
    }
    std::size_t before = samples.size();
    for (const double tolerance : {0.1, 0.5, 2.0, 10.0}) {
        const Indices keys = reducedKeyIndices(samples, written, 2, tolerance);
        EXPECT_LE(worstError(samples, written, 2, keys), tolerance + 1e-9);
        EXPECT_LT(keys.size(), before) << "more tolerance, fewer keys: " << tolerance;
        before = keys.size();
    }
}

} // namespace
} // namespace jostle
