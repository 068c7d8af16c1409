#include "persistence/settings_reader.h"

#include <gtest/gtest.h>

#include <string_view>
#include <tuple>

#include "persistence/apply_settings.h"
#include "persistence/settings_limits.h"
#include "tests/persistence/loading.h"

namespace jostle {
namespace {

const std::string unreadable = "The settings file 'file.xml' cannot be found or its format is not supported.\n";
const std::string notSettings = "Unsupported settings format.\n";
const std::string otherVersion =
    "This file was created with a different version of Jostle. Some errors might occur during import.\n";
const std::string noGlobals = "Unsupported settings format (Global Settings).\n";
const std::string noBodies = "Unsupported settings format (Bodies Settings)\n";

std::string repeated(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

TEST(SettingsReader, ABodyTakesEveryValueOfItsElement) {
    Loading loading;
    ASSERT_EQ(
        loading.load(bodyFile(
            R"(type="4" density="2.5" friction="0.25" restitution="0.75" meshPrecision="5" )"
            R"(linearVelocityMagnitude="3" linearVelocityDirection="45" angularVelocity="-2" linearDamping="0.5" )"
            R"(angularDamping="0.125" aematicDamping="0.7" aematicTension="2" categoryBits="8" maskBits="-2" )"
            R"(fixedRotation="1" gravityScale="-1.5" useConvexHull="2" magnetismType="2" magnetIntensity="20" )"
            R"(magnetDistance="50" acceptMagnetism="-1" openShapeLineWidth="0.1" colorR="0.5" colorG="1" )"
            R"(colorB="0" positionX="-1.5" positionY="2.5" angle="0.6" aematicAnchorX="0.25" )"
            R"(aematicAnchorY="-0.25")")),
        LoadResult::Complete);
    const BodyRecord& body = loading.body();
    EXPECT_EQ(body.type, BodyType::AEmatic);
    const float reals[][2] = {
        {body.density, 2.5f},        {body.friction, 0.25f},
        {body.restitution, 0.75f},   {body.linearVelocityMagnitude, 3},
        {body.angularVelocity, -2},  {body.linearVelocityDirection, 45},
        {body.linearDamping, 0.5f},  {body.angularDamping, 0.125f},
        {body.aematicDamping, 0.7f}, {body.aematicTension, 2},
        {body.gravityScale, -1.5f},  {body.magnetIntensity, 20},
        {body.magnetDistance, 50},   {body.openShapeLineWidth, 0.065f},
        {body.angle, 0.6f},          {body.linearVelocityMagnitudeStored, 3},
    };
    for (const auto& [actual, expected] : reals) {
        EXPECT_EQ(actual, expected);
    }
    EXPECT_EQ(body.meshPrecision, 5);
    EXPECT_EQ(body.maskBits, 65534); // the lower 16 bits of -2
    EXPECT_TRUE(body.fixedRotation && body.useConvexHull);
    EXPECT_FALSE(body.acceptMagnetism); // a body's flag holds above 0 only
    EXPECT_EQ(body.position, b2Vec2(-1.5f, 2.5f));
    EXPECT_EQ(body.positionStored, body.position);
    EXPECT_EQ(body.aematicAnchor, b2Vec2(0.25f, -0.25f));
    EXPECT_EQ(body.userData->color, (Rgb{0.5f, 1, 0}));
    EXPECT_TRUE(body.userData->isRepulsive);
    EXPECT_TRUE(loading.scene.hasAEmatic && loading.scene.hasMagnets && !loading.scene.hasKinematic);
    EXPECT_EQ(groupLetter(body.categoryBits), 'D');
    EXPECT_EQ(groupLetter(3), 'A') << "no single group";
    EXPECT_EQ(loading.refreshed, std::vector<std::int32_t>{0});
    EXPECT_EQ(loading.messages.texts, std::vector<std::string>{});
}

TEST(SettingsReader, WhatABodyLacksHasItsDefault) {
    Loading loading;
    loading.body().density = loading.body(1).density = 7;
    loading.body().type = BodyType::Static;
    loading.body().maskBits = 3;
    loading.body().acceptMagnetism = false;
    // Halves of pairs count for nothing, and so does what stands for no type.
    ASSERT_EQ(loading.load(bodyFile(R"(type="6" magnetismType="-1" positionX="9" colorR="1" colorB="1" )"
                                    R"(anchoringX="1" anchoringY="2" aematicAnchorX="3")")),
              LoadResult::Complete);
    EXPECT_EQ(loading.body().density, 1);
    EXPECT_EQ(loading.body().type, BodyType::Dynamic);
    EXPECT_EQ(loading.body().magnetismType, 0);
    EXPECT_EQ(loading.body().maskBits, 65535);
    EXPECT_TRUE(loading.body().acceptMagnetism);
    EXPECT_EQ(loading.body().position, b2Vec2(0, 0));
    EXPECT_EQ(loading.body().color.green, 0.5) << "the one value without a default";
    EXPECT_EQ(loading.body().aematicAnchor, b2Vec2(1, 2)) << "by its old name";
    EXPECT_EQ(loading.body(1).density, 7) << "a body that the file does not name";
    EXPECT_EQ(loading.refreshed, std::vector<std::int32_t>{});

    const std::string bodies = R"(<body layerID="9" density="9"/><body layerID="2" density="2" anchoringX="1" )"
                               R"(anchoringY="2" aematicAnchorX="3" aematicAnchorY="4"/><body layerID="2"/>)";
    ASSERT_EQ(loading.load(settingsFile(globalSections + "<bodies>" + bodies + "</bodies>")), LoadResult::Complete);
    EXPECT_EQ(loading.body(1).density, 2) << "the first element of a layer counts";
    EXPECT_EQ(loading.body(1).aematicAnchor, b2Vec2(3, 4)) << "the newer name";
}

TEST(SettingsReader, GlobalValuesGoThroughThePanels) {
    // With a part of the file that is written then.
    constexpr std::pair<const char*, const char*> cases[] = {
        {R"(<preview zoom="99.9"/><solver/><gravity/>)", R"(zoom="99.000000")"},
        {R"(<preview zoom="0.4"/><solver/><gravity/>)", R"(zoom="1.000000")"},
        {R"(<preview panX="-1.5"/><solver/><gravity/>)", R"(panX="-1.500000")"},
        // 127 of 255, and of half a colour nothing.
        {R"(<preview bgColorR="1" bgColorG="0.5" bgColorB="0"/><solver/><gravity/>)", R"(bgColorG="0.498039")"},
        {R"(<preview bgColorG="0.5" bgColorB="0"/><solver/><gravity/>)", R"(bgColorG="0.149020")"},
        {R"(<preview/><solver timeDivider="0"/><gravity/>)", R"(timeDivider="0.010000")"},
        {R"(<preview/><solver timeDivider="20.1254"/><gravity/>)", R"(timeDivider="20.125000")"},
        {R"(<preview/><solver tolerance="49.5"/><gravity/>)", R"(tolerance="49.000000")"},
        {R"(<preview/><solver tolerance="0.5"/><gravity/>)", R"(tolerance="0.001000")"},
        {R"(<preview/><solver tolerance="500"/><gravity/>)", R"(tolerance="100.000000")"},
        {R"(<preview/><solver stepsPerFrame="3.9"/><gravity/>)", R"(stepsPerFrame="3")"},
        {R"(<preview/><solver stepsPerFrame="11"/><gravity/>)", R"(stepsPerFrame="10")"},
        {R"(<preview/><solver/><gravity magnitude="2.0009"/>)", R"(magnitude="2.000000")"},
        {R"(<preview/><solver/><gravity magnitude="51"/>)", R"(magnitude="50.000000")"},
        {R"(<preview/><solver/><gravity/>)", R"(magnitude="70.000000")"},
        {R"(<preview/><solver/><gravity direction="-90"/>)", R"(direction="0.000000")"},
        {R"(<preview/><solver/><gravity layerIndex="2"/>)", R"(takeValueFrom="0")"},
        {R"(<preview/><solver/><gravity takeValueFrom="1" layerIndex="2"/>)", R"(takeValueFrom="1" layerIndex="2")"},
        {R"(<preview/><solver/><gravity takeValueFrom="1" layerIndex="3"/>)", R"(takeValueFrom="0")"},
        {R"(<preview/><solver/><gravity takeValueFrom="1" layerIndex="-1"/>)", R"(takeValueFrom="0")"},
        {R"(<preview/><solver/><gravity takeValueFrom="-1" layerIndex="2"/>)", R"(takeValueFrom="0")"},
    };
    for (const auto& [sections, written] : cases) {
        SCOPED_TRACE(sections);
        Loading loading;
        loading.scene.globals.magnitude = 70; // typed, and more than the slider has
        EXPECT_EQ(loading.load(settingsFile(sections + std::string("<bodies><body layerID=\"1\"/></bodies>"))),
                  LoadResult::Complete);
        EXPECT_NE(loading.save().find(written), std::string::npos) << loading.save();
        const bool hasList = std::string_view(sections).find(R"(takeValueFrom="1")") != std::string::npos;
        EXPECT_EQ(loading.scene.globals.layerListEnabled, hasList);
    }
}

/// A file whose joints and snapshots a scene without a snapshot shows.
std::string file(const std::string& sections, const std::string& version = "") {
    return settingsFile(sections + R"(<joints><joint type="3" bodyAId="0" bodyBId="1" bodyALayerID="1" )"
                                   R"(bodyBLayerID="2"/></joints><presets><preset/></presets>)",
                        version);
}

/// What is left of a load, a letter each: zoom, time divider, gravity, body, joint, snapshot. "-" is as it was before,
/// "D" a default.
std::string survivorsOf(const Loading& loading) {
    const auto seen = [](double value, double before, double byDefault, char mark) {
        return value == before ? '-' : value == byDefault ? 'D' : mark;
    };
    const Scene& scene = loading.scene;
    return {seen(scene.preview.zoom, 400, 250, 'z'),
            seen(scene.globals.timeDivider, 3, 1, 't'),
            seen(scene.globals.magnitude, 7, 10, 'g'),
            seen(scene.bodies[0].density, 2, 1, 'b'),
            scene.joints.at(0).type == JointType::Pivot ? '-' : 'j',
            loading.strip.items().empty() ? '-' : 's'};
}

TEST(SettingsReader, OfABrokenFileIsKeptWhatCameBeforeTheFault) {
    const std::string preview = R"(<preview zoom="100"/>)";
    const std::string solver = R"(<solver timeDivider="2"/>)";
    const std::string gravity = R"(<gravity magnitude="5"/>)";
    const std::string globals = preview + solver + gravity;
    const std::string known = globals + R"(<bodies><body layerID="1" density="3"/></bodies>)";
    const std::string unknown = globals + R"(<bodies><body layerID="7" density="3"/></bodies>)";
    const std::string newer = R"( majorVersion="1" minorVersion="3")";
    const std::string entities = "<!DOCTYPE x [<!ENTITY a \"&b;&b;\"><!ENTITY b \"&a;\">]>";
    const auto has = [](const std::string& excess) { return "The settings file 'file.xml' has " + excess + ".\n"; };
    // The file, the messages with a line break after each, and what is left.
    const std::tuple<const char*, std::string, std::string, const char*> cases[] = {
        {"whole", file(known), "", "ztgbjs"},
        {"empty", "", unreadable, "------"},
        {"cut off", file(known).substr(0, 200), unreadable, "------"},
        {"a NUL, and more behind it", file(known) + std::string(1, '\0') + "more", unreadable, "------"},
        {"two files in one", file(known) + settingsFile(known), unreadable, "------"},
        {"a text before the root", "text" + file(known), unreadable, "------"},
        {"a comment behind the root", file(known) + "<!-- -->\n", "", "ztgbjs"},
        {"very deep", settingsFile(repeated("<a>", 200000)), unreadable, "------"},
        {"entities of its own", entities + file(known), unreadable, "------"},
        {"unknown entities", file(R"(<preview zoom="&a;1"/>)" + known), "", "ztgbjs"},
        {"many snapshots", settingsFile(known + "<presets>" + repeated("<preset/>", 1001) + "</presets>"),
         has("1001 snapshots, of which a scene of 2 bodies can have 1000"), "------"},
        {"many attributes of one element", settingsFile("<a " + repeated("a=\"\" ", 1001) + "/>"),
         has("an element of more than 1000 attributes"), "------"},
        {"many attributes",
         settingsFile(repeated("<a a=\"\" b=\"\" c=\"\" d=\"\" e=\"\" f=\"\" g=\"\" h=\"\" i=\"\"/>", 900000)),
         has("more than 8000000 attributes"), "------"},
        {"many elements", settingsFile(repeated("<a/>", 1000001)), has("more than 1000000 elements"), "------"},
        {"too large", std::string(maximumSettingsBytes + 1, ' '), has("more than 128 MB"), "------"},
        {"another root", "<Settings/>", notSettings, "------"},
        {"a comment only", "<!-- -->", notSettings, "------"},
        {"a newer version", file(known, newer), otherVersion, "ztgbjs"},
        {"this version", file(known, R"( majorVersion="1" minorVersion="2")"), "", "ztgbjs"},
        {"half a version", file(known, R"( majorVersion="2")"), "", "ztgbjs"},
        {"no preview", file(solver + gravity), noGlobals, "------"},
        {"no solver", file(preview + gravity), noGlobals, "z-----"},
        {"no gravity", file(preview + solver), noGlobals, "zt----"},
        {"a newer version without gravity", file(preview + solver, newer), otherVersion + noGlobals, "zt----"},
        {"no bodies", file(globals), noBodies, "ztg---"},
        {"bodies without a body", file(globals + "<bodies><b/></bodies>"), noBodies, "ztg---"},
        {"unknown layers", file(unknown), "", "DDD---"},
    };
    for (const auto& [name, text, messages, survivors] : cases) {
        SCOPED_TRACE(name);
        Loading loading;
        loading.scene.preview.zoom = 400;
        loading.scene.globals.timeDivider = 3;
        loading.scene.globals.magnitude = 7;
        loading.scene.bodies[0].density = 2;
        addJoint(loading.scene, JointType::Pivot, 0, 1);
        const LoadResult result = loading.load(text);
        EXPECT_EQ(result == LoadResult::Complete, std::string(survivors) == "ztgbjs");
        std::string told;
        for (const std::string& message : loading.messages.texts) {
            told += message + "\n";
        }
        EXPECT_EQ(told, messages);
        EXPECT_EQ(survivorsOf(loading), survivors);
    }
}

/// A file of joints with these attributes, and of the bodies that they join.
std::string jointFile(const std::vector<std::string>& joints) {
    std::string text;
    for (const std::string& attributes : joints) {
        text += "<joint " + attributes + "/>";
    }
    return bodyFile(R"(positionX="-1" positionY="0.5")", "<joints>" + text + "</joints>");
}

TEST(SettingsReader, JointsTakeTheirValuesAndReplaceAllThatThereAre) {
    Loading loading;
    addJoint(loading.scene, JointType::Pivot, 0, 1);
    const std::string ends = R"(bodyAId="1" bodyBId="0" bodyALayerID="2" bodyBLayerID="1" )";
    const std::string anchors = R"(anchorAX="1" anchorAY="2" anchorBX="3" anchorBY="4" )";
    ASSERT_EQ(loading.load(jointFile({
                  R"(type="0" frequency="2" damping="0.5" collideConnected="0" )" + ends + anchors,
                  R"(type="1" anchorX="1" anchorY="2" enableLimit="-1" lowerAngle="-45" collideConnected="2" )" + ends,
                  R"(type="2" axisX="0" axisY="1" enableLimit="1" enableMotor="0" collideConnected="0" )" + ends,
                  R"(type="3" springiness="2" damping="0.25" desiredLength="1.5" )" + ends + anchors,
              })),
              LoadResult::Complete);
    const std::vector<JointRecord>& read = loading.scene.joints;
    ASSERT_EQ(read.size(), 4u);
    for (std::size_t i = 0; i < read.size(); ++i) {
        EXPECT_EQ(read[i].row, static_cast<std::int32_t>(i));
        EXPECT_EQ(read[i].type, static_cast<JointType>(i));
        EXPECT_EQ(read[i].bodyAId, 1);
        EXPECT_EQ(read[i].bodyBId, 0);
        EXPECT_EQ(read[i].userData->color, jointColor(read[i].type));
    }
    EXPECT_EQ(read[0].anchorA, b2Vec2(1, 2));
    EXPECT_EQ(read[0].anchorBStored, b2Vec2(3, 4));
    EXPECT_TRUE(read[0].frequency == 2 && read[0].damping == 0.5f && !read[0].collideConnected);
    EXPECT_EQ(read[1].anchorStored, b2Vec2(1, 2));
    EXPECT_TRUE(read[1].enableLimit && read[1].collideConnected) << "any number but 0";
    EXPECT_EQ(read[1].lowerAngle, -45);
    EXPECT_EQ(read[2].axisStored, b2Vec2(0, 1));
    EXPECT_EQ(read[2].anchor, loading.body(1).position) << "of its body A, as loaded";
    EXPECT_TRUE(read[2].enableLimit && !read[2].enableMotor);
    EXPECT_TRUE(read[3].springiness == 2 && read[3].damping == 0.25f && read[3].desiredLength == 1.5f);
    EXPECT_EQ(loading.body().connectedJoints.size(), 4u);
    EXPECT_TRUE(loading.scene.preview.showsJoints);

    // Of the rest a joint has the defaults of a new one; without any in the file there are none.
    ASSERT_EQ(loading.load(jointFile({"type=\"3\" anchorAX=\"1\" " + ends})), LoadResult::Complete);
    EXPECT_EQ(loading.scene.joints.at(0).damping, 0.5f);
    EXPECT_EQ(loading.scene.joints[0].desiredLength, 3) << "from (2, 0.5) to (-1, 0.5): half an anchor is none";
    ASSERT_EQ(loading.load(bodyFile("")), LoadResult::Complete);
    EXPECT_TRUE(loading.scene.joints.empty() && loading.body().connectedJoints.empty());
}

TEST(SettingsReader, JointsThatCannotBeResolvedAreDropped) {
    const std::string ends = R"( bodyAId="0" bodyBId="1" bodyALayerID="1" bodyBLayerID="2")";
    Loading loading;
    ASSERT_EQ(loading.load(jointFile({
                  R"(type="0" bodyAId="2" bodyBId="1" bodyALayerID="1" bodyBLayerID="2")",
                  R"(type="0" bodyAId="-1" bodyBId="1" bodyALayerID="1" bodyBLayerID="2")",
                  R"(type="0" bodyBId="1" bodyALayerID="1" bodyBLayerID="2")",
                  R"(type="0" bodyAId="0" bodyBId="1" bodyALayerID="1" bodyBLayerID="9")",
                  R"(type="0" bodyAId="0" bodyBId="1")", // as files had it before the layers' identifiers
                  R"(type="4")" + ends,
                  R"(type="-1")" + ends,
                  ends,
              })),
              LoadResult::Complete);
    EXPECT_TRUE(loading.scene.joints.empty() && !loading.scene.preview.showsJoints);
}

// A rounded rectangle, whose corners get more points the higher the precision is, at the composition's centre.
TEST(SettingsReader, ShapesAreReadAnewForTheirMeshSettings) {
    Imported imported(shapeLayer(group(rect("[80,40]", "[0,0]", "15") + "," + fill("[1,0,0,1]"))));
    SnapshotStrip strip;
    const LayerAccess layers{
        1, [&](std::int32_t index) { (void)refreshBody(imported.hosted.context(), imported.scene, index); }};
    const auto load = [&](const std::string& mesh) {
        const std::string body = "<body layerID=\"" + std::to_string(imported.body().layerID) +
                                 R"(" colorR="0" colorG="1" colorB="0" positionX="0.5" positionY="0" )" + mesh + "/>";
        EXPECT_EQ(readSettings(settingsFile(globalSections + "<bodies>" + body + "</bodies>"), "file.xml",
                               {imported.scene, strip, layers}, nullptr),
                  LoadResult::Complete);
        EXPECT_EQ(imported.body().position, b2Vec2(0.5f, 0));
        EXPECT_EQ(imported.body().color.green, 1) << "not the shape's";
        return piecesText(imported.body());
    };
    const std::string before = piecesText(imported.body());
    const std::string finer = load(R"(meshPrecision="8")");
    EXPECT_NE(finer, before);
    EXPECT_EQ(load(""), before) << "back from other settings to the default ones";
    EXPECT_EQ(load(R"(meshPrecision="8")"), finer);
}

} // namespace
} // namespace jostle
