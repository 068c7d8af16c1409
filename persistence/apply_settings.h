#pragma once

#include <cstdint>
#include <vector>

#include "persistence/layer_access.h"
#include "simulation/scene.h"

/// How values from a settings file or a snapshot get into a scene. The world must be rebuilt afterwards.
namespace jostle {

/// Puts globals and preview back to their defaults.
void resetGlobals(Scene& scene);

/// Chooses the layer that gravity can be taken from. If there is no such layer the present one stays, and gravity is
/// the panel's.
void chooseGravityLayer(GlobalProperties& globals, std::int32_t layerIndex, std::int32_t layerCount);

/// Gives a record all the settings of another; what the import knows of the layer stays.
void copySettings(const BodyRecord& settings, BodyRecord& body);

/// Gives a body all the settings of another record, latches, flags and the copies that drags begin from included; what
/// the import knows of the layer stays.
///
/// The layer is read anew unless the body had the same mesh settings before and they are the default ones.
/// @param bodyIndex  of the scene's record
void applyBody(const BodyRecord& settings, std::int32_t bodyIndex, Scene& scene, const LayerAccess& layers);

/// What follows a change of a body's settings: latches, the copies that drags begin from, and what the preview shows.
void settleBody(Scene& scene, BodyRecord& body);

/// Reads a body's layer anew and keeps its colour, which the import would replace.
void remesh(std::int32_t bodyIndex, Scene& scene, const LayerAccess& layers);

/// The mesh settings of all bodies at some time, to find those that have others later.
class MeshSettings {
public:
    explicit MeshSettings(const Scene& scene);

    /// Reads the layers anew of bodies whose mesh settings have changed since.
    void remeshChanged(Scene& scene, const LayerAccess& layers) const;

private:
    struct Mesh {
        std::int32_t precision;
        bool useConvexHull;
    };
    std::vector<Mesh> meshes_;
};

/// Puts joints in place of all that the scene has, in its list and in those of their bodies. If there are any, the
/// preview shows joints from then on.
void replaceJoints(Scene& scene, const std::vector<JointRecord>& joints);

/// The letter of a collision group, "A" to "E"; "A" for bits that name none.
[[nodiscard]] char groupLetter(std::uint16_t categoryBits);

} // namespace jostle
