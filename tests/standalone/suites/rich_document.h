#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "host/suite_handler.h"
#include "standalone/lottie/reader.h"
#include "standalone/suites/document_host.h"

namespace jostle::standalone::test {

enum LayerIndex : A_long { child, separated, holder, layerCount };

/// 25 frames a second, 100 frames, work area 0 to 100. Topmost first: a solid that hangs on the null below all, with
/// masks of 10 and 20 pixels; a shape with separated dimensions, of which x goes from 0 to 100 until frame 10, with two
/// groups of a rectangle with a fill, and a path; the null at (100, 100), turned by 90 degrees and scaled (200, 100).
inline const char* const richFile =
    R"({"v":"5.7.4","fr":25,"ip":0,"op":100,"w":320,"h":240,"nm":"Scene","layers":[
{"ty":1,"nm":"child","ind":4,"parent":7,"ip":0,"op":50,"sw":40,"sh":20,"sc":"#ff8000",
"ks":{"a":{"k":[10,5]},"p":{"k":[30,0]}},"masksProperties":[
{"nm":"one","pt":{"k":{"v":[[0,0],[10,0],[10,10],[0,10]],"c":true}},"o":{"k":10}},
{"nm":"two","pt":{"k":{"v":[[0,0],[20,0],[20,20],[0,20]],"c":true}},"o":{"k":20}}]},
{"ty":4,"nm":"shape","ind":5,"ip":0,"op":50,
"ks":{"p":{"s":true,"x":{"k":[{"t":0,"s":[0]},{"t":10,"s":[100]}]},"y":{"k":50}}},"shapes":[
{"ty":"gr","nm":"first","it":[{"ty":"rc","p":{"k":[3,4]}},{"ty":"fl"}]},
{"ty":"gr","nm":"second","it":[{"ty":"rc","p":{"k":[3,4]}},{"ty":"fl"}]},
{"ty":"sh","ks":{"k":{"v":[[0,0],[5,0],[5,5],[0,5]],"c":true}}}]},
{"ty":3,"nm":"holder","ind":7,"ip":0,"op":50,"ks":{"p":{"k":[100,100]},"s":{"k":[200,100]},"r":{"k":90}}}],
"jostle":{"version":1,"pixelAspect":[12,11]}})";

inline ReadResult richDocument() {
    return readLottie(richFile, "scene.json");
}

inline PathValue square(double size) {
    return {{{0, 0}, {size, 0}, {size, size}, {0, size}}, true};
}

/// @param everything  as of markAll
inline void markTree(TreeNode& node, bool everything) {
    const bool colour = node.kind == NodeKind::FillColor || node.kind == NodeKind::StrokeColor;
    if (node.own)
        node.own->changed = everything || (!node.source.empty() && !node.hasSeparatedSource && !colour);
    if (node.path)
        node.path->changed = everything || !node.source.empty();
    for (const auto& below : node.children) {
        EXPECT_EQ(below->parent, &node);
        markTree(*below, everything);
    }
}

/// Marks what the text has of a document as changed, so that it is written.
/// @param everything  also what would be written in another form than it is read from, or is not in the text
inline void markAll(Composition& c, bool everything) {
    for (const auto& layer : c.layers) {
        markTree(treeOf(c, *layer), everything);
        Transform& t = layer->transform;
        for (Stream* s :
             {&t.anchor, &t.position, &t.dimensions.own().x, &t.dimensions.own().y, &t.scale, &t.rotation, &t.opacity})
            s->changed = everything || (!s->source.empty() && !t.separated);
        layer->changed = layer->changed || everything;
    }
    c.changed = true;
}

} // namespace jostle::standalone::test
