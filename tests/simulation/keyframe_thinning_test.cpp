#include "simulation/keyframe_thinning.h"

#include <gtest/gtest.h>

#include <tuple>

namespace jostle {
namespace {

using Indices = std::vector<std::size_t>;

TEST(KeyframeThinning, keepsBothEndsOfARest) {
    const std::tuple<const char*, std::vector<float>, Indices> cases[] = {
        {"no samples, no keys", {}, {}},
        {"one sample is a key", {5}, {0}},
        {"two alike need one key", {5, 5}, {0}},
        {"two that differ are both keys", {5, 6}, {0, 1}},
        {"a body at rest has one key", {5, 5, 5, 5, 5}, {0}},
        {"a rest that ends keeps its last still sample", {5, 5, 5, 5, 9}, {0, 3, 4}},
        {"a rest in the middle keeps both its ends", {0, 5, 5, 5, 5, 9}, {0, 1, 4, 5}},
        // On purpose: only the neighbours are compared, so that a peak of one frame between equals is lost.
        {"a peak of one frame is lost, its flanks stay", {0, 0, 7, 0, 0}, {0, 1, 3}},
        {"a thousandth is no difference", {0, 0.0009f, 0.0009f}, {0}},
    };
    for (const auto& [name, samples, keys] : cases) {
        EXPECT_EQ(keyframeIndices(std::span<const float>(samples), floatsDiffer), keys) << name;
    }
}

TEST(KeyframeThinning, positionsAreComparedBySquaredDistance) {
    // At 0.03 pixels a frame neighbours are 0.06 apart, and 0.0036 is above the limit of 0.001; the last two samples
    // are 0.03 apart, and 0.0009 is below it. At 0.01 a frame 0.0004 is below it everywhere.
    const std::vector<b2Vec2> slow{{0, 0}, {0.03f, 0}, {0.06f, 0}, {0.09f, 0}};
    const std::vector<b2Vec2> slower{{0, 0}, {0, 0.01f}, {0, 0.02f}, {0, 0.03f}};
    EXPECT_EQ(keyframeIndices(std::span<const b2Vec2>(slow), vectorsDiffer), (Indices{0, 1, 2}));
    EXPECT_EQ(keyframeIndices(std::span<const b2Vec2>(slower), vectorsDiffer), (Indices{0}));
}

} // namespace
} // namespace jostle
