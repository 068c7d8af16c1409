#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "host/chain.h"
#include "standalone/document/composition.h"
#include "standalone/suites/document_host.h"

/// Small documents made by hand, for a host over them.
namespace jostle {

using Document = standalone::Composition;
using DocumentLayer = standalone::Layer;
using standalone::LayerKind;

/// 200 by 100 pixels, 25 frames a second, 100 frames; no layers.
inline std::unique_ptr<Document> emptyDocument(double frameRate = 25) {
    auto document = std::make_unique<Document>();
    auto item = std::make_shared<standalone::Item>();
    item->kind = standalone::Item::Kind::Composition;
    item->name = "scene";
    item->width = 200;
    item->height = 100;
    document->item = item;
    document->clock = standalone::FrameClock(frameRate);
    document->durationFrames = 100;
    document->outFrame = 100;
    return document;
}

inline standalone::Stream constantStream(int components, standalone::Components value) {
    standalone::Stream stream;
    stream.components = components;
    stream.value = value;
    return stream;
}

/// A linear keyframe after those that the stream has.
inline void addKey(standalone::Stream& stream, double frame, standalone::Components value) {
    stream.keys.frames.push_back(frame);
    stream.keys.values.insert(stream.keys.values.end(), value.begin(), value.begin() + stream.components);
}

/// Moves from one value at frame 0 to another at `frame`.
inline void animate(standalone::Stream& stream, standalone::Components first, double frame,
                    standalone::Components last) {
    addKey(stream, 0, first);
    addKey(stream, frame, last);
}

/// A layer below those that are there: 40 by 20 pixels, anchor point (10, 5), at (150, 60), as long as the
/// composition. Named by its kind's number, identified by its place from 1.
inline DocumentLayer& addLayer(Document& document, LayerKind kind = LayerKind::Solid) {
    auto layer = std::make_unique<DocumentLayer>();
    layer->id = static_cast<int>(document.layers.size()) + 1;
    layer->kind = kind;
    layer->outFrame = document.durationFrames;
    auto item = std::make_shared<standalone::Item>();
    item->isSolid = kind == LayerKind::Solid;
    item->name = "source " + std::to_string(static_cast<int>(kind));
    item->width = 40;
    item->height = 20;
    item->solidColor = {0.25, 0.5, 0.75, 1};
    if (kind != LayerKind::Shape && kind != LayerKind::Text && kind != LayerKind::Camera && kind != LayerKind::Light)
        layer->item = item;
    layer->transform.anchor = constantStream(3, {10, 5, 0});
    layer->transform.position = constantStream(3, {150, 60, 7});
    layer->transform.scale = constantStream(3, {100, 100, 100});
    layer->transform.rotation = constantStream(1, {0, 0, 0});
    document.layers.push_back(std::move(layer));
    return *document.layers.back();
}

/// Makes the dimensions of the position separate streams.
inline void separate(standalone::Transform& transform) {
    transform.separated = true;
    transform.dimensions.own().x = transform.dimensions.own().y = constantStream(1, {60, 0, 0});
}

inline void setParent(DocumentLayer& child, DocumentLayer& parent) {
    child.parent = &parent;
    child.parentId = parent.id;
}

/// A parent for others: a null at (100, 50), without an anchor.
inline DocumentLayer& addNull(Document& document) {
    DocumentLayer& layer = addLayer(document, LayerKind::Null);
    layer.transform.anchor.value = {0, 0, 0};
    layer.transform.position.value = {100, 50, 0};
    return layer;
}

/// A document of a layer and the null that is its parent.
struct ParentedDocument {
    std::unique_ptr<Document> document = emptyDocument();
    DocumentLayer& child = addLayer(*document);
    DocumentLayer& parent = addNull(*document);

    ParentedDocument() { setParent(child, parent); }
};

/// A host over a document, and the context in which a plug-in talks to it. Expects at its end that all it handed out
/// has come back and that nothing was asked for wrongly.
struct HostedDocument {
    explicit HostedDocument(std::unique_ptr<Document> document) : host(std::move(document), "scene", "") {}
    ~HostedDocument() {
        EXPECT_TRUE(host.balance().allReturned()) << host.balance().text();
        EXPECT_TRUE(host.misuses().empty());
    }
    HostedDocument(const HostedDocument&) = delete;
    HostedDocument& operator=(const HostedDocument&) = delete;

    [[nodiscard]] HostContext context() const { return {host.basic(), host.pluginId()}; }
    [[nodiscard]] DocumentLayer& layer(std::size_t index) { return *host.outcome().layers[index]; }

    standalone::DocumentHost host;
};

} // namespace jostle
