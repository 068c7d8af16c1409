#pragma once

#include "host/composition.h"
#include "host/import_report.h"
#include "host/messages.h"

namespace jostle {

/// What the import of every layer starts from.
struct ImportFacts {
    A_Time frameDuration{};
    A_Time duration{};        ///< of the composition
    double pixelAspect = 1.0; ///< of the composition
    int compWidth = 0;        ///< square pixels
    int compHeight = 0;       ///< pixels
    int compFrames = 0;

    /// @return composition pixels as world metres
    [[nodiscard]] b2Vec2 toWorldPlace(b2Vec2 pixels) const {
        return {toBodyX(pixels.x, compWidth), toBodyY(pixels.y, compHeight)};
    }
};

/// Reads the facts of a composition. If the host refuses one, or the frame has no duration, the chain has failed.
[[nodiscard]] ImportFacts readFacts(HostChain& chain, const Composition& composition);

/// Fills in what a record takes from its layer: identity, span, place, colours and collision shape, all at time 0. The
/// rest of the record stays, its `meshPrecision` and `useConvexHull` steer the shape. What the host refuses gets its
/// default.
///
/// By the first that holds: a layer with masks becomes their outlines, text its glyphs, a shape layer its elements, and
/// any other layer the rectangle of its bounds.
///
/// @param type      the layer's
/// @param report    has the layer's index and name, and the body's index; receives how it went
/// @param messages  is told of a shape layer without any outline; may be null
void importLayer(HostChain& chain, const Layer& layer, AEGP_ObjectType type, const ImportFacts& facts,
                 LayerReport& report, MessageSink* messages, BodyRecord& body);

} // namespace jostle
