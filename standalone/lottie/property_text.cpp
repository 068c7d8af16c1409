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

/// Prints frames, most of which are the one after the last.
class FrameText {
public:
    /// A frame that is no finite number is the last one.
    /// @param at  room for numberTextRoom characters
    /// @return behind the last character
    [[nodiscard]] char* print(char* at, double frame) {
        if (frame == frame_ + 1 && length_ > 0 && text_[length_ - 1] < '9') {
            frame_ = frame;
            ++text_[length_ - 1];
            std::memcpy(at, text_, sizeof text_);
            return at + length_;
        }
        if (std::isfinite(frame))
            frame_ = frame;
        char* const end = printThousandths(at, frame_);
        const auto length = static_cast<std::size_t>(end - at);
        const bool canRise = length <= sizeof text_ && frame_ >= 0 && frame_ == std::floor(frame_);
        length_ = canRise ? length : 0;
        std::memcpy(text_, at, sizeof text_);
        return end;
    }

private:
    double frame_ = 0;
    char text_[16] = {};
    std::size_t length_ = 0; ///< of the text, if it is that of a whole number that is not below 0
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

    /// Texts around the numbers of keys.
    struct KeyTexts {
        KeyTexts(const PropertyPrinter& printer, const std::string& easing)
            : indent{printer.style_.newline.empty()
                         ? ""
                         : printer.style_.newline + printer.style_.indent + printer.style_.unit},
              between{printer.style_.newline.empty() ? printer.style_.comma : ',' + indent},
              begin{'[' + indent + '{' + printer.name("t")},
              next{between + '{' + printer.name("t")},
              middle{printer.style_.comma + printer.name("s") + '['},
              comma{printer.style_.comma},
              linear{']' + easing + '}'},
              linearAndNext{']' + easing + '}' + between + '{' + printer.name("t")},
              end{(printer.style_.newline.empty() ? "" : printer.style_.newline + printer.style_.indent) + ']'} {}

        std::string indent, between;
        FixedText begin, next, middle, comma, linear, linearAndNext;
        std::string end;
        /// Characters of a key with so many components at most, with what follows it.
        [[nodiscard]] std::size_t most(std::size_t components) const {
            return begin.size() + next.size() + middle.size() + components * comma.size() + linearAndNext.size() +
                   (components + 1) * numberTextRoom + FixedText::slack;
        }
    };

    // Baked motion comes in hundreds of thousands of keys: all that is alike is made once, and the rest is put together
    // in the sink's own block.
    void printLinearKeys(TextSink& out) {
        const KeyTrack& keys = stream_.keys;
        const KeyTexts texts(*this, linearEasing());
        const std::size_t most = texts.most(components_);
        const double* const frames = keys.frames.data();
        const double* numbers = keys.values.data();
        const std::size_t count = keys.size();
        FrameText frame;
        char* at = texts.begin.copyTo(out.room(most));
        for (std::size_t key = 0; key < count; ++key) {
            if (key > 0) {
                out.take(at);
                at = texts.linearAndNext.copyTo(out.room(most));
            }
            at = texts.middle.copyTo(frame.print(at, frames[key]));
            for (std::size_t c = 0; c < components_; ++c, ++numbers) {
                if (c > 0)
                    at = texts.comma.copyTo(at);
                at = printThousandths(at, finite(*numbers, c));
            }
        }
        *at++ = ']';
        *at++ = '}';
        out.take(at);
        out.write(texts.end);
    }

    void printKeys(TextSink& out) {
        const KeyTrack& keys = stream_.keys;
        const KeyTexts texts(*this, linearEasing());
        const std::size_t most = texts.most(components_);
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
                out.write(segmentText(keys.segments[key]));
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
