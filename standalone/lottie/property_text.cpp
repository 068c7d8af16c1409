#include "standalone/lottie/property_text.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "standalone/lottie/number_text.h"

namespace jostle::standalone {

namespace {

using Print = char* (*)(char*, double);

/// A text that is copied many times. Most are short, and are copied with room to spare instead of to their length.
class FixedText {
public:
    static constexpr std::size_t slack = 128; ///< characters behind a copy that may be written over

    explicit FixedText(std::string_view text) : size_(text.size()) {
        if (size_ <= slack)
            std::memcpy(short_, text.data(), size_);
        else
            long_ = text;
    }

    [[nodiscard]] std::size_t size() const { return size_; }

    /// @return behind the copy
    [[nodiscard]] char* copyTo(char* at) const {
        if (size_ <= 16)
            std::memcpy(at, short_, 16);
        else if (size_ <= 64)
            std::memcpy(at, short_, 64);
        else if (size_ <= slack)
            std::memcpy(at, short_, slack);
        else
            std::memcpy(at, long_.data(), size_);
        return at + size_;
    }

private:
    char short_[slack] = {};
    std::string long_;
    std::size_t size_;
};

class PropertyPrinter {
public:
    PropertyPrinter(const Stream& stream, FieldForm form, const TextStyle& style)
        : stream_{stream},
          form_{form},
          style_{style},
          components_{static_cast<std::size_t>(stream.components)},
          print_{stream.keys.segments.empty() ? Print{printThousandths} : Print{printShortest}} {}

    void value(TextSink& out) {
        if (isAnimated(stream_)) {
            if (stream_.keys.segments.empty())
                printKeys<printThousandths>(out);
            else
                printKeys<printShortest>(out);
            return;
        }
        const double* numbers = stream_.keys.empty() ? stream_.value.data() : stream_.keys.values.data();
        std::string text;
        if (propertyFacts(form_).most == 1)
            printNumber(text, finite(numbers[0], 0));
        else
            printArray(text, numbers);
        out.write(text);
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
        const bool plain = propertyFacts(form_).plainHandles;
        const auto side = [&](std::string_view sideName, std::string_view number) {
            std::string numbers = plain ? "" : "[";
            for (std::size_t c = 0; c < (plain ? 1 : components_); ++c)
                numbers.append(c > 0 ? style_.comma : "").append(number);
            numbers += plain ? "" : "]";
            return style_.comma + name(sideName) + '{' + name("x") + numbers + style_.comma + name("y") + numbers + '}';
        };
        return side("o", "0") + side("i", "1");
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

    // Baked motion comes in hundreds of thousands of keys: all that is alike is made once, and the rest is put together
    // in the sink's own block.
    template<Print print>
    void printKeys(TextSink& out) {
        const KeyTrack& keys = stream_.keys;
        const std::string indent = style_.newline.empty() ? "" : style_.newline + style_.indent + style_.unit;
        const std::string between = style_.newline.empty() ? style_.comma : ',' + indent;
        const FixedText begin('[' + indent + '{' + name("t")), next(between + '{' + name("t"));
        const FixedText middle(style_.comma + name("s") + '['), comma(style_.comma);
        const std::string easing = ']' + linearEasing() + '}';
        const FixedText linear(easing), linearAndNext(easing + between + '{' + name("t"));
        const std::size_t mostOfKey = begin.size() + next.size() + middle.size() + components_ * comma.size() +
                                      linearAndNext.size() + (components_ + 1) * numberTextRoom + FixedText::slack;
        double frame = 0;
        // What stands before the frame is there.
        const auto start = [&](char* at, std::size_t key, const double* numbers) {
            frame = std::isfinite(keys.frames[key]) ? keys.frames[key] : frame;
            at = middle.copyTo(print(at, frame));
            for (std::size_t c = 0; c < components_; ++c) {
                if (c > 0)
                    at = comma.copyTo(at);
                at = print(at, finite(numbers[c], c));
            }
            return at;
        };
        const bool plain = keys.segments.empty();
        const std::size_t last = keys.size() - 1;
        out.take(begin.copyTo(out.room(mostOfKey)));
        for (std::size_t key = 0; key <= last; ++key) {
            char* at = start(out.room(mostOfKey), key, keys.values.data() + key * components_);
            if (plain && key < last) {
                out.take(linearAndNext.copyTo(at));
                continue;
            }
            *at++ = ']';
            out.take(at);
            if (key < last)
                out.write(segmentText(keys.segments[key]));
            out.write("}");
            if (key < last &&
                keys.segments[key].hasEnd) { // a leap takes two keys at one frame, as in the file it is from
                char* const leap = next.copyTo(out.room(mostOfKey));
                out.take(linear.copyTo(start(leap, key + 1, keys.segments[key].end.data())));
            }
            if (key < last)
                out.take(next.copyTo(out.room(mostOfKey)));
        }
        if (!style_.newline.empty())
            out.write(style_.newline + style_.indent);
        out.write("]");
    }

    const Stream& stream_;
    FieldForm form_;
    const TextStyle& style_;
    std::size_t components_;
    Print print_;
    Components last_{};
};

} // namespace

void printValue(const Stream& stream, FieldForm form, const TextStyle& style, TextSink& out) {
    PropertyPrinter(stream, form, style).value(out);
}

std::string valueText(const Stream& stream, FieldForm form, const TextStyle& style) {
    StringSink out;
    printValue(stream, form, style, out);
    return out.text();
}

std::string propertyText(const Stream& stream, FieldForm form, const TextStyle& style) {
    const std::string animated = isAnimated(stream) ? "1" : "0";
    return "{\"a\"" + style.colon + animated + style.comma + "\"k\"" + style.colon + valueText(stream, form, style) +
           '}';
}

} // namespace jostle::standalone
