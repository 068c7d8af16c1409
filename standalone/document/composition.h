#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "standalone/document/frame_clock.h"
#include "standalone/document/layer_details.h"
#include "standalone/document/rare.h"
#include "standalone/document/stream.h"
#include "standalone/document/tree_node.h"

namespace jostle::standalone {

/// The layer kinds of the format, by their number in the file.
enum class LayerKind : int {
    Precomposition = 0,
    Solid = 1,
    Image = 2,
    Null = 3,
    Shape = 4,
    Text = 5,
    Audio = 6,
    VideoPlaceholder = 7,
    ImageSequence = 8,
    Video = 9,
    ImagePlaceholder = 10,
    Guide = 11,
    Adjustment = 12,
    Camera = 13,
    Light = 14,
    Data = 15,
    Unknown = -1,
};

/// Linear red, green, blue and alpha from 0 to 1.
struct Rgba {
    double red = 0, green = 0, blue = 0, alpha = 1;
};

/// What a layer shows, or the composition itself, as an entry of the project.
struct Item {
    enum class Kind { Composition, Footage };
    Kind kind = Kind::Footage;
    bool isSolid = false;
    std::string name; ///< UTF-8
    int width = 0;    ///< pixels
    int height = 0;   ///< pixels
    Rgba solidColor{1, 1, 1, 1};
};

/// A position in parts, a stream for each dimension.
struct Dimensions {
    Stream x, y, z;
};

/// The transform of a layer: pixels, degrees clockwise, percent.
struct Transform {
    Stream anchor;
    Stream position;             ///< unused while `separated`
    Rare<Dimensions> dimensions; ///< used while `separated`
    Stream scale;
    Stream rotation;
    Stream skew, skewAxis;
    Stream opacity;
    bool separated = false;
    SourceSpan source; ///< the transform object; empty if the layer has none
};

/// A `parentId` that names no layer. 0 does: files may number their layers from it.
constexpr int noParent = std::numeric_limits<int>::min();

struct Layer {
    int id = 0;            ///< lasting identifier, unique in its composition
    bool idInFile = false; ///< others of the file may name it by its identifier
    LayerKind kind = LayerKind::Unknown;
    std::string name;                 ///< UTF-8, empty if the file has none
    int parentId = noParent;          ///< identifier as the file has it; what relinkParents goes by
    Layer* parent = nullptr;          ///< never part of a cycle; see relinkParents
    std::shared_ptr<const Item> item; ///< null for shapes, text, cameras, lights
    double inFrame = 0;               ///< composition frames, as all that follow
    double outFrame = 0;
    double startFrame = 0;
    double stretch = 1;
    bool hidden = false;
    bool matteSource = false;
    bool usesMatteAbove = false; ///< has a track matte that is named by its place alone
    int matteId = noParent;      ///< of such a layer, the identifier of the one above it in the file
    bool threeD = false;
    bool autoOrient = false;
    bool motionBlur = false;
    bool guide = false;
    bool adjustment = false;
    int label = 0; ///< 0 none, 1 to 16
    Transform transform;
    std::shared_ptr<TreeNode> tree; ///< root; null until it is asked for, see treeOf

    SourceSpan source;       ///< the layer object in the source text
    SourceSpan shapesSource; ///< the list of its shapes there; empty if it has none
    SourceSpan masksSource;  ///< as of shapes; empty too if there is no mask in it
    bool changed = false;    ///< parent, autoOrient, motionBlur or hidden differ from the source text
};

/// A composition: the document's root. Layers stand topmost first and keep their addresses.
struct Composition {
    Composition() = default;
    /// Deep copy whose layers refer to each other, not to the layers of `other`.
    Composition(const Composition& other);
    Composition& operator=(const Composition&) = delete;

    std::shared_ptr<const Item> item; ///< name and size
    FrameClock clock;
    double inFrame = 0;        ///< work area, as shown by players
    double outFrame = 0;       ///< end of the work area, exclusive
    double durationFrames = 0; ///< length from time 0
    double pixelAspect = 1;
    Rgba background{0, 0, 0, 1};
    std::vector<std::unique_ptr<Layer>> layers;
    std::shared_ptr<const LayerDetails> details; ///< null for compositions that were not read from a document
    bool changed = false;                        ///< name or work area differ from the source text
};

/// Root of a layer's tree of streams, read when it is first asked for.
[[nodiscard]] TreeNode& treeOf(const Composition& composition, Layer& layer);

/// Copy of a layer with a tree of its own; the parent stays the same.
[[nodiscard]] std::unique_ptr<Layer> copied(const Layer& layer);

/// Points every `parent` at the first layer that has its `parentId` in the file, whatever it pointed at before. A
/// parent that would close a cycle is dropped. Copies need no relinking.
void relinkParents(Composition& composition);

} // namespace jostle::standalone
