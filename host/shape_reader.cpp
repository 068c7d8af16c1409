#include "host/shape_reader.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "host/host_outlines.h"
#include "host/host_time.h"

namespace jostle {

namespace {

StreamValue valueOf(const Stream& stream) {
    return stream.valueAt(sampleTime, Expressions::Applied);
}

double numberOf(const Stream& element, const char* matchName) {
    return valueOf(element.child(matchName)).number();
}

b2Vec2 pointOf(const Stream& element, const char* matchName) {
    const AEGP_TwoDVal point = valueOf(element.child(matchName)).point();
    return {static_cast<float>(point.x), static_cast<float>(point.y)};
}

RectParameters readRect(const Stream& element) {
    RectParameters rect;
    rect.size = pointOf(element, "ADBE Vector Rect Size");
    rect.position = pointOf(element, "ADBE Vector Rect Position");
    rect.roundness = static_cast<float>(numberOf(element, "ADBE Vector Rect Roundness"));
    return rect;
}

EllipseParameters readEllipse(const Stream& element) {
    EllipseParameters ellipse;
    ellipse.size = pointOf(element, "ADBE Vector Ellipse Size");
    ellipse.position = pointOf(element, "ADBE Vector Ellipse Position");
    return ellipse;
}

StarParameters readStar(const Stream& element) {
    StarParameters star;
    const double type = numberOf(element, "ADBE Vector Star Type");
    star.type = type >= 1.0 && type < 2.0 ? 1 : 2;
    star.pointCount = numberOf(element, "ADBE Vector Star Points");
    star.position = pointOf(element, "ADBE Vector Star Position");
    star.rotation = numberOf(element, "ADBE Vector Star Rotation");
    star.outerRadius = numberOf(element, "ADBE Vector Star Outer Radius");
    // The misspelling is the host's.
    star.outerRoundness = numberOf(element, "ADBE Vector Star Outer Roundess");
    if (star.type == 1) {
        star.innerRadius = numberOf(element, "ADBE Vector Star Inner Radius");
        star.innerRoundness = numberOf(element, "ADBE Vector Star Inner Roundess");
    }
    return star;
}

FreePath readPath(const HostChain& chain, const HostOutline& outline) {
    const auto narrowed = [](double x, double y) { return b2Vec2(static_cast<float>(x), static_cast<float>(y)); };
    FreePath path;
    path.segmentCount = outline.segmentCount();
    path.closed = !outline.isOpen();
    const int count = outline.vertexCount();
    path.vertices.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int index = 0; index < count; ++index) {
        const AEGP_MaskVertex v = outline.vertex(index);
        if (chain.failed())
            break;
        path.vertices.push_back(
            {narrowed(v.x, v.y), narrowed(v.tan_in_x, v.tan_in_y), narrowed(v.tan_out_x, v.tan_out_y)});
    }
    return path;
}

AccumulatedTransform transformAmong(const std::vector<NamedStream>& children) {
    AccumulatedTransform transform;
    for (const NamedStream& child : children) {
        if (child.matchName != "ADBE Vector Transform Group")
            continue;
        transform.anchor = pointOf(child.stream, "ADBE Vector Anchor");
        transform.position = pointOf(child.stream, "ADBE Vector Position");
        const AEGP_TwoDVal percent = valueOf(child.stream.child("ADBE Vector Scale")).point();
        transform.scale = {static_cast<float>(percent.x / 100.0), static_cast<float>(percent.y / 100.0)};
        transform.rotation = numberOf(child.stream, "ADBE Vector Rotation");
    }
    return transform;
}

/// Walks the contents of one layer.
class ShapeReader {
public:
    ShapeReader(HostChain& chain, const LayerFrame& frame, const MeshOptions& options)
        : chain_(chain), frame_(frame), options_(options) {}

    /// @param depth  how many groups of the layer's contents are around these
    void readChildren(const Stream& group, int depth);
    VectorShapes finish();

private:
    void readElement(const NamedStream& element, int depth);
    void take(PlacedShape placed, bool isPath);
    void takePath(const Stream& element);
    [[nodiscard]] AccumulatedTransform accumulated() const;

