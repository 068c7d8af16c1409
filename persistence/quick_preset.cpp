#include "persistence/quick_preset.h"

#include <utility>

#include "persistence/apply_settings.h"
#include "persistence/panel_ranges.h"

namespace jostle {

namespace {

constexpr int addedColumnWidth = 55;
constexpr int loadedColumnWidth = 60;

std::size_t inPalette(std::size_t index, std::size_t paletteSize) {
    return paletteSize == 0 ? 0 : index % paletteSize;
}

/// The record that stands for the same layer, first at the same place.
std::int32_t indexOfLayer(const Scene& scene, std::int32_t layerID, std::size_t guess) {
    if (guess < scene.bodies.size() && scene.bodies[guess].layerID == layerID) {
        return static_cast<std::int32_t>(guess);
    }
    for (std::size_t i = 0; i < scene.bodies.size(); ++i) {
        if (scene.bodies[i].layerID == layerID) {
            return static_cast<std::int32_t>(i);
        }
    }
    return -1;
}

} // namespace

std::vector<BodyRecord> copiedForSnapshot(std::span<const BodyRecord> bodies) {
    std::vector<BodyRecord> copies(bodies.begin(), bodies.end());
    for (BodyRecord& body : copies) {
        body.body = nullptr;
        body.aematicJoint = nullptr;
        body.outlines = {};
        body.connectedJoints = {};
    }
    return copies;
}

GlobalProperties inSinglePrecision(GlobalProperties globals) {
    for (double* const value : {&globals.timeDivider, &globals.tolerance, &globals.magnitude, &globals.direction}) {
        *value = static_cast<double>(static_cast<float>(*value));
    }
    return globals;
}

QuickPreset takeSnapshot(const Scene& scene) {
    QuickPreset preset;
    preset.preview = scene.preview;
    preset.globals = inSinglePrecision(scene.globals);
    preset.bodies = copiedForSnapshot(scene.bodies);
    preset.joints = scene.joints;
    for (JointRecord& joint : preset.joints) {
        joint.joint = nullptr;
    }
    return preset;
}

QuickPreset takeUndoSnapshot(const Scene& scene) {
    QuickPreset preset = takeSnapshot(scene);
    preset.globals.layerIndex = preset.globals.takeValueFrom ? preset.globals.layerIndex : 0;
    return preset;
}

void applySnapshot(const QuickPreset& preset, Scene& scene, const LayerAccess& layers) {
    const GlobalProperties& values = preset.globals;
    scene.preview.zoom = zoomSld.positionOf(preset.preview.zoom);
    scene.preview.panX = preset.preview.panX;
    scene.preview.panY = preset.preview.panY;
    scene.preview.bgColor = preset.preview.bgColor;
    GlobalProperties& globals = scene.globals;
    globals.timeDivider = throughTimeDividerBox(timeDividerSld.through(values.timeDivider));
    globals.stepsPerFrame = substepsSld.positionOf(values.stepsPerFrame);
    globals.tolerance = collisionToleranceSld.through(values.tolerance);
    globals.magnitude = gravityMagnitudeSld.through(values.magnitude);
    globals.direction = gravityDirectionSld.through(values.direction);
    globals.takeValueFrom = globals.layerListEnabled = values.takeValueFrom;
    chooseGravityLayer(globals, values.layerIndex, layers.layerCount);
    for (std::size_t i = 0; i < preset.bodies.size(); ++i) {
        applyBody(preset.bodies[i], indexOfLayer(scene, preset.bodies[i].layerID, i), scene, layers);
    }
    replaceJoints(scene, preset.joints);
}

void SnapshotStrip::add(QuickPreset preset, std::size_t paletteSize) {
    const std::int32_t number = items_.empty() ? 1 : items_.back().number + 1;
    items_.push_back(
        {number, inPalette(static_cast<std::size_t>(number), paletteSize), addedColumnWidth, std::move(preset)});
}

void SnapshotStrip::remove(std::span<const std::size_t> columns) {
    for (auto column = columns.rbegin(); column != columns.rend(); ++column) {
        if (*column < items_.size()) {
            items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(*column));
        }
    }
}

void SnapshotStrip::replace(std::vector<QuickPreset> presets, std::size_t paletteSize) {
    items_.clear();
    for (QuickPreset& preset : presets) {
        const std::size_t column = items_.size();
        items_.push_back({static_cast<std::int32_t>(column) + 1, inPalette(column, paletteSize), loadedColumnWidth,
                          std::move(preset)});
    }
}

} // namespace jostle
