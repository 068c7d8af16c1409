#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "persistence/layer_access.h"
#include "simulation/scene.h"

namespace jostle {

/// A scene snapshot: a copy of the whole setup. Of the bodies' records it has all but what belongs to a world or
/// follows from the layer: their shapes, and their lists of joints.
struct QuickPreset {
    PreviewProperties preview; ///< the view option for joints is no part of it
    GlobalProperties globals;  ///< in single precision; whether the layer can be chosen is no part of it
    std::vector<BodyRecord> bodies;
    std::vector<JointRecord> joints;
};

/// The setup as it is.
[[nodiscard]] QuickPreset takeSnapshot(const Scene& scene);

/// The setup as it is, for going back to it after another was applied: the layer of gravity is in it only while gravity
/// is taken from it.
[[nodiscard]] QuickPreset takeUndoSnapshot(const Scene& scene);

/// Puts a setup back. Global values go through the panels' sliders, which narrows them. The world must be rebuilt
/// afterwards.
void applySnapshot(const QuickPreset& preset, Scene& scene, const LayerAccess& layers);

/// Copies of records as a snapshot keeps them.
[[nodiscard]] std::vector<BodyRecord> copiedForSnapshot(std::span<const BodyRecord> bodies);

/// Global values as a snapshot keeps them.
[[nodiscard]] GlobalProperties inSinglePrecision(GlobalProperties globals);

/// The snapshots of a scene in their order, each with what stands in its place in the strip above the preview.
class SnapshotStrip {
public:
    struct Item {
        std::int32_t number = 1;
        std::size_t colorIndex = 0; ///< in the palette, the list of the bodies' colours; 0 if that is empty
        int columnWidth = 0;        ///< pixels
        QuickPreset preset;

        /// "#" and the number.
        [[nodiscard]] std::string label() const { return "#" + std::to_string(number); }
    };

    [[nodiscard]] const std::vector<Item>& items() const { return items_; }

    /// Appends a snapshot, numbered one above the last in the strip.
    /// @param paletteSize  colours in the palette
    void add(QuickPreset preset, std::size_t paletteSize);

    /// Removes snapshots; the others keep their numbers.
    /// @param columns  in rising order
    void remove(std::span<const std::size_t> columns);

    /// Puts the snapshots of a file in place of all, numbered from 1. Unlike those that were added, each has the colour
    /// of the number before its own, and a wider column.
    void replace(std::vector<QuickPreset> presets, std::size_t paletteSize);

private:
    std::vector<Item> items_;
};

} // namespace jostle
