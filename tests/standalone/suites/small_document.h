#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/suite_handler.h"
#include "standalone/suites/document_host.h"

namespace jostle::standalone::test {

inline Stream staticStream(int components, double x, double y = 0, double z = 0) {
    Stream stream;
    stream.components = components;
    stream.value = {x, y, z};
    return stream;
}

/// Linear keys at frames 0 and 10.
inline Stream keyedStream(double first, double last) {
    Stream stream;
    stream.keys.frames = {0, 10};
    stream.keys.values = {first, last};
    return stream;
}

inline std::unique_ptr<Layer> layerNamed(const char* name, int id, LayerKind kind) {
    auto layer = std::make_unique<Layer>();
    layer->name = name;
    layer->id = id;
    layer->idInFile = true;
    layer->kind = kind;
    layer->outFrame = 50;
    layer->transform.anchor = staticStream(2, 0, 0);
    layer->transform.position = staticStream(2, 0, 0);
    layer->transform.scale = staticStream(2, 100, 100);
    return layer;
}

enum LayerIndex : A_long { child, separated, holder, layerCount };

/// 25 frames a second, 100 frames, work area 0 to 100. Topmost first: a solid that hangs on the null below all, a
/// shape with separated dimensions, the null at (100, 100), turned by 90 degrees and scaled (200, 100).
inline std::unique_ptr<Composition> smallDocument() {
    auto document = std::make_unique<Composition>();
    document->item = std::make_shared<Item>(Item{Item::Kind::Composition, false, "Scene", 320, 240, {}});
    document->clock = FrameClock(25);
    document->outFrame = document->durationFrames = 100;
    document->pixelAspect = 1.0 + 1.0 / 11;

    auto top = layerNamed("child", 4, LayerKind::Solid);
    top->item = std::make_shared<Item>(Item{Item::Kind::Footage, true, "Solid", 40, 20, {1, 0.5, 0, 1}});
    top->parentId = 7;
    top->transform.anchor = staticStream(2, 10, 5);
    top->transform.position = staticStream(2, 30, 0);
    document->layers.push_back(std::move(top));

    auto middle = layerNamed("", 5, LayerKind::Shape);
    middle->transform.separated = true;
    middle->transform.positionX = keyedStream(0, 100);
    middle->transform.positionY = staticStream(1, 50);
    document->layers.push_back(std::move(middle));

    auto bottom = layerNamed("holder", 7, LayerKind::Null);
    bottom->transform.position = staticStream(2, 100, 100);
    bottom->transform.scale = staticStream(2, 200, 100);
    bottom->transform.rotation = staticStream(1, 90);
    document->layers.push_back(std::move(bottom));
    relinkParents(*document);
    return document;
}

/// A host over the document and the tables of it, as a plug-in holds them.
class Session {
public:
    explicit Session(std::unique_ptr<Composition> document = smallDocument())
        : host(std::move(document), "scene.json", "/films/scene.json") {}

    DocumentHost host;
    AEGP_SuiteHandler suites{host.basic()};

    template<class Suite>
    const Suite& table() {
        return *suites.get<Suite>();
    }

    AEGP_CompH comp() {
        AEGP_ItemH item = nullptr;
        AEGP_CompH handle = nullptr;
        EXPECT_EQ(table<AEGP_ItemSuite13>().AEGP_GetActiveItem(&item), A_Err_NONE);
        EXPECT_EQ(table<AEGP_CompSuite15>().AEGP_GetCompFromItem(item, &handle), A_Err_NONE);
        return handle;
    }

    AEGP_LayerH layer(A_long index, AEGP_CompH in = nullptr) {
        AEGP_LayerH handle = nullptr;
        EXPECT_EQ(table<AEGP_LayerSuite13>().AEGP_GetCompLayerByIndex(in ? in : comp(), index, &handle), A_Err_NONE);
        return handle;
    }

    AEGP_StreamRefH stream(AEGP_LayerH of, AEGP_LayerStream which) {
        AEGP_StreamRefH handle = nullptr;
        EXPECT_EQ(table<AEGP_StreamSuite9>().AEGP_GetNewLayerStream(id(), of, which, &handle), A_Err_NONE);
        return handle;
    }

