#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "geometry/projection.h"
#include "host/layer.h"

namespace jostle {

/// The offsets in the contents of a shape layer that the import folds into its body's place: of its first rectangle,
/// ellipse and star, and of its first group, each the first in depth-first order.
class ShapeOffsets {
public:
    ShapeOffsets(HostChain& chain, const Layer& layer);

    /// Whether the layer looks the same if it loses its offsets and is put where its body is. It does if all that it
    /// shows hangs from the same offsets, as with one element in one group.
    ///
    /// @param matrix  layer pixels to composition pixels, as of the import
    /// @param place   of the body on import, in composition pixels as the host has them
    /// @param anchor  the layer's new anchor point, which is put there
    [[nodiscard]] bool areInPlace(const Matrix4& matrix, AEGP_TwoDVal place, AEGP_TwoDVal anchor) const;

    /// Deletes their keyframes and sets them to (0, 0).
    void clear() const;

private:
    /// Where an element's own middle is in the layer, and where it comes to be.
    struct Element {
        AEGP_TwoDVal before, after;
    };
    enum Offset : std::size_t { Rect, Ellipse, Star, GroupAnchor, GroupPosition, OffsetCount };

    /// @return the elements below a group, in the group's own pixels
    std::vector<Element> walk(const Stream& group, int depth);
    void addPlaced(const Stream& element, const char* position, Offset offset, std::vector<Element>& elements);
    void placeGroup(const Stream& transform, std::vector<Element>& elements);
    /// @return whether it is the first of its kind
    bool keep(Stream stream, Offset offset);

    std::array<Stream, OffsetCount> streams_;
    std::vector<Element> elements_;
};

/// The layer point that a place in the composition shows.
/// @return nothing for a layer of no extent
[[nodiscard]] std::optional<AEGP_TwoDVal> layerPointAt(const Matrix4& matrix, AEGP_TwoDVal place);

} // namespace jostle
