#include "standalone/suites/host_state.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "standalone/suites/stream_edits.h"
#include "standalone/suites/stream_nodes.h"
#include "standalone/suites/text.h"

namespace jostle::standalone {

namespace {

constexpr AEGP_Command firstFreeCommand = 10000; // above the host's own

} // namespace

HostState::HostState(std::unique_ptr<Composition> root, std::string name, std::string path,
                     std::filesystem::path preferencesFile)
    : projectName(std::move(name)),
      projectPath(std::move(path)),
      preferences(std::move(preferencesFile), [this](std::string text) { reportOnce(std::move(text)); }),
      lastCommand(firstFreeCommand - 1) {
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
        comp.lastLayerId = std::max(comp.lastLayerId, layer->id);
    }
    openComps.push_back(handle);
    return handle;
}

void HostState::drop(AEGP_CompH handle) {
    CompEntry* comp = compOf(handle);
    if (comp == nullptr)
        return;
    arrange(*comp, {}); // the layers stay with their entries: references may still be out
    items.find(comp->item)->comp = nullptr;
    comp->composition.reset();
    openComps.erase(std::remove(openComps.begin(), openComps.end(), handle), openComps.end());
}

void HostState::arrange(CompEntry& comp, std::vector<AEGP_LayerH> order) {
    Composition& composition = *comp.composition;
    for (const AEGP_LayerH handle : comp.layers) {
        LayerEntry& entry = *layers.find(handle);
        entry.kept = std::move(composition.layers[static_cast<std::size_t>(entry.index)]);
        layerHandles.erase(entry.layer);
        entry.layer = nullptr;
    }
    composition.layers.clear();
    for (const AEGP_LayerH handle : order) {
        LayerEntry& entry = *layers.find(handle);
        entry.layer = entry.kept.get();
        entry.index = static_cast<A_long>(composition.layers.size());
        layerHandles[entry.layer] = handle;
        composition.layers.push_back(std::move(entry.kept));
    }
    comp.layers = std::move(order);
    for (const auto& layer : composition.layers) {
        if (layer->parent == nullptr || layerHandles.count(layer->parent) > 0)
            continue;
        layer->parent = nullptr; // undone under a layer that was hung on it without a record
        layer->parentId = noParent;
        layer->changed = true;
    }
}

AEGP_LayerH HostState::insertLayer(CompEntry& comp, std::unique_ptr<Layer> layer, std::size_t place) {
    if (comp.lastLayerId < std::numeric_limits<int>::max()) {
        layer->id = ++comp.lastLayerId;
    } else { // a file may number its layers as high as it likes
        layer->id = 1;
        const auto& present = comp.composition->layers;
        while (std::any_of(present.begin(), present.end(), [&](const auto& other) { return other->id == layer->id; }))
            ++layer->id;
    }
    layer->idInFile = false;
    const AEGP_ItemH source = itemHandle(layer->item);
    const AEGP_LayerH handle = layers.add({&comp, nullptr, 0, source, std::move(layer)});
    journal.touchComposition(comp);
    comp.composition->changed = true;
    std::vector<AEGP_LayerH> order = comp.layers;
    order.insert(order.begin() + static_cast<std::ptrdiff_t>(place), handle);
    arrange(comp, std::move(order));
    return handle;
}

AEGP_StreamRefH HostState::giveStream(AEGP_LayerH layer, TreeNode& node) {
    ++streamsOut;
    return streams.add({layer, layers.find(layer), &node});
}

StreamRef* HostState::usableStream(AEGP_StreamRefH handle) {
    StreamRef* ref = streams.find(handle);
    if (ref == nullptr || ref->disposed) {
        if (ref != nullptr || streams.wasOut(handle))
            note(Misuse::UsedAfterDisposal);
        return nullptr;
    }
    if (isAttached(*ref->layer, *ref->node))
        return ref;
    note(Misuse::UsedAfterDeletion);
    return nullptr;
}

StreamRef* HostState::leafOf(AEGP_StreamRefH handle) {
    StreamRef* ref = usableStream(handle);
    if (ref == nullptr || factsOf(*ref->node).form != ValueForm::None)
        return ref;
    note(Misuse::WrongStreamType);
    return nullptr;
}

