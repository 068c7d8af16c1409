#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "host/chain.h"
#include "host/composition.h"
#include "simulation/export_run.h"
#include "simulation/scene.h"

namespace jostle {

/// What is to be written: the samples of a run, beside the records that they belong to.
struct KeyframeJob {
    const Scene& scene;
    /// Puts the samples of a body, each once, into a result whose memory is kept; k belongs to the k-th record from the
    /// end.
    std::function<void(std::size_t k, ExportResult& samples)> samplesOf;
    int startFrame = 0;            ///< composition frame of the first sample
    int endFrame = 0;              ///< of the last
    bool enableMotionBlur = false; ///< for all layers that move
    /// How far a position (pixels) and an angle (degrees) may be from its sample on any frame, in favour of fewer keys
    /// with straight lines between them; 0 for a key wherever the samples change. The host offers no way to set the
    /// easing of a key, so there are no curves. A scale with keyframes keeps one for each change.
    double tolerance = 0.0;
};

/// How a layer was written where that is not as its body has it.
struct WrittenStance {
    b2Vec2 anchor{0.0f, 0.0f}; ///< layer pixels; the layer's point that follows the body
    float turn = 0.0f;         ///< degrees, added to all of the body's angles
};

enum class WriteOutcome { Done, Cancelled, Failed };

struct WriteReport {
    WriteOutcome outcome = WriteOutcome::Failed;
    int layersWritten = 0;
    int layersMended = 0; ///< with samples that are no finite numbers, for which the one before was taken
    A_Err error = A_Err_NONE;
    std::vector<WrittenStance> stances; ///< by record
};

/// Called after each layer. @return whether to go on; false cancels
using WriteProgress = std::function<bool(int done, int total)>;

/// A copy of the active composition, made within one undo group; layer indices stay valid in it.
/// @return none if there is no active composition, or the chain has failed
[[nodiscard]] Composition duplicateActiveComposition(HostChain& chain);

/// Writes a run to the layers of a composition: position and rotation keyframes, anchor point and scale.
///
/// Layers lose their parent and the expressions of these streams. `Static` layers get values instead of keyframes,
/// `Dead` ones keep their animation. The work area becomes the written range, and the selection is kept. All of it is
/// one undo group, "Jostle"; a cancel takes it back through the host's Undo. The first refusal of the host ends the
/// writing and leaves what was written before.
///
/// @param composition  the active one or a duplicate of it
/// @param progress     may be empty
[[nodiscard]] WriteReport writeKeyframes(HostChain& chain, Composition composition, const KeyframeJob& job,
                                         const WriteProgress& progress);

} // namespace jostle
