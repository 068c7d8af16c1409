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

PreviewProperties previewOf(const QuickPreset& preset) {
    return {preset.zoom, preset.panX, preset.panY, preset.bgColor, false};
}

GlobalProperties globalsOf(const QuickPreset& preset) {
    GlobalProperties globals;
    globals.timeDivider = static_cast<double>(preset.timeDivider);
    globals.stepsPerFrame = preset.stepsPerFrame;
    globals.tolerance = static_cast<double>(preset.tolerance);
    globals.magnitude = static_cast<double>(preset.magnitude);
    globals.direction = static_cast<double>(preset.direction);
    globals.takeValueFrom = preset.takeValueFrom;
    globals.layerIndex = preset.layerIndex;
    return globals;
}

void setGlobals(QuickPreset& preset, const PreviewProperties& preview, const GlobalProperties& globals) {
    preset.zoom = preview.zoom;
    preset.panX = preview.panX;
    preset.panY = preview.panY;
    preset.bgColor = preview.bgColor;
    preset.timeDivider = static_cast<float>(globals.timeDivider);
    preset.stepsPerFrame = globals.stepsPerFrame;
    preset.tolerance = static_cast<float>(globals.tolerance);
    preset.magnitude = static_cast<float>(globals.magnitude);
    preset.direction = static_cast<float>(globals.direction);
    preset.takeValueFrom = globals.takeValueFrom;
    preset.layerIndex = globals.layerIndex;
}

QuickPreset takeSnapshot(const Scene& scene) {
    QuickPreset preset;
    setGlobals(preset, scene.preview, scene.globals);
    preset.bodies = copiedForSnapshot(scene.bodies);
    preset.joints = scene.joints;
    for (JointRecord& joint : preset.joints) {
        joint.joint = nullptr;
    }
    return preset;
}

QuickPreset takeUndoSnapshot(const Scene& scene) {
    QuickPreset preset = takeSnapshot(scene);
    preset.layerIndex = preset.takeValueFrom ? preset.layerIndex : 0;
    return preset;
}

void applySnapshot(const QuickPreset& preset, Scene& scene, const LayerAccess& layers) {
    const GlobalProperties values = globalsOf(preset);
    scene.preview.zoom = zoomSld.positionOf(preset.zoom);
    scene.preview.panX = preset.panX;
    scene.preview.panY = preset.panY;
    scene.preview.bgColor = preset.bgColor;
    GlobalProperties& globals = scene.globals;
    globals.timeDivider = throughTimeDividerBox(timeDividerSld.through(values.timeDivider));
    globals.stepsPerFrame = substepsSld.positionOf(values.stepsPerFrame);
    globals.tolerance = collisionToleranceSld.through(values.tolerance);
    globals.magnitude = gravityMagnitudeSld.through(values.magnitude);
    globals.direction = gravityDirectionSld.through(values.direction);
    globals.takeValueFrom = globals.layerListEnabled = preset.takeValueFrom;
    chooseGravityLayer(globals, preset.layerIndex, layers.layerCount);
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
