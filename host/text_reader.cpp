#include "host/text_reader.h"

#include <utility>

#include "geometry/outline.h"
#include "host/host_outlines.h"
#include "host/host_time.h"

namespace jostle {

BodyMesh readTextOutlines(HostChain& chain, const Layer& layer, b2Vec2 world, double pixelAspect,
                          const MeshOptions& options) {
    std::vector<ShapeDef> outlines;
    {
        const HostTextOutlines text(chain, layer, sampleTime);
        const int count = text.count();
        for (int index = 0; index < count && !chain.failed(); ++index) {
            const HostOutline outline = text.outline(index);
            if (outline.segmentCount() >= 1)
                outlines.push_back(readOutline(chain, outline, pixelAspect));
        }
    }
    ShapeDefList groups{std::move(outlines)};
    if (options.useConvexHull)
        wrapInHulls(OutlineSource::Text, groups); // one hull of the vertices as read
    else
        for (ShapeDef& shape : groups.front())
            flatten(shape, options.subdivisions);
    return assemble({}, {}, groups, textBodySpace(world, static_cast<float>(pixelAspect)));
}

} // namespace jostle
