#pragma once

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "standalone/lottie/writer.h"
#include "tests/standalone/suites/session.h"

/// Documents for the tests of what reads and writes them, and what all those tests do with them.
namespace jostle::standalone {

/// A document of 640 by 480 pixels, 25 frames a second and 100 frames.
/// @param layers  JSON objects, the topmost first, separated by commas
/// @param more    other members, each followed by a comma
inline std::string documentOf(const std::string& layers, const std::string& more = R"("v":"5.7.4",)") {
    return "{" + more + R"("fr":25,"ip":0,"op":100,"w":640,"h":480,"nm":"Scene","layers":[)" + layers + "]}";
}

/// Reads a document, has it changed, by a session if the change takes one, and writes it. A session then undoes it.
/// Says why where that cannot be read, or read again.
template<class Change>
std::string rewritten(const std::string& text, const Change& change) {
    ReadResult read = readLottie(text, "t.json");
    if (!read)
        return read.error;
    std::string out;
    if constexpr (std::is_invocable_v<Change, test::Session&>) {
        test::Session session(std::move(read));
        session.inGroup([&] { change(session); });
        out = session.written();
        EXPECT_EQ(session.undo(), A_Err_NONE);
        EXPECT_EQ(session.written(), text) << "undone to the byte";
    } else {
        change(*read.composition);
        out = writeLottie(*read.source, *read.composition);
    }
    const ReadResult again = readLottie(out, "again.json");
    return again ? out : again.error;
}

/// Layers of a document before and after a change. All else of it has to stay.
/// @tparam Subject  what is changed, the document itself or by a session with the suites over it
template<class Subject = Composition>
struct WriterCase {
    const char* name;
    const char* before;
    void (*change)(Subject&);
    const char* after;
    const char* version = "5.7.4";
};

/// @param front, back  what stands around both texts of every case
template<class Cases>
void expectRewritten(const Cases& cases, const std::string& front = "", const std::string& back = "") {
    for (const auto& c : cases) {
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
