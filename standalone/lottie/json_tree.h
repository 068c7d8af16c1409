#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/document/stream.h"

namespace jostle::standalone {

/// Deepest nesting of objects and arrays that is read; the root is level 1.
constexpr int maximumJsonDepth = 200;
/// Largest text that is read, in bytes.
constexpr std::size_t maximumJsonBytes = std::size_t{512} << 20;

/// What is wrong with a text, and where.
struct JsonError {
    std::string what;
    std::size_t offset = 0; ///< bytes from the start
};

/// Line and column of a byte offset, both counted from 1; the column counts characters.
struct TextPlace {
    std::size_t line = 1;
    std::size_t column = 1;
};
[[nodiscard]] TextPlace placeInText(std::string_view text, std::size_t offset);

/// Reads the number that starts at `begin`, in well-formed JSON; an infinity if no double holds it.
/// @param end  receives what is behind it
[[nodiscard]] double readJsonNumber(const char* begin, const char* limit, const char*& end);

enum class JsonType { Missing, Null, Boolean, Number, String, Array, Object };

class JsonValue;

/// Where the larger values of a JSON text stand, so that they are found and skipped at once. What lies between them is
/// read from the text when it is asked for: small objects and arrays, numbers and short strings cost no memory.
///
/// One flat list in the order of the text.
class JsonTree {
public:
    /// Reads a text, which has to outlive the tree at its address. A byte-order mark is skipped.
    /// @return what is wrong with the text; the tree is empty then
    [[nodiscard]] std::optional<JsonError> parse(std::string_view text);

    /// The value of the whole text; Missing if nothing was read.
    [[nodiscard]] JsonValue root() const;

    /// The value that a span of an earlier one tells; Missing if the span is empty. It has no key.
    [[nodiscard]] JsonValue valueAt(SourceSpan span) const;

    [[nodiscard]] std::string_view text() const { return text_; }

private:
    friend class JsonValue;
    friend class TreeBuilder;

    /// A value of some length: an object, an array or a string.
    struct Node {
        std::uint32_t begin, end;
        std::uint32_t next; ///< index after the last node within this one
    };

    std::optional<JsonError> build(std::string_view json, std::size_t shift);
    [[nodiscard]] std::uint32_t skipSpace(std::uint32_t at) const;
    [[nodiscard]] std::uint32_t endOfString(std::uint32_t begin) const;
    [[nodiscard]] std::uint32_t endOfSmall(std::uint32_t begin) const;

    std::string_view text_;
    std::vector<Node> nodes_; ///< ends with one that begins behind any text, unless nothing was read
};

/// One value of a tree, or none: whatever is asked of a missing value or one of another type has its default.
///
/// A small handle, valid as long as its tree.
class JsonValue {
public:
    JsonValue() = default;

    explicit operator bool() const { return tree_ != nullptr; }
    [[nodiscard]] JsonType type() const;
    [[nodiscard]] bool isObject() const { return type() == JsonType::Object; }
    [[nodiscard]] bool isArray() const { return type() == JsonType::Array; }

    /// The member of an object with this name, of several the last; else Missing.
    [[nodiscard]] JsonValue operator[](std::string_view name) const;

    /// Walks through the members of an object or the elements of an array in order. An array of nothing but
    /// numbers has no elements to walk through; see numbers().
    [[nodiscard]] JsonValue firstChild() const;
    [[nodiscard]] JsonValue nextSibling(const JsonValue& parent) const;

    /// Reads the first numbers of an array of nothing but numbers, or a lone number, infinities included.
    /// @return how many were stored, at most `most`
    std::size_t numbers(double* values, std::size_t most) const;

    /// The number; an infinity if no double holds it; empty if this is no number.
    [[nodiscard]] std::optional<double> number() const;
    /// The number if it is one and is finite.
    [[nodiscard]] double number(double fallback) const;
    /// The number if it is whole and its magnitude at most 10^9; 4.0 is whole.
    [[nodiscard]] int integer(int fallback) const;
    /// True or false; other types give the fallback.
    [[nodiscard]] bool boolean(bool fallback) const;
    /// True, or a number other than 0: flags are written both ways.
    [[nodiscard]] bool flag() const;
    /// The string without quotes and escapes, in valid UTF-8.
    [[nodiscard]] std::string string(std::string_view fallback = {}) const;

    /// The name of a member without quotes and escapes.
    [[nodiscard]] std::string key() const;
    [[nodiscard]] bool hasKey(std::string_view name) const;
    [[nodiscard]] SourceSpan keySpan() const;
    [[nodiscard]] SourceSpan span() const;
    /// The name as it stands in the text, without quotes.
    [[nodiscard]] std::string_view rawKey() const;
    /// The value as it stands in the text.
    [[nodiscard]] std::string_view text() const;
    /// Where the value stands in its tree, as in RFC 6901.
    [[nodiscard]] std::string pointer() const;

private:
    friend class JsonTree;

    /// @param begin  of the value or, in an object, of its key
    /// @param node   the first node that does not lie before it
    [[nodiscard]] static JsonValue at(const JsonTree& tree, std::uint32_t begin, std::uint32_t node, bool isMember);
    [[nodiscard]] bool hasNode() const { return tree_->nodes_[node_].begin == begin_; }
    [[nodiscard]] bool holdsNumbersOnly() const;

    const JsonTree* tree_ = nullptr;
    std::uint32_t keyBegin_ = 0, keyEnd_ = 0; ///< with the quotes; empty if it is no member
    std::uint32_t begin_ = 0, end_ = 0;
    std::uint32_t node_ = 0; ///< its own, or the first one behind its begin
};

/// The members of an object, found once for those who look up several of them.
class JsonMembers {
public:
    /// @param object  what is none has no members
    explicit JsonMembers(const JsonValue& object);

    /// As that of the object.
    [[nodiscard]] JsonValue operator[](std::string_view name) const;
    /// In the order of the text.
    [[nodiscard]] const JsonValue* begin() const { return more_.empty() ? few_.data() : more_.data(); }
    [[nodiscard]] const JsonValue* end() const { return begin() + count_; }

private:
    std::array<JsonValue, 16> few_; ///< as many as most objects have, without memory of their own
    std::vector<JsonValue> more_;   ///< all of them, if there are more
    std::size_t count_ = 0;
};

/// Calls `visit` with each member of an object or element of an array.
template<class Visit>
void forEachChild(const JsonValue& parent, const Visit& visit) {
    for (JsonValue child = parent.firstChild(); child; child = child.nextSibling(parent))
        visit(child);
}

} // namespace jostle::standalone
