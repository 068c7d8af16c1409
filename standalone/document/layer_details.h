#pragma once

#include <memory>
#include <string>
#include <vector>

#include "standalone/document/path.h"
#include "standalone/document/tree_node.h"

namespace jostle::standalone {

struct Layer;

/// The outlines of a text.
struct TextOutlines {
    std::vector<PathValue> outlines; ///< in order of the text, each closed; layer pixels
    std::vector<std::string> notes;  ///< what a user should know, such as a font that had to be replaced
};

/// What a document can tell of its layers beyond what was read at once: asked for when it is needed, so that reading
/// costs nothing for layers that nobody looks into.
class LayerDetails {
public:
    virtual ~LayerDetails() = default;

    /// Adds the layer's masks and shapes to its tree, which has none yet.
    virtual void readLists(const Layer& layer, TreeNode& root) const = 0;

    /// Glyph outlines of a text layer, laid out as its document at a composition frame says; none for other layers.
    [[nodiscard]] virtual TextOutlines textOutlines(const Layer& layer, double frame) const = 0;

    /// The text of a property's expression; empty if it has none.
    [[nodiscard]] virtual std::string expressionAt(SourceSpan property) const = 0;
};

} // namespace jostle::standalone
