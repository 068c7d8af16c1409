#include "host/host_layer_motion.h"

#include <algorithm>
#include <cmath>

#include "host/host_time.h"

namespace jostle {

namespace {

// What stands for the last keyframe of a layer that an expression moves.
constexpr int endlessFrame = 100000;

bool isFinite(b2Vec2 v) {
    return std::isfinite(v.x) && std::isfinite(v.y);
}

b2Vec2 inFloats(AEGP_TwoDVal value) {
    return {static_cast<float>(value.x), static_cast<float>(value.y)};
}

} // namespace

/// One layer with all that is asked of it again and again.
struct HostLayerMotion::Source {
    Layer layer;
    Stream anchorStream;
    Stream positionStream;
    WorldScale worldScale;
    bool anchorVaries = false;
    std::optional<int> lastKeyframe;

    // The last values that were read.
    b2Vec2 anchor{0.0f, 0.0f};
    b2Vec2 scale{1.0f, 1.0f};
    b2Vec2 gravity{0.0f, 0.0f};
    Matrix4 world;

    // Velocity and angular velocity ask for the same two times, and the next tick for one of them again.
    struct TimedMatrix {
        A_Time time{};
        Matrix4 matrix;
    };
    std::array<TimedMatrix, 2> recent{};
    std::size_t oldest = 0;
};

HostLayerMotion::HostLayerMotion(const HostContext& context) : chain_(context) {
    composition_ = activeComposition(chain_);
    frameDuration_ = composition_.frameDuration(chain_);
    pixelAspect_ = composition_.item(chain_).pixelAspect(chain_);
    sources_.resize(static_cast<std::size_t>(std::max(composition_.layerCount(chain_), 0)));
}

HostLayerMotion::~HostLayerMotion() = default;

HostLayerMotion::Source* HostLayerMotion::source(int layerIndex) {
    chain_.restart();
    if (layerIndex < 0 || static_cast<std::size_t>(layerIndex) >= sources_.size())
        return nullptr;
    auto& slot = sources_[static_cast<std::size_t>(layerIndex)];
    if (!slot) {
        auto made = std::make_unique<Source>();
        made->layer = composition_.layer(chain_, layerIndex);
        made->anchorStream = made->layer.stream(chain_, AEGP_LayerStream_ANCHORPOINT);
        made->anchorVaries = made->anchorStream.isTimeVarying();
        made->anchor = inFloats(made->anchorStream.valueAt(sampleTime, Expressions::Applied).point());
        made->positionStream = made->layer.stream(chain_, AEGP_LayerStream_POSITION);
        made->worldScale = WorldScale(chain_, made->layer);
        if (chain_.failed() || !isFinite(made->anchor))
            return nullptr;
        slot = std::move(made);
    }
    return slot.get();
}

Matrix4 HostLayerMotion::toWorld(Source& source, A_Time time) {
    for (const auto& known : source.recent) {
        if (known.time.scale == time.scale && known.time.value == time.value)
            return known.matrix;
    }
    const Matrix4 matrix = source.layer.toWorld(chain_, time);
    if (chain_.failed())
        return source.world;
    source.world = matrix;
    source.recent[source.oldest] = {time, matrix};
    source.oldest = 1 - source.oldest;
    return matrix;
}

b2Vec2 HostLayerMotion::anchor(Source& source, A_Time time) {
    if (source.anchorVaries) {
        const b2Vec2 anchor = inFloats(source.anchorStream.valueAt(time, Expressions::Applied).point());
        if (!chain_.failed() && isFinite(anchor))
            source.anchor = anchor;
    }
    return source.anchor;
}

b2Vec2 HostLayerMotion::anchorInComposition(Source& source, A_Time time) {
    b2Vec2 point = projectPoint(anchor(source, time), toWorld(source, time));
    point.x *= static_cast<float>(pixelAspect_);
    return point;
}

int HostLayerMotion::findLastKeyframe(Layer layer) {
    int last = -1;
    bool hasExpression = false;
    const auto look = [&](const Stream& stream) {
        hasExpression = hasExpression || stream.isExpressionEnabled();
        const int count = stream.keyCount();
        if (count > 0)
            last = std::max(last, framesUpTo(framesOf(stream.keyTime(count - 1), frameDuration_)));
    };
    for (; layer.exists() && !chain_.failed(); layer = layer.parent(chain_)) {
        for (const AEGP_LayerStream which :
             {AEGP_LayerStream_ANCHORPOINT, AEGP_LayerStream_SCALE, AEGP_LayerStream_ROTATION})
            look(layer.stream(chain_, which));
        const Stream position = layer.stream(chain_, AEGP_LayerStream_POSITION);
        if (position.hasSeparatedDimensions()) {
            look(position.follower(0));
            look(position.follower(1));
        } else {
            look(position);
        }
    }
    return hasExpression ? endlessFrame : last;
}

int HostLayerMotion::lastKeyframeFrame(int layerIndex) {
    Source* const asked = source(layerIndex);
    if (asked == nullptr)
        return -1;
    if (!asked->lastKeyframe)
        asked->lastKeyframe = findLastKeyframe(asked->layer);
    return *asked->lastKeyframe;
}

b2Vec2 HostLayerMotion::velocity(int layerIndex, double simTime, double stepTime) {
    Source* const asked = source(layerIndex);
    if (asked == nullptr)
        return {0.0f, 0.0f};
    const b2Vec2 before = anchorInComposition(*asked, hostTimeOf(simTime));
    const b2Vec2 after = anchorInComposition(*asked, hostTimeOf(simTime + stepTime));
    const auto perSecond = [&](float from, float to) {
        return static_cast<float>((static_cast<double>(to) - static_cast<double>(from)) / stepTime /
                                  static_cast<double>(pixelsPerMetre));
    };
    const b2Vec2 velocity{perSecond(before.x, after.x), perSecond(before.y, after.y)};
    return chain_.failed() || !isFinite(velocity) ? b2Vec2{0.0f, 0.0f} : velocity;
}

float HostLayerMotion::angularVelocity(int layerIndex, double simTime, double stepTime) {
    Source* const asked = source(layerIndex);
    if (asked == nullptr)
        return 0.0f;
    const double radians = static_cast<double>(b2_pi) / 180.0;
    const double before = rotationDegrees(toWorld(*asked, hostTimeOf(simTime))) * radians;
    const double after = rotationDegrees(toWorld(*asked, hostTimeOf(simTime + stepTime))) * radians;
    const auto turn = static_cast<float>(std::atan2(std::sin(after - before), std::cos(after - before)) / stepTime);
    return chain_.failed() || !std::isfinite(turn) ? 0.0f : turn;
}

b2Vec2 HostLayerMotion::pointToComposition(int layerIndex, b2Vec2 pixels, double timeSeconds) {
    Source* const asked = source(layerIndex);
    if (asked == nullptr)
        return pixels;
    const b2Vec2 point = projectPoint(pixels, toWorld(*asked, hostTimeOf(timeSeconds)));
    return isFinite(point) ? point : pixels;
}

b2Vec2 HostLayerMotion::scale(int layerIndex, double timeSeconds) {
    Source* const asked = source(layerIndex);
    if (asked == nullptr)
        return {1.0f, 1.0f};
    const b2Vec2 scale = inFloats(asked->worldScale.at(chain_, hostTimeOf(timeSeconds)));
    if (!chain_.failed() && isFinite(scale))
        asked->scale = scale;
    return asked->scale;
}

b2Vec2 HostLayerMotion::gravity(int layerIndex, double timeSeconds) {
    Source* const asked = source(layerIndex);
    if (asked == nullptr)
        return {0.0f, 0.0f};
    const StreamValue value = asked->positionStream.valueAt(hostTimeOf(timeSeconds), Expressions::Applied);
    const b2Vec2 gravity = inFloats(value.point());
    if (!chain_.failed() && isFinite(gravity))
        asked->gravity = gravity;
    return asked->gravity;
}

} // namespace jostle
