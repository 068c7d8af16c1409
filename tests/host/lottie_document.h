#pragma once

#include <initializer_list>
#include <string>

#include <gtest/gtest.h>

#include "standalone/lottie/reader.h"
#include "tests/host/document.h"

/// Small documents as a file would have them, for what hangs in a layer's tree of streams.
namespace jostle {

inline std::string joined(std::initializer_list<std::string> parts) {
    std::string text;
    for (const std::string& part : parts)
        text += (text.empty() ? "" : ",") + part;
    return text;
}

/// 200 by 100 pixels, 25 frames a second, 100 frames: the composition's centre is (100, 50).
/// @param layers  JSON objects, the topmost first, separated by commas
/// @param more    other members of the document, each after a comma
inline std::unique_ptr<Document> lottieDocument(const std::string& layers, const std::string& more = "") {
    standalone::ReadResult read = standalone::readLottie(
        R"({"v":"5.7.0","fr":25,"ip":0,"op":100,"w":200,"h":100,"assets":[],"layers":[)" + layers + "]" + more + "}",
        "test.json");
    EXPECT_EQ(read.error, "");
    return std::move(read.composition);
}

/// How a layer stands. What is left out: at (100, 50), unscaled, unturned, with the anchor point (0, 0).
struct Stance {
    std::string anchor = "[0,0]";
    std::string position = "[100,50]";
    std::string scale = "[100,100]";
    std::string rotation = "0";
    std::string more = ""; ///< other members of the layer, each after a comma
};
inline Stance scaled(const std::string& scale) {
    return {.scale = scale};
}
inline Stance turned(const std::string& rotation) {
    return {.rotation = rotation};
}

inline std::string layerText(const std::string& members, const Stance& stance) {
    return R"({"ip":0,"op":100,"st":0,"ks":{"a":{"k":)" + stance.anchor + R"(},"p":{"k":)" + stance.position +
           R"(},"s":{"k":)" + stance.scale + R"(},"r":{"k":)" + stance.rotation + "}}," + members + stance.more + "}";
}

inline std::string shapeLayer(const std::string& elements, const Stance& stance = {}) {
    return layerText(R"("ty":4,"nm":"shape","shapes":[)" + elements + "]", stance);
}

/// A solid of 100 by 100 pixels.
inline std::string solidLayer(const std::string& masks, const Stance& stance = {}) {
    return layerText(R"("ty":1,"nm":"solid","sw":100,"sh":100,"sc":"#ff8000","masksProperties":[)" + masks + "]",
                     stance);
}

/// A polygon without handles.
inline std::string outlineText(const std::string& vertices, bool closed = true) {
    std::string zeros;
    for (const char c : vertices)
        if (c == '[')
            zeros += zeros.empty() ? "[0,0]" : ",[0,0]";
    return R"({"v":[)" + vertices + R"(],"i":[)" + zeros + R"(],"o":[)" + zeros + R"(],"c":)" +
           (closed ? "true" : "false") + "}";
}

/// A circle of radius 50 around (50, 50), as the host draws it: from the top to the left and on.
inline const std::string hostCircle =
    R"({"v":[[50,0],[0,50],[50,100],[100,50]],"i":[[27.614,0],[0,-27.614],[-27.614,0],[0,27.614]],)"
    R"("o":[[-27.614,0],[0,27.614],[27.614,0],[0,-27.614]],"c":true})";

inline std::string mask(const std::string& outline, const std::string& name = "mask") {
    return R"({"mode":"a","inv":false,"nm":")" + name + R"(","pt":{"k":)" + outline + R"(},"o":{"k":100},"x":{"k":0}})";
}

inline std::string path(const std::string& outline) {
    return R"({"ty":"sh","nm":"path","ks":{"k":)" + outline + "}}";
}
/// A triangle. Its centroid is (10, 10).
inline const std::string corner = path(outlineText("[0,0],[30,0],[0,30]"));
inline std::string rect(const std::string& size, const std::string& position, const std::string& roundness = "0") {
    return R"({"ty":"rc","s":{"k":)" + size + R"(},"p":{"k":)" + position + R"(},"r":{"k":)" + roundness + "}}";
}
inline std::string ellipse(const std::string& size, const std::string& position) {
    return R"({"ty":"el","s":{"k":)" + size + R"(},"p":{"k":)" + position + "}}";
}
inline std::string fill(const std::string& rgba) {
    return R"({"ty":"fl","c":{"k":)" + rgba + R"(},"o":{"k":100}})";
}
inline std::string stroke(const std::string& rgba) {
    return R"({"ty":"st","c":{"k":)" + rgba + R"(},"o":{"k":100},"w":{"k":2}})";
}
/// @param transform  members of its transform after the type, each after a comma
inline std::string group(const std::string& elements, const std::string& transform = "",
                         const std::string& name = "group") {
    return R"({"ty":"gr","nm":")" + name + R"(","it":[)" + elements + R"(,{"ty":"tr")" + transform + "}]}";
}

} // namespace jostle
