#include "standalone/suites/document_host.h"

#include <array>
#include <cassert>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <utility>

#include "standalone/suites/host_state.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

// Version of the interface that is told to the entry point.
constexpr A_long interfaceMajor = 1;
constexpr A_long interfaceMinor = 0;

constexpr SPErr noSuchSuite = 1;
constexpr SPErr notAcquired = 2;
constexpr SPErr outOfMemory = 3;

struct OfferedSuite {
    const char* name;
    std::int32_t version;
    const void* table;
};

template<class Suite>
constexpr OfferedSuite offer(const Suite& table) {
    return {Suite::suiteName, Suite::suiteVersion, &table};
}

constexpr std::array offeredSuites{
    offer(registerSuite),       offer(commandSuite),        offer(utilitySuite),     offer(utilitySuite7),
    offer(memorySuite),         offer(projSuite),           offer(itemSuite),        offer(itemSuite11),
    offer(compSuite),           offer(compSuite11),         offer(layerSuite),       offer(layerSuite11),
    offer(streamSuite),         offer(streamSuite7),        offer(streamSuite8),     offer(dynamicStreamSuite),
    offer(dynamicStreamSuite2), offer(dynamicStreamSuite3), offer(keyframeSuite),    offer(layerMaskSuite),
    offer(collectionSuite),     offer(footageSuite),        offer(maskOutlineSuite), offer(textLayerSuite),
    offer(pathDataSuite),       offer(persistentDataSuite),
};

// How often each suite is out. Counted apart from a host's state, so that a release that comes late is still seen.
std::array<int, offeredSuites.size()> acquired{};

bool hostLives = false;

std::size_t placeOf(const char* name, std::int32_t version) {
    std::size_t place = 0;
    while (place < offeredSuites.size() && (name == nullptr || offeredSuites[place].version != version ||
                                            std::strcmp(offeredSuites[place].name, name) != 0))
        ++place;
    return place;
}

SPErr acquireSuite(const char* name, std::int32_t version, const void** table) {
    const std::size_t place = placeOf(name, version);
    if (place == offeredSuites.size() || table == nullptr)
        return noSuchSuite;
    ++acquired[place];
    *table = offeredSuites[place].table;
    return 0;
}

SPErr releaseSuite(const char* name, std::int32_t version) {
    const std::size_t place = placeOf(name, version);
    if (place == offeredSuites.size() || acquired[place] == 0) {
        if (hostLives)
            state().note(Misuse::SuiteNotAcquired);
        return notAcquired;
    }
    --acquired[place];
    return 0;
}

SPBoolean isEqual(const char* one, const char* other) {
    return one != nullptr && other != nullptr && std::strcmp(one, other) == 0;
}

SPErr allocateBlock(std::size_t size, void** block) {
    *block = std::malloc(size);
    return *block == nullptr ? outOfMemory : 0;
}

SPErr freeBlock(void* block) {
    std::free(block);
    return 0;
}

SPErr reallocateBlock(void* block, std::size_t size, void** moved) {
    void* place = std::realloc(block, size);
    if (place == nullptr)
        return outOfMemory;
    *moved = place;
    return 0;
}

SPErr undefined() {
    return noSuchSuite;
}

// Not const: entry points take it so.
SPBasicSuite basicSuite{acquireSuite, releaseSuite, isEqual, allocateBlock, freeBlock, reallocateBlock, undefined};

} // namespace

bool HandOuts::allReturned() const {
    return streams == 0 && values == 0 && masks == 0 && maskOutlines == 0 && textOutlines == 0 && memory == 0 &&
           collections == 0 && keyBatches == 0 && suites == 0 && undoGroups == 0;
}

std::string HandOuts::text() const {
    std::string list;
    const auto add = [&](int count, const char* family) {
        if (count != 0)
            list += (list.empty() ? "" : ", ") + std::to_string(count) + ' ' + family;
    };
    add(streams, "streams");
    add(values, "values");
    add(masks, "masks");
    add(maskOutlines, "mask outlines");
    add(textOutlines, "text outlines");
    add(memory, "memory handles");
    add(collections, "collections");
    add(keyBatches, "key batches");
    add(suites, "suites");
    add(undoGroups, "undo groups");
    return list;
}

