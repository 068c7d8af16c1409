#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/suites.h"
#include "simulation/scene.h"

namespace jostle {

/// What a layer became, or why it became no body.
enum class LayerOutcome {
    Body,
    Camera,
    Light,
    UnknownKind,
    Null,
    Adjustment,
    Guide,
    Hidden,
    ThreeD,
    NotShown, ///< its own switch is on, another layer's solo or the like keeps it off
    NoSource,
    NoPicture,  ///< a source of 0 by 0 pixels: sound, or a picture that is not there
    Unreadable, ///< the host refused an answer
};

/// An outcome in a few words that complete "not a body: ..."; "a body" for `Body`.
[[nodiscard]] std::string_view outcomeText(LayerOutcome outcome);

/// What a body's outline was read from.
enum class BodyOrigin {
    Bounds,       ///< the rectangle of its source
    Masks,        ///< all of them, whatever the layer shows
    Text,         ///< glyphs
    VectorShapes, ///< the elements of a shape layer
    Fallback,     ///< a square of one metre in place of a shape layer without any outline
};

/// What happened to one layer.
struct LayerReport {
    int layerIndex = 0; ///< place in the composition, 0 the topmost
    std::string name;   ///< as shown, UTF-8
    LayerOutcome outcome = LayerOutcome::Unreadable;
    int bodyIndex = -1; ///< of the record, for `Body`
    BodyOrigin origin = BodyOrigin::Bounds;
    A_Err error = A_Err_NONE;     ///< the host's first refusal; a body then has defaults from there on
    bool numbersReplaced = false; ///< something that is no finite number was read and a default taken instead
};

/// What an import found: one entry for each layer of the composition, in its order.
struct ImportReport {
    std::vector<LayerReport> layers;
    A_Err error = A_Err_NONE; ///< the host's first refusal outside any layer; the import ended there
};

/// What a body's outlines consist of.
struct BodyPieces {
    int boxes = 0; ///< the rectangle of bounds is one
    int circles = 0;
    int openLines = 0;
    int triangles = 0;
};

[[nodiscard]] BodyPieces piecesOf(const BodyRecord& body);

} // namespace jostle
