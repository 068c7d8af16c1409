#include "host/body_import.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "host/host_time.h"
#include "host/label_colors.h"
#include "host/layer_transform.h"
#include "host/mask_reader.h"
#include "host/shape_reader.h"
#include "host/text_reader.h"

namespace jostle {

namespace {

// A layer that outlasts the composition never ends while it is simulated.
constexpr int endlessFrame = 100000;
// No frame is farther away than this: lengths between any two fit an int.
constexpr int farthestFrame = 1000000000;
constexpr float leastScale = 0.001f;
constexpr float radiansPerDegree = 0.017453292f;
constexpr Color white{1.0, 1.0, 1.0, 1.0};

bool isFinite(b2Vec2 v) {
    return std::isfinite(v.x) && std::isfinite(v.y);
}

b2Vec2 inFloats(AEGP_TwoDVal value) {
    return {static_cast<float>(value.x), static_cast<float>(value.y)};
}

int squarePixels(int width, double pixelAspect) {
    return static_cast<int>(std::clamp(pixelAspect * width, 0.0, 1e9));
}

/// The import of one layer, from its record's identity to its shape.
class BodyImport {
public:
    BodyImport(HostChain& chain, const Layer& layer, AEGP_ObjectType type, const ImportFacts& facts,
               LayerReport& report, BodyRecord& body)
        : chain_(chain), layer_(layer), type_(type), facts_(facts), report_(report), body_(body) {}

    void run(MessageSink* messages);

private:
    void readSpan();
    [[nodiscard]] bool readRotationAnimated() const;
    [[nodiscard]] b2Vec2 readAnchor();
    [[nodiscard]] b2Vec2 readScale();
    [[nodiscard]] Matrix4 readMatrix();
    [[nodiscard]] std::optional<Color> readSolidColor() const;

    void readFromMasks(const Matrix4& matrix);
    void readFromText(const Matrix4& matrix);
    void readFromShapes(const Matrix4& matrix, MessageSink* messages);
    void readFromBounds(const Matrix4& matrix);
    void becomeSquare(MessageSink* messages);

    /// Where the layer's anchor stands in the composition, in pixels before the pixel aspect ratio.
    [[nodiscard]] b2Vec2 anchorInComposition(const Matrix4& matrix) const { return projectPoint(anchor_, matrix); }
    void placeAtAnchor(const Matrix4& matrix);
    /// @param pixels  of the composition, square ones
    void setPlace(b2Vec2 pixels, float angle);
    void setMesh(BodyMesh mesh);

