#include "persistence/apply_settings.h"

#include "persistence/attribute_tables.h"

namespace jostle {

namespace {

constexpr BodyRecord* recordAt(Scene& scene, std::int32_t index) {
    return index >= 0 && index < scene.bodyCount() ? &scene.bodies[static_cast<std::size_t>(index)] : nullptr;
}

Rgb rgbOf(const Color& color) {
    return {static_cast<float>(color.red), static_cast<float>(color.green), static_cast<float>(color.blue)};
}

bool hasDefaultMesh(const BodyRecord& body) {
    return body.meshPrecision == 2 && !body.useConvexHull;
}

} // namespace

void resetGlobals(Scene& scene) {
    const bool showsJoints = scene.preview.showsJoints;
    scene.globals = {};
    scene.preview = {};
    scene.preview.showsJoints = showsJoints;
}

void chooseGravityLayer(GlobalProperties& globals, std::int32_t layerIndex, std::int32_t layerCount) {
    if (layerIndex >= 0 && layerIndex < layerCount) {
        globals.layerIndex = layerIndex;
    } else {
        globals.takeValueFrom = false;
    }
}

void settleBody(Scene& scene, BodyRecord& body) {
    scene.latchType(body.type);
    scene.latchMagnetism(body.magnetismType);
    body.positionStored = body.position;
    body.angleStored = body.angle;
    body.linearVelocityMagnitudeStored = body.linearVelocityMagnitude;
    body.linearVelocityDirectionStored = body.linearVelocityDirection;
    body.aematicAnchorStored = body.aematicAnchor;
    BodyUserData& shown = *body.userData;
    shown.isStatic = body.type == BodyType::Static;
    shown.isMagnet = body.magnetismType != 0;
    shown.isRepulsive = body.magnetismType == 2;
    shown.magnetDistance = body.magnetDistance;
    shown.color = rgbOf(body.color);
}

void remesh(std::int32_t bodyIndex, Scene& scene, const LayerAccess& layers) {
    BodyRecord* const body = recordAt(scene, bodyIndex);
    if (body == nullptr || !layers.refreshBody) {
        return;
    }
    const Color color = body->color;
    layers.refreshBody(bodyIndex);
    body->color = color;
    settleBody(scene, *body);
}

void copySettings(const BodyRecord& settings, BodyRecord& body) {
    for (const Attribute<BodyRecord>& row : bodyAttributes()) {
        row.write(body, row.read(settings));
    }
}

void applyBody(const BodyRecord& settings, std::int32_t bodyIndex, Scene& scene, const LayerAccess& layers) {
    BodyRecord* const body = recordAt(scene, bodyIndex);
    if (body == nullptr) {
        return;
    }
    const bool hadDefaultMesh = hasDefaultMesh(*body);
    copySettings(settings, *body);
    settleBody(scene, *body);
    if (!hadDefaultMesh || !hasDefaultMesh(*body)) {
        remesh(bodyIndex, scene, layers);
    }
}

MeshSettings::MeshSettings(const Scene& scene) {
    for (const BodyRecord& body : scene.bodies) {
        meshes_.push_back({body.meshPrecision, body.useConvexHull});
    }
}

void MeshSettings::remeshChanged(Scene& scene, const LayerAccess& layers) const {
    for (std::size_t i = 0; i < meshes_.size() && i < scene.bodies.size(); ++i) {
        const BodyRecord& body = scene.bodies[i];
        if (body.meshPrecision != meshes_[i].precision || body.useConvexHull != meshes_[i].useConvexHull) {
            remesh(static_cast<std::int32_t>(i), scene, layers);
        }
    }
}

void replaceJoints(Scene& scene, const std::vector<JointRecord>& joints) {
    for (BodyRecord& body : scene.bodies) {
        body.connectedJoints.clear();
    }
    scene.joints = joints;
    for (const JointRecord& joint : scene.joints) {
        for (const std::int32_t index : {joint.bodyAId, joint.bodyBId}) {
            if (BodyRecord* const body = recordAt(scene, index)) {
                body->connectedJoints.push_back(joint);
            }
        }
    }
    scene.preview.showsJoints = scene.preview.showsJoints || !scene.joints.empty();
}

char groupLetter(std::uint16_t categoryBits) {
    for (int group = 0; group < 5; ++group) {
        if (categoryBits == 1 << group) {
            return static_cast<char>('A' + group);
        }
    }
    return 'A';
}

} // namespace jostle
