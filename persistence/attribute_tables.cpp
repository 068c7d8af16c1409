#include "persistence/attribute_tables.h"

#include <algorithm>
#include <array>

#include "persistence/panel_ranges.h"

namespace jostle {

namespace {

// What a number box of the panels can hold.
constexpr double panelLimit = greatestInBox;
// Positions and angles come from drags and from files, not from a number box: anything a float holds well.
constexpr double spaceLimit = 1e6;
// Each curve gets one point more than this; the panel offers 10.
constexpr double greatestPrecision = 100;
// Metres, of a line that bodies collide with.
constexpr double leastLineWidth = 0.005;
constexpr double greatestLineWidth = 0.065;

constexpr std::array<std::string_view, 6> typeNames{"Static", "Kinematic", "Dynamic", "Dormant", "AEmatic", "Dead"};

constexpr std::array<std::string_view, 3> magnetismNames{"None", "Attracts", "Repels"};

constexpr Attribute<BodyRecord> meshPrecisionAttribute() {
    auto row = attribute<&BodyRecord::meshPrecision>("meshPrecision", 0, greatestPrecision);
    row.write = [](BodyRecord& body, double value) {
        body.meshPrecision = static_cast<std::int32_t>(std::clamp(value, 0.0, greatestPrecision));
    };
    return row;
}

constexpr Attribute<BodyRecord> lineWidthAttribute() {
    auto row = attribute<&BodyRecord::openShapeLineWidth>("openShapeLineWidth", leastLineWidth, greatestLineWidth);
    row.write = [](BodyRecord& body, double value) {
        body.openShapeLineWidth = static_cast<float>(std::clamp(value, leastLineWidth, greatestLineWidth));
    };
    return row;
}

/// A channel from 0 to 1 of a colour that is held in bytes.
template<auto channel>
constexpr Attribute<PreviewProperties> backgroundAttribute(std::string_view name) {
    const auto read = [](const PreviewProperties& preview) { return preview.bgColor.*channel / 255.0; };
    const auto write = [](PreviewProperties& preview, double value) {
        preview.bgColor.*channel = static_cast<int>(std::clamp(value, 0.0, 1.0) * 255.0);
    };
    return {name, AttributeForm::Real, 0, 1, read, write};
}

/// Held as a whole number of percent, but written as a real number.
constexpr Attribute<PreviewProperties> zoomAttribute() {
    auto row = attribute<&PreviewProperties::zoom>("zoom", zoomSld.least, zoomSld.greatest);
    row.form = AttributeForm::Real;
    return throughPanel([](double value) { return zoomSld.through(value); }, row);
}

constexpr std::array bodyTable{
    attribute<&BodyRecord::type>("type", 0, 5, typeNames),
    attribute<&BodyRecord::density>("density", 0.001, panelLimit),
    attribute<&BodyRecord::friction>("friction", 0, panelLimit),
    attribute<&BodyRecord::restitution>("restitution", 0, panelLimit),
    meshPrecisionAttribute(),
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
    flagAttribute<&BodyRecord::useConvexHull>("useConvexHull"),
    attribute<&BodyRecord::magnetismType>("magnetismType", 0, 2, magnetismNames),
    attribute<&BodyRecord::magnetIntensity>("magnetIntensity", -panelLimit, panelLimit),
    attribute<&BodyRecord::magnetDistance>("magnetDistance", 0, panelLimit),
    flagAttribute<&BodyRecord::acceptMagnetism>("acceptMagnetism"),
    lineWidthAttribute(),
    withNext(attribute<&BodyRecord::color, &Color::red>("colorR", 0, 1)),
    withNext(attribute<&BodyRecord::color, &Color::green>("colorG", 0, 1)),
    attribute<&BodyRecord::color, &Color::blue>("colorB", 0, 1),
    withNext(attribute<&BodyRecord::position, &b2Vec2::x>("positionX", -spaceLimit, spaceLimit)),
    attribute<&BodyRecord::position, &b2Vec2::y>("positionY", -spaceLimit, spaceLimit),
    attribute<&BodyRecord::angle>("angle", -spaceLimit, spaceLimit),
    withNext(attribute<&BodyRecord::aematicAnchor, &b2Vec2::x>("aematicAnchorX", -spaceLimit, spaceLimit)),
    attribute<&BodyRecord::aematicAnchor, &b2Vec2::y>("aematicAnchorY", -spaceLimit, spaceLimit),
};

constexpr std::array formerBodyTable{
    withNext(attribute<&BodyRecord::aematicAnchor, &b2Vec2::x>("anchoringX", -spaceLimit, spaceLimit)),
    attribute<&BodyRecord::aematicAnchor, &b2Vec2::y>("anchoringY", -spaceLimit, spaceLimit),
};

constexpr auto anchorAX = withNext(attribute<&JointRecord::anchorA, &b2Vec2::x>("anchorAX", -spaceLimit, spaceLimit));
constexpr auto anchorAY = attribute<&JointRecord::anchorA, &b2Vec2::y>("anchorAY", -spaceLimit, spaceLimit);
constexpr auto anchorBX = withNext(attribute<&JointRecord::anchorB, &b2Vec2::x>("anchorBX", -spaceLimit, spaceLimit));
constexpr auto anchorBY = attribute<&JointRecord::anchorB, &b2Vec2::y>("anchorBY", -spaceLimit, spaceLimit);
constexpr auto damping = attribute<&JointRecord::damping>("damping", -panelLimit, panelLimit);
constexpr auto enableLimit = flagAttribute<&JointRecord::enableLimit>("enableLimit");
constexpr auto enableMotor = flagAttribute<&JointRecord::enableMotor>("enableMotor");
constexpr auto motorSpeed = attribute<&JointRecord::motorSpeed>("motorSpeed", -panelLimit, panelLimit);
constexpr auto collideConnected = flagAttribute<&JointRecord::collideConnected>("collideConnected");

constexpr std::array distanceTable{
    anchorAX, anchorAY,         anchorBX, anchorBY, attribute<&JointRecord::frequency>("frequency", 0, panelLimit),
    damping,  collideConnected,
};

constexpr std::array pivotTable{
    withNext(attribute<&JointRecord::anchor, &b2Vec2::x>("anchorX", -spaceLimit, spaceLimit)),
    attribute<&JointRecord::anchor, &b2Vec2::y>("anchorY", -spaceLimit, spaceLimit),
    enableLimit,
    attribute<&JointRecord::lowerAngle>("lowerAngle", -panelLimit, 0),
    attribute<&JointRecord::upperAngle>("upperAngle", 0, panelLimit),
    enableMotor,
    motorSpeed,
    attribute<&JointRecord::maxMotorTorque>("maxMotorTorque", 0, panelLimit),
    collideConnected,
};

constexpr std::array pistonTable{
    withNext(attribute<&JointRecord::axis, &b2Vec2::x>("axisX", -spaceLimit, spaceLimit)),
    attribute<&JointRecord::axis, &b2Vec2::y>("axisY", -spaceLimit, spaceLimit),
    enableLimit,
    attribute<&JointRecord::lowerTranslation>("lowerTranslation", -panelLimit, panelLimit),
    attribute<&JointRecord::upperTranslation>("upperTranslation", -panelLimit, panelLimit),
    enableMotor,
    motorSpeed,
    attribute<&JointRecord::maxMotorForce>("maxMotorForce", 0, panelLimit),
    collideConnected,
};

constexpr std::array springTable{
    anchorAX,
    anchorAY,
    anchorBX,
    anchorBY,
    attribute<&JointRecord::springiness>("springiness", 0, panelLimit),
    damping,
    attribute<&JointRecord::desiredLength>("desiredLength", 0, panelLimit),
};

constexpr std::array previewTable{
    zoomAttribute(),
    attribute<&PreviewProperties::panX>("panX", -panelLimit, panelLimit),
    attribute<&PreviewProperties::panY>("panY", -panelLimit, panelLimit),
    withNext(backgroundAttribute<&ByteColor::red>("bgColorR")),
    withNext(backgroundAttribute<&ByteColor::green>("bgColorG")),
    backgroundAttribute<&ByteColor::blue>("bgColorB"),
};

/// Written with its fraction, which is then lost on reading.
constexpr Attribute<GlobalProperties> toleranceAttribute() {
    auto row = attribute<&GlobalProperties::tolerance>("tolerance", leastTolerance, panelLimit);
    row.wholeWhenRead = true;
    return throughPanel([](double value) { return collisionToleranceSld.through(value); }, row);
}

constexpr std::array solverTable{
    throughPanel(throughTimeDividerBox,
                 attribute<&GlobalProperties::timeDivider>("timeDivider", leastTimeDivider, panelLimit)),
    toleranceAttribute(),
    throughPanel([](double value) { return substepsSld.through(value); },
                 attribute<&GlobalProperties::stepsPerFrame>("stepsPerFrame", substepsSld.least, substepsSld.greatest)),
};

constexpr std::array gravityTable{
    throughPanel([](double value) { return gravityMagnitudeSld.through(value); },
                 attribute<&GlobalProperties::magnitude>("magnitude", -panelLimit, panelLimit)),
    throughPanel([](double value) { return gravityDirectionSld.through(value); },
                 attribute<&GlobalProperties::direction>("direction", -panelLimit, panelLimit)),
    flagAttribute<&GlobalProperties::takeValueFrom>("takeValueFrom"),
    attribute<&GlobalProperties::layerIndex>("layerIndex", 0, panelLimit),
};

} // namespace

std::span<const Attribute<BodyRecord>> bodyAttributes() {
    return bodyTable;
}

std::span<const Attribute<BodyRecord>> formerBodyAttributes() {
    return formerBodyTable;
}

std::span<const Attribute<JointRecord>> jointAttributes(JointType type) {
    switch (type) {
    case JointType::Distance:
        return distanceTable;
    case JointType::Pivot:
        return pivotTable;
    case JointType::Piston:
        return pistonTable;
    case JointType::Spring:
        return springTable;
    }
    return {};
}

std::span<const Attribute<PreviewProperties>> previewAttributes() {
    return previewTable;
}

std::span<const Attribute<GlobalProperties>> solverAttributes() {
    return solverTable;
}

std::span<const Attribute<GlobalProperties>> gravityAttributes() {
    return gravityTable;
}

} // namespace jostle
