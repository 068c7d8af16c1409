#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "standalone/document/stream.h"
#include "standalone/lottie/json_tree.h"

namespace jostle::standalone {

/// How new text is laid out at some place of a document.
struct TextStyle {
    std::string newline; ///< "\n" or "\r\n"; empty where all stands on one line
    std::string indent;  ///< of the members of the object at hand
    std::string unit;    ///< by which deeper lines are indented more
    std::string colon = ":";
    std::string comma = ","; ///< between values on one line
};

/// The style of a document, as its root object shows it.
[[nodiscard]] TextStyle styleOf(const JsonValue& root);

/// Edits of a text, each a span and what takes its place. Spans must not overlap.
class TextEdits {
public:
    void replace(SourceSpan span, std::string text);
    [[nodiscard]] bool empty() const { return edits_.empty(); }
    /// The text with all edits done; every byte outside of them as it was.
    [[nodiscard]] std::string applied(std::string_view source) const;

private:
    struct Edit {
        SourceSpan span;
        std::string text;
    };
    std::vector<Edit> edits_;
};

/// Changes of the members of one object.
class ObjectEdit {
public:
    /// @param document  style of the document as a whole
    ObjectEdit(const JsonValue& object, const TextStyle& document);

    [[nodiscard]] const JsonValue& object() const { return object_; }
    /// Style for what stands inside this object.
    [[nodiscard]] const TextStyle& style() const { return style_; }

    /// Gives a member a value, inserting it at the end if there is none; of doubled members the last changes.
    void set(std::string_view name, std::string value);
    /// Takes a member out, all of them if it is doubled.
    void remove(std::string_view name);
    /// Hands the changes on; only once.
    void commit(TextEdits& edits);

private:
    [[nodiscard]] std::string separator() const;

    JsonValue object_;
    TextStyle style_;
    std::vector<SourceSpan> replaced_;
    std::vector<std::string> replacements_;
    std::string inserted_; ///< members with a comma between them
    std::vector<std::string> removed_;
};

} // namespace jostle::standalone
