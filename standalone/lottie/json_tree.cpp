#include "standalone/lottie/json_tree.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include "standalone/lottie/json_string.h"

namespace jostle::standalone {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// What may end a value, to be told by one look at each character.
enum : unsigned char { bracket = 1, comma = 2, space = 4, quote = 8 };
constexpr std::array<unsigned char, 256> makeKinds() {
    std::array<unsigned char, 256> kinds{};
    for (const char c : {'{', '}', '[', ']'})
        kinds[static_cast<unsigned char>(c)] = bracket;
    for (const char c : {' ', '\t', '\n', '\r'})
        kinds[static_cast<unsigned char>(c)] = space;
    kinds[','] = comma;
    kinds['"'] = quote;
    return kinds;
}
constexpr std::array<unsigned char, 256> kinds = makeKinds();

unsigned char kindOf(char c) {
    return kinds[static_cast<unsigned char>(c)];
}

/// Whether a number that no double holds is too large, and not too small. Only for such numbers.
bool isTooLarge(std::string_view number) {
    std::ptrdiff_t exponent = 0;
    const std::size_t mark = number.find_first_of("eE");
    if (mark != std::string_view::npos) {
        std::string_view digits = number.substr(mark + 1);
        const bool negative = digits.front() == '-';
        if (digits.front() == '-' || digits.front() == '+')
            digits.remove_prefix(1);
        constexpr std::ptrdiff_t ample = std::ptrdiff_t{1} << 60; // more than any text has digits
        if (std::from_chars(digits.data(), digits.data() + digits.size(), exponent).ec != std::errc{})
            exponent = ample;
        exponent = negative ? -std::min(exponent, ample) : std::min(exponent, ample);
        number = number.substr(0, mark);
    }
    const std::size_t point = std::min(number.find('.'), number.size());
    const std::size_t leading = std::min(number.find_first_of("123456789"), number.size());
    return exponent + static_cast<std::ptrdiff_t>(point) - static_cast<std::ptrdiff_t>(leading) > 0;
}

std::size_t digitsAt(std::string_view text, std::size_t at) {
    const std::size_t begin = at;
    while (at < text.size() && isDigit(text[at]))
        ++at;
    return at - begin;
}

/// Length of the JSON number without a sign that stands at a place; 0 if none does.
std::size_t numberLength(std::string_view text, std::size_t begin) {
    std::size_t at = begin;
    at += at < text.size() && text[at] == '0' ? 1 : digitsAt(text, at);
    if (at == begin)
        return 0;
    if (at < text.size() && text[at] == '.' && digitsAt(text, at + 1) > 0)
        at += 1 + digitsAt(text, at + 1);
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        const std::size_t sign = at + 1 < text.size() && (text[at + 1] == '+' || text[at + 1] == '-') ? 1 : 0;
        const std::size_t digits = digitsAt(text, at + 1 + sign);
        at += digits > 0 ? 1 + sign + digits : 0;
    }
    return at - begin;
}

/// A copy of a text with a 0 and spaces for every number: well-formed if the text is, and all at its place.
std::string withoutNumbers(std::string_view text) {
    std::string copy(text);
    for (std::size_t at = 0; at < copy.size();) {
        if (copy[at] == '"') {
            for (++at; at < copy.size() && copy[at] != '"'; ++at)
                at += copy[at] == '\\' ? 1 : 0;
            ++at;
        } else if (const std::size_t length = numberLength(copy, at); length > 0) {
            if (length > 1) {
                copy.replace(at, length, length, ' ');
                copy[at] = '0';
            }
            at += length;
        } else {
            ++at;
        }
    }
    return copy;
}

} // namespace

double readJsonNumber(const char* begin, const char* limit, const char*& end) {
    // Most numbers are a whole one below 2^53 divided by a small power of ten, both of which a double holds, so that
    // the quotient is the nearest double.
    constexpr double powers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const char* at = begin + (*begin == '-' ? 1 : 0);
    std::uint64_t digits = 0;
    const char* const first = at;
    for (; at < limit && isDigit(*at); ++at)
        digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
    const char* const point = at;
    if (at < limit && *at == '.') {
        for (++at; at < limit && isDigit(*at); ++at)
            digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
    }
    if (at - first <= 16 && (at == limit || (*at != 'e' && *at != 'E'))) { // at most 15 digits and a point
        end = at;
        const double magnitude = static_cast<double>(digits) / powers[at > point ? at - point - 1 : 0];
        return *begin == '-' ? -magnitude : magnitude;
    }
    double value = 0;
    const auto [after, error] = std::from_chars(begin, limit, value);
    end = after;
    if (error == std::errc::result_out_of_range) {
        const std::string_view number(begin, static_cast<std::size_t>(after - begin));
        value = isTooLarge(number) ? std::numeric_limits<double>::infinity() : 0.0;
        return number.front() == '-' ? -value : value;
    }
    return value;
}