DocumentHost::DocumentHost(std::unique_ptr<Composition> root, std::string projectName, std::string projectPath,
                           std::filesystem::path preferences)
    : state_(std::make_unique<HostState>(std::move(root), std::move(projectName), std::move(projectPath),
                                         std::move(preferences))) {
    assert(!hostLives && "one host at a time");
    hostLives = true;
    acquired.fill(0);
    currentState = state_.get();
}

DocumentHost::~DocumentHost() {
    for (const DeathHook& hook : state_->deathHooks)
        hook.hook(state_->global, hook.refcon);
    state_->preferences.flush();
    currentState = nullptr;
    hostLives = false;
}

const SPBasicSuite* DocumentHost::basic() const {
    return &basicSuite;
}

A_Err DocumentHost::start(AEGP_EntryPoint entry) {
    const A_Err error = entry(&basicSuite, interfaceMajor, interfaceMinor, pluginId(), &state_->global);
    settle();
    return error;
}

void DocumentHost::updateMenus() {
    const auto hooks = state_->updateMenuHooks;
    for (const UpdateMenuHook& hook : hooks)
        hook.hook(state_->global, hook.refcon, AEGP_WindType_COMP);
    settle();
}

const std::vector<MenuItem>& DocumentHost::menuItems() const {
    return state_->menuItems;
}

bool DocumentHost::chooseCommand(AEGP_Command command) {
    updateMenus();
    bool handled = false;
    for (const MenuItem& item : state_->menuItems) {
        if (item.command != command)
            continue;
        handled = item.enabled && state_->dispatch(command);
        break;
    }
    settle();
    return handled;
}

void DocumentHost::settle() {
    noteWhatIsOut();
    state_->preferences.flush();
}

void DocumentHost::noteWhatIsOut() {
    const HandOuts out = balance();
    const auto add = [&](int count, Misuse misuse) {
        state_->misuses.insert(state_->misuses.end(), static_cast<std::size_t>(count), misuse);
    };
    add(out.streams, Misuse::StreamNotDisposed);
    add(out.values, Misuse::ValueNotDisposed);
    add(out.masks, Misuse::MaskNotDisposed);
    add(out.textOutlines, Misuse::OutlinesNotDisposed);
    add(out.collections, Misuse::CollectionNotDisposed);
    add(out.keyBatches, Misuse::KeyBatchNotEnded);
    add(out.memory, Misuse::MemoryNotFreed);
    add(out.undoGroups, Misuse::UndoGroupNotEnded);
    add(out.suites, Misuse::SuiteNotReleased);
}

const std::vector<Misuse>& DocumentHost::misuses() const {
    return state_->misuses;
}

Composition& DocumentHost::outcome() {
    return *state_->comps.find(state_->openComps.back())->composition;
}

bool DocumentHost::duplicated() const {
    return state_->openComps.size() > 1;
}

const std::vector<std::string>& DocumentHost::reports() const {
    return state_->reports;
}

HandOuts DocumentHost::balance() const {
    HandOuts out;
    out.streams = state_->streamsOut;
    out.values = state_->valuesOut;
    out.masks = static_cast<int>(state_->masks.size());
    out.maskOutlines = static_cast<int>(state_->maskOutlines.size());
    out.textOutlines = static_cast<int>(state_->textOutlines.size());
    out.memory = static_cast<int>(state_->memory.size());
    out.collections = static_cast<int>(state_->collections.size());
    out.keyBatches = static_cast<int>(state_->batches.size());
    out.suites = std::accumulate(acquired.begin(), acquired.end(), 0);
    out.undoGroups = state_->journal.isOpen() ? 1 : 0;
    return out;
}

} // namespace jostle::standalone
