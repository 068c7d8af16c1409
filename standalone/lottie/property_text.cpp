#include "standalone/lottie/property_text.h"

#include <algorithm>
#include <cmath>

#include "standalone/lottie/number_text.h"

namespace jostle::standalone {

namespace {

using Print = char* (*)(char*, double);

class PropertyPrinter {
public:
    PropertyPrinter(const Stream& stream, FieldForm form, const TextStyle& style)
        : stream_{stream},
          form_{form},
          style_{style},
          components_{static_cast<std::size_t>(stream.components)},
          print_{stream.keys.segments.empty() ? Print{printThousandths} : Print{printShortest}} {}

    [[nodiscard]] std::string value() {
        std::string out;
        if (isAnimated(stream_)) {
            printKeys(out);
            return out;
        }
        const double* numbers = stream_.keys.empty() ? stream_.value.data() : stream_.keys.values.data();
        if (propertyFacts(form_).most == 1)
            printNumber(out, finite(numbers[0], 0));
        else
            printArray(out, numbers);
        return out;
    }

private:
    /// The number, or the last finite one of its component.
    double finite(double number, std::size_t component) {
        if (std::isfinite(number))
            last_[component] = number;
        return last_[component];
    }

    void printNumber(std::string& out, double number) const {
        char room[numberTextRoom];
        out.append(room, static_cast<std::size_t>(print_(room, number) - room));
    }

    void printArray(std::string& out, const double* numbers) {
        out += '[';
        for (std::size_t c = 0; c < components_; ++c) {
            if (c > 0)
                out += style_.comma;
            printNumber(out, finite(numbers[c], c));
        }
        out += ']';
    }

    [[nodiscard]] std::string name(std::string_view text) const { return '"' + std::string(text) + '"' + style_.colon; }

    /// One side of a segment's easing as a member, with the comma before it.
    [[nodiscard]] std::string handle(std::string_view side, const Components& x, const Components& y) const {
        const auto alike = [&](const Components& numbers) {
            return std::all_of(numbers.begin(), numbers.begin() + stream_.components,
                               [&](double number) { return number == numbers[0]; });
        };
        const bool plain = propertyFacts(form_).plainHandles && alike(x) && alike(y);
        const auto numbers = [&](const Components& from) {
            std::string out = plain ? "" : "[";
            for (std::size_t c = 0; c < (plain ? 1 : components_); ++c) {
                out += c > 0 ? style_.comma : "";
                appendShortest(out, from[c]);
            }
            return out + (plain ? "" : "]");
        };
        return style_.comma + name(side) + '{' + name("x") + numbers(x) + style_.comma + name("y") + numbers(y) + '}';
    }

    [[nodiscard]] std::string easing(const Components& outX, const Components& outY, const Components& inX,
                                     const Components& inY) const {
        return handle("o", outX, outY) + handle("i", inX, inY);
    }

    [[nodiscard]] std::string linearEasing() const {
        constexpr Components leave{0.167, 0.167, 0.167}, arrive{0.833, 0.833, 0.833};
        return easing(leave, leave, arrive, arrive);
    }

    /// What follows the value of a key that leads to another one.
    [[nodiscard]] std::string segmentText(const KeySegment& segment) {
        if (segment.hold)
            return style_.comma + name("h") + '1';
        std::string out =
            segment.linear ? linearEasing() : easing(segment.outX, segment.outY, segment.inX, segment.inY);
        if (segment.spatial) {
            for (const auto& [side, tangent] :
                 {std::pair{"to", &segment.outTangent}, std::pair{"ti", &segment.inTangent}}) {
                out += style_.comma + name(side);
                printArray(out, tangent->data());
            }
        }
        return out;
    }

    // Baked motion comes in hundreds of thousands of keys: all that is alike is made once, and a key is put together
    // in a small buffer.
    void printKeys(std::string& out) {
        const KeyTrack& keys = stream_.keys;
        const std::string indent = style_.newline.empty() ? "" : style_.newline + style_.indent + style_.unit;
        const std::string between = style_.newline.empty() ? style_.comma : ',' + indent;
        const std::string begin = '{' + name("t"), middle = style_.comma + name("s") + '[';
        const std::string linear = linearEasing();
        out.reserve(keys.size() *
                    (between.size() + begin.size() + middle.size() + linear.size() + 3 + 9 * components_));
        out += '[' + indent;
        double frame = 0;
        const auto start = [&](std::size_t key, const double* numbers) {
            frame = std::isfinite(keys.frames[key]) ? keys.frames[key] : frame;
            char room[4 * numberTextRoom + 64];
            char* at = print_(std::copy(begin.begin(), begin.end(), room), frame);
            at = std::copy(middle.begin(), middle.end(), at);
            for (std::size_t c = 0; c < components_; ++c) {
                if (c > 0)
                    at = std::copy(style_.comma.begin(), style_.comma.end(), at);
                at = print_(at, finite(numbers[c], c));
            }
            *at++ = ']';
            out.append(room, static_cast<std::size_t>(at - room));
        };
        for (std::size_t key = 0; key < keys.size(); ++key) {
            if (key > 0)
                out += between;
            start(key, keys.values.data() + key * components_);
            if (key + 1 < keys.size())
                out += keys.segments.empty() ? linear : segmentText(keys.segments[key]);
            out += '}';
            if (key + 1 < keys.size() && !keys.segments.empty() && keys.segments[key].hasEnd) {
                out += between; // a leap takes two keys at one frame, as in the file that it was read from
                start(key + 1, keys.segments[key].end.data());
                out += linear + '}';
            }
        }
        if (!style_.newline.empty())
            out += style_.newline + style_.indent;
        out += ']';
    }

    const Stream& stream_;
    FieldForm form_;
    const TextStyle& style_;
    std::size_t components_;
    Print print_;
    Components last_{};
};

} // namespace

std::string valueText(const Stream& stream, FieldForm form, const TextStyle& style) {
    return PropertyPrinter(stream, form, style).value();
}

std::string propertyText(const Stream& stream, FieldForm form, const TextStyle& style) {
    const std::string animated = isAnimated(stream) ? "1" : "0";
    return "{\"a\"" + style.colon + animated + style.comma + "\"k\"" + style.colon + valueText(stream, form, style) +
           '}';
}

} // namespace jostle::standalone
