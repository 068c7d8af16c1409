#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/suites.h"
#include "standalone/document/composition.h"
#include "standalone/preferences.h"
#include "standalone/suites/document_host.h"
#include "standalone/suites/handle_table.h"
#include "standalone/suites/journal.h"

/// What stands behind the tables: entries for all handles, and the document they lead to. For the suites only.
namespace jostle::standalone {

struct ItemEntry {
    std::shared_ptr<const Item> item;
    AEGP_CompH comp = nullptr; ///< null for footage and for compositions that are not open
};

/// A layer keeps its entry, and all that is taken out of it, when it is deleted or its composition is dropped.
struct LayerEntry {
    CompEntry* comp = nullptr;
    Layer* layer = nullptr; ///< null while it is not in its composition
    A_long index = 0;
    AEGP_ItemH source = nullptr;
    std::unique_ptr<Layer> kept{};                         ///< the layer while it is not in its composition
    std::vector<std::shared_ptr<TreeNode>> removedNodes{}; ///< each with a null parent, or back in the tree
};

/// Part of a selection: a layer, or one of its streams.
struct SelectedPlace {
    AEGP_LayerH layer = nullptr;
    TreeNode* node = nullptr; ///< null for the layer
};

struct CompEntry {
    std::unique_ptr<Composition> composition; ///< null once dropped
    AEGP_ItemH item = nullptr;
    std::vector<AEGP_LayerH> layers; ///< topmost first
    std::vector<SelectedPlace> selection;
    int lastLayerId = 0; ///< the greatest ever given, so that none is given again
};

struct StreamRef {
    AEGP_LayerH layerHandle = nullptr;
    LayerEntry* layer = nullptr;
    TreeNode* node = nullptr; ///< in the layer's tree or among its removed nodes
    int openValues = 0;       ///< values read through it and not yet disposed of
    bool disposed = false;    ///< kept only until its values are disposed of
    bool owned = false;       ///< belongs to a collection
};

struct MaskRef {
    AEGP_LayerH layerHandle = nullptr;
    LayerEntry* layer = nullptr;
    TreeNode* node = nullptr; ///< as of a stream
};

struct TextOutlineSet {
    std::vector<PF_PathOutlinePtr> outlines;
};

struct MemoryBlock {
    std::unique_ptr<std::byte[]> bytes;
    std::size_t size = 0;
    int locks = 0;
};

struct Collection {
    std::vector<AEGP_CollectionItemV2> items;
};

/// A key as a batch gathers it.
struct NewKey {
    double frame = 0;
    Components value{}; ///< of outlines unused
};

/// Keys gathered for one stream.
struct KeyBatch {
    AEGP_StreamRefH stream = nullptr;
    std::size_t components = 1; ///< numbers per key; 0 for outlines
    std::vector<NewKey> keys{};
    std::vector<PathValue> outlines{}; ///< one for each key
    StreamRef* target = nullptr;       ///< what `stream` led to when the host's `revision` was `checkedAt`
    std::uint64_t checkedAt = 0;
    // Of the target as it was then:
    FrameClock clock{};    ///< its composition's
    bool isPlain = false;  ///< its value is the same at all times, and a suite carries all of its components
    Components present{};  ///< that value
    std::size_t given = 0; ///< how many components a suite carries of it
};

/// Copies of elements and masks, cut off from where they were.
using Clipboard = std::vector<std::shared_ptr<TreeNode>>;

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
    HostState(std::unique_ptr<Composition> root, std::string name, std::string path,
              std::filesystem::path preferencesFile);

    /// Makes a composition and its layers known. Its handle is the last of `openComps`.
    AEGP_CompH open(std::unique_ptr<Composition> composition);
    /// Drops a composition; handles into it are refused from then on.
    void drop(AEGP_CompH handle);

    /// Makes a composition hold exactly these layers in this order. Those that go stay with their entries.
    void arrange(CompEntry& comp, std::vector<AEGP_LayerH> order);
    /// Adds a layer at a place, under a number of its own.
    AEGP_LayerH insertLayer(CompEntry& comp, std::unique_ptr<Layer> layer, std::size_t place);

    /// A stream reference, counted as handed out.
    AEGP_StreamRefH giveStream(AEGP_LayerH layer, TreeNode& node);
    /// The reference, if it may be used: not disposed of, its layer and its node in the document.
    [[nodiscard]] StreamRef* usableStream(AEGP_StreamRefH handle);
    /// The same of a leaf, or of a group.
    [[nodiscard]] StreamRef* leafOf(AEGP_StreamRefH handle);
    [[nodiscard]] StreamRef* groupOf(AEGP_StreamRefH handle);
    /// Ends a reference. @return false if it is not out
    bool disposeStream(AEGP_StreamRefH handle);

    /// Another number whenever a stream that was usable may not be so any longer.
    [[nodiscard]] std::uint64_t revision() const { return journal.changes() + streamsDisposed; }

