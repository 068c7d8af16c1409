#include "simulation/keyframe_reduction.h"
#include "simulation/keyframe_thinning.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace jostle {
namespace {

using Indices = std::vector<std::size_t>;
using Keys = std::vector<ReducedKey>;

Indices indicesOf(const Keys& keys) {
    Indices indices;
    for (const ReducedKey& key : keys)
        indices.push_back(key.index);
    return indices;
}

/// How far the lines between keys, and the last value after them, are from the samples at worst.
double worstError(const std::vector<b2Vec2>& samples, const Keys& keys) {
    double worst = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto next = std::find_if(keys.begin(), keys.end(), [&](const ReducedKey& key) { return key.index > i; });
        const ReducedKey& from = *(next - 1);
        const ReducedKey& to = next == keys.end() ? from : *next;
        const double way =
            next == keys.end() ? 0 : static_cast<double>(i - from.index) / static_cast<double>(to.index - from.index);
        worst = std::max(worst, std::hypot(from.value[0] + (to.value[0] - from.value[0]) * way - double{samples[i].x},
                                           from.value[1] + (to.value[1] - from.value[1]) * way - double{samples[i].y}));
    }
    return worst;
}

TEST(KeyframeReduction, keepsWhatALineCannotTell) {
    const std::tuple<const char*, std::vector<float>, double, Indices> cases[] = {
        {"no samples, no keys", {}, 1, {}},
        {"one sample is a key", {5}, 1, {0}},
        {"a trembling within the tolerance is a rest", {5, 5.4f, 4.6f, 5}, 0.5, {0}},
        {"a line is its two ends", {0, 1, 2, 3, 4}, 0.1, {0, 4}},
        {"a rest after a move ends with its first key", {0, 4, 8, 8, 8, 8}, 0.1, {0, 2}},
        {"a rest between moves keeps both ends", {0, 4, 8, 8, 8, 8, 4, 0}, 0.1, {0, 2, 5, 7}},
        {"a peak of one frame stays", {0, 0, 7, 0, 0}, 0.1, {0, 1, 2, 3}},
        // The velocities that keep 1, 4 and 9 within 1.2 are -0.2 to 2.2, 1.4 to 2.6 and 2.6 to 3.4.
        {"a curve is cut where no line follows it", {0, 1, 4, 9}, 1.2, {0, 2, 3}},
        // With 1.6 they are -0.6 to 2.6, 1.2 to 2.8 and 2.47 to 3.53, so 2.5 holds up to a key of 7.5, and not 9.
        {"a key may leave its sample", {0, 1, 4, 9}, 1.6, {0, 3}},
        {"with no tolerance every bend is a key", {0, 1, 4, 9, 16}, 0, {0, 1, 2, 3, 4}},
    };
    for (const auto& [name, numbers, tolerance, expected] : cases) {
        SCOPED_TRACE(name);
        for (const bool upright : {false, true}) {
            std::vector<b2Vec2> samples;
            for (const float number : numbers)
                samples.push_back(upright ? b2Vec2(0, number) : b2Vec2(number, 0));
            const Keys keys = reducedKeys(samples, {0, 0}, tolerance);
            EXPECT_EQ(indicesOf(keys), expected);
            EXPECT_LE(worstError(samples, keys), tolerance);
        }
    }
}

TEST(KeyframeReduction, comparesBothCoordinatesAtOnce) {
    // Off the rest by 0.8 in either coordinate, and so by 1.13 in the plane.
    const std::vector<b2Vec2> jump{{0, 0}, {0.8f, 0.8f}, {0, 0}};
    EXPECT_EQ(reducedKeys(jump, {0, 0}, 1.2).size(), 1U);
    EXPECT_GT(reducedKeys(jump, {0, 0}, 1.0).size(), 1U);
}

