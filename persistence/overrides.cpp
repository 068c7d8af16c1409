#include "persistence/overrides.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "persistence/apply_settings.h"
#include "persistence/attribute_tables.h"
#include "persistence/attribute_text.h"
#include "persistence/near_names.h"

namespace jostle {

namespace {

std::string didYouMean(std::string_view name, std::span<const std::string> candidates) {
    const std::vector<std::string> near = nearNames(name, candidates);
    std::string text;
    for (const std::string& candidate : near) {
        text.append(text.empty() ? "; did you mean \"" : " or \"").append(candidate).append("\"");
    }
    return text.empty() ? text : text + "?";
}

template<class Record>
std::vector<std::string> namesOf(std::span<const Attribute<Record>> table) {
    std::vector<std::string> names;
    for (const Attribute<Record>& row : table) {
        names.emplace_back(row.name);
    }
    return names;
}

std::string joined(std::span<const std::string> names) {
    std::string text;
    for (const std::string& name : names) {
        text.append(text.empty() ? "" : ", ").append(name);
    }
    return text;
}

/// Sets an attribute in each of some records, or in none.
template<class Record>
std::optional<std::string> setInAll(const SettingOverride& setting, std::span<const Attribute<Record>> table,
                                    std::span<Record* const> records) {
    const auto row = std::find_if(table.begin(), table.end(), [&](const Attribute<Record>& candidate) {
        return equalWithoutCase(candidate.name, setting.attribute);
    });
    if (row == table.end()) {
        const std::vector<std::string> names = namesOf(table);
        std::string text = "there is no setting \"" + setting.attribute + "\" of \"" + setting.target + "\"";
        const std::string near = didYouMean(setting.attribute, names);
        return text + (near.empty() ? "; there are " + joined(names) : near);
    }
    for (Record* record : records) {
        // The value is the same for all, so a refusal comes with the first, before anything was written.
        if (const std::optional<std::string> wanted = setFromText(*record, *row, setting.value)) {
            return "\"" + setting.value + "\" is no value of " + setting.target + "." + std::string(row->name) +
                   ": it takes " + *wanted;
        }
    }
    return std::nullopt;
}

/// The layer that a number from 1 names; nothing if the text is no such number.
std::optional<std::size_t> layerByNumber(std::string_view text, std::size_t layerCount) {
    std::size_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || stop != text.data() + text.size() || number < 1 || number > layerCount) {
        return std::nullopt;
    }
    return number - 1;
}

/// The layers that a name, a number or "*" means; a name goes before a number.
std::vector<std::size_t> layersNamed(std::string_view target, std::span<const NamedLayer> layers) {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < layers.size(); ++i) {
        if (target == "*" ? layers[i].whyNoBody.empty() : layers[i].name == target) {
            found.push_back(i);
        }
    }
    if (found.empty() && target != "*") {
        if (const std::optional<std::size_t> index = layerByNumber(target, layers.size())) {
            found.push_back(*index);
        }
    }
    return found;
}

std::string unknownLayer(const SettingOverride& setting, std::span<const NamedLayer> layers) {
    std::vector<std::string> names;
    for (const NamedLayer& layer : layers) {
        if (layer.whyNoBody.empty()) {
            names.push_back(layer.name);
        }
    }
    names.emplace_back("solver");
    names.emplace_back("gravity");
    const std::string near = didYouMean(setting.target, names);
    return "there is no layer \"" + setting.target + "\"" +
           (near.empty() ? "; give a layer's name, its number from 1 to " + std::to_string(layers.size()) + ", or *"
                         : near);
}

std::optional<std::string> applyToBodies(const SettingOverride& setting, Scene& scene,
                                         std::span<const NamedLayer> layers) {
    const std::vector<std::size_t> found = layersNamed(setting.target, layers);
    if (found.empty() && setting.target != "*") {
        return unknownLayer(setting, layers);
    }
    std::vector<BodyRecord*> records;
    for (std::size_t i = 0; i < scene.bodies.size(); ++i) {
        const auto layer = static_cast<std::size_t>(scene.layerIndices[i]);
        if (std::find(found.begin(), found.end(), layer) != found.end()) {
            records.push_back(&scene.bodies[i]);
        }
    }
    if (records.empty() && !found.empty()) {
        return "layer \"" + layers[found.front()].name + "\" is no body: it is " + layers[found.front()].whyNoBody;
    }
    // Without a body to write to, the key and the value are still looked at.
    BodyRecord unused;
    if (records.empty()) {
        records.push_back(&unused);
    }
    std::optional<std::string> error = setInAll<BodyRecord>(setting, bodyAttributes(), records);
    for (BodyRecord* record : records) {
        if (record != &unused) {
            settleBody(scene, *record);
        }
    }
    return error;
}

std::optional<std::string> applyToGlobals(const SettingOverride& setting, Scene& scene,
                                          std::span<const Attribute<GlobalProperties>> table, std::size_t layerCount) {
    const int layerBefore = scene.globals.layerIndex;
    GlobalProperties* const globals = &scene.globals;
    if (std::optional<std::string> error =
            setInAll<GlobalProperties>(setting, table, std::span<GlobalProperties* const>(&globals, 1))) {
        return error;
    }
    if (scene.globals.layerIndex != layerBefore && static_cast<std::size_t>(scene.globals.layerIndex) >= layerCount) {
        scene.globals.layerIndex = layerBefore;
        return "gravity.layerIndex counts layers from 0, and there are " + std::to_string(layerCount);
    }
    return std::nullopt;
}

} // namespace

std::optional<SettingOverride> parseOverride(std::string_view text) {
    const std::size_t equals = text.rfind('=');
    const std::size_t dot = equals == std::string_view::npos ? equals : text.rfind('.', equals);
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == equals) {
        return std::nullopt;
    }
    return SettingOverride{std::string(text.substr(0, dot)), std::string(text.substr(dot + 1, equals - dot - 1)),
                           std::string(text.substr(equals + 1))};
}

std::optional<std::string> applyOverride(const SettingOverride& setting, Scene& scene,
                                         std::span<const NamedLayer> layers) {
    if (setting.target == "solver") {
        return applyToGlobals(setting, scene, solverAttributes(), layers.size());
    }
    if (setting.target == "gravity") {
        return applyToGlobals(setting, scene, gravityAttributes(), layers.size());
    }
    return applyToBodies(setting, scene, layers);
}

} // namespace jostle
