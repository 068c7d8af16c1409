#include "host/layer_filter.h"

namespace jostle {

LayerOutcome visibilityOf(HostChain& chain, const Layer& layer, AEGP_ObjectType type) {
    const AEGP_LayerFlags flags = layer.flags(chain);
    const auto has = [flags](AEGP_LayerFlags flag) { return (flags & flag) != 0; };
    if (chain.failed())
        return LayerOutcome::Unreadable;
    if (type == AEGP_ObjectType_CAMERA)
        return LayerOutcome::Camera;
    if (type == AEGP_ObjectType_LIGHT)
        return LayerOutcome::Light;
    if (type != AEGP_ObjectType_AV && type != AEGP_ObjectType_TEXT && type != AEGP_ObjectType_VECTOR)
        return LayerOutcome::UnknownKind;
    if (has(AEGP_LayerFlag_NULL_LAYER))
        return LayerOutcome::Null;
    if (has(AEGP_LayerFlag_ADJUSTMENT_LAYER))
        return LayerOutcome::Adjustment;
    if (has(AEGP_LayerFlag_GUIDE_LAYER))
        return LayerOutcome::Guide;
    if (!has(AEGP_LayerFlag_VIDEO_ACTIVE))
        return LayerOutcome::Hidden;
    if (layer.is3D(chain))
        return LayerOutcome::ThreeD;
    if (!layer.isVideoReallyOn(chain))
        return chain.failed() ? LayerOutcome::Unreadable : LayerOutcome::NotShown;
    return LayerOutcome::Body;
}

LayerOutcome outcomeOf(HostChain& chain, const Layer& layer, AEGP_ObjectType type) {
    const LayerOutcome outcome = visibilityOf(chain, layer, type);
    if (outcome != LayerOutcome::Body || type != AEGP_ObjectType_AV)
        return outcome;
    const Item source = layer.source(chain);
    const Item::Size size = source.size(chain);
    if (chain.failed())
        return LayerOutcome::Unreadable;
    if (!source.exists())
        return LayerOutcome::NoSource;
    return size.width < 1 && size.height < 1 ? LayerOutcome::NoPicture : LayerOutcome::Body;
}

} // namespace jostle