    void dispose(AEGP_StreamRefH stream) {
        EXPECT_EQ(table<AEGP_StreamSuite9>().AEGP_DisposeStream(stream), A_Err_NONE);
    }

    /// Reads a value at a frame and disposes of it.
    AEGP_StreamVal2 value(AEGP_StreamRefH stream, A_long frame) {
        const auto& table9 = table<AEGP_StreamSuite9>();
        const A_Time time{frame, 25};
        AEGP_StreamValue2 record{};
        EXPECT_EQ(table9.AEGP_GetNewStreamValue(id(), stream, AEGP_LTimeMode_CompTime, &time, 1, &record), A_Err_NONE);
        const AEGP_StreamVal2 read = record.val;
        EXPECT_EQ(table9.AEGP_DisposeStreamValue(&record), A_Err_NONE);
        return read;
    }

    /// A value as the stream has it at frame 0, to be disposed of.
    AEGP_StreamValue2 open(AEGP_StreamRefH stream) {
        const A_Time start{0, 1};
        AEGP_StreamValue2 record{};
        EXPECT_EQ(table<AEGP_StreamSuite9>().AEGP_GetNewStreamValue(id(), stream, AEGP_LTimeMode_CompTime, &start, 1,
                                                                    &record),
                  A_Err_NONE);
        return record;
    }
    void close(AEGP_StreamValue2& record) {
        EXPECT_EQ(table<AEGP_StreamSuite9>().AEGP_DisposeStreamValue(&record), A_Err_NONE);
    }

    A_Err set(AEGP_StreamRefH stream, const AEGP_ThreeDVal& wanted) {
        AEGP_StreamValue2 record = open(stream);
        record.val.three_d = wanted;
        const A_Err error = table<AEGP_StreamSuite9>().AEGP_SetStreamValue(id(), stream, &record);
        close(record);
        return error;
    }

    /// Adds keys of one component in one batch.
    void addKeys(AEGP_StreamRefH stream, const std::vector<std::pair<A_long, double>>& keys) {
        const auto& keyframes = table<AEGP_KeyframeSuite4>();
        AEGP_AddKeyframesInfoH batch = nullptr;
        ASSERT_EQ(keyframes.AEGP_StartAddKeyframes(stream, &batch), A_Err_NONE);
        AEGP_StreamValue2 record = open(stream);
        for (const auto& [frame, number] : keys) {
            const A_Time time{frame, 25};
            A_long index = -1;
            EXPECT_EQ(keyframes.AEGP_AddKeyframes(batch, AEGP_LTimeMode_CompTime, &time, &index), A_Err_NONE);
            record.val.one_d = number;
            EXPECT_EQ(keyframes.AEGP_SetAddKeyframe(batch, index, &record), A_Err_NONE);
        }
        close(record);
        EXPECT_EQ(keyframes.AEGP_EndAddKeyframes(1, batch), A_Err_NONE);
    }

    std::u16string takeText(AEGP_MemHandle handle) {
        const auto& memory = table<AEGP_MemorySuite1>();
        void* content = nullptr;
        EXPECT_EQ(memory.AEGP_LockMemHandle(handle, &content), A_Err_NONE);
        std::u16string text = static_cast<const A_UTF16Char*>(content);
        EXPECT_EQ(memory.AEGP_UnlockMemHandle(handle), A_Err_NONE);
        EXPECT_EQ(memory.AEGP_FreeMemHandle(handle), A_Err_NONE);
        return text;
    }

    void undoGroup(const char* name) { EXPECT_EQ(utility().AEGP_StartUndoGroup(name), A_Err_NONE); }
    void endGroup() { EXPECT_EQ(utility().AEGP_EndUndoGroup(), A_Err_NONE); }
    A_Err undo() { return table<AEGP_CommandSuite1>().AEGP_DoCommand(hostCommandUndo); }
    const AEGP_UtilitySuite11& utility() { return table<AEGP_UtilitySuite11>(); }
    [[nodiscard]] AEGP_PluginID id() const { return host.pluginId(); }
};

} // namespace jostle::standalone::test
