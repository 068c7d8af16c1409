#include "host/layer.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/host_string.h"

namespace jostle {

AEGP_LayerIDVal Layer::id(HostChain& chain) const {
    AEGP_LayerIDVal id = AEGP_LayerIDVal_NONE;
    chain.call<&AEGP_LayerSuite13::AEGP_GetLayerID>(handle_, &id);
    return id;
}

Layer::Names Layer::names(HostChain& chain) const {
    HostString own(chain);
    HostString source(chain);
    if (!chain.canDispose<&AEGP_MemorySuite1::AEGP_FreeMemHandle>() ||
        !chain.call<&AEGP_LayerSuite13::AEGP_GetLayerName>(chain.pluginId(), handle_, own.out(), source.out()))
        return {};
    return {own.text(), source.text()};
}

AEGP_ObjectType Layer::objectType(HostChain& chain) const {
    AEGP_ObjectType type = AEGP_ObjectType_NONE;
    chain.call<&AEGP_LayerSuite13::AEGP_GetLayerObjectType>(handle_, &type);
    return type;
}

AEGP_LayerFlags Layer::flags(HostChain& chain) const {
    AEGP_LayerFlags flags = AEGP_LayerFlag_NONE;
    chain.call<&AEGP_LayerSuite13::AEGP_GetLayerFlags>(handle_, &flags);
    return flags;
}

bool Layer::is3D(HostChain& chain) const {
    A_Boolean is3D = 0;
    return chain.call<&AEGP_LayerSuite13::AEGP_IsLayer3D>(handle_, &is3D) && is3D != 0;
}

bool Layer::isVideoReallyOn(HostChain& chain) const {
    A_Boolean on = 0;
    return chain.call<&AEGP_LayerSuite13::AEGP_IsLayerVideoReallyOn>(handle_, &on) && on != 0;
}

int Layer::label(HostChain& chain) const {
    AEGP_LabelID label = 0;
    if (!chain.call<&AEGP_LayerSuite13::AEGP_GetLayerLabel>(handle_, &label) || label < 1 || label > 16)
        return 0;
    return label;
}

A_Time Layer::inPoint(HostChain& chain) const {
    A_Time time{0, 1};
    chain.call<&AEGP_LayerSuite13::AEGP_GetLayerInPoint>(handle_, AEGP_LTimeMode_CompTime, &time);
    return time;
}

A_Time Layer::duration(HostChain& chain) const {
    A_Time time{0, 1};
    chain.call<&AEGP_LayerSuite13::AEGP_GetLayerDuration>(handle_, AEGP_LTimeMode_CompTime, &time);
    return time;
}

Item Layer::source(HostChain& chain) const {
    AEGP_ItemH item = nullptr;
    if (!chain.call<&AEGP_LayerSuite13::AEGP_GetLayerSourceItem>(handle_, &item))
        return {};
    return Item(item);
}

Layer Layer::parent(HostChain& chain) const {
    AEGP_LayerH parent = nullptr;
    if (!chain.call<&AEGP_LayerSuite13::AEGP_GetLayerParent>(handle_, &parent))
        return {};
    return Layer(parent);
}

Matrix4 Layer::toWorld(HostChain& chain, A_Time time) const {
    A_Matrix4 matrix{};
    Matrix4 world;
    if (!chain.call<&AEGP_LayerSuite13::AEGP_GetLayerToWorldXform>(handle_, &time, &matrix))
        return world;
    for (int row = 0; row < 4; ++row)
        std::copy(std::begin(matrix.mat[row]), std::end(matrix.mat[row]), std::begin(world.m[row]));
    return world;
}

Stream Layer::stream(HostChain& chain, AEGP_LayerStream which) const {
    AEGP_StreamRefH stream = nullptr;
    if (!chain.call<&AEGP_StreamSuite9::AEGP_GetNewLayerStream>(chain.pluginId(), handle_, which, &stream))
        return {};
    return {chain, stream};
}

Stream Layer::root(HostChain& chain) const {
    AEGP_StreamRefH root = nullptr;
    if (!chain.canDispose<&AEGP_StreamSuite9::AEGP_DisposeStream>() ||
        !chain.call<&AEGP_DynamicStreamSuite5::AEGP_GetNewStreamRefForLayer>(chain.pluginId(), handle_, &root))
        return {};
    return {chain, root};
}

Stream Layer::vectorContents(HostChain& chain) const {
    const Stream groups = root(chain);
    for (int index = 0, count = groups.childCount(); index < count; ++index) {
        Stream group = groups.childAt(index);
        if (group.matchName() == "ADBE Root Vectors Group")
            return group;
    }
    return {};
}

int Layer::maskCount(HostChain& chain) const {
    return root(chain).child("ADBE Mask Parade").childCount();
}

void Layer::clearParent(HostChain& chain) const {
    chain.call<&AEGP_LayerSuite13::AEGP_SetLayerParent>(handle_, AEGP_LayerH{nullptr});
}

void Layer::setParent(HostChain& chain, const Layer& parent) const {
    chain.call<&AEGP_LayerSuite13::AEGP_SetLayerParent>(handle_, parent.handle());
}

void Layer::setFlag(HostChain& chain, AEGP_LayerFlags flag, bool on) const {
    chain.call<&AEGP_LayerSuite13::AEGP_SetLayerFlag>(handle_, flag, static_cast<A_Boolean>(on));
}

void Layer::trySetFlag(HostChain& chain, AEGP_LayerFlags flag, bool on) const {
    chain.ask<&AEGP_LayerSuite13::AEGP_SetLayerFlag>(handle_, flag, static_cast<A_Boolean>(on));
}

int Layer::index(HostChain& chain) const {
    A_long index = 0;
    chain.call<&AEGP_LayerSuite13::AEGP_GetLayerIndex>(handle_, &index);
    return index;
}

void Layer::moveTo(HostChain& chain, int index) const {
    chain.call<&AEGP_LayerSuite13::AEGP_ReorderLayer>(handle_, A_long{index});
}

void Layer::setName(HostChain& chain, const std::u16string& name) const {
    chain.call<&AEGP_LayerSuite13::AEGP_SetLayerName>(handle_, name.c_str());
}

Layer Layer::duplicate(HostChain& chain) const {
    AEGP_LayerH copy = nullptr;
    if (!chain.call<&AEGP_LayerSuite13::AEGP_DuplicateLayer>(handle_, &copy))
        return {};
    return Layer(copy);
}

void Layer::remove(HostChain& chain) const {
    if (exists())
        chain.dispose<&AEGP_LayerSuite13::AEGP_DeleteLayer>(handle_);
}

} // namespace jostle
