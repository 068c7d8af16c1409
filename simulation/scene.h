#pragma once

#include "geometry/projection.h"
#include "geometry/shape_def.h"
#include "simulation/color.h"
#include "simulation/joint_record.h"
#include "simulation/owned.h"

#include <box2d/b2_math.h>

#include <cstdint>
#include <string>
#include <vector>

class b2Body;
class b2Joint;

namespace jostle {

/// How a body relates to its layer's animation and to the simulation. The numbers go to the settings file.
enum class BodyType : std::int32_t {
    Static = 0,    ///< never moves
    Kinematic = 1, ///< follows the layer's own keyframes until the last of them
    Dynamic = 2,   ///< moved by the simulation
    Dormant = 3,   ///< does not move until something wakes it
    AEmatic = 4,   ///< dynamic, and pulled towards the layer's animated position by a spring
    Dead = 5,      ///< takes part in nothing: its fixtures are sensors
};

/// When a `Kinematic` body is given to the simulation.
enum class KinematicBehavior : std::int32_t { DynamicAfterLastKeyframe = 0, DynamicAtInPoint = 1 };

/// What a `Dormant` body is in the world until it wakes.
enum class DormantBehavior : std::int32_t { UsesGravityScale = 0, UsesStatic = 1 };

/// What the user data of a body and of each of its fixtures points at. It belongs to the body's record.
struct BodyUserData {
    Rgb color{0.5f, 0.5f, 0.5f};      ///< fill
    Rgb labelColor{0.5f, 0.5f, 0.5f}; ///< the layer's label in the host; grey without one
    bool selected = false;
    bool selectable = true; ///< picking ignores the body if not

