// Loading, saving and evaluating documents of ten megabytes, beside what a parser takes that keeps nothing.
//
// `peak/byte` is the most memory that was held at once, for each byte of the document and with its text.
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>
#include <string>

#include <benchmark/benchmark.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include "standalone/document/evaluate.h"
#include "standalone/lottie/reader.h"
#include "standalone/lottie/writer.h"

namespace {

std::atomic<std::size_t> held{0}, peak{0}, allocations{0};

} // namespace

void* operator new(std::size_t size) {
    void* place = std::malloc(size);
    if (place == nullptr)
        std::abort();
    ++allocations;
    const std::size_t now = held += malloc_usable_size(place);
    if (now > peak)
        peak = now;
    return place;
}

void operator delete(void* place) noexcept {
    held -= malloc_usable_size(place);
    std::free(place);
}

void operator delete(void* place, std::size_t) noexcept {
    operator delete(place);
}

namespace {

using namespace jostle::standalone;

constexpr std::size_t documentBytes = 10'000'000;

std::string wholeDocument(std::string layers, const std::string& assets = "") {
    return R"({"v":"5.7.4","fr":30,"ip":0,"op":300,"w":1920,"h":1080,"assets":[)" + assets + R"(],"layers":[)" +
           std::move(layers) + "]}";
}

/// Layers one after the other until there are enough.
template<class MakeLayer>
std::string layersOf(const MakeLayer& make) {
    std::string layers;
    for (int number = 1; layers.size() < documentBytes; ++number)
        layers += (number > 1 ? "," : "") + make(std::to_string(number));
    return layers;
}

std::string layer(const std::string& number, const std::string& transform, const std::string& more) {
    return R"({"ddd":0,"ind":)" + number + R"(,"ty":4,"nm":"Shape Layer )" + number + R"(","sr":1,"ks":{)" + transform +
           R"(},"ao":0,)" + more + R"("ip":0,"op":300,"st":0,"bm":0})";
}

const std::string restingTransform =
    R"("o":{"a":0,"k":100,"ix":11},"r":{"a":0,"k":0,"ix":10},"p":{"a":0,"k":[960,540,0],"ix":2},)"
    R"("a":{"a":0,"k":[12.5,0,0],"ix":1},"s":{"a":0,"k":[100,100,100],"ix":6})";

/// Shape layers as exporters write them: a path, a fill and a transform in a group.
std::string shapeLayers() {
    return wholeDocument(layersOf([](const std::string& number) {
        std::string points;
        for (int i = 0; i < 12; ++i)
            points +=
                std::string(i > 0 ? "," : "") + "[" + std::to_string(i * 7) + ".125,-" + std::to_string(i) + ".5]";
        return layer(
            number, restingTransform,
            R"("shapes":[{"ty":"gr","it":[{"ind":0,"ty":"sh","ix":1,"ks":{"a":0,"k":{"i":[)" + points + R"(],"o":[)" +
                points + R"(],"v":[)" + points +
                R"(],"c":true},"ix":2},"nm":"Path 1","mn":"ADBE Vector Shape - Group","hd":false},{"ty":"fl",)"
                R"("c":{"a":0,"k":[0.1,0.5,1,1],"ix":4},"o":{"a":0,"k":100,"ix":5},"r":1,"bm":0,"nm":"Fill 1",)"
                R"("mn":"ADBE Vector Graphic - Fill","hd":false},{"ty":"tr","p":{"a":0,"k":[0,0],"ix":2},"a":)"
                R"({"a":0,"k":[0,0],"ix":1},"s":{"a":0,"k":[100,100],"ix":3},"r":{"a":0,"k":0,"ix":6},"o":)"
                R"({"a":0,"k":100,"ix":7},"sk":{"a":0,"k":0,"ix":4},"sa":{"a":0,"k":0,"ix":5},"nm":"Transform")"
                R"(}],"nm":"Shape 1","np":2,"cix":2,"bm":0,"ix":1,"mn":"ADBE Vector Group","hd":false}],)");
    }));
}

/// Layers with nothing but a transform, which take the most memory for their text.
std::string bareLayers() {
    return wholeDocument(
        layersOf([](const std::string& number) { return layer(number, restingTransform, std::string()); }));
}

std::string keysOf(int count, const std::string& before, const std::string& after, bool tangents) {
    std::string keys;
    for (int key = 0; key < count; ++key) {
        keys += std::string(key > 0 ? "," : "") + R"({"i":{"x":)" + before + "0.667" + after + R"(,"y":)" + before +
                "1" + after + R"(},"o":{"x":)" + before + "0.333" + after + R"(,"y":)" + before + "0" + after +
                R"(},"t":)" + std::to_string(key) + R"(,"s":[)" + std::to_string(key % 100) + ".25" +
                (tangents ? R"(,540.5,0],"to":[1.5,0,0],"ti":[-1.5,0.25,0]})" : "]}");
    }
    return keys;
}

/// Layers whose position and rotation have a thousand eased keys each.
std::string keyedLayers() {
    const std::string transform = R"("r":{"a":1,"k":[)" + keysOf(1000, "[", "]", false) + R"(]},"p":{"a":1,"k":[)" +
                                  keysOf(1000, "", "", true) + "]}";
    return wholeDocument(layersOf([&](const std::string& number) { return layer(number, transform, std::string()); }));
}

/// The same as this system writes it: linear keys, no tangents.
std::string bakedLayers() {
    std::string keys;
    for (int key = 0; key < 1000; ++key)
        keys += std::string(key > 0 ? "," : "") + R"({"t":)" + std::to_string(key) + R"(,"s":[960.125,)" +
                std::to_string(key % 100) + R"(.5,0],"o":{"x":0.167,"y":0.167},"i":{"x":0.833,"y":0.833}})";
    const std::string transform = R"("p":{"a":1,"k":[)" + keys + "]}";
    return wholeDocument(layersOf([&](const std::string& number) { return layer(number, transform, std::string()); }));
}

/// A few layers that show large images.
std::string embeddedImages() {
    std::string assets, layers;
    for (int number = 0; number < 10; ++number) {
        const std::string id = "image_" + std::to_string(number);
        assets += std::string(number > 0 ? "," : "") + R"({"id":")" + id +
                  R"(","w":512,"h":512,"e":1,"p":"data:image/png;base64,)" + std::string(documentBytes / 10, 'A') +
                  "\"}";
        layers +=
            std::string(number > 0 ? "," : "") + R"({"ty":2,"refId":")" + id + "\",\"ks\":{" + restingTransform + "}}";
    }
    return wholeDocument(layers, assets);
}

