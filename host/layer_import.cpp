#include "host/layer_import.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "host/composition.h"
#include "host/host_time.h"
#include "host/label_colors.h"
#include "host/layer_transform.h"
#include "host/undo_group.h"

namespace jostle {

namespace {

// A layer that outlasts the composition never ends while it is simulated.
constexpr int endlessFrame = 100000;
// No frame is farther away than this: lengths between any two fit an int.
constexpr int farthestFrame = 1000000000;
constexpr float leastScale = 0.001f;
constexpr float radiansPerDegree = 0.017453292f;

struct CompositionFacts {
    A_Time frameDuration{};
    A_Time duration{};
    double pixelAspect = 1.0;
};

bool isFinite(b2Vec2 v) {
    return std::isfinite(v.x) && std::isfinite(v.y);
}

b2Vec2 inFloats(AEGP_TwoDVal value) {
    return {static_cast<float>(value.x), static_cast<float>(value.y)};
}

Color colorOf(const AEGP_ColorVal& color) {
    const auto component = [](double value) { return value > 0.0 && std::isfinite(value) ? value : 0.0; };
    return {1.0, component(color.redF), component(color.greenF), component(color.blueF)};
}

Rgb rgbOf(const Color& color) {
    return {static_cast<float>(color.red), static_cast<float>(color.green), static_cast<float>(color.blue)};
}

/// Width is in square pixels: the ratio times the width, cut to whole pixels.
struct Bounds {
    int width = 0;
    int height = 0;
    double pixelAspect = 1.0;
};

int squarePixels(int width, double pixelAspect) {
    return static_cast<int>(std::clamp(pixelAspect * width, 0.0, 1e9));
}

bool readComposition(HostChain& chain, const Composition& composition, CompositionFacts& facts, Scene& scene) {
    const Item item = composition.item(chain);
    const Item::Size size = item.size(chain);
    facts.pixelAspect = item.pixelAspect(chain);
    facts.duration = item.duration(chain);
    facts.frameDuration = composition.frameDuration(chain);
    if (facts.frameDuration.value <= 0 || facts.frameDuration.scale == 0)
        chain.fail(A_Err_PARAMETER);
    if (chain.failed())
        return false;
    scene.compWidth = squarePixels(size.width, facts.pixelAspect);
    scene.compHeight = size.height;
    scene.frameDurationValue = facts.frameDuration.value;
    scene.frameDurationScale = facts.frameDuration.scale;
    scene.fps = static_cast<double>(facts.frameDuration.scale) / facts.frameDuration.value;
    scene.compFrames = wholeFrames(framesOf(facts.duration, facts.frameDuration));
    return true;
}

/// Whether a layer takes part at all. The order decides which reason is told when several hold.
LayerOutcome outcomeOf(HostChain& chain, const Layer& layer) {
    const AEGP_ObjectType type = layer.objectType(chain);
    const AEGP_LayerFlags flags = layer.flags(chain);
    const auto has = [flags](AEGP_LayerFlags flag) { return (flags & flag) != 0; };
    if (chain.failed())
        return LayerOutcome::Unreadable;
    if (type == AEGP_ObjectType_CAMERA)
        return LayerOutcome::Camera;
    if (type == AEGP_ObjectType_LIGHT)
        return LayerOutcome::Light;
    if (type != AEGP_ObjectType_AV && type != AEGP_ObjectType_TEXT && type != AEGP_ObjectType_VECTOR)
        return LayerOutcome::UnknownKind;
    if (has(AEGP_LayerFlag_NULL_LAYER))
        return LayerOutcome::Null;
    if (has(AEGP_LayerFlag_ADJUSTMENT_LAYER))
        return LayerOutcome::Adjustment;
    if (has(AEGP_LayerFlag_GUIDE_LAYER))
        return LayerOutcome::Guide;
    if (!has(AEGP_LayerFlag_VIDEO_ACTIVE))
        return LayerOutcome::Hidden;
    if (layer.is3D(chain))
        return LayerOutcome::ThreeD;
    if (!layer.isVideoReallyOn(chain))
        return chain.failed() ? LayerOutcome::Unreadable : LayerOutcome::NotShown;
    if (type == AEGP_ObjectType_AV) {
        const Item source = layer.source(chain);
        const Item::Size size = source.size(chain);
        if (!source.exists())
            return chain.failed() ? LayerOutcome::Unreadable : LayerOutcome::NoSource;
        if (size.width < 1 && size.height < 1)
            return chain.failed() ? LayerOutcome::Unreadable : LayerOutcome::NoPicture;
    }
    const bool hasMasks = layer.maskCount(chain) > 0;
    if (chain.failed())
        return LayerOutcome::Unreadable;
    if (hasMasks)
        return LayerOutcome::Masks;
    if (type == AEGP_ObjectType_TEXT)
        return LayerOutcome::Text;
    return type == AEGP_ObjectType_VECTOR ? LayerOutcome::VectorShapes : LayerOutcome::Body;
}

void readSpan(HostChain& chain, const Layer& layer, const CompositionFacts& facts, int compFrames, BodyRecord& body) {
    const double start = framesOf(layer.inPoint(chain), facts.frameDuration);
    const double length = framesOf(layer.duration(chain), facts.frameDuration);
    body.inPoint = std::clamp(wholeFrames(start), -farthestFrame, farthestFrame);
    body.outPoint = std::clamp(wholeFrames(start + length), -farthestFrame, farthestFrame);
    if (body.outPoint >= compFrames)
        body.outPoint = endlessFrame;
}

bool readRotationAnimated(HostChain& chain, const Layer& layer) {
    if (layer.stream(chain, AEGP_LayerStream_ROTATION).isTimeVarying())
        return true;
    // The direct parent alone, not what it hangs from.
    const Layer parent = layer.parent(chain);
    return parent.exists() && parent.stream(chain, AEGP_LayerStream_ROTATION).isTimeVarying();
}

b2Vec2 readAnchor(HostChain& chain, const Layer& layer, bool& replaced) {
    const Stream stream = layer.stream(chain, AEGP_LayerStream_ANCHORPOINT);
    const b2Vec2 anchor = inFloats(stream.valueAt(sampleTime, Expressions::Ignored).point());
    if (isFinite(anchor))
        return anchor;
    replaced = true;
    return {0.0f, 0.0f};
}

b2Vec2 readScale(HostChain& chain, const Layer& layer, bool& replaced) {
    b2Vec2 scale = inFloats(WorldScale(chain, layer).at(chain, sampleTime));
    if (!isFinite(scale)) {
        replaced = true;
        scale = {1.0f, 1.0f};
    }
    return {std::max(std::abs(scale.x), leastScale), std::max(std::abs(scale.y), leastScale)};
}

void readPlace(HostChain& chain, const Layer& layer, double pixelAspect, const Scene& scene, BodyRecord& body,
               bool& replaced) {
    const auto placeBy = [&](const Matrix4& matrix) {
        b2Vec2 world = projectPoint(body.layerAnchor, matrix);
        world.x *= static_cast<float>(pixelAspect);
        body.position = scene.pixelsToWorld(world);
        body.angle = static_cast<float>(rotationDegrees(matrix)) * radiansPerDegree;
    };
    placeBy(layer.toWorld(chain, sampleTime));
    if (!isFinite(body.position) || !std::isfinite(body.angle)) {
        replaced = true;
        placeBy(Matrix4{});
    }
    body.positionStored = body.importPosition = body.position;
    body.importAngle = body.angle;
}

/// The four corners of the layer in metres around its anchor point.
ShapeDef boundsOutline(const Bounds& bounds, const BodyRecord& body) {
    const auto width = static_cast<float>(bounds.width);
    const auto height = static_cast<float>(bounds.height);
    const float anchorX = body.layerAnchor.x * static_cast<float>(bounds.pixelAspect);
    ShapeDef outline;
    outline.verts = {{0.0f, 0.0f}, {width, 0.0f}, {width, height}, {0.0f, height}};
    for (b2Vec2& vertex : outline.verts)
        vertex =
            toWorld({body.layerScale.x * (vertex.x - anchorX), body.layerScale.y * (vertex.y - body.layerAnchor.y)});
    return outline;
}

void readBounds(HostChain& chain, const Layer& layer, BodyRecord& body) {
    const Item source = layer.source(chain);
    const Item::Size size = source.size(chain);
    Bounds bounds;
    bounds.pixelAspect = source.pixelAspect(chain);
    bounds.width = squarePixels(size.width, bounds.pixelAspect);
    bounds.height = size.height;
    body.isBox = true;
    body.outlines = {{boundsOutline(bounds, body)}};
    const auto solid = source.solidColor(chain);
    body.color = solid ? colorOf(*solid) : Color{1.0, 1.0, 1.0, 1.0};
}

void setUserData(const Color& label, bool hasLabel, int bodyIndex, BodyRecord& body) {
    BodyUserData data;
    data.bodyIndex = bodyIndex;
    data.color = rgbOf(body.color);
    data.labelColor = hasLabel ? rgbOf(label) : Rgb{0.5f, 0.5f, 0.5f};
    data.isStatic = body.staticOnImport;
    *body.userData = data;
}

/// Fills a record from a layer that passed the filter. What the host refuses keeps its default.
BodyRecord importLayer(HostChain& chain, const Layer& layer, const CompositionFacts& facts, const Scene& scene,
                       LayerReport& report) {
    BodyRecord body;
    body.layerID = layer.id(chain);
    body.name = report.name;
    body.number = report.bodyIndex + 1;
    readSpan(chain, layer, facts, scene.compFrames, body);
    body.rotationAnimated = readRotationAnimated(chain, layer);
    body.layerAnchor = readAnchor(chain, layer, report.numbersReplaced);
    body.layerScale = readScale(chain, layer, report.numbersReplaced);
    readPlace(chain, layer, facts.pixelAspect, scene, body, report.numbersReplaced);
    readBounds(chain, layer, body);
    const int label = layer.label(chain);
    body.importColor = labelColor(label);
    setUserData(body.importColor, label > 0, report.bodyIndex, body);
    return body;
}

} // namespace

std::string_view outcomeText(LayerOutcome outcome) {
    switch (outcome) {
    case LayerOutcome::Body:
        return "a body";
    case LayerOutcome::Camera:
        return "a camera";
    case LayerOutcome::Light:
        return "a light";
    case LayerOutcome::UnknownKind:
        return "a kind of layer that is not known";
    case LayerOutcome::Null:
        return "a null";
    case LayerOutcome::Adjustment:
        return "an adjustment layer";
    case LayerOutcome::Guide:
        return "a guide";
    case LayerOutcome::Hidden:
        return "hidden";
    case LayerOutcome::ThreeD:
        return "3D";
    case LayerOutcome::NotShown:
        return "not shown while another layer is soloed";
    case LayerOutcome::NoSource:
        return "without a source";
    case LayerOutcome::NoPicture:
        return "without a picture (0 by 0 pixels)";
    case LayerOutcome::Masks:
        return "has masks; only the bounds of solids, images and precompositions are read";
    case LayerOutcome::Text:
        return "text; only the bounds of solids, images and precompositions are read";
    case LayerOutcome::VectorShapes:
        return "vector shapes; only the bounds of solids, images and precompositions are read";
    case LayerOutcome::Unreadable:
        break;
    }
    return "the host gave no answer about it";
}

ImportReport initFromComposition(const HostContext& context, Scene& scene) {
    HostChain chain(context);
    ImportReport report;
    scene.bodies.clear();
    scene.layerIndices.clear();
    const Composition composition = activeComposition(chain);
    CompositionFacts facts;
    if (!composition.exists() || !readComposition(chain, composition, facts, scene)) {
        report.error = chain.code();
        return report;
    }
    const UndoGroup group(chain, "Jostle Initialization");
    const int count = composition.layerCount(chain);
    report.error = chain.code();
    for (int index = 0; index < count; ++index) {
        LayerReport& entry = report.layers.emplace_back();
        entry.layerIndex = index;
        const Layer layer = composition.layer(chain, index);
        entry.name = layer.names(chain).shown();
        entry.outcome = outcomeOf(chain, layer);
        if (entry.outcome == LayerOutcome::Body) {
            entry.bodyIndex = scene.bodyCount();
            scene.bodies.push_back(importLayer(chain, layer, facts, scene, entry));
            scene.layerIndices.push_back(index);
            const BodyRecord& body = scene.bodies.back();
            const std::int64_t length = std::int64_t{body.outPoint} - body.inPoint;
            scene.hasShortLayers = scene.hasShortLayers || length < scene.compFrames;
        }
        // One layer that cannot be read does not keep the others from being bodies.
        entry.error = chain.restart();
    }
    return report;
}

} // namespace jostle
