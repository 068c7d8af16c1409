#include "host/separation.h"

#include <tuple>

#include <gtest/gtest.h>

#include "tests/host/failing_suites.h"
#include "tests/host/imported.h"

namespace jostle {

namespace {

const std::string leftMask = mask(outlineText("[40,0],[0,0],[0,40],[40,40]"), "left");
const std::string rightMask = mask(outlineText("[90,0],[60,0],[60,40],[90,40]"), "right");
const std::string loose = path(outlineText("[0,0],[9,9]"));
const std::string twoMasks = joined({leftMask, rightMask});
const std::string twoGroups =
    joined({group(rect("[40,20]", "[-50,0]"), "", "one"), loose, group(ellipse("[20,20]", "[50,0]"), "", "two")});

std::vector<std::string> namesOf(HostedDocument& hosted) {
    std::vector<std::string> names;
    for (const auto& layer : hosted.host.outcome().layers)
        names.push_back(layer->name + (layer->hidden ? " (hidden)" : ""));
    return names;
}

TEST(Separation, OffersLayersWithPartsThatBecomeBodies) {
    const std::string masks = R"("masksProperties":[)" + twoMasks + "]";
    const std::tuple<const char*, std::string, std::vector<int>> cases[] = {
        {"two masks", solidLayer(twoMasks), {1}},
        {"one mask", solidLayer(leftMask), {}},
        {"two groups", shapeLayer(joined({group(path(hostCircle)), group(path(hostCircle))})), {1}},
        {"a group and a path", shapeLayer(joined({group(path(hostCircle)), path(hostCircle)})), {1}},
        {"a group and a rectangle", shapeLayer(joined({group(path(hostCircle)), rect("[9,9]", "[0,0]")})), {}},
        {"both, twice", shapeLayer(twoGroups, {.more = "," + masks}), {1, 1}},
        {"hidden", solidLayer(twoMasks, {.more = R"(,"hd":true)"}), {}},
    };
    for (const auto& [name, layer, offered] : cases) {
        SCOPED_TRACE(name);
        HostedDocument hosted(lottieDocument(joined({solidLayer(""), layer})));
        EXPECT_EQ(findSeparableLayers(hosted.context()), offered);
    }
}

TEST(Separation, EachPartBecomesALayerAboveItsHiddenSource) {
    HostedDocument hosted(lottieDocument(joined({
        solidLayer(leftMask, {.more = R"(,"ef":[])"}),
        solidLayer(twoMasks, {.anchor = "[10,10]", .scale = "[200,200]"}),
        shapeLayer(twoGroups, {.position = "[120,30]", .scale = "[50,50]", .rotation = "30"}),
    })));
    hosted.layer(2).transform.opacity.value[0] = 50;
    std::vector<std::string> told;
    const SeparationReport report = separateLayers(
        hosted.context(), findSeparableLayers(hosted.context()), nullptr, [&told](const SeparationProgress& p) {
            told.push_back(std::to_string(p.layer) + (p.isMask ? " mask " : " shape ") + std::to_string(p.part) + "/" +
                           std::to_string(p.parts));
        });
    EXPECT_EQ(report.layersSeparated, 2);
    EXPECT_EQ(report.layersMade, 4);
    EXPECT_EQ(told,
              (std::vector<std::string>{"1 shape 1/3", "1 shape 2/3", "1 shape 3/3", "2 mask 1/2", "2 mask 2/2"}));
    EXPECT_EQ(namesOf(hosted),
              (std::vector<std::string>{"solid", "left", "right", "solid (hidden)", "one", "shape (hidden)", "two"}));
    for (const std::size_t part : {4u, 6u})
        EXPECT_EQ(hosted.layer(part).transform.opacity.value[0], 50) << part;
    Scene scene;
    ASSERT_EQ(initFromComposition(hosted.context(), scene).error, A_Err_NONE);
    ASSERT_EQ(scene.bodyCount(), 5);
    // A single mask is a primitive again, and so is a single element.
    for (const std::size_t body : {1u, 2u, 3u})
        EXPECT_EQ(piecesText(scene.bodies[body]), "1 boxes") << body;
    EXPECT_EQ(piecesText(scene.bodies[4]), "1 circles");
    expectPoint(scene.bodies[1].layerScale, {2, 2});
    expectPlace(scene.bodies[1], {0, 0}, {-20, -20, 60, 60}); // from 0 to 40, less 10, twice
    EXPECT_NEAR(radiansToDegrees(scene.bodies[3].angle), 30, 1e-4f);
    // (-50, 0) and (50, 0), halved and turned by 30 degrees, about (120, 30).
    const float x = 0.25f * std::cos(b2_pi / 6);
    expectPoint(scene.bodies[3].position, {0.2f - x, -0.2f - 0.125f});
    expectPoint(scene.bodies[4].position, {0.2f + x, -0.2f + 0.125f});
}

TEST(Separation, PartsOfAChildStandWhereTheSourceDoes) {
    HostedDocument hosted(
        lottieDocument(joined({shapeLayer(twoGroups, {.position = "[10,0]", .more = R"(,"ind":1,"parent":2)"}),
                               layerText(R"("ty":3,"ind":2)", {.position = "[40,50]", .scale = "[200,200]"})})));
    EXPECT_EQ(separateLayers(hosted.context(), std::vector<int>{0}, nullptr, {}).layersMade, 2);
    Scene scene;
    ASSERT_EQ(initFromComposition(hosted.context(), scene).error, A_Err_NONE);
    ASSERT_EQ(scene.bodyCount(), 2);
    // 40 + 2 (10 + 50) = 160, of which the composition's centre is at 100.
    expectPoint(scene.bodies[1].position, {0.6f, 0});
    expectPoint(scene.bodies[1].layerScale, {2, 2});
}

// A group has the place of its source and as many further down as there are shapes above it, but covers what its source
// covered. One that fades is not held where it begins.
TEST(Separation, ShapesBetweenGroupsDoNotPutAPartBelowOtherLayers) {
    HostedDocument hosted(lottieDocument(joined(
        {shapeLayer(joined({loose, loose, loose, group(loose, "", "one"), loose, loose, group(loose, "", "two")})),
         solidLayer("")})));
    hosted.layer(0).transform.opacity = constantStream(1, {});
    animate(hosted.layer(0).transform.opacity, {}, 20, {100, 0, 0});
    EXPECT_EQ(separateLayers(hosted.context(), std::vector<int>{0}, nullptr, {}).layersMade, 2);
    EXPECT_EQ(namesOf(hosted), (std::vector<std::string>{"shape (hidden)", "one", "two", "solid"}));
    EXPECT_EQ(hosted.layer(1).transform.opacity.value[0], 100);
}

TEST(Separation, PathsWithoutAGroupStayInSight) {
    HostedDocument hosted(lottieDocument(shapeLayer(joined({loose, loose}))));
    EXPECT_EQ(separateLayers(hosted.context(), std::vector<int>{0}, nullptr, {}).layersMade, 0);
    EXPECT_EQ(namesOf(hosted), std::vector<std::string>{"shape"});
}

// Whatever call the host refuses, the failure is told in the words of what failed and the undo group closes.
TEST(Separation, ARefusalIsToldAndTheOthersGoOn) {
    const std::string layers = joined({solidLayer(twoMasks), shapeLayer(twoGroups)});
    int failures = 0;
    refuseEachCall([&] { return lottieDocument(layers); },
                   [&failures](const HostContext& context) {
                       MessageLog messages;
                       const SeparationReport report = separateLayers(context, std::vector<int>{0, 1}, &messages, {});
                       if (report.layersFailed == 0)
                           return;
                       ++failures;
                       EXPECT_EQ(report.layersSeparated, 1);
                       ASSERT_EQ(messages.texts.size(), 1u);
                       EXPECT_TRUE(messages.texts[0] == "Error occurred when separating shapes." ||
                                   messages.texts[0] == "Error occurred when separating masks.")
                           << messages.texts[0];
                   });
    EXPECT_GT(failures, 50);
}

} // namespace

} // namespace jostle