    HostChain& chain_;
    const Layer& layer_;
    AEGP_ObjectType type_;
    const ImportFacts& facts_;
    LayerReport& report_;
    BodyRecord& body_;
    b2Vec2 anchor_{0.0f, 0.0f}; ///< layer pixels
    float angle_ = 0.0f;        ///< radians; what the matrix turns
};

void BodyImport::readSpan() {
    const double start = framesOf(layer_.inPoint(chain_), facts_.frameDuration);
    const double length = framesOf(layer_.duration(chain_), facts_.frameDuration);
    body_.inPoint = std::clamp(wholeFrames(start), -farthestFrame, farthestFrame);
    body_.outPoint = std::clamp(wholeFrames(start + length), -farthestFrame, farthestFrame);
    if (body_.outPoint >= facts_.compFrames)
        body_.outPoint = endlessFrame;
}

bool BodyImport::readRotationAnimated() const {
    if (layer_.stream(chain_, AEGP_LayerStream_ROTATION).isTimeVarying())
        return true;
    // The direct parent alone, not what it hangs from.
    const Layer parent = layer_.parent(chain_);
    return parent.exists() && parent.stream(chain_, AEGP_LayerStream_ROTATION).isTimeVarying();
}

b2Vec2 BodyImport::readAnchor() {
    const Stream stream = layer_.stream(chain_, AEGP_LayerStream_ANCHORPOINT);
    const b2Vec2 anchor = inFloats(stream.valueAt(sampleTime, Expressions::Ignored).point());
    if (isFinite(anchor))
        return anchor;
    report_.numbersReplaced = true;
    return {0.0f, 0.0f};
}

b2Vec2 BodyImport::readScale() {
    b2Vec2 scale = inFloats(WorldScale(chain_, layer_).at(chain_, sampleTime));
    if (!isFinite(scale)) {
        report_.numbersReplaced = true;
        scale = {1.0f, 1.0f};
    }
    return {std::max(std::abs(scale.x), leastScale), std::max(std::abs(scale.y), leastScale)};
}

/// The layer's matrix, or the identity for one that leads to no finite place.
Matrix4 BodyImport::readMatrix() {
    const Matrix4 matrix = layer_.toWorld(chain_, sampleTime);
    const bool usable = isFinite(anchorInComposition(matrix)) && std::isfinite(rotationDegrees(matrix));
    report_.numbersReplaced = report_.numbersReplaced || !usable;
    return usable ? matrix : Matrix4{};
}

std::optional<Color> BodyImport::readSolidColor() const {
    if (type_ != AEGP_ObjectType_AV)
        return std::nullopt;
    const std::optional<AEGP_ColorVal> solid = layer_.source(chain_).solidColor(chain_);
    if (!solid)
        return std::nullopt;
    const auto component = [](double value) { return value > 0.0 && std::isfinite(value) ? value : 0.0; };
    return Color{1.0, component(solid->redF), component(solid->greenF), component(solid->blueF)};
}

void BodyImport::setPlace(b2Vec2 pixels, float angle) {
    if (!isFinite(pixels)) {
        report_.numbersReplaced = true;
        pixels = {0.0f, 0.0f};
    }
    body_.position = body_.positionStored = body_.importPosition = facts_.toWorldPlace(pixels);
    body_.angle = body_.importAngle = angle;
}

void BodyImport::placeAtAnchor(const Matrix4& matrix) {
    b2Vec2 world = anchorInComposition(matrix);
    world.x *= static_cast<float>(facts_.pixelAspect);
    setPlace(world, angle_);
}

void BodyImport::setMesh(BodyMesh mesh) {
    body_.outlines = std::move(mesh.shapes);
    body_.isDenseMesh = mesh.meshWarning;
    body_.triangulationFailed = mesh.triangulationFailed;
}

void BodyImport::readFromMasks(const Matrix4& matrix) {
    report_.origin = BodyOrigin::Masks;
    // A text or shape layer has no pixels but the composition's: its masks and its anchor are measured in them alike.
    MaskFrame frame{anchor_, body_.layerScale, facts_.pixelAspect};
    if (type_ == AEGP_ObjectType_AV)
        frame.pixelAspect = layer_.source(chain_).pixelAspect(chain_);
    body_.color = readSolidColor().value_or(body_.importColor);
    setMesh(readMasks(chain_, layer_, frame, meshOptionsOf(body_)));
    placeAtAnchor(matrix);
}

void BodyImport::readFromText(const Matrix4& matrix) {
    report_.origin = BodyOrigin::Text;
    body_.color = white;
    setMesh(readTextOutlines(chain_, layer_, anchorInComposition(matrix), facts_.pixelAspect, meshOptionsOf(body_)));
    placeAtAnchor(matrix);
    body_.layerAnchor.x *= static_cast<float>(facts_.pixelAspect);
}

void BodyImport::readFromShapes(const Matrix4& matrix, MessageSink* messages) {
    LayerFrame frame;
    frame.matrix = matrix;
    frame.pixelAspectRatio = static_cast<float>(facts_.pixelAspect);
    frame.scale = body_.layerScale;
    frame.angle = angle_;
    VectorShapes shapes = readShapes(chain_, layer_, frame, meshOptionsOf(body_));
    if (!shapes.hasOutlines) {
        becomeSquare(messages);
        return;
    }
    report_.origin = BodyOrigin::VectorShapes;
    body_.isShapeLayer = true;
    body_.isPath = shapes.isPath;
    body_.color = shapes.color.value_or(white);
    setMesh(std::move(shapes.mesh));
    // A path's vertices have the rotation in them already.
    setPlace(shapes.position, shapes.isPath ? 0.0f : angle_);
    body_.angleStored = shapes.angle;
    body_.layerAnchor = shapes.isPath ? shapes.anchor : b2Vec2(0.0f, 0.0f);
    if (!isFinite(body_.layerAnchor)) {
        report_.numbersReplaced = true;
        body_.layerAnchor = {0.0f, 0.0f};
    }
}

/// In place of a shape layer without any outline: a square of one metre, wherever the layer stands.
void BodyImport::becomeSquare(MessageSink* messages) {
    report_.origin = BodyOrigin::Fallback;
    ShapeDef square;
    square.verts = {{0.0f, 0.0f}, {1.0f, 0.0f}, {1.0f, 1.0f}, {0.0f, 1.0f}};
    body_.isBox = true;
    body_.outlines = {{std::move(square)}};
    body_.isDenseMesh = false;
    body_.color = white;
    body_.layerScale = {1.0f, 1.0f};
    body_.position = body_.positionStored = body_.importPosition = {0.0f, 0.0f};
    body_.angle = body_.importAngle = 0.0f;
    if (messages != nullptr && !chain_.failed())
        messages->inform(messageTitle, "An error occurred when retrieving geometry of layer " +
                                           std::to_string(report_.layerIndex + 1) +
                                           ". This layer will be represented as a simple box.");
}

void BodyImport::readFromBounds(const Matrix4& matrix) {
    report_.origin = BodyOrigin::Bounds;
    const Item source = layer_.source(chain_);
    const Item::Size size = source.size(chain_);
    const double pixelAspect = source.pixelAspect(chain_);
    const auto width = static_cast<float>(squarePixels(size.width, pixelAspect));
    const auto height = static_cast<float>(size.height);
    const b2Vec2 scale = body_.layerScale;
    const float anchorX = anchor_.x * static_cast<float>(pixelAspect);
    ShapeDef outline;
    outline.verts = {{0.0f, 0.0f}, {width, 0.0f}, {width, height}, {0.0f, height}};
    for (b2Vec2& vertex : outline.verts)
        vertex = toWorld({scale.x * (vertex.x - anchorX), scale.y * (vertex.y - anchor_.y)});
    body_.isBox = true;
    body_.isDenseMesh = false;
    body_.outlines = {{std::move(outline)}};
    body_.color = readSolidColor().value_or(white);
    placeAtAnchor(matrix);
}

void BodyImport::run(MessageSink* messages) {
    body_.layerID = layer_.id(chain_);
    body_.name = report_.name;
    body_.number = report_.bodyIndex + 1;
    readSpan();
    body_.rotationAnimated = readRotationAnimated();
    body_.importColor = labelColor(layer_.label(chain_));
    anchor_ = body_.layerAnchor = readAnchor();
    body_.layerScale = readScale();
    const Matrix4 matrix = readMatrix();
    angle_ = static_cast<float>(rotationDegrees(matrix)) * radiansPerDegree;
    body_.isBox = body_.isShapeLayer = body_.isCircle = body_.isPath = false;
    if (layer_.maskCount(chain_) > 0)
        readFromMasks(matrix);
    else if (type_ == AEGP_ObjectType_TEXT)
        readFromText(matrix);
    else if (type_ == AEGP_ObjectType_VECTOR)
        readFromShapes(matrix, messages);
    else
        readFromBounds(matrix);
}

} // namespace

ImportFacts readFacts(HostChain& chain, const Composition& composition) {
    const Item item = composition.item(chain);
    const Item::Size size = item.size(chain);
    ImportFacts facts;
    facts.pixelAspect = item.pixelAspect(chain);
    facts.duration = item.duration(chain);
    facts.frameDuration = composition.frameDuration(chain);
    if (facts.frameDuration.value <= 0 || facts.frameDuration.scale == 0)
        chain.fail(A_Err_PARAMETER);
    facts.compWidth = squarePixels(size.width, facts.pixelAspect);
    facts.compHeight = size.height;
    facts.compFrames = wholeFrames(framesOf(facts.duration, facts.frameDuration));
    return facts;
}

void importLayer(HostChain& chain, const Layer& layer, AEGP_ObjectType type, const ImportFacts& facts,
                 LayerReport& report, MessageSink* messages, BodyRecord& body) {
    BodyImport(chain, layer, type, facts, report, body).run(messages);
}

} // namespace jostle