using MakeDocument = std::string (*)();

void parseAlone(benchmark::State& state, MakeDocument make) {
    const std::string text = make();
    for ([[maybe_unused]] auto _ : state) {
        rapidjson::MemoryStream stream(text.data(), text.size());
        rapidjson::BaseReaderHandler<> nobody;
        rapidjson::Reader reader;
        benchmark::DoNotOptimize(reader.Parse(stream, nobody));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}

void load(benchmark::State& state, MakeDocument make) {
    const std::string text = make();
    std::size_t most = 0;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        const std::size_t before = held;
        peak = before;
        std::string own = text;
        state.ResumeTiming();
        {
            const ReadResult read = readLottie(std::move(own), "b.json");
            benchmark::DoNotOptimize(read.composition.get());
            most = std::max(most, peak - before);
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
    state.counters["peak/byte"] = static_cast<double>(most) / static_cast<double>(text.size());
}

void readTrees(benchmark::State& state, MakeDocument make) {
    const ReadResult read = readLottie(make(), "b.json");
    for ([[maybe_unused]] auto _ : state) {
        for (const auto& each : read.composition->layers) {
            each->tree.reset();
            benchmark::DoNotOptimize(treeOf(*read.composition, *each));
        }
    }
}

/// Every tenth layer has a position baked anew.
void saveBaked(benchmark::State& state, MakeDocument make) {
    const ReadResult read = readLottie(make(), "b.json");
    const auto& layers = read.composition->layers;
    for (std::size_t index = 0; index < layers.size(); index += 10) {
        Stream& position = layers[index]->transform.position;
        position.keys = {};
        for (int frame = 0; frame < 300; ++frame) {
            position.keys.frames.push_back(frame);
            position.keys.values.insert(position.keys.values.end(), static_cast<std::size_t>(position.components),
                                        frame * 0.125);
        }
        position.changed = true;
    }
    std::size_t bytes = 0;
    for ([[maybe_unused]] auto _ : state)
        bytes += writeLottie(*read.source, *read.composition).size();
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}

/// The matrices of all layers at one frame; `allocations` counts those of all of it.
void evaluateLayers(benchmark::State& state, MakeDocument make) {
    const ReadResult read = readLottie(make(), "b.json");
    const std::size_t before = allocations;
    double frame = 0;
    for ([[maybe_unused]] auto _ : state) {
        frame += 0.37;
        for (const auto& each : read.composition->layers)
            benchmark::DoNotOptimize(worldMatrix(*each, frame));
    }
    state.counters["allocations"] = static_cast<double>(allocations - before);
    state.SetItemsProcessed(static_cast<std::int64_t>(read.composition->layers.size()) * state.iterations());
}

#define EACH_DOCUMENT(function)                                                                                        \
    BENCHMARK_CAPTURE(function, shapes, shapeLayers)->Unit(benchmark::kMillisecond);                                   \
    BENCHMARK_CAPTURE(function, bare, bareLayers)->Unit(benchmark::kMillisecond);                                      \
    BENCHMARK_CAPTURE(function, keyed, keyedLayers)->Unit(benchmark::kMillisecond);                                    \
    BENCHMARK_CAPTURE(function, baked, bakedLayers)->Unit(benchmark::kMillisecond);                                    \
    BENCHMARK_CAPTURE(function, images, embeddedImages)->Unit(benchmark::kMillisecond)

EACH_DOCUMENT(parseAlone);
EACH_DOCUMENT(load);
EACH_DOCUMENT(saveBaked);
BENCHMARK_CAPTURE(readTrees, shapes, shapeLayers)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(evaluateLayers, shapes, shapeLayers);
BENCHMARK_CAPTURE(evaluateLayers, keyed, keyedLayers);

} // namespace
