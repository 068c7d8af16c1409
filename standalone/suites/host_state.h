#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/suites.h"
#include "standalone/document/composition.h"
#include "standalone/suites/document_host.h"
#include "standalone/suites/handle_table.h"
#include "standalone/suites/journal.h"
#include "standalone/suites/stream_nodes.h"

/// What stands behind the tables: entries for all handles, and the document they lead to. For the suites only.
namespace jostle::standalone {

struct ItemEntry {
    std::shared_ptr<const Item> item;
    AEGP_CompH comp = nullptr; ///< null for footage and for compositions that are not open
};

/// A layer keeps its entry when its composition is dropped; `layer` is null then.
struct LayerEntry {
    CompEntry* comp = nullptr;
    Layer* layer = nullptr;
    A_long index = 0;
    AEGP_ItemH source = nullptr;
    std::uint64_t stamp = 0;
    std::array<std::uint64_t, streamNodeCount> streamStamps{};
};

/// Part of a selection or of a collection: a layer, or one of its streams.
struct SelectedPlace {
    AEGP_LayerH layer = nullptr;
    bool isStream = false;
    StreamNode node = StreamNode::Root;
};

struct CompEntry {
    std::unique_ptr<Composition> composition; ///< null once dropped
    AEGP_ItemH item = nullptr;
    std::vector<AEGP_LayerH> layers; ///< topmost first
    std::vector<SelectedPlace> selection;
    std::uint64_t stamp = 0;
};

struct StreamRef {
    AEGP_LayerH layerHandle = nullptr;
    LayerEntry* layer = nullptr;
    StreamNode node = StreamNode::Root;
    int openValues = 0;    ///< values read through it and not yet disposed of
    bool disposed = false; ///< kept only until its values are disposed of
    bool owned = false;    ///< belongs to a collection
};

struct MemoryBlock {
    std::unique_ptr<std::byte[]> bytes;
    std::size_t size = 0;
    int locks = 0;
};

struct Collection {
    std::vector<AEGP_CollectionItemV2> items;
};

/// Keys gathered for one stream, in the layout of its track.
struct KeyBatch {
    AEGP_StreamRefH stream = nullptr;
    std::size_t components = 1; ///< numbers per key
    KeyTrack keys;
};

struct CommandHook {
    AEGP_Command command;
    AEGP_HookPriority priority;
    AEGP_CommandHook hook;
    AEGP_CommandRefcon refcon;
};
struct UpdateMenuHook {
    AEGP_UpdateMenuHook hook;
    AEGP_UpdateMenuRefcon refcon;
};
struct DeathHook {
    AEGP_DeathHook hook;
    AEGP_DeathRefcon refcon;
};

class HostState {
public:
    HostState(std::unique_ptr<Composition> root, std::string name, std::string path);

    /// Makes a composition and its layers known. Its handle is the last of `openComps`.
    AEGP_CompH open(std::unique_ptr<Composition> composition);
    /// Drops a composition; handles into it are refused from then on.
    void drop(AEGP_CompH handle);

    /// A stream reference, counted as handed out.
    AEGP_StreamRefH giveStream(AEGP_LayerH layer, StreamNode node);
    /// The reference, if it may be used: not disposed of, its layer alive.
    [[nodiscard]] StreamRef* usableStream(AEGP_StreamRefH handle);
    /// Ends a reference. @return false if it is not out
    bool disposeStream(AEGP_StreamRefH handle);
    void releaseValue(AEGP_StreamRefH handle, StreamRef& ref);

    /// The layer's entry, if the layer is alive.
    [[nodiscard]] LayerEntry* layerOf(AEGP_LayerH handle);
    [[nodiscard]] CompEntry* compOf(AEGP_CompH handle);

    AEGP_MemHandle giveMemory(std::size_t size);
    /// A terminated UTF-16 text from UTF-8.
    AEGP_MemHandle giveText(std::string_view utf8);

    /// Answers a call that this host does not offer: notes it once among the reports, and fails.
    A_Err refuse(const char* operation);

    /// Passes a command to the hooks. @return whether one handled it
    bool dispatch(AEGP_Command command);

    std::string projectName, projectPath;
    HandleTable<ItemEntry, AEGP_ItemH> items{1};
    HandleTable<CompEntry, AEGP_CompH> comps{2};
    HandleTable<LayerEntry, AEGP_LayerH> layers{3};
    HandleTable<StreamRef, AEGP_StreamRefH> streams{4};
    HandleTable<MemoryBlock, AEGP_MemHandle> memory{5};
    HandleTable<Collection, AEGP_Collection2H> collections{6};
    HandleTable<KeyBatch, AEGP_AddKeyframesInfoH> batches{7};
    std::vector<AEGP_CompH> openComps; ///< the root, then the duplicates in the order of their making
    std::unordered_map<const Layer*, AEGP_LayerH> layerHandles;
    std::unordered_map<const Item*, AEGP_ItemH> itemHandles;
    Journal journal;
    std::vector<std::string> reports;
    std::vector<CommandHook> commandHooks;
    std::vector<UpdateMenuHook> updateMenuHooks;
    std::vector<DeathHook> deathHooks;
    std::vector<MenuItem> menuItems;
    AEGP_GlobalRefcon global = nullptr;
    AEGP_Command lastCommand;
    int streamsOut = 0, valuesOut = 0;

private:
    AEGP_ItemH itemHandle(const std::shared_ptr<const Item>& item);
};

/// The state behind the tables. They are used only while a DocumentHost lives.
[[nodiscard]] HostState& state();
void setState(HostState* current);

[[nodiscard]] inline A_Time toHost(HostTime time) {
    return {time.value, time.scale};
}
[[nodiscard]] inline bool isValid(const A_Time* time) {
    return time != nullptr && time->scale != 0;
}
[[nodiscard]] inline bool isValid(AEGP_LTimeMode mode) {
    return mode == AEGP_LTimeMode_LayerTime || mode == AEGP_LTimeMode_CompTime;
}
/// Frame of a valid time in the composition.
[[nodiscard]] inline double frameAt(const CompEntry& comp, const A_Time& time) {
    return comp.composition->clock.frameAt({time.value, time.scale});
}

/// Name of an operation, as a template argument.
template<std::size_t size>
struct OperationName {
    // Implicit on purpose: made from a literal.
    constexpr OperationName(const char (&literal)[size]) {
        for (std::size_t i = 0; i < size; ++i)
            text[i] = literal[i];
    }
    char text[size]{};
};

/// Stands in a table for an operation that this host does not offer.
template<OperationName name, class... Arguments>
A_Err refused(Arguments...) {
    return state().refuse(name.text);
}

} // namespace jostle::standalone