    // From the record, by world construction.
    bool isStatic = false;         ///< its type is `Static`
    bool outOfTime = false;        ///< the frame lies outside the layer's in and out points, or the type is `Dead`
    bool isMagnet = false;         ///< its magnetism type is 1 or 2
    bool isRepulsive = false;      ///< it is 2
    float magnetDistance = 100.0f; ///< pixels
    std::int32_t bodyIndex = -1;   ///< of the record in `Scene::bodies`
};

/// One layer that became a body. Lasting: a world is made from records and thrown away.
///
/// Running a simulation changes nothing here but `isDormant`, `isDenseMesh`, `aematicWorldAnchor`, `connectedJoints`,
/// the two pointers into the world and the flags in `userData`. Fields ending in `Stored` keep the value that a drag
/// began from.
struct BodyRecord {
    b2Body* body = nullptr;            ///< the world's; valid until the next world construction
    b2Joint* aematicJoint = nullptr;   ///< the mouse joint of an `AEmatic` body; likewise
    std::int32_t layerID = 0;          ///< the host's lasting identifier of the layer
    std::string name;                  ///< the layer's own name, else that of its source
    std::int32_t number = 0;           ///< index of this record plus 1
    b2Vec2 importPosition{0.0f, 0.0f}; ///< metres
    float importAngle = 0.0f;          ///< radians
    std::int32_t inPoint = 0;          ///< frames; the first on which the layer is alive
    std::int32_t outPoint = 0;         ///< frames; the one at which the layer ends
    BodyType type = BodyType::Dynamic;
    bool isDormant = false;               ///< a `Dormant` body that nothing has woken yet
    b2Vec2 position{0.0f, 0.0f};          ///< metres, at frame 0
    b2Vec2 positionStored{0.0f, 0.0f};    ///< metres
    float angle = 0.0f;                   ///< radians, clockwise on the screen, at frame 0
    float angleStored = 0.0f;             ///< radians
    b2Vec2 layerAnchor{0.0f, 0.0f};       ///< layer pixels, at import
    b2Vec2 layerScale{1.0f, 1.0f};        ///< fraction, at import, with the parents' scales; never below 0.001
    float linearVelocityMagnitude = 0.0f; ///< metres per second
    float linearVelocityDirection = 0.0f; ///< degrees; 0 right, 90 down
    float linearVelocityMagnitudeStored = 0.0f;
    float linearVelocityDirectionStored = 0.0f;
    b2Vec2 aematicAnchor{0.0f, 0.0f}; ///< metres, relative to `position`: the point that the spring holds
    b2Vec2 aematicAnchorStored{0.0f, 0.0f};
    b2Vec2 aematicWorldAnchor{0.0f, 0.0f}; ///< metres; `position` plus `aematicAnchor`, by world construction
    float angularVelocity = 0.0f;          ///< radians per second
    float linearDamping = 0.0f;            ///< per second
    float angularDamping = 0.0f;           ///< per second
    float aematicDamping = 0.5f;           ///< damping ratio of the mouse joint
    float aematicTension = 1.0f;           ///< hertz, of the mouse joint
    float density = 1.0f;                  ///< kilograms per square metre
    float friction = 0.5f;
    float restitution = 0.3f;
    std::int32_t meshPrecision = 2; ///< 0 leaves outlines as they are; the panel offers 1 to 10
    std::uint16_t categoryBits = 1; ///< collision group, one bit of five
    std::uint16_t maskBits = 65535; ///< groups that it collides with
    bool fixedRotation = false;
    float gravityScale = 1.0f; ///< multiplies gravity; negative ones rise
    bool useConvexHull = false;
    std::int32_t magnetismType = 0; ///< 0 none, 1 attracts, 2 repels
    float magnetIntensity = 10.0f;
    float magnetDistance = 100.0f; ///< pixels
    bool acceptMagnetism = true;
    float openShapeLineWidth = 0.015f; ///< metres
    bool isBox = false;                ///< the shape is the first piece of the first group: the layer's bounds
    bool isShapeLayer = false;
    bool isCircle = false;
    ShapeDefList outlines; ///< the collision shape, metres relative to the body
    bool isPath = false;
    bool isDenseMesh = false; ///< more than 75 triangles were made at the last world construction
    bool triangulationFailed = false;
    Color color;
    Color importColor;
    bool staticOnImport = false;
    bool rotationAnimated = false; ///< the layer's rotation, or its parent's, varies over time
    /// Copies of the joints that touch this body, as they were at the last world construction. `Scene::joints` is the
    /// list that counts.
    std::vector<JointRecord> connectedJoints;
    Owned<BodyUserData> userData;
};

/// Solver and gravity, as the settings file groups them.
struct GlobalProperties {
    double timeDivider = 1.0;       ///< slow motion; at least 0.01
    std::int32_t stepsPerFrame = 2; ///< steps of the physics library in one tick; 0 makes none
    double tolerance = 50.0;        ///< ten thousand times the linear slop; at least 0.001
    double magnitude = 10.0;        ///< gravity, metres per second squared
    double direction = 90.0;        ///< gravity, degrees; 0 right, 90 down
    bool takeValueFrom = false;     ///< gravity comes from the position of a layer instead
    std::int32_t layerIndex = 0;    ///< that layer's index in the composition, from 0
    bool layerListEnabled = false;  ///< that layer can be chosen
};

/// The colour behind the preview, unless another is chosen.
inline constexpr ByteColor defaultBackground{38, 38, 38};

/// How the preview looks at the scene.
struct PreviewProperties {
    std::int32_t zoom = 250; ///< percent
    float panX = 0.0f;
    float panY = 0.0f;
    ByteColor bgColor = defaultBackground;
    bool showsJoints = false; ///< the view option for joints
};

/// Preferences that steer how bodies behave.
struct BehaviorPreferences {
    KinematicBehavior kinematicBehavior = KinematicBehavior::DynamicAfterLastKeyframe;
    DormantBehavior dormantBehavior = DormantBehavior::UsesGravityScale;
};

/// The document: records, global properties and the facts of the composition. Plain values, filled by the import,
/// by a settings file or by hand.
///
/// World space is metres from the composition's centre, x to the right and y down, 100 pixels to the metre.
struct Scene {
    std::vector<BodyRecord> bodies; ///< in the order of the layers, the topmost first
    std::vector<JointRecord> joints;
    /// For record i the layer's index in the composition, from 0. A record beyond its end has no layer, and follows
    /// none.
    std::vector<std::int32_t> layerIndices;
    GlobalProperties globals;
    PreviewProperties preview;
    BehaviorPreferences preferences;