    /// Fills a record with a value read through a reference, counted as handed out.
    void giveValue(AEGP_StreamRefH handle, StreamRef& ref, const AEGP_StreamVal2& value, AEGP_StreamValue2& record);
    void releaseValue(AEGP_StreamRefH handle, StreamRef& ref);
    /// Whether a record holds a value that is out and of the type of a leaf.
    [[nodiscard]] bool isValueFor(const TreeNode& leaf, const AEGP_StreamValue2* record);

    /// The mask that a reference leads to; null if it may not be used.
    [[nodiscard]] MaskRef* usableMask(AEGP_MaskRefH handle);

    /// The layer's entry, if the layer is in a composition.
    [[nodiscard]] LayerEntry* layerOf(AEGP_LayerH handle);
    [[nodiscard]] CompEntry* compOf(AEGP_CompH handle);
    /// Root of a layer's streams.
    [[nodiscard]] static TreeNode& treeOf(const LayerEntry& entry);
    /// Whether a node is in the tree of a layer that is in a composition.
    [[nodiscard]] static bool isAttached(const LayerEntry& entry, const TreeNode& node);
    /// What of a selection is still in the document.
    [[nodiscard]] std::vector<SelectedPlace> selectionOf(const CompEntry& comp);

    AEGP_MemHandle giveMemory(std::size_t size);
    /// A terminated UTF-16 text from UTF-8.
    AEGP_MemHandle giveText(std::string_view utf8);
    /// A terminated text of bytes.
    AEGP_MemHandle giveBytes(std::string_view text);

    /// Answers a call that this host does not offer: notes it once among the reports, and fails.
    A_Err refuse(const char* operation);
    /// Adds a text to the reports unless it is among them.
    void reportOnce(std::string text);
    /// Notes a misuse. @return the error that answers it
    A_Err note(Misuse misuse, A_Err error = A_Err_PARAMETER);
    /// Notes the use of a handle that its table does not know.
    template<class Table, class Handle>
    void noteUnknown(const Table& table, Handle handle, Misuse misuse = Misuse::UsedAfterDisposal) {
        if (table.wasOut(handle))
            note(misuse);
    }
    /// Whether a time may be used; notes it if it may not.
    [[nodiscard]] bool isValid(const A_Time* time) {
        if (time != nullptr && time->scale == 0)
            note(Misuse::TimeWithoutScale);
        return time != nullptr && time->scale != 0;
    }

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
    HandleTable<MaskRef, AEGP_MaskRefH> masks{8};
    HandleTable<PathValue, AEGP_MaskOutlineValH> maskOutlines{9}; ///< each in a value that is out
    HandleTable<TextOutlineSet, AEGP_TextOutlinesH> textOutlines{10};
    HandleTable<PathValue, PF_PathOutlinePtr> textPaths{11}; ///< each in a set of the above
    std::vector<AEGP_CompH> openComps; ///< the root, then the duplicates in the order of their making
    std::unordered_map<const Layer*, AEGP_LayerH> layerHandles;
    std::unordered_map<const Item*, AEGP_ItemH> itemHandles;
    Journal journal;
    Clipboard clipboard;
    Preferences preferences;
    std::vector<std::string> reports;
    std::vector<Misuse> misuses;
    std::vector<CommandHook> commandHooks;
    std::vector<UpdateMenuHook> updateMenuHooks;
    std::vector<DeathHook> deathHooks;
    std::vector<MenuItem> menuItems;
    AEGP_GlobalRefcon global = nullptr;
    AEGP_Command lastCommand;
    int streamsOut = 0, valuesOut = 0;
    std::uint64_t streamsDisposed = 0;
    std::vector<NewKey> spareKeys; ///< of a batch that has ended, for its memory
    struct {
        AEGP_AddKeyframesInfoH handle = nullptr;
        KeyBatch* batch = nullptr;
    } plainBatch; ///< one that is plain, with its target, until the revision is another one than its `checkedAt`

private:
    AEGP_ItemH itemHandle(const std::shared_ptr<const Item>& item);
};

/// The living host's; null without one.
inline HostState* currentState = nullptr;

/// The state behind the tables. They are used only while a DocumentHost lives.
[[nodiscard]] inline HostState& state() {
    assert(currentState != nullptr && "the suites are used only while a DocumentHost lives");
    return *currentState;
}

[[nodiscard]] inline A_Time toHost(HostTime time) {
    return {time.value, time.scale};
}
[[nodiscard]] inline bool isValid(AEGP_LTimeMode mode) {
    return mode == AEGP_LTimeMode_LayerTime || mode == AEGP_LTimeMode_CompTime;
}
/// Frame of a valid time in the composition.
[[nodiscard]] inline double frameAt(const CompEntry& comp, const A_Time& time) {
    return comp.composition->clock.frameAt({time.value, time.scale});
}

} // namespace jostle::standalone
