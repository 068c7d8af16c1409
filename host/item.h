#pragma once

#include <optional>

#include "host/chain.h"

namespace jostle {

/// An entry of the host's project: a composition, or footage that layers show. Borrowed.
///
/// After the chain has failed, questions are answered with zero or nothing.
class Item {
public:
    struct Size {
        int width = 0;  ///< pixels
        int height = 0; ///< pixels
    };

    Item() = default;
    explicit Item(AEGP_ItemH handle) : handle_(handle) {}

    [[nodiscard]] bool exists() const { return handle_ != nullptr; }

    [[nodiscard]] A_Time duration(HostChain& chain) const;
    [[nodiscard]] Size size(HostChain& chain) const;
    /// Width over height of a pixel; 1 without an item, after a failure, and for a ratio that is not above 0.
    [[nodiscard]] double pixelAspect(HostChain& chain) const;
    /// The colour of a solid, as the host has it; nothing if it is no solid.
    [[nodiscard]] std::optional<AEGP_ColorVal> solidColor(HostChain& chain) const;

private:
    AEGP_ItemH handle_ = nullptr;
};

} // namespace jostle
