#include "persistence/attribute_tables.h"

#include <array>

namespace jostle {

namespace {

// What a number box of the panels can hold.
constexpr double panelLimit = 16777200;
// Positions and angles come from drags and from files, not from a number box: anything a float holds well.
constexpr double spaceLimit = 1e6;

constexpr std::array<std::string_view, 6> typeNames{"Static", "Kinematic", "Dynamic", "Dormant", "AEmatic", "Dead"};

constexpr std::array<std::string_view, 3> magnetismNames{"None", "Attracts", "Repels"};

constexpr std::array bodyTable{
    attribute<&BodyRecord::type>("type", 0, 5, typeNames),
    attribute<&BodyRecord::density>("density", 0.001, panelLimit),
    attribute<&BodyRecord::friction>("friction", 0, panelLimit),
    attribute<&BodyRecord::restitution>("restitution", 0, panelLimit),
    attribute<&BodyRecord::linearVelocityMagnitude>("linearVelocityMagnitude", -panelLimit, panelLimit),
    attribute<&BodyRecord::linearVelocityDirection>("linearVelocityDirection", -panelLimit, panelLimit),
    attribute<&BodyRecord::angularVelocity>("angularVelocity", -panelLimit, panelLimit),
    attribute<&BodyRecord::linearDamping>("linearDamping", 0, panelLimit),
    attribute<&BodyRecord::angularDamping>("angularDamping", 0, panelLimit),
    attribute<&BodyRecord::aematicDamping>("aematicDamping", 0, panelLimit),
    attribute<&BodyRecord::aematicTension>("aematicTension", 0, panelLimit),
    attribute<&BodyRecord::categoryBits>("categoryBits", 0, 65535),
    attribute<&BodyRecord::maskBits>("maskBits", 0, 65535),
    flagAttribute<&BodyRecord::fixedRotation>("fixedRotation"),
    attribute<&BodyRecord::gravityScale>("gravityScale", -panelLimit, panelLimit),
    attribute<&BodyRecord::magnetismType>("magnetismType", 0, 2, magnetismNames),
    attribute<&BodyRecord::magnetIntensity>("magnetIntensity", -panelLimit, panelLimit),
    attribute<&BodyRecord::magnetDistance>("magnetDistance", 0, panelLimit),
    flagAttribute<&BodyRecord::acceptMagnetism>("acceptMagnetism"),
    attribute<&BodyRecord::position, &b2Vec2::x>("positionX", -spaceLimit, spaceLimit),
    attribute<&BodyRecord::position, &b2Vec2::y>("positionY", -spaceLimit, spaceLimit),
    attribute<&BodyRecord::angle>("angle", -spaceLimit, spaceLimit),
    attribute<&BodyRecord::aematicAnchor, &b2Vec2::x>("aematicAnchorX", -spaceLimit, spaceLimit),
    attribute<&BodyRecord::aematicAnchor, &b2Vec2::y>("aematicAnchorY", -spaceLimit, spaceLimit),
};

constexpr std::array solverTable{
    attribute<&GlobalProperties::timeDivider>("timeDivider", 0.01, panelLimit),
    attribute<&GlobalProperties::tolerance>("tolerance", 0.001, panelLimit),
    attribute<&GlobalProperties::stepsPerFrame>("stepsPerFrame", 1, 10),
};

constexpr std::array gravityTable{
    attribute<&GlobalProperties::magnitude>("magnitude", -panelLimit, panelLimit),
    attribute<&GlobalProperties::direction>("direction", -panelLimit, panelLimit),
    flagAttribute<&GlobalProperties::takeValueFrom>("takeValueFrom"),
    attribute<&GlobalProperties::layerIndex>("layerIndex", 0, panelLimit),
};

} // namespace

std::span<const Attribute<BodyRecord>> bodyAttributes() {
    return bodyTable;
}

std::span<const Attribute<GlobalProperties>> solverAttributes() {
    return solverTable;
}

std::span<const Attribute<GlobalProperties>> gravityAttributes() {
    return gravityTable;
}

} // namespace jostle
