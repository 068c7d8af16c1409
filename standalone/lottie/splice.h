#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/document/stream.h"
#include "standalone/lottie/json_tree.h"
#include "standalone/lottie/text_sink.h"

namespace jostle::standalone {

/// How new text is laid out at some place of a document.
struct TextStyle {
    std::string newline; ///< "\n" or "\r\n"; empty where all stands on one line
    std::string indent;  ///< of the members of the object at hand
    std::string unit;    ///< by which deeper lines are indented more
    std::string colon = ":";
    std::string comma = ","; ///< between values on one line

    friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

/// The style of a document, as its root object shows it.
[[nodiscard]] TextStyle styleOf(const JsonValue& root);

/// Prints a text that is too large to be kept until it is written.
using TextPrinter = std::function<void(TextSink&)>;

/// Edits of a text, each a span and what takes its place. Spans must not overlap.
class TextEdits {
public:
    void replace(SourceSpan span, std::string text);
    /// @param print  called whenever the edits are done
    void replacePrinted(SourceSpan span, TextPrinter print);
    [[nodiscard]] bool empty() const { return edits_.empty(); }
    /// Adds the edits of another set.
    void append(TextEdits&& others);
    /// Writes a part of the text with the edits done that lie in it; every byte outside of them as it was.
    void apply(std::string_view source, SourceSpan part, TextSink& out) const;
    /// That part as a string.
    [[nodiscard]] std::string applied(std::string_view source, SourceSpan part) const;

private:
    struct Edit {
        SourceSpan span;
        std::string text;
        TextPrinter print; ///< in place of the text, if there is one
    };
    std::vector<Edit> edits_;
};

/// A new object, laid out like its surroundings.
class ObjectText {
public:
    /// @param style  of its members
    explicit ObjectText(TextStyle style) : style_{std::move(style)} {}

    [[nodiscard]] const TextStyle& style() const { return style_; }
    /// Style of the members of an object within this one.
    [[nodiscard]] TextStyle innerStyle() const;
    [[nodiscard]] bool empty() const { return members_.empty(); }
    /// @param value  as it is to stand in the text
    void add(std::string_view name, std::string_view value);
    void addString(std::string_view name, std::string_view utf8);
    [[nodiscard]] std::string text() const;

private:
    TextStyle style_;
    std::string members_;
};

/// What stands around and between the entries of an array.
struct ListLayout {
    std::string lead, between, tail;
};

/// The layout of an array, as its entries show it, or else like the surroundings.
/// @param array  the present one, or Missing
/// @param owner  style of the members of the object that holds it
[[nodiscard]] ListLayout layoutOf(const JsonValue& array, const TextStyle& owner);

/// The text of an array with these entries, laid out as the present one.
[[nodiscard]] std::string listText(const JsonValue& array, const TextStyle& owner,
                                   const std::vector<std::string>& entries);

/// Style of the members of objects in an array, which a member of an object holds or shall hold.
/// @param owner     style of the object's members
/// @param document  style of the document as a whole
[[nodiscard]] TextStyle entryStyle(const JsonValue& array, const TextStyle& owner, const TextStyle& document);

/// Changes of the members of one object.
class ObjectEdit {
public:
    /// @param document  style of the document as a whole
    ObjectEdit(const JsonValue& object, const TextStyle& document);

    /// A member of the object as it stands in the text; of several the last, else Missing.
    [[nodiscard]] JsonValue member(std::string_view name) const { return members_[name]; }
    [[nodiscard]] const JsonMembers& members() const { return members_; }
    /// Style for what stands inside this object.
    [[nodiscard]] const TextStyle& style() const { return style_; }

    /// Gives a member a value, inserting it at the end if there is none; of doubled members the last changes.
    void set(std::string_view name, std::string value);
    void setString(std::string_view name, std::string_view utf8);
    /// As `set`, of a value that a present member gets only when the edits are done.
    void setPrinted(std::string_view name, TextPrinter print);
    /// Takes a member out, all of them if it is doubled.
    void remove(std::string_view name);
    /// Hands the changes on; only once.
    void commit(TextEdits& edits);

private:
    [[nodiscard]] std::string separator() const;

    JsonValue object_;
    JsonMembers members_;
    TextStyle style_;
    TextEdits replaced_;   ///< values of members
    std::string inserted_; ///< members with a comma between them
    std::vector<std::string> removed_;
};

} // namespace jostle::standalone
