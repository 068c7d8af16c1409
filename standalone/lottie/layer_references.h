#pragma once

#include <map>
#include <optional>
#include <set>

#include "standalone/document/composition.h"
#include "standalone/lottie/json_tree.h"

namespace jostle::standalone {

/// What the layers of a document have to say of each other so that a composition with its layers moved, copied, added
/// or gone looks as it did.
class LayerReferences {
public:
    /// What a layer needs beyond its own changes.
    struct Needs {
        bool id = false;          ///< its identifier has to stand in the file
        bool dropsParent = false; ///< the parent that the file names is gone
        bool dropsMatte = false;
        std::optional<int> matte; ///< the track matte has to be named
        [[nodiscard]] bool empty() const { return !id && !dropsParent && !dropsMatte && !matte; }
    };

    /// @param list  the document's layers
    LayerReferences(const JsonValue& list, const Composition& composition);

    /// Whether the layers are not those of the document in their order.
    [[nodiscard]] bool isReordered() const { return reordered_; }
    [[nodiscard]] Needs needsOf(const Layer& layer) const;

private:
    void findOriginals(const JsonValue& list);
    void requireCopies();
    void requireMattes();
    void requireParents();
    void require(const Layer& layer);
    [[nodiscard]] bool isGone(int id) const;

    const Composition& composition_;
    bool reordered_ = false;
    std::map<std::uint32_t, JsonValue> objects_; ///< layers of the document by their place
    std::map<int, std::uint32_t> fileIds_;       ///< places of the first layers of the document with each identifier
    std::set<int> presentIds_;                   ///< identifiers by which the file may name a layer that is there
    std::set<int> givenIds_;                     ///< identifiers that are new in the file
    std::map<const Layer*, Needs> needs_;
};

} // namespace jostle::standalone
