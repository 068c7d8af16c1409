#pragma once

#include "host/layer.h"

namespace jostle {

/// A reference to a mask of a layer. Given back at the end of its life; the mask stays.
///
/// After the chain has failed, questions are answered with false or nothing, and changes are not made.
class Mask {
public:
    /// The layer's mask of that place, 0 being the first.
    static Mask at(HostChain& chain, const Layer& layer, int index);
    /// A new one, after those that the layer has.
    static Mask create(HostChain& chain, const Layer& layer);

    Mask(Mask&& other) noexcept : chain_(other.chain_), handle_(std::exchange(other.handle_, nullptr)) {}
    Mask& operator=(Mask&&) = delete;
    ~Mask();

    [[nodiscard]] Stream stream(AEGP_MaskStream which) const;
    /// Whether the host works out the handles of its outline itself.
    [[nodiscard]] bool isRotoBezier() const;
    void setRotoBezier(bool on) const;

private:
    explicit Mask(HostChain& chain) : chain_(&chain) {}

    HostChain* chain_;
    AEGP_MaskRefH handle_ = nullptr;
};

} // namespace jostle
