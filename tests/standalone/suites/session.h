#pragma once

#include <optional>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "standalone/lottie/writer.h"
#include "tests/standalone/suites/rich_document.h"

namespace jostle::standalone::test {

/// The error of a call, and what it gives at its last parameter.
template<class... Parameters, class... Arguments>
auto asked(A_Err (*call)(Parameters...), Arguments... arguments) {
    using Last = std::tuple_element_t<sizeof...(Parameters) - 1, std::tuple<Parameters...>>;
    std::remove_pointer_t<Last> answer{};
    const A_Err error = call(arguments..., &answer);
    return std::pair(error, answer);
}

/// What a call gives at its last parameter, where it is expected to succeed.
template<class Call, class... Arguments>
auto got(Call call, Arguments... arguments) {
    const auto [error, answer] = asked(call, arguments...);
    EXPECT_EQ(error, A_Err_NONE);
    return answer;
}

using Keys = std::vector<std::pair<A_long, double>>;

/// A host over a document, and the calls that a plug-in makes. Each of them is expected to succeed.
class Session {
public:
    explicit Session(ReadResult read = richDocument(), const std::string& name = "scene.json")
        : source(std::move(read.source)), host(std::move(read.composition), name, "/films/scene.json") {}

    std::shared_ptr<const LottieSource> source;
    DocumentHost host;
    std::optional<AEGP_SuiteHandler> suites{std::in_place, host.basic()};

    template<class Suite>
    const Suite& table() {
        return *suites->get<Suite>();
    }
    const AEGP_ItemSuite13& items() { return table<AEGP_ItemSuite13>(); }
    const AEGP_CompSuite15& comps() { return table<AEGP_CompSuite15>(); }
    const AEGP_LayerSuite13& layers() { return table<AEGP_LayerSuite13>(); }
    const AEGP_StreamSuite9& streams() { return table<AEGP_StreamSuite9>(); }
    const AEGP_DynamicStreamSuite5& tree() { return table<AEGP_DynamicStreamSuite5>(); }
    const AEGP_KeyframeSuite4& keyframes() { return table<AEGP_KeyframeSuite4>(); }
    const AEGP_LayerMaskSuite6& masks() { return table<AEGP_LayerMaskSuite6>(); }
    const AEGP_MaskOutlineSuite3& outlines() { return table<AEGP_MaskOutlineSuite3>(); }
    const AEGP_CollectionSuite2& collections() { return table<AEGP_CollectionSuite2>(); }
    const AEGP_MemorySuite1& memory() { return table<AEGP_MemorySuite1>(); }
    const AEGP_UtilitySuite11& utility() { return table<AEGP_UtilitySuite11>(); }
    [[nodiscard]] AEGP_PluginID id() const { return host.pluginId(); }

    AEGP_CompH comp() { return got(comps().AEGP_GetCompFromItem, got(items().AEGP_GetActiveItem)); }
    AEGP_LayerH layer(A_long index, AEGP_CompH in = nullptr) {
        return got(layers().AEGP_GetCompLayerByIndex, in ? in : comp(), index);
    }
    AEGP_StreamRefH stream(AEGP_LayerH of, AEGP_LayerStream which) {
        return got(streams().AEGP_GetNewLayerStream, id(), of, which);
    }
    AEGP_StreamRefH root(AEGP_LayerH of) { return got(tree().AEGP_GetNewStreamRefForLayer, id(), of); }
    /// Follows match names and indices, as in "ADBE Mask Parade/0". Disposes of the group.
    AEGP_StreamRefH below(AEGP_StreamRefH group, const std::string& path) {
        std::istringstream steps(path);
        for (std::string step; std::getline(steps, step, '/');) {
            const bool isIndex = step[0] >= '0' && step[0] <= '9';
            const AEGP_StreamRefH next = isIndex
                                             ? got(tree().AEGP_GetNewStreamRefByIndex, id(), group, step[0] - '0')
                                             : got(tree().AEGP_GetNewStreamRefByMatchname, id(), group, step.c_str());
            EXPECT_NE(next, nullptr) << step;
            dispose({group});
            group = next;
        }
        return group;
    }
    AEGP_StreamRefH place(A_long layerIndex, const std::string& path) { return below(root(layer(layerIndex)), path); }
    void dispose(std::initializer_list<AEGP_StreamRefH> references) {
        for (const AEGP_StreamRefH reference : references)
            EXPECT_EQ(streams().AEGP_DisposeStream(reference), A_Err_NONE);
    }
    /// Disposes of what it deletes.
    void remove(AEGP_StreamRefH stream) {
        EXPECT_EQ(tree().AEGP_DeleteStream(stream), A_Err_NONE);
        dispose({stream});
    }
    std::u16string nameOf(AEGP_StreamRefH stream) {
        return takeText(got(streams().AEGP_GetStreamName, id(), stream, A_Boolean{0}));
    }

    AEGP_MaskRefH mask(AEGP_LayerH of, A_long index) { return got(masks().AEGP_GetLayerMaskByIndex, of, index); }

