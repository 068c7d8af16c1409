#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <utility>

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
    middle->transform.dimensions.own().x = keyedStream(0, 100);
    middle->transform.dimensions.own().y = staticStream(1, 50);
    document->layers.push_back(std::move(middle));

    auto bottom = layerNamed("holder", 7, LayerKind::Null);
    bottom->transform.position = staticStream(2, 100, 100);
    bottom->transform.scale = staticStream(2, 200, 100);
    bottom->transform.rotation = staticStream(1, 90);
    document->layers.push_back(std::move(bottom));
    relinkParents(*document);
    return document;
}

} // namespace jostle::standalone::test
