#include "persistence/settings_limits.h"

#include <algorithm>

namespace jostle {

namespace {

// A document takes some 30 times the memory of its text if it is made of the smallest elements. Settings have elements
// of hundreds of characters, with attributes of a dozen or more, and never come near these.
constexpr std::ptrdiff_t mostElements = 1000000;
constexpr std::ptrdiff_t mostAttributes = 8000000;
// The library compares each attribute with all those before it.
constexpr std::ptrdiff_t mostAttributesOfOne = 1000;

// A file may have many empty snapshots, each of which takes the memory of all bodies of the scene.
constexpr std::size_t mostSnapshots = 1000;
constexpr std::size_t mostBodiesInSnapshots = 500000;

/// Whether no two "<" have more than so many "=" between them.
bool hasShortElements(std::string_view text) {
    while (!text.empty()) {
        const std::string_view element = text.substr(0, text.find('<', 1));
        if (std::count(element.begin(), element.end(), '=') > mostAttributesOfOne) {
            return false;
        }
        text.remove_prefix(element.size());
    }
    return true;
}

} // namespace

std::optional<std::string> excessOfText(std::string_view text) {
    if (text.size() > maximumSettingsBytes) {
        return "more than " + std::to_string(maximumSettingsBytes >> 20U) + " MB";
    }
    if (std::count(text.begin(), text.end(), '<') > mostElements) {
        return "more than " + std::to_string(mostElements) + " elements";
    }
    if (std::count(text.begin(), text.end(), '=') > mostAttributes) {
        return "more than " + std::to_string(mostAttributes) + " attributes";
    }
    if (!hasShortElements(text)) {
        return "an element of more than " + std::to_string(mostAttributesOfOne) + " attributes";
    }
    return std::nullopt;
}

std::optional<std::string> excessOfSnapshots(std::size_t snapshots, std::size_t bodies) {
    const std::size_t most = std::min(mostSnapshots, mostBodiesInSnapshots / std::max<std::size_t>(bodies, 1));
    if (snapshots <= most) {
        return std::nullopt;
    }
    return std::to_string(snapshots) + " snapshots, of which a scene of " + std::to_string(bodies) +
           (bodies == 1 ? " body" : " bodies") + " can have " + std::to_string(most);
}

} // namespace jostle