    // Latches: set when a body is first given that type or a magnetism, and never cleared.
    bool hasKinematic = false;
    bool hasDormant = false;
    bool hasAEmatic = false;
    bool hasMagnets = false;
    bool hasShortLayers = false; ///< some layer's span is shorter than the composition

    std::int32_t compWidth = 1920;         ///< pixels, after the pixel aspect
    std::int32_t compHeight = 1080;        ///< pixels
    double fps = 25.0;                     ///< frames per second, above 0
    std::int32_t frameDurationValue = 1;   ///< one frame, in units of 1 / `frameDurationScale` seconds
    std::uint32_t frameDurationScale = 25; ///< above 0
    std::int32_t compFrames = 0;           ///< duration of the composition in frames

    b2Body* groundBody = nullptr; ///< the world's; what mouse joints hang from; null without `AEmatic` bodies

    [[nodiscard]] std::int32_t bodyCount() const { return static_cast<std::int32_t>(bodies.size()); }

    /// Whether a joint names two bodies of this scene; one that does not is left out of the world.
    [[nodiscard]] bool joinsTwoBodies(const JointRecord& joint) const {
        const auto exists = [this](std::int32_t index) { return index >= 0 && index < bodyCount(); };
        return exists(joint.bodyAId) && exists(joint.bodyBId) && joint.bodyAId != joint.bodyBId;
    }

    /// One frame of the composition in seconds.
    [[nodiscard]] double frameDurationSeconds() const {
        return static_cast<double>(frameDurationValue) / static_cast<double>(frameDurationScale);
    }

    /// Composition pixels to world metres.
    [[nodiscard]] float pixelsToWorldX(float x) const { return toBodyX(x, compWidth); }
    [[nodiscard]] float pixelsToWorldY(float y) const { return toBodyY(y, compHeight); }
    [[nodiscard]] b2Vec2 pixelsToWorld(b2Vec2 p) const { return {pixelsToWorldX(p.x), pixelsToWorldY(p.y)}; }

    /// World metres to composition pixels; an odd width or height gives half pixels.
    [[nodiscard]] float worldToPixelsX(float x) const {
        return pixelsPerMetre * x + static_cast<float>(compWidth) / 2.0f;
    }
    [[nodiscard]] float worldToPixelsY(float y) const {
        return pixelsPerMetre * y + static_cast<float>(compHeight) / 2.0f;
    }
    [[nodiscard]] b2Vec2 worldToPixels(b2Vec2 p) const { return {worldToPixelsX(p.x), worldToPixelsY(p.y)}; }

    /// The index of the record that holds a body, or -1, as for the ground body.
    [[nodiscard]] std::int32_t findBodyRecord(const b2Body* body) const {
        for (std::size_t i = 0; i < bodies.size(); ++i) {
            if (bodies[i].body == body) {
                return static_cast<std::int32_t>(i);
            }
        }
        return -1;
    }

    /// Sets the latch that belongs to a type. To be called by whoever gives a body its type.
    void latchType(BodyType type) {
        hasKinematic = hasKinematic || type == BodyType::Kinematic;
        hasDormant = hasDormant || type == BodyType::Dormant;
        hasAEmatic = hasAEmatic || type == BodyType::AEmatic;
    }

    /// Sets the latch of magnets. To be called by whoever gives a body its magnetism type.
    void latchMagnetism(std::int32_t magnetismType) { hasMagnets = hasMagnets || magnetismType != 0; }
};

/// Radians to degrees, in floats.
[[nodiscard]] inline float radiansToDegrees(float radians) {
    return radians * 57.29578f;
}

/// Degrees to radians, in floats.
[[nodiscard]] inline float degreesToRadians(float degrees) {
    return degrees * b2_pi / 180.0f;
}

} // namespace jostle
