#include "standalone/commands/layer_matrices.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "standalone/document/evaluate.h"
#include "standalone/lottie/json_string.h"
#include "standalone/lottie/number_text.h"

namespace jostle::standalone {

namespace {

constexpr std::size_t mostFrames = 1000000;

/// Takes a number off the front of a text.
bool takeNumber(std::string_view& text, double& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || !std::isfinite(number)) {
        return false;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

/// Adds the frames from `first` on, a whole frame apart, up to `last`.
bool addRange(std::vector<double>& frames, double first, double last) {
    if (!(last >= first) || !(last - first < static_cast<double>(mostFrames - frames.size()))) {
        return false;
    }
    const auto steps = static_cast<std::size_t>(last - first);
    for (std::size_t i = 0; i <= steps; ++i) { // counted, as far frames have no next one
        frames.push_back(first + static_cast<double>(i));
    }
    return true;
}

void appendMatrix(std::string& out, const Matrix4d& matrix) {
    const auto& m = matrix.m;
    char before = '[';
    for (const double value : {m[0][0], m[0][1], m[1][0], m[1][1], m[3][0], m[3][1]}) {
        out += before;
        if (std::isfinite(value)) {
            appendShortest(out, value);
        } else {
            out += "null";
        }
        before = ',';
    }
    out += ']';
}

} // namespace

std::optional<std::vector<double>> parseFrameList(std::string_view text, const Composition& composition) {
    std::vector<double> frames;
    if (text == "all") {
        const double last = std::max(composition.inFrame, std::ceil(composition.outFrame) - 1);
        return addRange(frames, composition.inFrame, last) ? std::optional(frames) : std::nullopt;
    }
    for (;;) {
        double first = 0;
        if (!takeNumber(text, first)) {
            return std::nullopt;
        }
        double last = first;
        if (text.starts_with('-')) {
            text.remove_prefix(1);
            if (!takeNumber(text, last)) {
                return std::nullopt;
            }
        }
        if (!addRange(frames, first, last)) {
            return std::nullopt;
        }
        if (text.empty()) {
            return frames;
        }
        if (text.front() != ',') {
            return std::nullopt;
        }
        text.remove_prefix(1);
    }
}

std::string matricesText(const Composition& composition, const std::vector<double>& frames) {
    std::string out = "{\"frames\":[";
    for (std::size_t i = 0; i < frames.size(); ++i) {
        out += i == 0 ? "" : ",";
        appendShortest(out, frames[i]);
    }
    out += "],\"layers\":[";
    for (std::size_t i = 0; i < composition.layers.size(); ++i) {
        const Layer& layer = *composition.layers[i];
        out += (i == 0 ? "\n{\"number\":" : ",\n{\"number\":") + std::to_string(i + 1);
        out += ",\"id\":" + std::to_string(layer.id) + ",\"name\":";
        appendQuoted(out, layer.name);
        out += layer.threeD ? ",\"threeD\":true" : ",\"threeD\":false";
        out += ",\"matrices\":";
        char before = '[';
        for (const double frame : frames) {
            out += before;
            appendMatrix(out, worldMatrix(layer, frame));
            before = ',';
        }
        out += "]}";
    }
    return out + "\n]}";
}

} // namespace jostle::standalone
