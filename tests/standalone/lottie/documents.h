#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "standalone/lottie/writer.h"

/// Documents for the tests of what reads and writes them, and what all those tests do with them.
namespace jostle::standalone {

/// A document of 640 by 480 pixels, 25 frames a second and 100 frames.
/// @param layers  JSON objects, the topmost first, separated by commas
/// @param more    other members, each followed by a comma
inline std::string documentOf(const std::string& layers, const std::string& more = R"("v":"5.7.4",)") {
    return "{" + more + R"("fr":25,"ip":0,"op":100,"w":640,"h":480,"nm":"Scene","layers":[)" + layers + "]}";
}

/// Reads a document, has it changed and writes it. Says why where that cannot be read, or read again.
template<class Change>
std::string rewritten(const std::string& text, const Change& change) {
    const ReadResult read = readLottie(text, "t.json");
    if (!read)
        return read.error;
    change(*read.composition);
    const std::string out = writeLottie(*read.source, *read.composition);
    const ReadResult again = readLottie(out, "again.json");
    return again ? out : again.error;
}

/// Layers of a document before and after a change. All else of it has to stay.
struct WriterCase {
    const char* name;
    const char* before;
    void (*change)(Composition&);
    const char* after;
    const char* version = "5.7.4";
};

/// @param front, back  what stands around both texts of every case
inline void expectRewritten(std::span<const WriterCase> cases, const std::string& front = "",
                            const std::string& back = "") {
    for (const WriterCase& c : cases) {
        const auto text = [&](const char* part) {
            return documentOf(front + part + back, R"("v":")" + std::string(c.version) + "\",");
        };
        EXPECT_EQ(rewritten(text(c.before), c.change), text(c.after)) << c.name;
    }
}

inline TreeNode& firstTree(const Composition& composition) {
    return treeOf(composition, *composition.layers[0]);
}

/// The node that a way of kinds leads to. Crashes where there is none.
template<class... Kinds>
TreeNode& nodeAt(TreeNode& from, Kinds... way) {
    TreeNode* node = &from;
    ((node = childOf(*node, way)), ...);
    return *node;
}

inline void setStatic(Stream& stream, double x, double y = 0, double z = 0) {
    stream.keys = {};
    stream.value = {x, y, z};
    stream.changed = true;
}

inline void bake(Stream& stream, std::vector<double> frames, std::vector<double> values) {
    stream.keys = {std::move(frames), std::move(values), {}};
    stream.hasExpression = stream.expressionEnabled = false;
    stream.changed = true;
}

} // namespace jostle::standalone
