#include "standalone/document/composition.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace jostle::standalone {
namespace {

Composition withLayers(const std::vector<std::pair<int, int>>& idsAndParents) {
    Composition composition;
    for (const auto& [id, parentId] : idsAndParents) {
        composition.layers.push_back(std::make_unique<Layer>());
        composition.layers.back()->id = id;
        composition.layers.back()->idInFile = true;
        composition.layers.back()->parentId = parentId;
    }
    relinkParents(composition);
    return composition;
}

/// At which place the parent of each layer stands; -1 for none.
std::vector<std::ptrdiff_t> parentsOf(const Composition& c) {
    std::vector<std::ptrdiff_t> places;
    for (const auto& layer : c.layers) {
        const auto at =
            std::find_if(c.layers.begin(), c.layers.end(), [&](const auto& it) { return it.get() == layer->parent; });
        places.push_back(at == c.layers.end() ? -1 : at - c.layers.begin());
    }
    return places;
}

TEST(Composition, ParentsAreFoundAndRingsAreCut) {
    using Places = std::vector<std::ptrdiff_t>;
    EXPECT_EQ(parentsOf(withLayers({{1, 2}, {2, noParent}, {3, 1}, {1, noParent}, {4, 77}, {0, noParent}, {5, 0}})),
              (Places{1, -1, 0, -1, -1, -1, 5}))
        << "before and after the child, of one number the first, 77 is nobody, 0 a number like others";
    EXPECT_EQ(parentsOf(withLayers({{1, 1}})), Places{-1});
    EXPECT_EQ(parentsOf(withLayers({{1, 3}, {2, 3}, {3, 4}, {4, 2}})), (Places{2, 2, 3, -1}))
        << "of the ring that 1 hangs on, the link of the last layer goes";
}

TEST(Composition, CopiesReferToTheirOwnLayers) {
    Composition original = withLayers({{1, 2}, {2, noParent}});
    original.layers[1]->idInFile = false; // also to one whose number the file does not know
    original.layers[0]->transform.position.keys.frames = {0, 1};
    const Composition copy(original);
    EXPECT_EQ(copy.layers[0]->parent, copy.layers[1].get());
    original.layers[0]->transform.position.keys.frames.clear();
    EXPECT_EQ(copy.layers[0]->transform.position.keys.size(), 2u);
}

} // namespace
} // namespace jostle::standalone
