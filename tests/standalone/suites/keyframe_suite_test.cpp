#include "tests/standalone/suites/session.h"

namespace jostle::standalone {
namespace {

using namespace test;

TEST(KeyframeSuite, MergesABatchByTimeUnlessItIsDiscarded) {
    using Numbers = std::vector<double>;
    // Keys that are there, those of the batch, and what comes of them.
    const std::tuple<const char*, Keys, Keys, Numbers, Numbers> cases[] = {
        {"in order, into a static stream", {}, {{0, 1}, {4, 2}}, {0, 4}, {1, 2}},
        {"the last of two at one frame counts", {}, {{4, 2}, {0, 1}, {4, 3}}, {0, 4}, {1, 3}},
        {"between keys, before and after them",
         {{2, 20}, {6, 60}},
         {{0, 1}, {4, 4}, {8, 8}},
         {0, 2, 4, 6, 8},
         {1, 20, 4, 60, 8}},
        {"a key that stood there is replaced", {{2, 20}, {6, 60}}, {{6, 1}}, {2, 6}, {20, 1}},
    };
    for (const auto& [name, present, added, frames, values] : cases) {
        SCOPED_TRACE(name);
        Session session;
        const AEGP_StreamRefH rotation = session.stream(session.layer(child), AEGP_LayerStream_ROTATION);
        session.addKeys(rotation, present);
        const AEGP_AddKeyframesInfoH discarded = got(session.keyframes().AEGP_StartAddKeyframes, rotation);
        session.addKey(discarded, 1);
        EXPECT_EQ(session.keyframes().AEGP_EndAddKeyframes(0, discarded), A_Err_NONE);
        session.addKeys(rotation, added);
        const Stream& stream = session.outcome(child).transform.rotation;
        EXPECT_EQ(stream.keys.frames, frames);
        EXPECT_EQ(stream.keys.values, values);
        EXPECT_TRUE(stream.keys.segments.empty()) << "baked keys need no easing";
        session.deleteKeys(rotation, static_cast<A_long>(frames.size()));
        EXPECT_EQ(session.value(rotation, 5).one_d, values.front()) << "the first key's value stays";
        session.expectClean({rotation});
    }
}

TEST(KeyframeSuite, ReachesSeparatedDimensionsThroughTheFollowers) {
    Session session;
    const AEGP_StreamRefH leader = session.stream(session.layer(separated), AEGP_LayerStream_POSITION);
    EXPECT_TRUE(got(session.tree().AEGP_AreDimensionsSeparated, leader));
    const AEGP_StreamRefH x = got(session.tree().AEGP_GetSeparationFollower, leader, A_short{0});
    EXPECT_TRUE(got(session.streams().AEGP_IsStreamTimevarying, leader)) << "one of its dimensions varies";
    session.deleteKeys(x, 2);
    EXPECT_EQ(session.set(leader, {1, 2, 0}), A_Err_NONE) << "no keys are in the way any more";
    EXPECT_EQ(session.value(leader, 5).three_d.x, 1);
    session.expectClean({x, leader});
}

} // namespace
} // namespace jostle::standalone
