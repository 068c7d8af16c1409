#include "standalone/lottie/layer_details_reader.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "standalone/document/composition.h"
#include "standalone/document/evaluate.h"
#include "standalone/lottie/text_outlines.h"

namespace jostle::standalone {

namespace {

/// The kind of a shape element, by its "ty".
NodeKind elementKind(const JsonValue& type) {
    const std::string name = type.string();
    if (name.empty())
        return NodeKind::OtherElement;
    for (std::size_t i = 0; i < nodeKindCount; ++i) {
        const NodeFacts& facts = factsOf(static_cast<NodeKind>(i));
        if (facts.parent == facts.kind && name == facts.member)
            return facts.kind;
    }
    return NodeKind::OtherElement;
}

bool isTransform(const JsonMembers& element) {
    return element["ty"].string() == factsOf(NodeKind::GroupTransform).member;
}

/// At most `most` bytes of a text, without half a character.
std::string cutShort(std::string text, std::size_t most) {
    if (text.size() <= most)
        return text;
    while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0U) == 0x80U)
        --most;
    text.resize(most);
    return text;
}

/// The easing of two dimensions whose keys stand at the same frames; empty if one holds where the other moves.
std::vector<KeySegment> mergedSegments(const KeyTrack& x, const KeyTrack& y) {
    std::vector<KeySegment> merged;
    for (std::size_t key = 0; key < x.size(); ++key) {
        KeySegment segment = x.segments.empty() ? KeySegment{} : x.segments[key];
        const KeySegment other = y.segments.empty() ? KeySegment{} : y.segments[key];
        if (segment.hold != other.hold || segment.hasEnd || other.hasEnd)
            return {};
        segment.linear = segment.linear && other.linear;
        segment.outX[1] = other.outX[0];
        segment.outY[1] = other.outY[0];
        segment.inX[1] = other.inX[0];
        segment.inY[1] = other.inY[0];
        merged.push_back(segment);
    }
    return merged;
}

/// One stream of the streams of two dimensions. Where their keys differ it is straight between all keys and, unless
/// that made far more of them, between whole frames.
Stream mergedDimensions(const Stream& x, const Stream& y) {
    constexpr double mostFramesPerKey = 64;
    Stream merged;
    merged.components = 2;
    merged.hasExpression = x.hasExpression || y.hasExpression;
    merged.expressionEnabled = x.expressionEnabled || y.expressionEnabled;
    LeanVector<double>& frames = merged.keys.frames;
    for (const Stream* stream : {&x, &y})
        frames.insert(frames.end(), stream->keys.frames.begin(), stream->keys.frames.end());
    std::sort(frames.begin(), frames.end());
    if (x.keys.frames == y.keys.frames)
        merged.keys.segments = mergedSegments(x.keys, y.keys);
    const bool sampled = !frames.empty() && merged.keys.segments.empty() &&
                         frames.back() - frames.front() <= mostFramesPerKey * static_cast<double>(frames.size());
    if (sampled) {
        const double end = frames.back();
        for (double frame = std::floor(frames.front()) + 1; frame < end; ++frame)
            frames.push_back(frame);
        std::sort(frames.begin(), frames.end());
    }
    frames.erase(std::unique(frames.begin(), frames.end()), frames.end());
    for (const double frame : frames) {
        for (const Stream* stream : {&x, &y})
            merged.keys.values.push_back(valueAt(*stream, frame)[0]);
    }
    merged.value = {x.value[0], y.value[0], 0};
    if (!frames.empty())
        std::copy_n(merged.keys.values.begin(), 2, merged.value.begin());
    return merged;
}

// Groups nested deeper have no contents, so that what is written into any of them can be read again: a group takes two
// levels of the text, its place in a document three, and an outline with keys eight.
static_assert(3 + 2 * deepestGroup + 8 < maximumJsonDepth);

/// Builds the nodes of one layer.
class TreeReader {
public:
    TreeReader(PropertyReader properties, FormatRules rules) : properties_{std::move(properties)}, rules_{rules} {}

    /// @return the transform among the elements of a group, of several the last, else Missing
    JsonValue readShapes(TreeNode& list, const JsonValue& elements) {
        list.source = elements.isArray() ? elements.span() : SourceSpan{};
        JsonValue transform;
        if (!elements.isArray())
            return transform;
        forEachChild(elements, [&](const JsonValue& element) {
            if (!element.isObject())
                return;
            const JsonMembers members(element);
            if (list.kind == NodeKind::GroupContents && isTransform(members))
                transform = element;
            else
                readElement(list, element, members);
        });
        return transform;
    }

