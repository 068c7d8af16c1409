#include "standalone/document/composition.h"

#include <algorithm>
#include <tuple>

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

TEST(Composition, ParentsAreFoundAndRingsAreCut) {
    using Links = std::vector<int>;
    constexpr int none = noParent;
    // Layers by number and parent, and at which place the parent of each stands; -1 for none.
    const std::tuple<const char*, std::vector<std::pair<int, int>>, Links> cases[] = {
        {"before and after the child", {{1, 2}, {2, none}, {3, 2}}, {1, -1, 1}},
        {"of two layers with one number the first counts", {{3, 1}, {1, none}, {1, none}}, {1, -1, -1}},
        {"nobody has that number", {{4, 77}}, {-1}},
        {"0 is a number like others", {{0, none}, {5, 0}}, {-1, 0}},
        {"itself", {{1, 1}}, {-1}},
        {"a ring with 1 hanging on it: the link of its last layer goes",
         {{1, 3}, {2, 3}, {3, 4}, {4, 2}},
         {2, 2, 3, -1}},
    };
    for (const auto& [name, idsAndParents, expected] : cases) {
        const Composition c = withLayers(idsAndParents);
        Links found;
        for (const auto& layer : c.layers) {
            const auto at = std::find_if(c.layers.begin(), c.layers.end(),
                                         [&](const auto& other) { return other.get() == layer->parent; });
            found.push_back(at == c.layers.end() ? -1 : static_cast<int>(at - c.layers.begin()));
        }
        EXPECT_EQ(found, expected) << name;
    }
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
