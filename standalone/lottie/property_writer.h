#pragma once

#include <string>
#include <string_view>

#include "standalone/document/path.h"
#include "standalone/document/stream.h"
#include "standalone/lottie/fields.h"
#include "standalone/lottie/format_rules.h"
#include "standalone/lottie/key_texts.h"
#include "standalone/lottie/property_reader.h"
#include "standalone/lottie/reader.h"
#include "standalone/lottie/splice.h"

namespace jostle::standalone {

/// Writes streams into the objects that hold them. What has not changed, or is what the text says already, stays.
class PropertyWriter {
public:
    explicit PropertyWriter(const LottieSource& source);

    [[nodiscard]] const LottieSource& source() const { return source_; }
    [[nodiscard]] const FormatRules& rules() const { return rules_; }
    /// Style of the document as a whole.
    [[nodiscard]] const TextStyle& style() const { return style_; }

    /// @param stream  has to live until the edits are done
    /// @param edits   takes what changes within the property
    void write(ObjectEdit& owner, std::string_view name, const Stream& stream, FieldForm form, TextEdits& edits);
    /// @param closedName  the owner's member that tells whether the path is closed, where the version asks for one
    void write(ObjectEdit& owner, std::string_view name, const PathStream& path, std::string_view closedName,
               TextEdits& edits);

private:
    const LottieSource& source_;
    FormatRules rules_;
    TextStyle style_;
    PropertyReader properties_;
    KeyTextsStore keyTexts_;
};

} // namespace jostle::standalone
