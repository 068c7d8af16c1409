#include "tests/support/playback.h"
#include "tests/support/scenes.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

namespace jostle {
namespace {

/// FNV-1a over the bits of all positions and angles.
std::uint64_t hashOf(const Scene& scene) {
    std::uint64_t hash = 14695981039346656037u;
    for (const BodyRecord& record : scene.bodies) {
        const b2Vec2 position = record.body->GetPosition();
        for (const float value : {position.x, position.y, record.body->GetAngle()}) {
            for (int shift = 0; shift < 32; shift += 8) {
                hash = (hash ^ (std::bit_cast<std::uint32_t>(value) >> shift & 0xffu)) * 1099511628211u;
            }
        }
    }
    return hash;
}

std::uint64_t hashAfter(Scene scene, int frames) {
    return hashOf(Playback(std::move(scene), frames).scene);
}

// The numbers are what three builds of two compilers agree on: g++ 12 and clang++ 14 with all optimisation, and g++
// with assertions and sanitizers and hardly any. A build that differs computes with other roundings, as where a
// multiplication is fused with an addition or the processor's own sine is taken.
TEST(Determinism, buildsAgreeToTheBit) {
    EXPECT_EQ(hashAfter(boxPyramid(), 60), 14423186464149840611u);
    EXPECT_EQ(hashAfter(starsInBowl(16), 80), 14657796114210569919u);
    EXPECT_EQ(hashAfter(chainOfPivots(), 120), 8880369136959379927u);
}

} // namespace
} // namespace jostle
