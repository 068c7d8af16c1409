#include "standalone/document/composition.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace jostle::standalone {

namespace {

constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

template<class Key>
using Places = std::vector<std::pair<Key, std::size_t>>;

/// First place of a key in a list sorted by key, then by place.
template<class Key>
std::size_t firstPlace(const Places<Key>& places, const Key& key) {
    const auto found = std::lower_bound(places.begin(), places.end(), std::pair{key, std::size_t{0}});
    return found != places.end() && found->first == key ? found->second : nowhere;
}

/// Cuts every ring of a graph in which each node points at one other, at the ring's last node.
void cutRings(std::vector<std::size_t>& parents) {
    std::vector<std::size_t> visit(parents.size(), nowhere); // by which walk a node was first met
    for (std::size_t start = 0; start < parents.size(); ++start) {
        std::size_t node = start;
        while (node != nowhere && visit[node] == nowhere) {
            visit[node] = start;
            node = parents[node];
        }
        if (node == nowhere || visit[node] != start)
            continue; // ended, or ran into what an earlier walk has seen to
        std::size_t last = node;
        for (std::size_t next = parents[node]; next != node; next = parents[next])
            last = std::max(last, next);
        parents[last] = nowhere;
    }
}

} // namespace

Composition::Composition(const Composition& other)
    : item{other.item},
      clock{other.clock},
      inFrame{other.inFrame},
      outFrame{other.outFrame},
      durationFrames{other.durationFrames},
      pixelAspect{other.pixelAspect},
      background{other.background},
      details{other.details},
      changed{other.changed} {
    Places<const Layer*> places;
    layers.reserve(other.layers.size());
    for (const auto& layer : other.layers) {
        places.emplace_back(layer.get(), layers.size());
        layers.push_back(copied(*layer));
    }
    std::sort(places.begin(), places.end());
    for (const auto& layer : layers) {
        const std::size_t place = layer->parent ? firstPlace<const Layer*>(places, layer->parent) : nowhere;
        layer->parent = place == nowhere ? nullptr : layers[place].get();
    }
}

TreeNode& treeOf(const Composition& composition, Layer& layer) {
    if (!layer.tree) {
        layer.tree = bareTree(layer);
        if (composition.details)
            composition.details->readLists(layer, *layer.tree);
    }
    return *layer.tree;
}

std::unique_ptr<Layer> copied(const Layer& layer) {
    auto copy = std::make_unique<Layer>(layer);
    if (layer.tree)
        copy->tree = treeCopiedFor(*copy, *layer.tree);
    return copy;
}

void relinkParents(Composition& composition) {
    const auto& layers = composition.layers;
    Places<int> places;
    for (std::size_t place = 0; place < layers.size(); ++place) {
        if (layers[place]->idInFile)
            places.emplace_back(layers[place]->id, place);
    }
    std::sort(places.begin(), places.end());

    std::vector<std::size_t> parents;
    for (const auto& layer : layers)
        parents.push_back(layer->parentId == noParent ? nowhere : firstPlace(places, layer->parentId));
    cutRings(parents);
    for (std::size_t place = 0; place < layers.size(); ++place)
        layers[place]->parent = parents[place] == nowhere ? nullptr : layers[parents[place]].get();
}

} // namespace jostle::standalone
