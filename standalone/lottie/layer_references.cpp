#include "standalone/lottie/layer_references.h"

#include <algorithm>

namespace jostle::standalone {

LayerReferences::LayerReferences(const JsonValue& list, const Composition& composition) : composition_{composition} {
    bool copies = false;
    JsonValue entry = list.isArray() ? list.firstChild() : JsonValue{};
    for (const auto& layer : composition.layers) {
        reordered_ = reordered_ || !entry || layer->source.begin != entry.span().begin || layer->source.empty();
        copies = copies || !layer->idInFile;
        entry = entry ? entry.nextSibling(list) : entry;
    }
    reordered_ = reordered_ || entry;
    if (reordered_ || copies) {
        findOriginals(list);
        requireCopies();
    }
    requireParents();
    if (reordered_ || !givenIds_.empty())
        requireMattes();
}

void LayerReferences::findOriginals(const JsonValue& list) {
    for (const auto& layer : composition_.layers) {
        if (layer->idInFile)
            presentIds_.insert(layer->id);
    }
    forEachChild(list, [&](const JsonValue& object) {
        objects_.emplace(object.span().begin, object);
        if (const int id = object["ind"].integer(noParent); id != noParent)
            fileIds_.emplace(id, object.span().begin);
    });
}

// A copy stands for itself. Layers whose identifier the reader made up need none until something names them; of several
// with one place in the text, that with the lowest is the one that was read.
void LayerReferences::requireCopies() {
    std::map<std::uint32_t, int> lowest;
    for (const auto& layer : composition_.layers) {
        auto [place, added] = lowest.emplace(layer->source.begin, layer->id);
        place->second = std::min(place->second, layer->id);
    }
    for (const auto& layer : composition_.layers) {
        if (layer->source.empty()) {
            givenIds_.insert(layer->id);
            continue;
        }
        const auto object = objects_.find(layer->source.begin);
        if (layer->idInFile || object == objects_.end())
            continue;
        const auto named = fileIds_.find(object->second["ind"].integer(noParent));
        const bool ownsName = named != fileIds_.end() && named->second == layer->source.begin;
        if (ownsName || lowest[layer->source.begin] != layer->id)
            require(*layer);
    }
}

void LayerReferences::require(const Layer& layer) {
    if (layer.idInFile || layer.source.empty())
        return;
    needs_[&layer].id = true;
    givenIds_.insert(layer.id);
}

void LayerReferences::requireParents() {
    for (const auto& layer : composition_.layers) {
        if (layer->parent && (layer->changed || layer->source.empty()))
            require(*layer->parent);
    }
    if (!reordered_ && givenIds_.empty())
        return;
    for (const auto& layer : composition_.layers) {
        const auto object = objects_.find(layer->source.begin);
        if (layer->parent || layer->source.empty() || object == objects_.end())
            continue;
        if (const int id = object->second["parent"].integer(noParent); id != noParent && isGone(id))
            needs_[layer.get()].dropsParent = true;
    }
}

/// Whether an identifier that the file uses named a layer that is gone, or named none and now would.
bool LayerReferences::isGone(int id) const {
    return presentIds_.count(id) == 0 && (fileIds_.count(id) > 0 || givenIds_.count(id) > 0);
}

void LayerReferences::requireMattes() {
    std::map<int, const Layer*> byId;
    for (const auto& layer : composition_.layers)
        byId.emplace(layer->id, layer.get());
    const Layer* above = nullptr;
    for (const auto& layer : composition_.layers) {
        const Layer* const matte = above;
        above = layer.get();
        if (layer->source.empty())
            continue;
        if (!layer->usesMatteAbove) {
            const auto object = objects_.find(layer->source.begin);
            const int id = object == objects_.end() ? noParent : object->second["tp"].integer(noParent);
            if (id != noParent && isGone(id))
                needs_[layer.get()].dropsMatte = true;
            continue;
        }
        if (matte ? matte->id == layer->matteId : layer->matteId == noParent)
            continue;
        const auto found = layer->matteId == noParent ? byId.end() : byId.find(layer->matteId);
        if (found == byId.end()) {
            needs_[layer.get()].dropsMatte = true;
        } else {
            needs_[layer.get()].matte = layer->matteId;
            require(*found->second);
        }
    }
}

LayerReferences::Needs LayerReferences::needsOf(const Layer& layer) const {
    const auto found = needs_.find(&layer);
    return found == needs_.end() ? Needs{} : found->second;
}

} // namespace jostle::standalone
