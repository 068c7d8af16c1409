#include "host/composition.h"

namespace jostle {

Selection::Selection(HostChain& chain, AEGP_CompH composition) : chain_(&chain) {
    if (!chain.canDispose<&AEGP_CollectionSuite2::AEGP_DisposeCollection>() ||
        !chain.call<&AEGP_CompSuite15::AEGP_GetNewCollectionFromCompSelection>(chain.pluginId(), composition, &handle_))
        handle_ = nullptr;
}

Selection::~Selection() {
    if (handle_ != nullptr)
        chain_->dispose<&AEGP_CollectionSuite2::AEGP_DisposeCollection>(handle_);
}

void Selection::giveBackTo(AEGP_CompH composition) const {
    if (handle_ != nullptr)
        chain_->call<&AEGP_CompSuite15::AEGP_SetSelection>(composition, handle_);
}

Item Composition::item(HostChain& chain) const {
    AEGP_ItemH item = nullptr;
    if (!exists() || !chain.call<&AEGP_CompSuite15::AEGP_GetItemFromComp>(handle_, &item))
        return {};
    return Item(item);
}

A_Time Composition::frameDuration(HostChain& chain) const {
    A_Time duration{};
    if (exists())
        chain.call<&AEGP_CompSuite15::AEGP_GetCompFrameDuration>(handle_, &duration);
    return duration;
}

int Composition::layerCount(HostChain& chain) const {
    A_long count = 0;
    if (!exists() || !chain.call<&AEGP_LayerSuite13::AEGP_GetCompNumLayers>(handle_, &count))
        return 0;
    return count;
}

Layer Composition::layer(HostChain& chain, int index) const {
    AEGP_LayerH layer = nullptr;
    if (!exists() || !chain.call<&AEGP_LayerSuite13::AEGP_GetCompLayerByIndex>(handle_, index, &layer))
        return {};
    return Layer(layer);
}

Composition Composition::duplicate(HostChain& chain) const {
    AEGP_CompH copy = nullptr;
    if (!exists() || !chain.call<&AEGP_CompSuite15::AEGP_DuplicateComp>(handle_, &copy))
        return {};
    return Composition(copy);
}

Layer Composition::createShapeLayer(HostChain& chain) const {
    AEGP_LayerH layer = nullptr;
    if (!exists() || !chain.call<&AEGP_CompSuite15::AEGP_CreateVectorLayerInComp>(handle_, &layer))
        return {};
    return Layer(layer);
}

void Composition::setWorkArea(HostChain& chain, A_Time start, A_Time duration) const {
    if (exists())
        chain.call<&AEGP_CompSuite15::AEGP_SetCompWorkAreaStartAndDuration>(handle_, &start, &duration);
}

Composition activeComposition(HostChain& chain) {
    AEGP_ItemH item = nullptr;
    AEGP_ItemType type = AEGP_ItemType_NONE;
    AEGP_CompH composition = nullptr;
    if (!chain.call<&AEGP_ItemSuite13::AEGP_GetActiveItem>(&item) || item == nullptr)
        return {};
    if (!chain.call<&AEGP_ItemSuite13::AEGP_GetItemType>(item, &type) || type != AEGP_ItemType_COMP)
        return {};
    if (!chain.call<&AEGP_CompSuite15::AEGP_GetCompFromItem>(item, &composition))
        return {};
    return Composition(composition);
}

} // namespace jostle
