#pragma once

#include "geometry/shape_def.h"
#include "host/layer.h"
#include "host/stream.h"

namespace jostle {

/// A Bezier outline that the host holds. Borrowed: from a stream's value, or from the outlines of a text.
///
/// After the chain has failed it has no segments.
class HostOutline {
public:
    /// Of a mask or of a vector path. `value` must outlive it.
    static HostOutline ofStream(HostChain& chain, const StreamValue& value);
    /// Of a glyph.
    static HostOutline ofText(HostChain& chain, PF_PathOutlinePtr outline);

    /// One more vertex than segments; on a closed outline the last repeats the first.
    [[nodiscard]] int segmentCount() const;
    [[nodiscard]] bool isOpen() const;
    /// @return the vertex with its handles relative to it; zero once the chain has failed
    [[nodiscard]] AEGP_MaskVertex vertex(int index) const;

    /// How many vertices count: one for each segment, and the end of an open outline.
    [[nodiscard]] int vertexCount() const;

private:
    explicit HostOutline(HostChain& chain) : chain_(&chain) {}

    HostChain* chain_;
    AEGP_MaskOutlineValH mask_ = nullptr;
    PF_PathOutlinePtr path_ = nullptr;
};

/// The glyph outlines of a text layer. Given back at the end of its life.
class HostTextOutlines {
public:
    /// @param layerTime  in the layer's own time
    HostTextOutlines(HostChain& chain, const Layer& layer, A_Time layerTime);
    ~HostTextOutlines();
    HostTextOutlines(const HostTextOutlines&) = delete;
    HostTextOutlines& operator=(const HostTextOutlines&) = delete;

    /// 0 for a layer that is no text, or once the chain has failed.
    [[nodiscard]] int count() const;
    [[nodiscard]] HostOutline outline(int index) const;

private:
    HostChain* chain_;
    AEGP_TextOutlinesH handle_ = nullptr;
};

/// An outline with its Bezier handles, unflattened. Of vertices in one place only the first is taken.
///
/// @param pixelAspect  x and the x of the handles are multiplied by it
/// @return `closed` as the outline is, no other flags; what was read until the chain failed
[[nodiscard]] ShapeDef readOutline(const HostChain& chain, const HostOutline& outline, double pixelAspect);

} // namespace jostle
