#include "host/host_outlines.h"

#include <utility>

#include "geometry/point_set.h"

namespace jostle {

HostOutline HostOutline::ofStream(HostChain& chain, const StreamValue& value) {
    HostOutline outline(chain);
    outline.mask_ = value.outline();
    return outline;
}

HostOutline HostOutline::ofText(HostChain& chain, PF_PathOutlinePtr path) {
    HostOutline outline(chain);
    outline.path_ = path;
    return outline;
}

int HostOutline::segmentCount() const {
    A_long count = 0;
    if (mask_ != nullptr)
        chain_->call<&AEGP_MaskOutlineSuite3::AEGP_GetMaskOutlineNumSegments>(mask_, &count);
    else if (path_ != nullptr)
        chain_->call<&PF_PathDataSuite1::PF_PathNumSegments>(PF_ProgPtr{nullptr}, path_, &count);
    return chain_->failed() || count < 0 ? 0 : count;
}

bool HostOutline::isOpen() const {
    if (mask_ != nullptr) {
        A_Boolean open = 0;
        return chain_->call<&AEGP_MaskOutlineSuite3::AEGP_IsMaskOutlineOpen>(mask_, &open) && open != 0;
    }
    PF_Boolean open = 0;
    return path_ != nullptr && chain_->call<&PF_PathDataSuite1::PF_PathIsOpen>(PF_ProgPtr{nullptr}, path_, &open) &&
           open != 0;
}

AEGP_MaskVertex HostOutline::vertex(int index) const {
    AEGP_MaskVertex vertex{};
    if (mask_ != nullptr) {
        if (!chain_->call<&AEGP_MaskOutlineSuite3::AEGP_GetMaskOutlineVertexInfo>(mask_, AEGP_VertexIndex{index},
                                                                                  &vertex))
            return {};
    } else if (path_ != nullptr) {
        if (!chain_->call<&PF_PathDataSuite1::PF_PathVertexInfo>(PF_ProgPtr{nullptr}, path_, A_long{index}, &vertex))
            return {};
        // Points of the layer there, offsets here.
        vertex.tan_in_x -= vertex.x;
        vertex.tan_in_y -= vertex.y;
        vertex.tan_out_x -= vertex.x;
        vertex.tan_out_y -= vertex.y;
    }
    return vertex;
}

int HostOutline::vertexCount() const {
    const int segments = segmentCount();
    return segments < 1 ? 0 : segments + (isOpen() ? 1 : 0);
}

HostTextOutlines::HostTextOutlines(HostChain& chain, const Layer& layer, A_Time layerTime) : chain_(&chain) {
    if (!chain.call<&AEGP_TextLayerSuite1::AEGP_GetNewTextOutlines>(layer.handle(), &layerTime, &handle_))
        handle_ = nullptr;
}

HostTextOutlines::~HostTextOutlines() {
    if (handle_ != nullptr)
        chain_->dispose<&AEGP_TextLayerSuite1::AEGP_DisposeTextOutlines>(handle_);
}

int HostTextOutlines::count() const {
    A_long count = 0;
    if (handle_ == nullptr || !chain_->call<&AEGP_TextLayerSuite1::AEGP_GetNumTextOutlines>(handle_, &count))
        return 0;
    return count;
}

HostOutline HostTextOutlines::outline(int index) const {
    PF_PathOutlinePtr path = nullptr;
    if (handle_ == nullptr ||
        !chain_->call<&AEGP_TextLayerSuite1::AEGP_GetIndexedTextOutline>(handle_, A_long{index}, &path))
        path = nullptr;
    return HostOutline::ofText(*chain_, path);
}

ShapeDef readOutline(const HostChain& chain, const HostOutline& outline, double pixelAspect) {
    ShapeDef shape;
    const int count = outline.vertexCount();
    shape.closed = !outline.isOpen();
    const auto narrowed = [pixelAspect](double x, double y) {
        return b2Vec2(static_cast<float>(x * pixelAspect), static_cast<float>(y));
    };
    PointSet seen;
    for (int index = 0; index < count; ++index) {
        const AEGP_MaskVertex vertex = outline.vertex(index);
        if (chain.failed())
            break;
        const b2Vec2 point = narrowed(vertex.x, vertex.y);
        if (!seen.insert(point))
            continue;
        shape.verts.push_back(point);
        shape.inTangents.push_back(narrowed(vertex.tan_in_x, vertex.tan_in_y));
        shape.outTangents.push_back(narrowed(vertex.tan_out_x, vertex.tan_out_y));
    }
    return shape;
}

} // namespace jostle
