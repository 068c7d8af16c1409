#pragma once

#include "host/chain.h"
#include "host/layer.h"

namespace jostle {

/// Which layers and properties of a composition are selected. Disposed of at the end of its life.
class Selection {
public:
    /// The composition's present selection.
    Selection(HostChain& chain, AEGP_CompH composition);
    ~Selection();
    Selection(const Selection&) = delete;
    Selection& operator=(const Selection&) = delete;

    /// Makes it the composition's selection again.
    void giveBackTo(AEGP_CompH composition) const;

private:
    HostChain* chain_;
    AEGP_Collection2H handle_ = nullptr;
};

/// A composition of the host's project. Borrowed: holds for one call of a hook.
///
/// After the chain has failed, questions are answered with zero or none, and changes are not made.
class Composition {
public:
    Composition() = default;
    explicit Composition(AEGP_CompH handle) : handle_(handle) {}

    [[nodiscard]] bool exists() const { return handle_ != nullptr; }
    [[nodiscard]] AEGP_CompH handle() const { return handle_; }

    [[nodiscard]] Item item(HostChain& chain) const;
    /// Duration of one frame.
    [[nodiscard]] A_Time frameDuration(HostChain& chain) const;
    [[nodiscard]] int layerCount(HostChain& chain) const;
    /// @param index  0 is the topmost layer
    [[nodiscard]] Layer layer(HostChain& chain, int index) const;

    /// A copy with the same layers in the same order.
    [[nodiscard]] Composition duplicate(HostChain& chain) const;
    /// A new shape layer without contents, placed by the host.
    [[nodiscard]] Layer createShapeLayer(HostChain& chain) const;
    void setWorkArea(HostChain& chain, A_Time start, A_Time duration) const;

private:
    AEGP_CompH handle_ = nullptr;
};

/// The composition that is open in front of the user; none if something else is, or nothing.
[[nodiscard]] Composition activeComposition(HostChain& chain);

} // namespace jostle
