#include "standalone/document/composition.h"

#include <gtest/gtest.h>

namespace jostle::standalone {
namespace {

Composition withLayers(std::initializer_list<std::pair<int, int>> idsAndParents) {
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

TEST(Composition, ParentsAreFoundBeforeAndAfterTheChild) {
    const Composition c = withLayers({{1, 2}, {2, noParent}, {3, 1}, {1, noParent}, {4, 77}, {0, noParent}, {5, 0}});
    EXPECT_EQ(c.layers[0]->parent, c.layers[1].get());
    EXPECT_EQ(c.layers[2]->parent, c.layers[0].get()) << "of two layers with one number the first counts";
    EXPECT_EQ(c.layers[4]->parent, nullptr) << "nobody has that number";
    EXPECT_EQ(c.layers[6]->parent, c.layers[5].get()) << "0 is a number like others";
}

TEST(Composition, ParentsThatCloseARingAreDropped) {
    const Composition self = withLayers({{1, 1}});
    EXPECT_EQ(self.layers[0]->parent, nullptr);

    // 2 -> 3 -> 4 -> 2 is a ring with 1 hanging on it: the link of its last layer goes.
    const Composition ring = withLayers({{1, 3}, {2, 3}, {3, 4}, {4, 2}});
    EXPECT_EQ(ring.layers[0]->parent, ring.layers[2].get());
    EXPECT_EQ(ring.layers[1]->parent, ring.layers[2].get());
    EXPECT_EQ(ring.layers[2]->parent, ring.layers[3].get());
    EXPECT_EQ(ring.layers[3]->parent, nullptr);
}

TEST(Composition, CopiesReferToTheirOwnLayers) {
    Composition original = withLayers({{1, 2}, {2, noParent}});
    original.layers[0]->transform.position.keys.frames = {0, 1};
    const Composition copy(original);
    EXPECT_EQ(copy.layers[0]->parent, copy.layers[1].get());
    EXPECT_NE(copy.layers[0]->parent, original.layers[1].get());
    // Also to one whose number the file does not know.
    original.layers[1]->idInFile = false;
    const Composition second(original);
    EXPECT_EQ(second.layers[0]->parent, second.layers[1].get());
    original.layers[0]->transform.position.keys.frames.clear();
    EXPECT_EQ(copy.layers[0]->transform.position.keys.size(), 2u);
}

} // namespace
} // namespace jostle::standalone
