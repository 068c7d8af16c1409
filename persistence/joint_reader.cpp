#include "persistence/joint_reader.h"

#include <unordered_map>

#include <box2d/b2_math.h>

#include "persistence/attribute_tables.h"

namespace jostle {

namespace {

using IndexByLayer = std::unordered_map<std::int32_t, std::int32_t>;

/// The first body of each layer.
IndexByLayer indexByLayer(std::span<const BodyRecord> bodies) {
    IndexByLayer indices;
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        indices.emplace(bodies[i].layerID, static_cast<std::int32_t>(i));
    }
    return indices;
}

bool isBodyIndex(const XmlElement& element, std::string_view name, std::size_t bodyCount) {
    const std::int32_t index = integerAttribute(element, name).value_or(-1);
    return index >= 0 && static_cast<std::size_t>(index) < bodyCount;
}

/// The body that an attribute means by its layer; -1 if there is none.
std::int32_t bodyOfLayer(const XmlElement& element, std::string_view name, const IndexByLayer& indices) {
    const auto found = indices.find(integerAttribute(element, name).value_or(-1));
    return found == indices.end() ? -1 : found->second;
}

b2Vec2 inWorld(const BodyRecord& body, b2Vec2 local) {
    return b2Mul(b2Transform(body.position, b2Rot(body.angle)), local);
}

/// What follows from the bodies and from what was read.
void complete(JointRecord& joint, const BodyRecord& a, const BodyRecord& b, bool hasLength) {
    if (joint.type == JointType::Piston) {
        joint.anchor = a.position; // the file has none
    }
    if (joint.type == JointType::Spring && !hasLength) {
        joint.desiredLength = b2Distance(inWorld(a, joint.anchorA), inWorld(b, joint.anchorB));
    }
    joint.anchorStored = joint.anchor;
    joint.anchorAStored = joint.anchorA;
    joint.anchorBStored = joint.anchorB;
    joint.axisStored = joint.axis;
}

std::optional<JointRecord> readJoint(const XmlElement& element, std::span<const BodyRecord> bodies,
                                     const IndexByLayer& indices) {
    // The indices choose nothing, and yet must be good: files from before the layers' identifiers have nothing else.
    if (!isBodyIndex(element, "bodyAId", bodies.size()) || !isBodyIndex(element, "bodyBId", bodies.size())) {
        return std::nullopt;
    }
    const std::int32_t a = bodyOfLayer(element, "bodyALayerID", indices);
    const std::int32_t b = bodyOfLayer(element, "bodyBLayerID", indices);
    const std::int32_t type = integerAttribute(element, "type").value_or(-1);
    if (a < 0 || b < 0 || type < 0 || type > static_cast<std::int32_t>(JointType::Spring)) {
        return std::nullopt;
    }
    JointRecord joint = newJoint(static_cast<JointType>(type), a, b);
    ReadRules rules;
    rules.negativeIsTrue = true; // unlike the flags of bodies
    readAttributes(element, jointAttributes(joint.type), joint, rules);
    complete(joint, bodies[static_cast<std::size_t>(a)], bodies[static_cast<std::size_t>(b)],
             attributeText(element, "desiredLength") != nullptr);
    return joint;
}

} // namespace

std::vector<JointRecord> readJoints(const XmlElement* element, std::span<const BodyRecord> bodies, JointRows rows) {
    std::vector<JointRecord> joints;
    if (element == nullptr) {
        return joints;
    }
    const IndexByLayer indices = indexByLayer(bodies);
    std::int32_t seen = 0;
    for (const XmlElement* each = element->FirstChildElement("joint"); each != nullptr;
         each = each->NextSiblingElement("joint"), ++seen) {
        if (std::optional<JointRecord> joint = readJoint(*each, bodies, indices)) {
            joint->row = rows == JointRows::OfAll ? seen : static_cast<std::int32_t>(joints.size());
            joints.push_back(std::move(*joint));
        }
    }
    return joints;
}

} // namespace jostle