/// Takes the parser's events, which come right behind what they are about.
class TreeBuilder {
public:
    using Ch = char;
    TreeBuilder(JsonTree& tree, const rapidjson::MemoryStream& stream, std::size_t shift)
        : tree_{tree}, stream_{stream}, shift_{shift} {}

    bool Null() { return true; }
    bool Bool(bool) { return true; }
    bool Int(int) { return true; }
    bool Uint(unsigned) { return true; }
    bool Int64(std::int64_t) { return true; }
    bool Uint64(std::uint64_t) { return true; }
    bool Double(double) { return true; }
    bool RawNumber(const char*, rapidjson::SizeType, bool) { return true; } // asked for, never called
    bool Key(const char*, rapidjson::SizeType, bool) { return true; }
    bool StartObject() { return open(); }
    bool EndObject(rapidjson::SizeType) { return close(); }
    bool StartArray() { return open(); }
    bool EndArray(rapidjson::SizeType) { return close(); }

    bool String(const char*, rapidjson::SizeType length, bool) {
        if (length < leastNode)
            return true;
        // Quotes within the string have a backslash before them, the one before it has not. It may be the text's first.
        const std::uint32_t end = place();
        std::size_t begin = end - 1;
        do {
            begin = tree_.text_.rfind('"', begin - 1);
        } while (begin > 0 && tree_.text_[begin - 1] == '\\');
        const auto next = static_cast<std::uint32_t>(tree_.nodes_.size() + 1);
        tree_.nodes_.push_back({static_cast<std::uint32_t>(begin), end, next});
        return true;
    }

    [[nodiscard]] bool tooDeep() const { return tooDeep_; }

private:
    static constexpr std::uint32_t leastNode = 64; ///< bytes; shorter values are faster read than looked up

    [[nodiscard]] std::uint32_t place() const { return static_cast<std::uint32_t>(stream_.Tell() + shift_); }

    bool open() {
        if (depth_ >= open_.size()) {
            tooDeep_ = true;
            return false;
        }
        open_[depth_++] = static_cast<std::uint32_t>(tree_.nodes_.size());
        tree_.nodes_.push_back({place() - 1, 0, 0});
        return true;
    }

    bool close() {
        const std::uint32_t index = open_[--depth_];
        JsonTree::Node& node = tree_.nodes_[index];
        node.end = place();
        node.next = static_cast<std::uint32_t>(tree_.nodes_.size());
        if (node.end - node.begin < leastNode)
            tree_.nodes_.pop_back(); // all within it was as short
        return true;
    }

    JsonTree& tree_;
    const rapidjson::MemoryStream& stream_;
    std::size_t shift_;
    std::array<std::uint32_t, maximumJsonDepth> open_{}; ///< nodes
    std::size_t depth_ = 0;
    bool tooDeep_ = false;
};

TextPlace placeInText(std::string_view text, std::size_t offset) {
    TextPlace place;
    if (text.substr(0, byteOrderMark.size()) == byteOrderMark && offset >= byteOrderMark.size())
        place.column = 0;
    for (const char c : text.substr(0, offset)) {
        if (c == '\n')
            place = {place.line + 1, 1};
        else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80)
            ++place.column;
    }
    return place;
}

/// Builds the tree from what the parser finds in `json`; an error without words if it met a number too large for it.
std::optional<JsonError> JsonTree::build(std::string_view json, std::size_t shift) {
    nodes_.clear();
    nodes_.reserve(json.size() / 256);
    rapidjson::MemoryStream stream(json.data(), json.size());
    TreeBuilder builder(*this, stream, shift);
    rapidjson::Reader reader;
    // Not the parser that goes without recursion: this one is faster, and the builder stops it before it gets deep.
    const rapidjson::ParseResult result = reader.Parse<rapidjson::kParseDefaultFlags>(stream, builder);
    const std::size_t stop = stream.Tell();
    if (builder.tooDeep())
        return JsonError{"nested deeper than " + std::to_string(maximumJsonDepth) + " levels", stop - 1 + shift};
    if (result.Code() == rapidjson::kParseErrorNumberTooBig)
        return JsonError{{}, result.Offset() + shift};
    if (result.Code() == rapidjson::kParseErrorDocumentRootNotSingular || (!result.IsError() && stop < json.size()))
        return JsonError{"text after the end of the document", stop + shift};
    if (!result.IsError())
        return std::nullopt;
    std::string words = rapidjson::GetParseError_En(result.Code());
    if (!words.empty() && words.back() == '.')
        words.pop_back();
    return JsonError{"not valid JSON: " + words, result.Offset() + shift};
}

