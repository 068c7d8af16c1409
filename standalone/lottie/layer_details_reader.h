#pragma once

#include <memory>

#include "standalone/document/layer_details.h"
#include "standalone/lottie/fields.h"
#include "standalone/lottie/format_rules.h"
#include "standalone/lottie/property_reader.h"
#include "standalone/lottie/reader.h"

namespace jostle::standalone {

/// The form of a leaf's property.
[[nodiscard]] FieldForm fieldFormOf(NodeKind leaf);

/// Reads what a layer's object holds when it is asked for. Layers that stand in no file hold nothing.
class LottieDetails : public LayerDetails {
public:
    explicit LottieDetails(std::shared_ptr<const LottieSource> source);

    void readLists(const Layer& layer, TreeNode& root) const override;
    [[nodiscard]] TextOutlines textOutlines(const Layer& layer, double frame) const override;
    [[nodiscard]] std::string expressionAt(SourceSpan property) const override;

private:
    std::shared_ptr<const LottieSource> source_;
    FormatRules rules_;
    PropertyReader properties_; ///< copied for every use, as it keeps what it met
};

} // namespace jostle::standalone
