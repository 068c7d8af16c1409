// Reads arbitrary bytes as a settings file over a small scene. What loads must run with finite places, be written, read
// again with the same bodies, joints and snapshots, and be put back by its snapshots. Start from files that
// `jostle settings` writes, and from those of examples/.

#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>

#include <box2d/b2_body.h>

#include "persistence/quick_preset.h"
#include "persistence/settings_reader.h"
#include "persistence/settings_writer.h"
#include "simulation/simulation_clock.h"
#include "tests/support/scenes.h"

namespace {

using namespace jostle;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// Boxes and a circle of the layers 1 to 4, the last one on a path that is no surface.
Scene smallScene() {
    Scene scene = emptyScene(25);
    addBox(scene, {0, 2}, 8, 0.5f, BodyType::Static);
    addBox(scene, {-1, 0}, 1, 1);
    addBody(scene, {1, 0}, {circleShape(0.5f)});
    addBody(scene, {2, -1}, {outlineShape({{0, 0}, {1, 0}, {1, 1}}, false)});
    return scene;
}

/// The part of a file that the panels' sliders leave alone.
std::string_view bodiesAndJoints(std::string_view text) {
    const std::size_t begin = text.find("<bodies");
    return text.substr(begin, text.find("<presets") - begin);
}

void requireUsable(const GlobalProperties& globals) {
    require(globals.timeDivider >= 0.01 && globals.timeDivider <= 16777200);
    require(globals.stepsPerFrame >= 1 && globals.stepsPerFrame <= 10);
    require(globals.tolerance >= 0.001 && globals.tolerance <= 100);
    require(globals.magnitude >= 0 && globals.magnitude <= 50);
    require(globals.direction >= 0 && globals.direction <= 360);
    require(globals.layerIndex >= 0 && globals.layerIndex < 3);
}

void play(Scene scene) {
    StillLayers layers;
    FreePacer pacer;
    SimulationClock clock(scene, layers, pacer);
    clock.restart();
    clock.play();
    for (int frame = 0; frame < 3; ++frame) {
        clock.tick();
    }
    for (const BodyRecord& body : scene.bodies) {
        const b2Vec2 place = body.body->GetPosition();
        require(std::isfinite(place.x) && std::isfinite(place.y) && std::isfinite(body.body->GetAngle()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    Scene scene = smallScene();
    SnapshotStrip strip;
    const LayerAccess layers{3, {}};
    const LoadResult result = readSettings(text, "input", {scene, strip, layers}, nullptr);
    requireUsable(scene.globals);
    if (result != LoadResult::Complete) {
        require(strip.items().empty() && scene.joints.empty());
        return 0;
    }
    const std::string saved = settingsText(scene, strip.items());
    Scene again = smallScene();
    SnapshotStrip stripAgain;
    require(readSettings(saved, "input", {again, stripAgain, layers}, nullptr) == LoadResult::Complete);
    require(bodiesAndJoints(settingsText(again, stripAgain.items())) == bodiesAndJoints(saved));
    require(stripAgain.items().size() == strip.items().size());
    play(scene);
    for (const SnapshotStrip::Item& item : strip.items()) {
        applySnapshot(item.preset, scene, layers);
        requireUsable(scene.globals);
    }
    play(scene);
    return 0;
}
