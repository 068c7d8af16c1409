#pragma once

#include <string>
#include <vector>

#include "persistence/settings_reader.h"
#include "persistence/settings_writer.h"
#include "tests/host/imported.h"
#include "tests/support/scenes.h"

namespace jostle {

inline const std::string globalSections = "<preview/><solver/><gravity/>";

inline std::string settingsFile(const std::string& sections, const std::string& version = "") {
    return "<?xml version=\"1.0\"?><JostleSettings" + version + ">" + sections + "</JostleSettings>";
}

/// A file of one body, of layer 1, with these attributes.
inline std::string bodyFile(const std::string& attributes, const std::string& more = "") {
    return settingsFile(globalSections + "<bodies><body layerID=\"1\" " + attributes + "/></bodies>" + more);
}

/// A scene of two boxes, of the layers 1 and 2, in a composition of three layers, and what a load does to it.
struct Loading {
    Loading() {
        scene = emptyScene(25);
        addBox(scene, {-1, 0}, 1, 1);
        addBox(scene, {2, 0.5f}, 1, 1);
        scene.bodies[0].color = {1.0, 0.25, 0.5, 0.75};
    }

    LoadResult load(const std::string& text) {
        const LayerAccess layers{3, [this](std::int32_t index) { refreshed.push_back(index); }};
        return readSettings(text, "file.xml", {scene, strip, layers}, &messages);
    }
    [[nodiscard]] std::string save() const { return settingsText(scene, strip.items()); }
    [[nodiscard]] BodyRecord& body(std::size_t index = 0) { return scene.bodies.at(index); }

    Scene scene;
    SnapshotStrip strip;
    MessageLog messages;
    std::vector<std::int32_t> refreshed; ///< bodies whose layers were read anew
};

} // namespace jostle