    HostChain& chain_;
    const LayerFrame& frame_;
    MeshOptions options_;
    std::vector<AccumulatedTransform> enclosing_; ///< of the streams around the one at hand, the outermost first
    ShapeDefList groups_;
    std::vector<ShapeDef> circles_;
    std::vector<ShapeDef> boxes_;
    VectorShapes result_;
};

// A file may nest its groups as it likes; a person does not come near this depth.
constexpr int deepestGroup = 200;

void ShapeReader::readChildren(const Stream& group, int depth) {
    if (depth > deepestGroup)
        return;
    const std::vector<NamedStream> children = childrenOf(group);
    enclosing_.push_back(transformAmong(children));
    for (const NamedStream& child : children)
        readElement(child, depth);
    enclosing_.pop_back();
}

void ShapeReader::readElement(const NamedStream& element, int depth) {
    const std::string_view name = element.matchName;
    const Stream& stream = element.stream;
    if (chain_.failed())
        return;
    if (name == "ADBE Vector Shape - Rect") {
        take(makeRect(readRect(stream), accumulated(), frame_, options_.subdivisions), false);
    } else if (name == "ADBE Vector Shape - Ellipse") {
        take(makeEllipse(readEllipse(stream), accumulated(), frame_, options_.subdivisions), false);
    } else if (name == "ADBE Vector Shape - Star") {
        take(makeStar(readStar(stream), accumulated(), frame_, options_.subdivisions), false);
    } else if (name == "ADBE Vector Shape") {
        takePath(stream);
    } else if (name == "ADBE Vector Stroke Color" || name == "ADBE Vector Fill Color") {
        const AEGP_ColorVal color = valueOf(stream).color();
        if (!chain_.failed())
            result_.color = Color{color.alphaF, color.redF, color.greenF, color.blueF};
    } else if (stream.isGroup()) {
        readChildren(stream, depth + 1);
    }
}

void ShapeReader::take(PlacedShape placed, bool isPath) {
    if (chain_.failed())
        return;
    result_.position = placed.shapePos;
    result_.angle = placed.shapeAngle;
    result_.isPath = isPath;
    if (placed.shape.isCircle)
        circles_.push_back(placed.shape);
    if (placed.shape.isBox)
        boxes_.push_back(placed.shape);
    // Each element is a group of its own.
    if (placed.shape.verts.size() >= 2)
        groups_.emplace_back().push_back(std::move(placed.shape));
}

void ShapeReader::takePath(const Stream& element) {
    const StreamValue value = valueOf(element);
    const FreePath path = readPath(chain_, HostOutline::ofStream(chain_, value));
    PlacedPath placed = makeFreePath(path, accumulated(), frame_, options_.subdivisions);
    if (!chain_.failed())
        result_.anchor = placed.anchor;
    take(std::move(placed.placed), true);
}

// The contents' own transform counts for what stands in them directly, not for what is in groups.
AccumulatedTransform ShapeReader::accumulated() const {
    AccumulatedTransform sum;
    const std::size_t outermost = enclosing_.size() > 1 ? 1 : 0;
    for (std::size_t i = enclosing_.size(); i > outermost; --i)
        sum.add(enclosing_[i - 1]);
    return sum;
}

VectorShapes ShapeReader::finish() {
    result_.hasOutlines = !groups_.empty();
    if (options_.useConvexHull)
        wrapInHulls(OutlineSource::VectorShapes, groups_);
    if (result_.hasOutlines)
        result_.mesh =
            assemble(circles_, boxes_, groups_, vectorBodySpace(result_.position, frame_.scale, result_.isPath));
    return std::move(result_);
}

} // namespace

VectorShapes readShapes(HostChain& chain, const Layer& layer, const LayerFrame& frame, const MeshOptions& options) {
    ShapeReader reader(chain, frame, options);
    reader.readChildren(layer.vectorContents(chain), 0);
    return reader.finish();
}

} // namespace jostle
