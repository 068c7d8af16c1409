#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "persistence/xml_elements.h"
#include "simulation/scene.h"

/// For this room alone.
namespace jostle {

/// Which numbers the joints get that are read.
enum class JointRows {
    OfKept, ///< rows follow each other
    OfAll,  ///< a joint that is dropped leaves a gap
};

/// The joints of a "joints" element, in its order; none if the element is missing.
///
/// Bodies are found by their layers' identifiers. Dropped without a word is a joint whose type is missing or unknown,
/// whose indices lie outside the list of bodies, or whose layers are no bodies.
/// @param bodies  that the joints will join; a piston's anchor is the position that its body A has there
[[nodiscard]] std::vector<JointRecord> readJoints(const XmlElement* element, std::span<const BodyRecord> bodies,
                                                  JointRows rows);

} // namespace jostle
