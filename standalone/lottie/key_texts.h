#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "standalone/lottie/splice.h"

namespace jostle::standalone {

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

    /// The beginning of a text of `count` characters or fewer, and whatever follows.
    template<std::size_t count>
    [[nodiscard]] std::array<char, count> head() const {
        static_assert(count <= slack);
        std::array<char, count> characters;
        std::memcpy(characters.data(), short_, count);
        return characters;
    }

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

/// The same for short texts, to be held by value in a loop: what is copied can then not change while it writes.
template<std::size_t most>
class ShortText {
public:
    /// @param text  of `most` characters or fewer
    explicit ShortText(const FixedText& text) : short_(text.head<most>()), size_(text.size()) {}

    [[nodiscard]] char* copyTo(char* at) const {
        std::memcpy(at, short_.data(), most);
        return at + size_;
    }

private:
    std::array<char, most> short_;
    std::size_t size_;
};

/// A member's name as it stands in an object, with the colon behind it.
[[nodiscard]] std::string nameText(std::string_view name, const TextStyle& style);

/// What stands around the numbers of a property's keys.
struct KeyTexts {
    /// @param style         of the object that holds the keys
    /// @param plainHandles  whether easing handles are numbers, not arrays with one for each component
    KeyTexts(const TextStyle& style, bool plainHandles, std::size_t components);

    std::string easing; ///< of a linear segment, with the comma before it
    FixedText begin, next, middle, comma, linear, linearAndNext;
    std::string end;
    std::size_t most; ///< characters of a key and of what follows it, at most
};

/// Keeps such texts, as properties that are alike follow each other.
class KeyTextsStore {
public:
    /// @param components  1 to 3
    /// @return valid until the next call
    [[nodiscard]] const KeyTexts& find(const TextStyle& style, bool plainHandles, std::size_t components);

private:
    struct Kept {
        TextStyle style;
        KeyTexts texts;
    };
    std::array<std::array<std::unique_ptr<Kept>, 3>, 2> kept_; ///< the last ones by kind of handles and components
};

} // namespace jostle::standalone
