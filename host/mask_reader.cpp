#include "host/mask_reader.h"

#include <utility>

#include "geometry/outline.h"
#include "host/host_outlines.h"
#include "host/host_time.h"

namespace jostle {

namespace {

/// Flags a single mask that is a circle or a box; anything else is flattened.
void classify(ShapeDef& shape, bool isOnlyMask, b2Vec2 layerScale, int subdivisions) {
    const bool mayBePrimitive = shape.closed && isOnlyMask;
    float radius = 0.0f;
    if (matchesCircle(shape, radius) && layerScale.x == layerScale.y && mayBePrimitive) {
        shape.closed = false;
        shape.isCircle = true;
        shape.radius = layerScale.x * radius / pixelsPerMetre;
    } else if (matchesBox(shape) && mayBePrimitive) {
        shape.closed = false;
        shape.isBox = true;
    } else {
        flatten(shape, subdivisions);
    }
}

} // namespace

BodyMesh readMasks(HostChain& chain, const Layer& layer, const MaskFrame& frame, const MeshOptions& options) {
    const Stream masks = layer.root(chain).child("ADBE Mask Parade");
    const int count = masks.childCount();
    std::vector<ShapeDef> circles;
    std::vector<ShapeDef> boxes;
    std::vector<ShapeDef> outlines;
    for (int index = 0; index < count && !chain.failed(); ++index) {
        const Stream outlineStream = masks.childAt(index).child("ADBE Mask Shape");
        const StreamValue value = outlineStream.valueAt(sampleTime, Expressions::Applied);
        const HostOutline outline = HostOutline::ofStream(chain, value);
        if (outline.segmentCount() < 1)
            continue;
        ShapeDef shape = readOutline(chain, outline, frame.pixelAspect);
        classify(shape, count < 2, frame.layerScale, options.subdivisions);
        if (shape.isCircle)
            circles.push_back(shape);
        if (shape.isBox)
            boxes.push_back(shape);
        outlines.push_back(std::move(shape));
    }
    ShapeDefList groups{std::move(outlines)};
    if (options.useConvexHull)
        wrapInHulls(OutlineSource::Masks, groups);
    const auto pixelAspect = static_cast<float>(frame.pixelAspect);
    return assemble(circles, boxes, groups, maskBodySpace(frame.layerAnchor, pixelAspect, frame.layerScale));
}

} // namespace jostle