TEST(KeyframeReduction, staysWithinTheToleranceAfterRounding) {
    // Like a ball that bounces ever less high, drifting sideways.
    std::vector<b2Vec2> samples;
    for (int frame = 0; frame < 600; ++frame) {
        const float time = static_cast<float>(frame) / 20.0f;
        samples.emplace_back(3.0f * time, 300.0f * std::exp(-0.1f * time) * std::abs(std::cos(time)));
    }
    std::size_t before = samples.size();
    for (const double tolerance : {0.1, 0.5, 2.0, 10.0}) {
        const Keys keys = reducedKeys(samples, {0.1, 0.02}, tolerance);
        EXPECT_LE(worstError(samples, keys), tolerance + 1e-9);
        EXPECT_LT(keys.size(), before) << "more tolerance, fewer keys: " << tolerance;
        before = keys.size();
        for (const ReducedKey& key : keys) {
            EXPECT_NEAR(std::remainder(key.value[0], 0.1), 0, 1e-9);
            EXPECT_NEAR(std::remainder(key.value[1], 0.02), 0, 1e-9);
        }
    }
}

// Of all lines that stay within a distance d of a parabola with the acceleration g, those that cross it twice are the
// longest, with sqrt(16 d / g) frames: 17.2 of them here in each of 1000 frames, so 58 lines, and a few for the frames
// that are left over.
TEST(KeyframeReduction, followsAParabolaWithAsFewLinesAsThereCanBe) {
    std::vector<b2Vec2> samples;
    for (int frame = 0; frame <= 1000; ++frame) {
        const auto time = static_cast<float>(frame) / 10.0f;
        samples.emplace_back(0.0f, 1.35f * time * time);
    }
    const std::size_t lines = reducedKeys(samples, {0, 0}, 0.5).size() - 1;
    EXPECT_GE(lines, 58U);
    EXPECT_LE(lines, 64U);
}

TEST(KeyframeThinning, keepsBothEndsOfARest) {
    const std::tuple<const char*, std::vector<float>, Indices> cases[] = {
        {"no samples, no keys", {}, {}},
        {"one sample is a key", {5}, {0}},
        {"two that differ are both keys", {5, 6}, {0, 1}},
        {"a body at rest has one key", {5, 5, 5, 5, 5}, {0}},
        {"a rest in the middle keeps both its ends", {0, 5, 5, 5, 5, 9}, {0, 1, 4, 5}},
        // On purpose: only the neighbours are compared, so that a peak of one frame between equals is lost.
        {"a peak of one frame is lost, its flanks stay", {0, 0, 7, 0, 0}, {0, 1, 3}},
        {"a thousandth is no difference", {0, 0.0009f, 0.0009f}, {0}},
    };
    Indices room; // of each in turn, so that nothing is left of the one before
    for (const auto& [name, samples, keys] : cases) {
        const auto found = keyframeIndices(std::span<const float>(samples), floatsDiffer, room);
        EXPECT_EQ(Indices(found.begin(), found.end()), keys) << name;
    }
}

TEST(KeyframeThinning, positionsAreComparedBySquaredDistance) {
    // At 0.03 pixels a frame neighbours are 0.06 apart, and 0.0036 is above the limit of 0.001; the last two samples
    // are 0.03 apart, and 0.0009 is below it. At 0.01 a frame 0.0004 is below it everywhere.
    const std::vector<b2Vec2> slow{{0, 0}, {0.03f, 0}, {0.06f, 0}, {0.09f, 0}};
    const std::vector<b2Vec2> slower{{0, 0}, {0, 0.01f}, {0, 0.02f}, {0, 0.03f}};
    Indices room;
    const auto keysOf = [&](const std::vector<b2Vec2>& samples) {
        const auto found = keyframeIndices(std::span<const b2Vec2>(samples), vectorsDiffer, room);
        return Indices(found.begin(), found.end());
    };
    EXPECT_EQ(keysOf(slow), (Indices{0, 1, 2}));
    EXPECT_EQ(keysOf(slower), (Indices{0}));
}

} // namespace
} // namespace jostle