std::optional<JsonError> JsonTree::parse(std::string_view text) {
    text_ = text;
    nodes_.clear();
    if (text.size() > maximumJsonBytes)
        return JsonError{"the text is larger than 512 MiB", 0};
    const std::size_t shift = text.substr(0, byteOrderMark.size()) == byteOrderMark ? byteOrderMark.size() : 0;

    std::optional<JsonError> error = build(text.substr(shift), shift);
    if (error && error->what.empty()) // only a number that no double holds, which is a value like others
        error = build(std::string_view(withoutNumbers(text)).substr(shift), shift);
    if (error) {
        nodes_.clear();
    } else {
        constexpr std::uint32_t behindAll = std::numeric_limits<std::uint32_t>::max();
        nodes_.push_back({behindAll, behindAll, behindAll});
    }
    return error;
}

std::uint32_t JsonTree::skipSpace(std::uint32_t at) const {
    while (isSpace(text_[at]))
        ++at;
    return at;
}

std::uint32_t JsonTree::endOfString(std::uint32_t begin) const {
    std::uint32_t at = begin + 1;
    for (; text_[at] != '"'; ++at)
        at += text_[at] == '\\' ? 1 : 0;
    return at + 1;
}

/// End of a value that has no node.
std::uint32_t JsonTree::endOfSmall(std::uint32_t begin) const {
    const char* const text = text_.data();
    std::uint32_t at = begin;
    if (text[at] == '"')
        return endOfString(at);
    if (text[at] != '{' && text[at] != '[') {
        while (at < text_.size() && !(kindOf(text[at]) & (bracket | comma | space)))
            ++at;
        return at;
    }
    int depth = 0;
    do {
        while (!(kindOf(text[at]) & (bracket | quote)))
            ++at;
        if (text[at] == '"') {
            at = endOfString(at);
            continue;
        }
        depth += text[at] == '{' || text[at] == '[' ? 1 : -1;
        ++at;
    } while (depth > 0);
    return at;
}

JsonValue JsonValue::at(const JsonTree& tree, std::uint32_t begin, std::uint32_t node, bool isMember) {
    JsonValue value;
    value.tree_ = &tree;
    value.begin_ = begin;
    value.node_ = node;
    if (isMember) {
        value.keyBegin_ = begin;
        value.keyEnd_ = tree.endOfString(begin);
        value.begin_ = tree.skipSpace(tree.skipSpace(value.keyEnd_) + 1);
    }
    value.end_ = value.hasNode() ? tree.nodes_[node].end : tree.endOfSmall(value.begin_);
    return value;
}

JsonValue JsonTree::root() const {
    if (nodes_.empty())
        return {};
    const bool marked = text_.substr(0, byteOrderMark.size()) == byteOrderMark;
    return JsonValue::at(*this, skipSpace(marked ? static_cast<std::uint32_t>(byteOrderMark.size()) : 0), 0, false);
}

JsonValue JsonTree::valueAt(SourceSpan span) const {
    if (nodes_.empty() || span.empty() || span.end > text_.size())
        return {};
    const auto found = std::lower_bound(nodes_.begin(), nodes_.end() - 1, span.begin,
                                        [](const Node& node, std::uint32_t begin) { return node.begin < begin; });
    JsonValue value;
    value.tree_ = this;
    value.begin_ = span.begin;
    value.end_ = span.end;
    value.node_ = static_cast<std::uint32_t>(found - nodes_.begin());
    return value;
}

JsonType JsonValue::type() const {
    if (!tree_)
        return JsonType::Missing;
    switch (tree_->text_[begin_]) {
    case '{':
        return JsonType::Object;
    case '[':
        return JsonType::Array;
    case '"':
        return JsonType::String;
    case 't':
    case 'f':
        return JsonType::Boolean;
    case 'n':
        return JsonType::Null;
    default:
        return JsonType::Number;
    }
}

JsonValue JsonValue::operator[](std::string_view name) const {
    JsonValue found;
    if (!isObject())
        return found;
    for (JsonValue child = firstChild(); child; child = child.nextSibling(*this)) {
        if (child.hasKey(name))
            found = child;
    }
    return found;
}

JsonMembers::JsonMembers(const JsonValue& object) {
    if (!object.isObject())
        return;
    forEachChild(object, [&](const JsonValue& member) {
        if (count_ == few_.size())
            more_.assign(few_.begin(), few_.end());
        if (count_ < few_.size())
            few_[count_] = member;
        else
            more_.push_back(member);
        ++count_;
    });
}

JsonValue JsonMembers::operator[](std::string_view name) const {
    for (const JsonValue* member = end(); member != begin();) {
        if ((--member)->hasKey(name))
            return *member;
    }
    return {};
}