    void readMasks(TreeNode& parade, const JsonValue& masks) {
        parade.source = masks.span();
        forEachChild(masks, [&](const JsonValue& mask) {
            if (!mask.isObject())
                return;
            readNode(addNode(parade, NodeKind::Mask), mask, JsonMembers(mask));
        });
    }

private:
    void readElement(TreeNode& list, const JsonValue& element, const JsonMembers& members) {
        TreeNode& node = addNode(list, elementKind(members["ty"]));
        if (node.kind == NodeKind::OtherElement && !isTransform(members))
            node.matchName.own() = cutShort(members["mn"].string(), 40);
        readNode(node, element, members);
        if (node.kind == NodeKind::Group && depth_ < deepestGroup) {
            ++depth_;
            readGroup(node, members["it"]);
            --depth_;
        }
    }

    void readGroup(TreeNode& group, const JsonValue& elements) {
        if (const JsonValue transform = readShapes(*childOf(group, NodeKind::GroupContents), elements))
            readNode(*childOf(group, NodeKind::GroupTransform), transform, JsonMembers(transform));
    }

    void readNode(TreeNode& node, const JsonValue& object, const JsonMembers& members) {
        node.source = object.span();
        if (const JsonValue name = members["nm"])
            node.name.own() = name.string();
        for (TreeNode* leaf : node.children) {
            if (factsOf(*leaf).form == ValueForm::None)
                continue;
            if (const JsonValue property = members[factsOf(*leaf).member])
                readLeaf(*leaf, property, members);
        }
    }

    void readLeaf(TreeNode& leaf, const JsonValue& property, const JsonMembers& owner) {
        leaf.source = property.span();
        const FieldForm form = fieldFormOf(leaf.kind);
        if (form == FieldForm::Outline) {
            const JsonValue closed = owner[leaf.kind == NodeKind::MaskShape ? "cl" : "closed"];
            const bool outside = rules_.closedOutside && closed;
            *leaf.path = properties_.path(property, rules_,
                                          outside ? std::optional<bool>{closed.flag()} : std::optional<bool>{});
            return;
        }
        if (form == FieldForm::Plain) {
            leaf.own->value[0] =
                std::clamp(property.number(factsOf(leaf).defaultValue), -transformNumberLimit, transformNumberLimit);
        } else if (isSeparated(properties_.resolved(property))) {
            const JsonValue looked = properties_.taken(property);
            *leaf.own = mergedDimensions(properties_.stream(looked["x"], FieldForm::Single),
                                         properties_.stream(looked["y"], FieldForm::Single));
            leaf.hasSeparatedSource = true;
        } else {
            *leaf.own = properties_.stream(property, form);
        }
        leaf.own->source = property.span();
        if (form == FieldForm::Colour && rules_.coloursTo255)
            scaleColours(*leaf.own, 1 / 255.0);
    }

    static void scaleColours(Stream& stream, double factor) {
        for (double& number : stream.value)
            number *= factor;
        for (double& number : stream.keys.values)
            number *= factor;
        for (KeySegment& segment : stream.keys.segments) {
            for (double& number : segment.end)
                number *= factor;
        }
    }

    PropertyReader properties_;
    FormatRules rules_;
    int depth_ = 0; ///< groups around the element at hand
};

} // namespace

FieldForm fieldFormOf(NodeKind leaf) {
    const NodeFacts& facts = factsOf(leaf);
    switch (facts.form) {
    case ValueForm::One:
        return leaf == NodeKind::StarType ? FieldForm::Plain
               : facts.defaultValue != 0  ? FieldForm::Percent
                                          : FieldForm::Single;
    case ValueForm::Two:
        return facts.defaultValue != 0 ? FieldForm::PlaneScale : FieldForm::Size;
    case ValueForm::TwoSpatial:
        return FieldForm::PlanePoint;
    case ValueForm::Three:
        return FieldForm::Scale;
    case ValueForm::ThreeSpatial:
        return FieldForm::Point;
    case ValueForm::Color:
        return FieldForm::Colour;
    case ValueForm::Path:
        return FieldForm::Outline;
    case ValueForm::None:
        break;
    }
    return FieldForm::None;
}

LottieDetails::LottieDetails(std::shared_ptr<const LottieSource> source)
    : source_{std::move(source)},
      rules_{formatRules(source_->tree.root())},
      properties_{source_->tree.root()["slots"]} {}

void LottieDetails::readLists(const Layer& layer, TreeNode& root) const {
    TreeReader reader(properties_, rules_);
    TreeNode* const shapes = childOf(root, NodeKind::VectorsRoot);
    if (shapes != nullptr && !layer.shapesSource.empty())
        reader.readShapes(*shapes, source_->tree.valueAt(layer.shapesSource));
    if (!layer.masksSource.empty())
        reader.readMasks(*childOf(root, NodeKind::MaskParade), source_->tree.valueAt(layer.masksSource));
}

TextOutlines LottieDetails::textOutlines(const Layer& layer, double frame) const {
    const JsonValue object = source_->tree.valueAt(layer.source);
    if (layer.kind != LayerKind::Text || !object.isObject())
        return {};
    return readTextOutlines(source_->tree.root(), object, frame);
}

std::string LottieDetails::expressionAt(SourceSpan property) const {
    return properties_.resolved(source_->tree.valueAt(property))["x"].string();
}

} // namespace jostle::standalone