    /// A value as the stream has it at a frame, to be disposed of.
    AEGP_StreamValue2 open(AEGP_StreamRefH stream, A_long frame = 0) {
        const A_Time time{frame, 25};
        return got(streams().AEGP_GetNewStreamValue, id(), stream, AEGP_LTimeMode_CompTime, &time, A_Boolean{1});
    }
    void close(AEGP_StreamValue2& record) { EXPECT_EQ(streams().AEGP_DisposeStreamValue(&record), A_Err_NONE); }
    /// Reads a value at a frame and disposes of it.
    AEGP_StreamVal2 value(AEGP_StreamRefH stream, A_long frame) {
        AEGP_StreamValue2 record = open(stream, frame);
        const AEGP_StreamVal2 read = record.val;
        close(record);
        return read;
    }
    A_Err set(AEGP_StreamRefH stream, const AEGP_ThreeDVal& wanted) {
        AEGP_StreamValue2 record = open(stream);
        record.val.three_d = wanted;
        const A_Err error = streams().AEGP_SetStreamValue(id(), stream, &record);
        close(record);
        return error;
    }
    /// Adds a key to a batch. @return its index
    A_long addKey(AEGP_AddKeyframesInfoH batch, A_long frame) {
        const A_Time time{frame, 25};
        return got(keyframes().AEGP_AddKeyframes, batch, AEGP_LTimeMode_CompTime, &time);
    }
    /// Adds keys of one component in one batch.
    void addKeys(AEGP_StreamRefH stream, const Keys& keys) {
        const AEGP_AddKeyframesInfoH batch = got(keyframes().AEGP_StartAddKeyframes, stream);
        AEGP_StreamValue2 record = open(stream);
        for (const auto& [frame, number] : keys) {
            record.val.one_d = number;
            EXPECT_EQ(keyframes().AEGP_SetAddKeyframe(batch, addKey(batch, frame), &record), A_Err_NONE);
        }
        close(record);
        EXPECT_EQ(keyframes().AEGP_EndAddKeyframes(1, batch), A_Err_NONE);
    }
    void deleteKeys(AEGP_StreamRefH stream, A_long count) {
        for (A_long index = count - 1; index >= 0; --index)
            EXPECT_EQ(keyframes().AEGP_DeleteKeyframe(stream, index), A_Err_NONE);
    }

    std::u16string takeText(AEGP_MemHandle handle) {
        const std::u16string text = static_cast<const A_UTF16Char*>(got(memory().AEGP_LockMemHandle, handle));
        EXPECT_EQ(memory().AEGP_UnlockMemHandle(handle), A_Err_NONE);
        EXPECT_EQ(memory().AEGP_FreeMemHandle(handle), A_Err_NONE);
        return text;
    }

    /// A collection of one stream, which belongs to it from then on.
    AEGP_Collection2H collectionOf(AEGP_StreamRefH stream) {
        const AEGP_Collection2H collection = got(collections().AEGP_NewCollection, id());
        AEGP_CollectionItemV2 item{};
        item.type = AEGP_CollectionItemType_STREAMREF;
        item.stream_refH = stream;
        EXPECT_EQ(collections().AEGP_CollectionPushBack(collection, &item), A_Err_NONE);
        return collection;
    }
    /// Selects a stream, which is disposed of.
    void select(AEGP_StreamRefH stream) {
        const AEGP_Collection2H selection = collectionOf(stream);
        EXPECT_EQ(comps().AEGP_SetSelection(comp(), selection), A_Err_NONE);
        EXPECT_EQ(collections().AEGP_DisposeCollection(selection), A_Err_NONE);
    }
    /// Copies a stream, or pastes into it; it is disposed of.
    A_Err copy(AEGP_StreamRefH stream) {
        select(stream);
        return command(hostCommandCopy);
    }
    A_Err paste(AEGP_StreamRefH stream) {
        select(stream);
        return command(hostCommandPaste);
    }
    A_Err command(AEGP_Command number) { return table<AEGP_CommandSuite1>().AEGP_DoCommand(number); }
    A_Err undo() { return command(hostCommandUndo); }
    /// Does something in a group of its own.
    template<class Change>
    void inGroup(const Change& change) {
        EXPECT_EQ(utility().AEGP_StartUndoGroup("change"), A_Err_NONE);
        change();
        EXPECT_EQ(utility().AEGP_EndUndoGroup(), A_Err_NONE);
    }

    Composition& outcome() { return host.outcome(); }
    Layer& outcome(std::size_t layerIndex) { return *host.outcome().layers[layerIndex]; }
    [[nodiscard]] std::string written() { return writeLottie(*source, host.outcome()); }
    /// All that a file can hold of the document, and what of it has changed, to be compared.
    [[nodiscard]] std::string document() {
        Composition copy(host.outcome());
        markAll(copy, true);
        return writeLottie(*source, copy) + written();
    }

    /// Disposes of what is left, and expects that everything came back and nothing was misused.
    void expectClean(std::initializer_list<AEGP_StreamRefH> left = {}) {
        dispose(left);
        suites.reset();
        EXPECT_TRUE(host.balance().allReturned()) << host.balance().text();
        for (const Misuse misuse : host.misuses())
            ADD_FAILURE() << textOf(misuse);
    }
};

} // namespace jostle::standalone::test
