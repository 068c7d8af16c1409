#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/chain.h"
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
    NoPicture, ///< a source of 0 by 0 pixels: sound, or a picture that is not there
    Masks,
    Text,
    VectorShapes,
    Unreadable, ///< the host refused an answer
};

/// An outcome in a few words that complete "not a body: ..."; "a body" for `Body`.
[[nodiscard]] std::string_view outcomeText(LayerOutcome outcome);

/// What happened to one layer.
struct LayerReport {
    int layerIndex = 0; ///< place in the composition, 0 the topmost
    std::string name;   ///< as shown, UTF-8
    LayerOutcome outcome = LayerOutcome::Unreadable;
    int bodyIndex = -1;           ///< of the record, for `Body`
    A_Err error = A_Err_NONE;     ///< the host's first refusal; a body then has defaults from there on
    bool numbersReplaced = false; ///< something that is no finite number was read and a default taken instead
};

/// What an import found: one entry for each layer of the composition, in its order.
struct ImportReport {
    std::vector<LayerReport> layers;
    A_Err error = A_Err_NONE; ///< the host's first refusal outside any layer; the import ended there
};

/// Reads the layers of the active composition into a scene.
///
/// Replaces the bodies and the facts of the composition; global properties and preferences stay. Each visible flat
/// layer with a picture (solids, images, video, precompositions) becomes a `Dynamic` body with the outline of its
/// bounds, as it stands at time 0. Layers with masks, text and vector shapes are passed over.
/// Without an active composition the scene gets no bodies and keeps its facts.
///
/// Host: within one undo group, "Jostle Initialization"; nothing is changed.
[[nodiscard]] ImportReport initFromComposition(const HostContext& context, Scene& scene);

} // namespace jostle
