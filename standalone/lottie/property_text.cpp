#include "standalone/lottie/property_text.h"

#include <algorithm>
#include <cmath>

#include "standalone/lottie/number_text.h"

namespace jostle::standalone {

namespace {

using Print = char* (*)(char*, double);

/// Prints a number that is large, or is not finite: in place of that one stands the last finite one before it.
/// @param back  by how many places the one before it stands earlier; 0 if it is the first
/// @param last  what stood in place of the one before it if that was not finite
char* printOdd(char* at, const double* number, std::size_t back, double& last) {
    if (std::isfinite(*number))
        return printLargeThousandths(at, *number);
    const double before = back > 0 ? *(number - back) : last;
    last = std::isfinite(before) ? before : last;
    return printLargeThousandths(at, last);
}

class PropertyPrinter {
public:
    PropertyPrinter(const Stream& stream, FieldForm form, const TextStyle& style, KeyTextsStore& texts)
        : stream_{stream},
          form_{form},
          style_{style},
          texts_{texts},
          components_{static_cast<std::size_t>(stream.components)},
          print_{stream.keys.segments.empty() ? Print{printThousandths} : Print{printShortest}} {}

    void value(TextSink& out) {
        if (isAnimated(stream_)) {
            if (stream_.keys.segments.empty())
                printLinearKeys(out);
            else
                printKeys(out);
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

    [[nodiscard]] std::string name(std::string_view text) const { return nameText(text, style_); }

    [[nodiscard]] const KeyTexts& keyTexts() const {
        return texts_.find(style_, propertyFacts(form_).plainHandles, components_);
    }

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

    /// What follows the value of a key that leads to another one.
    [[nodiscard]] std::string segmentText(const KeySegment& segment, const KeyTexts& texts) {
        if (segment.hold)
            return style_.comma + name("h") + '1';
        std::string out = segment.linear ? texts.easing : easing(segment.outX, segment.outY, segment.inX, segment.inY);
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
    void printLinearKeys(TextSink& out) {
        const KeyTexts& texts = keyTexts();
        using Short = ShortText<16>;
        using Long = ShortText<64>;
        if (texts.middle.size() <= 16 && texts.comma.size() <= 16 && texts.linearAndNext.size() <= 64)
            printLinearKeys(out, texts, Short(texts.middle), Short(texts.comma), Long(texts.linearAndNext));
        else
            printLinearKeys(out, texts, texts.middle, texts.comma, texts.linearAndNext);
    }

    template<class Middle, class Comma, class Between>
    void printLinearKeys(TextSink& out, const KeyTexts& texts, const Middle& middle, const Comma& comma,
                         const Between& between) {
        const std::size_t most = texts.most, components = components_, count = stream_.keys.size();
        const double* const frames = stream_.keys.frames.data();
        const double* numbers = stream_.keys.values.data();
        char* at = texts.begin.copyTo(out.room(most));
        const char* roomEnd = out.roomEnd();
        double lastFrame = 0;
        for (std::size_t key = 0;;) {
            const auto printComponent = [&](char* place, std::size_t c) {
                return printThousandths(place, numbers[c], [&](char* oddPlace) {
                    return printOdd(oddPlace, numbers + c, key > 0 ? components : 0, last_[c]);
                });
            };
            at = printFrame(at, frames[key],
                            [&](char* place) { return printOdd(place, frames + key, key > 0 ? 1 : 0, lastFrame); });
            at = printComponent(middle.copyTo(at), 0);
            for (std::size_t c = 1; c < components; ++c)
                at = printComponent(comma.copyTo(at), c);
            numbers += components;
            if (++key == count)
                break;
            at = between.copyTo(at);
            if (static_cast<std::size_t>(roomEnd - at) < most) {
                out.take(at);
                at = out.room(most);
                roomEnd = out.roomEnd();
            }
        }
        *at++ = ']';
        *at++ = '}';
        out.take(at);
        out.write(texts.end);
    }

    void printKeys(TextSink& out) {
        const KeyTrack& keys = stream_.keys;
        const KeyTexts& texts = keyTexts();
        const std::size_t most = texts.most;
        double frame = 0;
        // What stands before the frame is there.
        const auto start = [&](char* at, std::size_t key, const double* numbers) {
            frame = std::isfinite(keys.frames[key]) ? keys.frames[key] : frame;
            at = texts.middle.copyTo(print_(at, frame));
            for (std::size_t c = 0; c < components_; ++c) {
                if (c > 0)
                    at = texts.comma.copyTo(at);
                at = print_(at, finite(numbers[c], c));
            }
            return at;
        };
        const std::size_t last = keys.size() - 1;
        out.take(texts.begin.copyTo(out.room(most)));
        for (std::size_t key = 0; key <= last; ++key) {
            char* at = start(out.room(most), key, keys.values.data() + key * components_);
            *at++ = ']';
            out.take(at);
            if (key < last)
                out.write(segmentText(keys.segments[key], texts));
            out.write("}");
            if (key < last &&
                keys.segments[key].hasEnd) { // a leap takes two keys at one frame, as in the file it is from
                char* const leap = texts.next.copyTo(out.room(most));
                out.take(texts.linear.copyTo(start(leap, key + 1, keys.segments[key].end.data())));
            }
            if (key < last)
                out.take(texts.next.copyTo(out.room(most)));
        }
        out.write(texts.end);
    }

    const Stream& stream_;
    FieldForm form_;
    const TextStyle& style_;
    KeyTextsStore& texts_;
    std::size_t components_;
    Print print_;
    Components last_{};
};

} // namespace

void printValue(const Stream& stream, FieldForm form, const TextStyle& style, KeyTextsStore& texts, TextSink& out) {
    PropertyPrinter(stream, form, style, texts).value(out);
}

std::string valueText(const Stream& stream, FieldForm form, const TextStyle& style) {
    StringSink out;
    KeyTextsStore texts;
    printValue(stream, form, style, texts, out);
    return out.text();
}

std::string propertyText(const Stream& stream, FieldForm form, const TextStyle& style) {
    const std::string animated = isAnimated(stream) ? "1" : "0";
    return "{\"a\"" + style.colon + animated + style.comma + "\"k\"" + style.colon + valueText(stream, form, style) +
           '}';
}

} // namespace jostle::standalone