StreamRef* HostState::groupOf(AEGP_StreamRefH handle) {
    StreamRef* ref = usableStream(handle);
    if (ref == nullptr || !isLeaf(*ref->node))
        return ref;
    note(Misuse::WrongStreamType);
    return nullptr;
}

bool HostState::disposeStream(AEGP_StreamRefH handle) {
    StreamRef* ref = streams.find(handle);
    if (ref == nullptr || ref->disposed) {
        if (ref != nullptr || streams.wasOut(handle))
            note(Misuse::DisposedTwice);
        return false;
    }
    --streamsOut;
    ++streamsDisposed;
    ref->disposed = true;
    if (ref->openValues == 0)
        streams.remove(handle);
    return true;
}

void HostState::giveValue(AEGP_StreamRefH handle, StreamRef& ref, const AEGP_StreamVal2& value,
                          AEGP_StreamValue2& record) {
    record = {handle, value};
    ++ref.openValues;
    ++valuesOut;
}

void HostState::releaseValue(AEGP_StreamRefH handle, StreamRef& ref) {
    --valuesOut;
    --ref.openValues;
    if (ref.disposed && ref.openValues == 0)
        streams.remove(handle);
}

bool HostState::isValueFor(const TreeNode& leaf, const AEGP_StreamValue2* record) {
    if (record == nullptr)
        return false;
    const StreamRef* source = streams.find(record->streamH);
    const bool isPath = factsOf(leaf).form == ValueForm::Path;
    if (source == nullptr || source->openValues == 0 ||
        (isPath && typeOf(*source->node) == AEGP_StreamType_MASK && maskOutlines.find(record->val.mask) == nullptr)) {
        note(Misuse::ValueAfterDisposal);
        return false;
    }
    if (suiteComponents(*source->node) == suiteComponents(leaf) &&
        (typeOf(*source->node) == AEGP_StreamType_COLOR) == (typeOf(leaf) == AEGP_StreamType_COLOR))
        return true;
    note(Misuse::ValueOfAnotherType);
    return false;
}

MaskRef* HostState::usableMask(AEGP_MaskRefH handle) {
    MaskRef* ref = masks.find(handle);
    if (ref == nullptr) {
        noteUnknown(masks, handle);
        return nullptr;
    }
    if (isAttached(*ref->layer, *ref->node))
        return ref;
    note(Misuse::UsedAfterDeletion);
    return nullptr;
}

TreeNode& HostState::treeOf(const LayerEntry& entry) {
    return jostle::standalone::treeOf(*entry.comp->composition, *entry.layer);
}

bool HostState::isAttached(const LayerEntry& entry, const TreeNode& node) {
    if (entry.layer == nullptr)
        return false;
    const TreeNode* top = &node;
    while (top->parent != nullptr)
        top = top->parent;
    return top == entry.layer->tree.get();
}

std::vector<SelectedPlace> HostState::selectionOf(const CompEntry& comp) {
    std::vector<SelectedPlace> present;
    for (const SelectedPlace& place : comp.selection) {
        const LayerEntry* layer = layerOf(place.layer);
        if (layer != nullptr && (place.node == nullptr || isAttached(*layer, *place.node)))
            present.push_back(place);
    }
    return present;
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

AEGP_MemHandle HostState::giveBytes(std::string_view text) {
    const AEGP_MemHandle handle = giveMemory(text.size() + 1);
    std::byte* bytes = memory.find(handle)->bytes.get();
    std::memcpy(bytes, text.data(), text.size());
    bytes[text.size()] = std::byte{0};
    return handle;
}

A_Err HostState::refuse(const char* operation) {
    reportOnce(std::string(operation) + " is not offered for documents of this program.");
    return A_Err_GENERIC;
}

void HostState::reportOnce(std::string text) {
    if (std::find(reports.begin(), reports.end(), text) == reports.end())
        reports.push_back(std::move(text));
}

A_Err HostState::note(Misuse misuse, A_Err error) {
    misuses.push_back(misuse);
    return error;
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
