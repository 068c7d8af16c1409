#include "host/item.h"

namespace jostle {

A_Time Item::duration(HostChain& chain) const {
    A_Time duration{0, 1};
    if (exists())
        chain.call<&AEGP_ItemSuite13::AEGP_GetItemDuration>(handle_, &duration);
    return duration;
}

Item::Size Item::size(HostChain& chain) const {
    A_long width = 0;
    A_long height = 0;
    if (!exists() || !chain.call<&AEGP_ItemSuite13::AEGP_GetItemDimensions>(handle_, &width, &height))
        return {};
    return {width, height};
}

double Item::pixelAspect(HostChain& chain) const {
    A_Ratio ratio{1, 1};
    if (!exists() || !chain.call<&AEGP_ItemSuite13::AEGP_GetItemPixelAspectRatio>(handle_, &ratio) || ratio.num <= 0 ||
        ratio.den == 0)
        return 1.0;
    return static_cast<double>(ratio.num) / ratio.den;
}

std::optional<AEGP_ColorVal> Item::solidColor(HostChain& chain) const {
    AEGP_ItemType type = AEGP_ItemType_NONE;
    AEGP_FootageH footage = nullptr;
    AEGP_FootageSignature signature = AEGP_FootageSignature_NONE;
    AEGP_ColorVal color{};
    if (!exists() || !chain.call<&AEGP_ItemSuite13::AEGP_GetItemType>(handle_, &type) || type != AEGP_ItemType_FOOTAGE)
        return {};
    if (!chain.call<&AEGP_FootageSuite11::AEGP_GetMainFootageFromItem>(handle_, &footage) || footage == nullptr)
        return {};
    if (!chain.call<&AEGP_FootageSuite11::AEGP_GetFootageSignature>(footage, &signature) ||
        signature != AEGP_FootageSignature_SOLID)
        return {};
    if (!chain.call<&AEGP_FootageSuite11::AEGP_GetSolidFootageColor>(handle_, A_Boolean{0}, &color))
        return {};
    return color;
}

} // namespace jostle
