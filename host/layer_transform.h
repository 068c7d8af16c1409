#pragma once

#include <vector>

#include "geometry/projection.h"
#include "host/layer.h"

namespace jostle {

/// The rotation that a layer's matrix really has, parents included: the direction of its x axis.
/// @return degrees from -180 to 180, clockwise on the screen; a turn beyond that is lost. 0 for an axis of no length
[[nodiscard]] double rotationDegrees(const Matrix4& matrix);

/// The scales of a layer and of all its parents, multiplied.
///
/// Taken from the scale streams rather than from the matrix, so that turned parents do not mix the axes. Holds
/// references to the streams: must not outlive the chain.
class WorldScale {
public:
    WorldScale() = default;
    WorldScale(HostChain& chain, Layer layer);

    /// Whether the layer's own scale has keyframes.
    [[nodiscard]] bool isKeyframed() const;

    /// @param time  composition time
    /// @return per axis, 1 being 100 percent, with the sign of every flip. Once the chain has failed: the product of
    ///         what was read before
    [[nodiscard]] AEGP_TwoDVal at(HostChain& chain, A_Time time) const;

private:
    std::vector<Stream> streams_; ///< the layer's own first, then its parents' upwards
};

} // namespace jostle
