#include "persistence/settings_reader.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "persistence/apply_settings.h"
#include "persistence/attribute_tables.h"
#include "persistence/joint_reader.h"
#include "persistence/settings_limits.h"
#include "persistence/settings_writer.h"
#include "persistence/xml_elements.h"

namespace jostle {

namespace {

constexpr ReadRules slidersRules{false, true};

void inform(MessageSink* messages, std::string_view text) {
    if (messages != nullptr) {
        messages->inform(messageTitle, text);
    }
}

bool isOtherVersion(const XmlElement& root) {
    const std::optional<std::int32_t> major = integerAttribute(root, "majorVersion");
    const std::optional<std::int32_t> minor = integerAttribute(root, "minorVersion");
    return major && minor && !(*major == settingsMajorVersion && *minor == settingsMinorVersion);
}

std::size_t snapshotCount(const XmlElement& root) {
    const XmlElement* const presets = root.FirstChildElement("presets");
    std::size_t count = 0;
    for (const XmlElement* each = presets ? presets->FirstChildElement("preset") : nullptr; each != nullptr;
         each = each->NextSiblingElement("preset")) {
        ++count;
    }
    return count;
}

/// Gravity as a file has it; its layer is looked at only if it is taken from one.
void readGravity(const XmlElement& element, std::int32_t layerCount, GlobalProperties& globals) {
    GlobalProperties read = globals;
    readAttributes(element, gravityAttributes(), read, slidersRules);
    globals.magnitude = read.magnitude;
    globals.direction = read.direction;
    globals.takeValueFrom = read.takeValueFrom;
    if (read.takeValueFrom && attributeText(element, "takeValueFrom") != nullptr) {
        globals.layerListEnabled = true;
        chooseGravityLayer(globals, read.layerIndex, layerCount);
    }
}

/// @return whether all three sections are there; those before the first that is missing are read
bool readGlobals(const XmlElement& root, Scene& scene, std::int32_t layerCount) {
    const XmlElement* const preview = root.FirstChildElement("preview");
    if (preview == nullptr) {
        return false;
    }
    readAttributes(*preview, previewAttributes(), scene.preview, slidersRules);
    const XmlElement* const solver = root.FirstChildElement("solver");
    if (solver == nullptr) {
        return false;
    }
    readAttributes(*solver, solverAttributes(), scene.globals, slidersRules);
    const XmlElement* const gravity = root.FirstChildElement("gravity");
    if (gravity == nullptr) {
        return false;
    }
    readGravity(*gravity, layerCount, scene.globals);
    return true;
}

using BodyElements = std::unordered_map<std::int32_t, const XmlElement*>;

/// The first element of each layer.
BodyElements bodyElements(const XmlElement* bodies) {
    BodyElements elements;
    for (const XmlElement* each = bodies ? bodies->FirstChildElement("body") : nullptr; each != nullptr;
         each = each->NextSiblingElement("body")) {
        elements.emplace(integerAttribute(*each, "layerID").value_or(0), each);
    }
    return elements;
}

/// A body's settings as its element has them, defaults for what is missing. A colour has none, so the body's own stays.
BodyRecord readBody(const XmlElement& element, const BodyRecord& present) {
    BodyRecord body;
    body.color = present.color;
    readAttributes(element, formerBodyAttributes(), body);
    readAttributes(element, bodyAttributes(), body); // newer names win
    return body;
}

/// @return how many bodies of the scene are in the file
int readBodies(const BodyElements& elements, Scene& scene, const LayerAccess& layers) {
    int matched = 0;
    for (std::int32_t i = 0; i < scene.bodyCount(); ++i) {
        const BodyRecord& present = scene.bodies[static_cast<std::size_t>(i)];
        const auto found = elements.find(present.layerID);
        if (found != elements.end()) {
            applyBody(readBody(*found->second, present), i, scene, layers);
            ++matched;
        }
    }
    return matched;
}

/// The sections of a snapshot up to the first that is missing; the rest keep their defaults.
void readSnapshotGlobals(const XmlElement& element, QuickPreset& preset) {
    const XmlElement* const preview = element.FirstChildElement("preview");
    const XmlElement* const solver = preview ? element.FirstChildElement("solver") : nullptr;
    const XmlElement* const gravity = solver ? element.FirstChildElement("gravity") : nullptr;
    GlobalProperties& globals = preset.globals;
    if (preview != nullptr) {
        readAttributes(*preview, previewAttributes(), preset.preview);
    }
    if (solver != nullptr) {
        readAttributes(*solver, solverAttributes(), globals);
    }
    if (gravity != nullptr) {
        readAttributes(*gravity, gravityAttributes(), globals);
        globals.layerIndex = globals.takeValueFrom ? globals.layerIndex : GlobalProperties{}.layerIndex;
    }
    globals = inSinglePrecision(globals);
}

QuickPreset readSnapshot(const XmlElement& element, const Scene& scene) {
    QuickPreset preset;
    readSnapshotGlobals(element, preset);
    preset.bodies = copiedForSnapshot(scene.bodies);
    const BodyElements elements = bodyElements(element.FirstChildElement("bodies"));
    for (BodyRecord& body : preset.bodies) {
        const auto found = elements.find(body.layerID);
        if (found != elements.end()) {
            copySettings(readBody(*found->second, body), body);
        }
    }
    preset.joints = readJoints(element.FirstChildElement("joints"), preset.bodies, JointRows::OfAll);
    return preset;
}

std::vector<QuickPreset> readSnapshots(const XmlElement& root, const Scene& scene) {
    std::vector<QuickPreset> presets;
    const XmlElement* const element = root.FirstChildElement("presets");
    for (const XmlElement* each = element ? element->FirstChildElement("preset") : nullptr; each != nullptr;
         each = each->NextSiblingElement("preset")) {
        presets.push_back(readSnapshot(*each, scene));
    }
    return presets;
}

} // namespace

void reportFile(std::string_view shownPath, std::string_view what, MessageSink* messages) {
    inform(messages, "The settings file '" + std::string(shownPath) + "' " + std::string(what) + ".");
}

LoadResult readSettings(std::string_view text, std::string_view shownPath, const SettingsTarget& target,
                        MessageSink* messages) {
    Scene& scene = target.scene;
    if (const std::optional<std::string> excess = excessOfText(text)) {
        reportFile(shownPath, "has " + *excess, messages);
        return LoadResult::Unreadable;
    }
    tinyxml2::XMLDocument document;
    if (!parseXml(text, document)) {
        reportFile(shownPath, isUnreadable, messages);
        return LoadResult::Unreadable;
    }
    const XmlElement* const root = document.FirstChildElement("JostleSettings");
    if (root == nullptr) {
        inform(messages, "Unsupported settings format.");
        return LoadResult::NotSettings;
    }
    if (const std::optional<std::string> excess = excessOfSnapshots(snapshotCount(*root), scene.bodies.size())) {
        reportFile(shownPath, "has " + *excess, messages);
        return LoadResult::Unreadable;
    }
    if (isOtherVersion(*root)) {
        inform(messages, "This file was created with a different version of Jostle. Some errors might occur during "
                         "import.");
    }
    if (!readGlobals(*root, scene, target.layers.layerCount)) {
        inform(messages, "Unsupported settings format (Global Settings).");
        return LoadResult::GlobalsMissing;
    }
    const XmlElement* const bodies = root->FirstChildElement("bodies");
    if (bodies == nullptr || bodies->FirstChildElement("body") == nullptr) {
        inform(messages, "Unsupported settings format (Bodies Settings)");
        return LoadResult::BodiesMissing;
    }
    if (readBodies(bodyElements(bodies), scene, target.layers) == 0) {
        resetGlobals(scene);
        return LoadResult::NoBodyMatched;
    }
    replaceJoints(scene, readJoints(root->FirstChildElement("joints"), scene.bodies, JointRows::OfKept));
    target.snapshots.replace(readSnapshots(*root, scene), scene.bodies.size());
    return LoadResult::Complete;
}

} // namespace jostle