JsonValue JsonValue::firstChild() const {
    const JsonType kind = type();
    if (kind != JsonType::Object && kind != JsonType::Array)
        return {};
    const std::uint32_t first = tree_->skipSpace(begin_ + 1);
    if (first + 1 >= end_ || (kind == JsonType::Array && holdsNumbersOnly()))
        return {};
    return at(*tree_, first, hasNode() ? node_ + 1 : node_, kind == JsonType::Object);
}

JsonValue JsonValue::nextSibling(const JsonValue& parent) const {
    const std::uint32_t separator = tree_->skipSpace(end_);
    if (separator + 1 >= parent.end_)
        return {};
    const std::uint32_t next = hasNode() ? tree_->nodes_[node_].next : node_;
    return at(*tree_, tree_->skipSpace(separator + 1), next, keyEnd_ != 0);
}

/// Of an array.
bool JsonValue::holdsNumbersOnly() const {
    std::uint32_t place = tree_->skipSpace(begin_ + 1);
    while (place + 1 < end_ && (tree_->text_[place] == '-' || isDigit(tree_->text_[place]))) {
        place = tree_->skipSpace(tree_->endOfSmall(place));
        if (place + 1 < end_)
            place = tree_->skipSpace(place + 1);
    }
    return place + 1 >= end_;
}

std::size_t JsonValue::numbers(double* values, std::size_t most) const {
    if (!tree_ || most == 0)
        return 0;
    if (const auto lone = number()) {
        values[0] = *lone;
        return 1;
    }
    if (!isArray() || !holdsNumbersOnly())
        return 0;
    const char* at = tree_->text_.data() + begin_ + 1;
    const char* limit = tree_->text_.data() + end_ - 1;
    std::size_t count = 0;
    while (count < most) {
        while (at < limit && (isSpace(*at) || *at == ','))
            ++at;
        if (at == limit)
            break;
        values[count++] = readJsonNumber(at, limit, at);
    }
    return count;
}

std::optional<double> JsonValue::number() const {
    if (type() != JsonType::Number)
        return std::nullopt;
    const std::string_view digits = text();
    const char* end = nullptr;
    return readJsonNumber(digits.data(), digits.data() + digits.size(), end);
}

double JsonValue::number(double fallback) const {
    const auto value = number();
    return value && std::isfinite(*value) ? *value : fallback;
}

int JsonValue::integer(int fallback) const {
    const auto value = number();
    return value && std::abs(*value) <= 1e9 && *value == std::round(*value) ? static_cast<int>(*value) : fallback;
}

bool JsonValue::boolean(bool fallback) const {
    return type() == JsonType::Boolean ? tree_->text_[begin_] == 't' : fallback;
}

bool JsonValue::flag() const {
    return boolean(false) || number(0) != 0;
}

std::string JsonValue::string(std::string_view fallback) const {
    if (type() != JsonType::String)
        return std::string(fallback);
    return unescaped(tree_->text_.substr(begin_ + 1, end_ - begin_ - 2));
}

std::string JsonValue::key() const {
    return unescaped(rawKey());
}

std::string_view JsonValue::rawKey() const {
    return keyEnd_ == 0 ? std::string_view{} : tree_->text_.substr(keyBegin_ + 1, keyEnd_ - keyBegin_ - 2);
}

bool JsonValue::hasKey(std::string_view name) const {
    if (keyEnd_ == 0)
        return false;
    const std::string_view raw = rawKey();
    // Escapes are longer than what they stand for.
    return raw.size() == name.size()
               ? raw == name
               : raw.size() > name.size() && raw.find('\\') != std::string_view::npos && unescaped(raw) == name;
}

SourceSpan JsonValue::keySpan() const {
    return {keyBegin_, keyEnd_};
}

SourceSpan JsonValue::span() const {
    return {begin_, end_};
}

std::string_view JsonValue::text() const {
    return tree_ ? tree_->text_.substr(begin_, end_ - begin_) : std::string_view{};
}

std::string JsonValue::pointer() const {
    std::string path;
    if (!tree_)
        return path;
    JsonValue at = tree_->root();
    while (at.begin_ != begin_) {
        std::size_t place = 0;
        const JsonValue parent = at;
        for (at = parent.firstChild(); at && at.end_ <= begin_; at = at.nextSibling(parent))
            ++place;
        if (!at)
            break;
        path += '/';
        if (parent.isArray()) {
            path += std::to_string(place);
        } else {
            for (const char c : at.key())
                path += c == '~' ? std::string("~0") : c == '/' ? std::string("~1") : std::string(1, c);
        }
    }
    return path;
}

} // namespace jostle::standalone
