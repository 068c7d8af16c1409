#include "standalone/suites/host_state.h"

#include <algorithm>
#include <cassert>
#include <cstring>

#include "standalone/suites/text.h"

namespace jostle::standalone {

namespace {

constexpr AEGP_Command firstFreeCommand = 10000; // above the host's own

HostState* currentState = nullptr;

} // namespace

HostState& state() {
    assert(currentState != nullptr && "the suites are used only while a DocumentHost lives");
    return *currentState;
}

void setState(HostState* current) {
    currentState = current;
}

HostState::HostState(std::unique_ptr<Composition> root, std::string name, std::string path)
    : projectName(std::move(name)), projectPath(std::move(path)), lastCommand(firstFreeCommand - 1) {
    open(std::move(root));
}

AEGP_ItemH HostState::itemHandle(const std::shared_ptr<const Item>& item) {
    if (item == nullptr)
        return nullptr;
    const auto [place, isNew] = itemHandles.try_emplace(item.get(), nullptr);
    if (isNew)
        place->second = items.add({item});
    return place->second;
}

AEGP_CompH HostState::open(std::unique_ptr<Composition> composition) {
    Composition& document = *composition;
    if (document.item == nullptr)
        document.item = std::make_shared<Item>(Item{Item::Kind::Composition, false, {}, 0, 0, {}});
    const AEGP_CompH handle = comps.add({});
    CompEntry& comp = *comps.find(handle);
    comp.composition = std::move(composition);
    comp.item = itemHandle(document.item);
    items.find(comp.item)->comp = handle;
    for (const auto& layer : document.layers) {
        const auto index = static_cast<A_long>(comp.layers.size());
        const AEGP_LayerH layerHandle = layers.add({&comp, layer.get(), index, itemHandle(layer->item)});
        comp.layers.push_back(layerHandle);
        layerHandles[layer.get()] = layerHandle;
    }
    openComps.push_back(handle);
    return handle;
}

void HostState::drop(AEGP_CompH handle) {
    CompEntry* comp = compOf(handle);
    if (comp == nullptr)
        return;
    for (const AEGP_LayerH layer : comp->layers) {
        LayerEntry& entry = *layers.find(layer);
        layerHandles.erase(entry.layer);
        entry.layer = nullptr;
    }
    items.find(comp->item)->comp = nullptr;
    comp->composition.reset();
    openComps.erase(std::remove(openComps.begin(), openComps.end(), handle), openComps.end());
}

AEGP_StreamRefH HostState::giveStream(AEGP_LayerH layer, StreamNode node) {
    ++streamsOut;
    return streams.add({layer, layers.find(layer), node});
}

StreamRef* HostState::usableStream(AEGP_StreamRefH handle) {
    StreamRef* ref = streams.find(handle);
    return ref != nullptr && !ref->disposed && ref->layer->layer != nullptr ? ref : nullptr;
}

bool HostState::disposeStream(AEGP_StreamRefH handle) {
    StreamRef* ref = streams.find(handle);
    if (ref == nullptr || ref->disposed)
        return false;
    --streamsOut;
    ref->disposed = true;
    if (ref->openValues == 0)
        streams.remove(handle);
    return true;
}

void HostState::releaseValue(AEGP_StreamRefH handle, StreamRef& ref) {
    --valuesOut;
    --ref.openValues;
    if (ref.disposed && ref.openValues == 0)
        streams.remove(handle);
}

LayerEntry* HostState::layerOf(AEGP_LayerH handle) {
    LayerEntry* entry = layers.find(handle);
    return entry != nullptr && entry->layer != nullptr ? entry : nullptr;
}

CompEntry* HostState::compOf(AEGP_CompH handle) {
    CompEntry* entry = comps.find(handle);
    return entry != nullptr && entry->composition != nullptr ? entry : nullptr;
}

AEGP_MemHandle HostState::giveMemory(std::size_t size) {
    return memory.add({std::make_unique<std::byte[]>(std::max<std::size_t>(size, 1)), size, 0});
}

AEGP_MemHandle HostState::giveText(std::string_view utf8) {
    const std::u16string units = utf16Of(utf8);
    const std::size_t size = (units.size() + 1) * sizeof(char16_t);
    const AEGP_MemHandle handle = giveMemory(size);
    std::memcpy(memory.find(handle)->bytes.get(), units.c_str(), size);
    return handle;
}

A_Err HostState::refuse(const char* operation) {
    std::string text = std::string(operation) + " is not offered for documents of this program.";
    if (std::find(reports.begin(), reports.end(), text) == reports.end())
        reports.push_back(std::move(text));
    return A_Err_GENERIC;
}

bool HostState::dispatch(AEGP_Command command) {
    A_Boolean handled = 0;
    const std::vector<CommandHook> hooks = commandHooks; // a hook may run a whole session
    for (const CommandHook& hook : hooks) {
        if (hook.command != AEGP_Command_ALL && hook.command != command)
            continue;
        A_Boolean handledNow = 0;
        if (hook.hook(global, hook.refcon, command, hook.priority, handled, &handledNow) == A_Err_NONE && handledNow)
            handled = 1;
    }
    return handled != 0;
}

} // namespace jostle::standalone
