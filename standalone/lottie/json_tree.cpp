#include "standalone/lottie/json_tree.h"

#include <algorithm>
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

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
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

/// Reads the number that starts at `begin`; `end` is set behind it.
double readNumber(const char* begin, const char* limit, const char*& end) {
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

std::size_t digitsAt(std::string_view text, std::size_t at) {
    const std::size_t begin = at;
    while (at < text.size() && text[at] >= '0' && text[at] <= '9')
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

/// Takes the parser's events. They come without places; what lies between two of them is space and separators only.
class TreeBuilder {
public:
    using Ch = char;
    TreeBuilder(JsonTree& tree, const rapidjson::MemoryStream& stream, std::size_t shift)
        : tree_{tree}, stream_{stream}, shift_{shift}, reached_{shift} {}

    bool Null() { return scalar(); }
    bool Bool(bool) { return scalar(); }
    bool Int(int) { return number(); }
    bool Uint(unsigned) { return number(); }
    bool Int64(std::int64_t) { return number(); }
    bool Uint64(std::uint64_t) { return number(); }
    bool Double(double) { return number(); }
    bool RawNumber(const char*, rapidjson::SizeType, bool) { return number(); }
    bool String(const char*, rapidjson::SizeType, bool) { return scalar(); }
    bool StartObject() { return open(); }
    bool EndObject(rapidjson::SizeType) { return close(false); }
    bool StartArray() { return open(); }
    bool EndArray(rapidjson::SizeType) { return close(true); }

    bool Key(const char*, rapidjson::SizeType, bool) {
        keyBegin_ = nextToken();
        keyEnd_ = place();
        reached_ = keyEnd_;
        return true;
    }

    [[nodiscard]] bool tooDeep() const { return tooDeep_; }

private:
    struct Open {
        std::uint32_t node;
        bool numbersOnly = true;
    };

    [[nodiscard]] std::uint32_t place() const { return static_cast<std::uint32_t>(stream_.Tell() + shift_); }

    [[nodiscard]] std::uint32_t nextToken() const {
        std::size_t at = reached_;
        while (isSpace(tree_.text_[at]) || tree_.text_[at] == ',' || tree_.text_[at] == ':')
            ++at;
        return static_cast<std::uint32_t>(at);
    }

    void add(std::uint32_t begin, std::uint32_t end) {
        const auto next = static_cast<std::uint32_t>(tree_.nodes_.size() + 1);
        tree_.nodes_.push_back({keyBegin_, keyEnd_, begin, end, next});
        keyBegin_ = keyEnd_ = 0;
        reached_ = end;
    }

    bool scalar() {
        add(nextToken(), place());
        if (!open_.empty())
            open_.back().numbersOnly = false;
        return true;
    }

    // Where a number ends is told by the text: the parser may have been given less of it.
    bool number() {
        const std::uint32_t begin = nextToken();
        const std::size_t digits = begin + (tree_.text_[begin] == '-' ? 1 : 0);
        add(begin, static_cast<std::uint32_t>(digits + numberLength(tree_.text_, digits)));
        return true;
    }

    bool open() {
        if (open_.size() >= static_cast<std::size_t>(maximumJsonDepth)) {
            tooDeep_ = true;
            return false;
        }
        if (!open_.empty())
            open_.back().numbersOnly = false;
        open_.push_back({static_cast<std::uint32_t>(tree_.nodes_.size())});
        const std::uint32_t begin = nextToken();
        add(begin, begin + 1);
        return true;
    }

    bool close(bool isArray) {
        const std::uint32_t end = nextToken() + 1;
        const Open& last = open_.back();
        if (isArray && last.numbersOnly)
            tree_.nodes_.resize(last.node + 1);
        JsonTree::Node& node = tree_.nodes_[last.node];
        node.end = end;
        node.next = static_cast<std::uint32_t>(tree_.nodes_.size());
        reached_ = node.end;
        open_.pop_back();
        return true;
    }

    JsonTree& tree_;
    const rapidjson::MemoryStream& stream_;
    std::size_t shift_;
    std::size_t reached_; ///< end of the last token
    std::uint32_t keyBegin_ = 0, keyEnd_ = 0;
    std::vector<Open> open_;
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
    nodes_.reserve(json.size() / 12); // animations have a value every ten to twenty bytes
    rapidjson::MemoryStream stream(json.data(), json.size());
    TreeBuilder builder(*this, stream, shift);
    rapidjson::Reader reader;
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, builder);
    const std::size_t stop = stream.Tell();
    if (builder.tooDeep())
        return JsonError{"nested deeper than " + std::to_string(maximumJsonDepth) + " levels", stop + shift};
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
    if (error)
        nodes_.clear();
    return error;
}

JsonValue JsonTree::root() const {
    return nodes_.empty() ? JsonValue{} : JsonValue{this, 0};
}

JsonValue JsonTree::valueAt(SourceSpan span) const {
    const auto found = std::lower_bound(nodes_.begin(), nodes_.end(), span.begin,
                                        [](const Node& node, std::uint32_t begin) { return node.begin < begin; });
    if (span.empty() || found == nodes_.end() || found->begin != span.begin)
        return {};
    return {this, static_cast<std::uint32_t>(found - nodes_.begin())};
}

JsonType JsonValue::type() const {
    if (!tree_)
        return JsonType::Missing;
    switch (tree_->text_[node().begin]) {
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

JsonValue JsonValue::firstChild() const {
    if (!tree_ || node().next == index_ + 1)
        return {};
    return {tree_, index_ + 1};
}

JsonValue JsonValue::nextSibling(const JsonValue& parent) const {
    if (node().next >= parent.node().next)
        return {};
    return {tree_, node().next};
}

std::size_t JsonValue::numbers(double* values, std::size_t most) const {
    if (const auto lone = number(); lone && most > 0) {
        values[0] = *lone;
        return 1;
    }
    if (!isArray() || firstChild())
        return 0;
    const char* at = tree_->text_.data() + node().begin + 1;
    const char* limit = tree_->text_.data() + node().end - 1;
    std::size_t count = 0;
    while (count < most) {
        while (at < limit && (isSpace(*at) || *at == ','))
            ++at;
        if (at == limit)
            break;
        values[count++] = readNumber(at, limit, at);
    }
    return count;
}

std::optional<double> JsonValue::number() const {
    if (type() != JsonType::Number)
        return std::nullopt;
    const std::string_view digits = text();
    const char* end = nullptr;
    return readNumber(digits.data(), digits.data() + digits.size(), end);
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
    return type() == JsonType::Boolean ? tree_->text_[node().begin] == 't' : fallback;
}

bool JsonValue::flag() const {
    return boolean(false) || number(0) != 0;
}

std::string JsonValue::string(std::string_view fallback) const {
    if (type() != JsonType::String)
        return std::string(fallback);
    return unescaped(tree_->text_.substr(node().begin + 1, node().end - node().begin - 2));
}

std::string JsonValue::key() const {
    if (!tree_ || node().keyEnd == 0)
        return {};
    return unescaped(tree_->text_.substr(node().keyBegin + 1, node().keyEnd - node().keyBegin - 2));
}

bool JsonValue::hasKey(std::string_view name) const {
    if (!tree_ || node().keyEnd == 0)
        return false;
    const std::string_view raw = tree_->text_.substr(node().keyBegin + 1, node().keyEnd - node().keyBegin - 2);
    return raw == name || (raw.find('\\') != std::string_view::npos && unescaped(raw) == name);
}

SourceSpan JsonValue::keySpan() const {
    return tree_ ? SourceSpan{node().keyBegin, node().keyEnd} : SourceSpan{};
}

SourceSpan JsonValue::span() const {
    return tree_ ? SourceSpan{node().begin, node().end} : SourceSpan{};
}

std::string_view JsonValue::text() const {
    return tree_ ? tree_->text_.substr(node().begin, node().end - node().begin) : std::string_view{};
}

std::string JsonValue::pointer() const {
    std::string path;
    if (!tree_)
        return path;
    JsonValue at = tree_->root();
    while (at.index_ != index_) {
        std::size_t place = 0;
        JsonValue child = at.firstChild();
        for (; child.node().next <= index_; child = child.nextSibling(at))
            ++place;
        path += '/';
        if (at.isArray()) {
            path += std::to_string(place);
        } else {
            for (const char c : child.key())
                path += c == '~' ? std::string("~0") : c == '/' ? std::string("~1") : std::string(1, c);
        }
        at = child;
    }
    return path;
}

} // namespace jostle::standalone
