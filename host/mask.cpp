#include "host/mask.h"

namespace jostle {

Mask Mask::at(HostChain& chain, const Layer& layer, int index) {
    Mask mask(chain);
    if (!chain.call<&AEGP_LayerMaskSuite6::AEGP_GetLayerMaskByIndex>(layer.handle(), AEGP_MaskIndex{index},
                                                                     &mask.handle_))
        mask.handle_ = nullptr;
    return mask;
}

Mask Mask::create(HostChain& chain, const Layer& layer) {
    Mask mask(chain);
    if (!chain.call<&AEGP_LayerMaskSuite6::AEGP_CreateNewMask>(layer.handle(), &mask.handle_,
                                                               static_cast<A_long*>(nullptr)))
        mask.handle_ = nullptr;
    return mask;
}

Mask::~Mask() {
    if (handle_ != nullptr)
        chain_->dispose<&AEGP_LayerMaskSuite6::AEGP_DisposeMask>(handle_);
}

Stream Mask::stream(AEGP_MaskStream which) const {
    AEGP_StreamRefH stream = nullptr;
    if (handle_ == nullptr ||
        !chain_->call<&AEGP_StreamSuite9::AEGP_GetNewMaskStream>(chain_->pluginId(), handle_, which, &stream))
        return {};
    return {*chain_, stream};
}

bool Mask::isRotoBezier() const {
    A_Boolean on = 0;
    return handle_ != nullptr && chain_->call<&AEGP_LayerMaskSuite6::AEGP_GetMaskIsRotoBezier>(handle_, &on) && on != 0;
}

void Mask::setRotoBezier(bool on) const {
    if (handle_ != nullptr)
        chain_->call<&AEGP_LayerMaskSuite6::AEGP_SetMaskIsRotoBezier>(handle_, static_cast<A_Boolean>(on));
}

} // namespace jostle
