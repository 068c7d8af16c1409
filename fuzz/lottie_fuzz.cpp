// Reads arbitrary bytes as a Lottie document. What reads must evaluate, import, write back to the byte, and read again
// after edits of its motion and of its structure. Start from tests/data/lottie as the corpus.

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include "host/layer_import.h"
#include "standalone/document/evaluate.h"
#include "standalone/lottie/reader.h"
#include "standalone/lottie/writer.h"
#include "standalone/suites/document_host.h"

namespace {

using namespace jostle;
using namespace jostle::standalone;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void evaluateAll(const standalone::Composition& composition) {
    for (const auto& layer : composition.layers) {
        for (const double frame : {-1.0, 0.0, 0.5, 17.0, 1e6}) {
            (void)worldMatrix(*layer, frame);
        }
    }
}

void evaluateTree(const standalone::TreeNode& node) {
    for (const double frame : {-1.0, 0.5, 1e6}) {
        if (node.stream) {
            (void)valueAt(*node.stream, frame);
        }
        if (node.path) {
            (void)valueAt(*node.path, frame);
        }
    }
    for (const auto& child : node.children) {
        require(child->parent == &node);
        evaluateTree(*child);
    }
}

void evaluateTrees(const standalone::Composition& composition) {
    for (const auto& layer : composition.layers) {
        evaluateTree(treeOf(composition, *layer));
        (void)composition.details->textOutlines(*layer, 0);
        (void)composition.details->expressionAt(layer->transform.position.source);
    }
}

void editMotion(standalone::Composition& composition) {
    for (const auto& layer : composition.layers) {
        Stream& position = layer->transform.separated ? layer->transform.dimensions.own().x : layer->transform.position;
        position.keys.frames = {0, 1};
        position.keys.values.assign(2 * static_cast<std::size_t>(position.components), 1.5);
        position.keys.segments.clear();
        position.changed = true;
    }
}

/// Moves groups to zero, makes every outline a triangle, and takes the first entry of every other list away.
void editTree(standalone::TreeNode& node, bool odd) {
    if (node.kind == NodeKind::GroupPosition || node.kind == NodeKind::RectanglePosition) {
        node.own->keys = {};
        node.own->value = {};
        node.own->changed = true;
    }
    if (node.path) {
        *node.path = {};
        node.path->value = {{{0, 0}, {10, 0}, {0, 10}}, true};
        node.path->changed = true;
    }
    const bool isList = node.kind == NodeKind::GroupContents || node.kind == NodeKind::MaskParade;
    if (isList && odd && !node.children.empty()) {
        node.children.erase(node.children.begin());
        node.listChanged = true;
    }
    for (const auto& child : node.children) {
        editTree(*child, !odd);
    }
}

int freeId(const standalone::Composition& composition) {
    int id = 0;
    for (const auto& layer : composition.layers) {
        id = std::max(id, layer->id);
    }
    return id + 1;
}

/// Copies the first layer, takes the last one away, adds a shape layer with all the shapes of the first, and masks.
void editStructure(standalone::Composition& composition) {
    auto& layers = composition.layers;
    if (layers.empty()) {
        return;
    }
    for (const auto& layer : layers) {
        editTree(treeOf(composition, *layer), layer->id % 2 != 0);
    }
    if (layers.size() > 2) {
        for (const auto& layer : layers) {
            if (layer->parent == layers.back().get()) {
                layer->parent = nullptr;
            }
        }
        layers.pop_back();
        std::swap(layers[0], layers[1]);
    }
    auto copy = copied(*layers[0]);
    copy->id = freeId(composition);
    copy->idInFile = false;
    copy->name = "copy";
    copy->changed = true;
    auto fresh = std::make_unique<standalone::Layer>();
    fresh->id = copy->id + 1;
    fresh->kind = LayerKind::Shape;
    fresh->parent = copy.get();
    TreeNode& shapes = *childOf(treeOf(composition, *fresh), NodeKind::VectorsRoot);
    if (const TreeNode* from = childOf(*copy->tree, NodeKind::VectorsRoot)) {
        for (const auto& child : from->children) {
            shapes.children.push_back(copied(*child, &shapes));
        }
    }
    shapes.listChanged = true;
    for (standalone::Layer* layer : {copy.get(), fresh.get()}) {
        TreeNode* parade = childOf(*layer->tree, NodeKind::MaskParade);
        if (!parade) {
            parade = &addNode(*layer->tree, NodeKind::MaskParade);
        }
        addNode(*parade, NodeKind::Mask);
        parade->listChanged = true;
    }
    layers.insert(layers.begin(), std::move(copy));
    layers.insert(layers.begin(), std::move(fresh));
}

void readAgain(const LottieSource& source, const standalone::Composition& composition) {
    const std::string written = writeLottie(source, composition);
    const ReadResult again = readLottie(written, "edited");
    require(static_cast<bool>(again));
    require(again.composition->layers.size() == composition.layers.size());
    evaluateTrees(*again.composition);
    require(writeLottie(*again.source, *again.composition) == written);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    ReadResult read = readLottie(std::string(reinterpret_cast<const char*>(data), size), "input");
    if (!read) {
        require(!read.error.empty());
        return 0;
    }
    evaluateAll(*read.composition);
    evaluateTrees(*read.composition);
    require(writeLottie(*read.source, *read.composition) == read.source->text);
    DocumentHost host(std::move(read.composition), "input", "");
    Scene scene;
    (void)initFromComposition({host.basic(), host.pluginId()}, scene);
    require(host.balance().allReturned());
    editMotion(host.outcome());
    readAgain(*read.source, host.outcome());
    editStructure(host.outcome());
    readAgain(*read.source, host.outcome());
    return 0;
}
