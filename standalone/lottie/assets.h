#pragma once

#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "standalone/document/composition.h"
#include "standalone/lottie/fields.h"
#include "standalone/lottie/json_tree.h"

namespace jostle::standalone {

/// What the layers of a document show.
class AssetTable {
public:
    /// @param assets  the document's assets, or Missing
    explicit AssetTable(const JsonValue& assets);

    /// What a layer shows: shared between layers that show the same, null for those that show nothing. Unknown
    /// references and precompositions that contain themselves are 0 by 0.
    [[nodiscard]] std::shared_ptr<const Item> itemOf(const JsonValue& layer, LayerKind kind);

private:
    void findEndless();
    [[nodiscard]] std::size_t indexOf(const JsonValue& reference) const;
    [[nodiscard]] std::shared_ptr<const Item> shared(std::size_t asset, Item item);

    std::vector<AssetMembers> assets_;
    std::map<std::string, std::size_t, std::less<>> indices_;
    std::vector<bool> endless_; ///< leads into a precomposition that contains itself
    std::map<std::tuple<std::size_t, int, int>, std::shared_ptr<const Item>> shared_;
};

/// The colour of "#rgb", "#rrggbb" or "#rrggbbaa", in any case; white for anything else. Alpha is 1.
[[nodiscard]] Rgba colourFromHex(std::string_view hex);

} // namespace jostle::standalone
