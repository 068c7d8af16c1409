#include "preview/body_drawing.h"

#include "preview/state_signs.h"
#include "preview/strokes.h"

#include <algorithm>
#include <span>

namespace jostle {

namespace {

constexpr float solidFill = 0.8f;
constexpr float hollowFill = 0.15f;
constexpr float outlineWidth = 1.1f;
constexpr float circleWidth = 1.25f;
constexpr float staticWidth = 1.8f;
constexpr float meshWidth = 0.75f;

/// Fill and outline of a body.
struct Look {
    Rgba fill;
    Stroke outline;
    float axisAlpha = 0.8f; ///< of the line that shows a circle's rotation
};

Look lookOf(const BodyRecord& record, BodyState state, const DrawStyle& style) {
    const Rgba color = toRgba(record.userData->color);
    const Rgba line = readableOn(color, style.background);
    switch (state) {
    case BodyState::Static:
        return {withAlpha(color, solidFill), {readableOn(style.staticHighlight, style.background), staticWidth}};
    case BodyState::Dormant:
        return {withAlpha(color, hollowFill), {line, 1.5f, 4.0f}};
    case BodyState::OutOfTime:
    case BodyState::Dead: {
        // Half way from the background to what is written on it, be that lighter or darker.
        const Rgba faded = mix(style.background, inkOn(style.background), 0.5f);
        return {
            withAlpha(color, hollowFill), {withAlpha(faded, 0.7f), 1.0f, state == BodyState::Dead ? 2.0f : 0.0f}, 0.4f};
    }
    case BodyState::Live:
    case BodyState::Led:
        break;
    }
    return {withAlpha(color, solidFill), {line, outlineWidth}};
}

void drawFill(const PlacedBody& placed, Rgba color, DrawList& list) {
    list.beginSurface();
    std::uint32_t first = 0;
    for (const std::uint32_t end : placed.polygonEnds) {
        for (std::uint32_t i = first + 2; i < end; ++i) {
            list.triangle(placed.corners[first], placed.corners[i - 1], placed.corners[i], color);
        }
        first = end;
    }
    for (const PlacedCircle& circle : placed.circles) {
        list.disc(circle.center, circle.radius, color);
    }
}

/// The edges of all pieces.
void drawMesh(const PlacedBody& placed, Rgba color, DrawList& list) {
    std::uint32_t first = 0;
    for (const std::uint32_t end : placed.polygonEnds) {
        for (std::uint32_t i = first; i < end; ++i) {
            list.line(placed.corners[i], placed.corners[i + 1 < end ? i + 1 : first], color, meshWidth);
        }
        first = end;
    }
}

void drawSolidOutline(const PlacedBody& placed, const Stroke& stroke, DrawList& list) {
    for (const OutlineEdge& edge : placed.outline) {
        list.line(placed.corners[edge.from], placed.corners[edge.to], stroke.color, stroke.width);
    }
    for (const PlacedCircle& circle : placed.circles) {
        list.ring(circle.center, circle.radius, stroke.color, std::max(stroke.width, circleWidth));
    }
}

/// Dashes run on as long as each edge goes on where the last one ended.
void drawDashedOutline(const PlacedBody& placed, const Stroke& stroke, float unit, DrawList& list) {
    Strokes strokes(list, unit);
    float run = 0.0f;
    b2Vec2 last(0.0f, 0.0f);
    for (const OutlineEdge& edge : placed.outline) {
        const b2Vec2 from = placed.corners[edge.from];
        run = from == last ? run : 0.0f;
        last = placed.corners[edge.to];
        strokes.run(from, last, stroke, run);
    }
    for (const PlacedCircle& circle : placed.circles) {
        Stroke around = stroke;
        around.width = std::max(stroke.width, circleWidth);
        strokes.circle(circle.center, circle.radius, around);
    }
}

void drawOutline(const PlacedBody& placed, const Stroke& stroke, float unit, DrawList& list) {
    if (stroke.dash > 0.0f) {
        drawDashedOutline(placed, stroke, unit, list);
    } else {
        drawSolidOutline(placed, stroke, list);
    }
}

void drawCircleAxes(const PlacedBody& placed, const Look& look, DrawList& list) {
    for (const PlacedCircle& circle : placed.circles) {
        list.line(circle.center, circle.center + circle.radius * circle.axis,
                  withAlpha(look.outline.color, look.axisAlpha), circleWidth);
    }
}

} // namespace

BodyState bodyState(const BodyRecord& record, bool outOfTime, bool dormant) {
    if (record.type == BodyType::Dead) {
        return BodyState::Dead;
    }
    if (outOfTime) {
        return BodyState::OutOfTime;
    }
    switch (record.type) {
    case BodyType::Static:
        return BodyState::Static;
    case BodyType::Kinematic:
        return BodyState::Led;
    case BodyType::Dormant:
        return dormant ? BodyState::Dormant : BodyState::Live;
    case BodyType::Dynamic:
    case BodyType::AEmatic:
    case BodyType::Dead:
        break;
    }
    return BodyState::Live;
}

void drawBody(const BodyRecord& record, BodyState state, const PlacedBody& placed, const ViewOptions& options,
              const DrawStyle& style, float unit, DrawList& list) {
    const Look look = lookOf(record, state, style);
    drawFill(placed, look.fill, list);
    if (options.mesh) {
        drawMesh(placed, withAlpha(look.outline.color, 0.5f), list);
    }
    drawCircleAxes(placed, look, list);
    drawOutline(placed, look.outline, unit, list);
    if (record.userData->selected) {
        const Rgba highlight = readableOn(style.selectionHighlight, style.background);
        drawOutline(placed, {highlight, style.selectionStrokeWidth}, unit, list);
    }
    if (options.stateSigns) {
        drawStateSign(state, placed, look.fill, style, unit, list);
    }
}

void drawSelectionCorners(const PlacedBody& placed, const DrawStyle& style, float unit, DrawList& list) {
    const b2Vec2 margin = 5.0f * unit * b2Vec2(1.0f, 1.0f);
    const b2Vec2 low = placed.low - margin;
    const b2Vec2 high = placed.high + margin;
    const b2Vec2 size = high - low;
    const float arm = std::min(8.0f * unit, 0.3f * std::min(size.x, size.y));
    const Stroke stroke{readableOn(style.selectionHighlight, style.background), style.selectionStrokeWidth};
    Strokes strokes(list, unit);
    for (const b2Vec2 corner : {low, b2Vec2(high.x, low.y), high, b2Vec2(low.x, high.y)}) {
        const b2Vec2 inwards(corner.x == low.x ? arm : -arm, corner.y == low.y ? arm : -arm);
        strokes.path({corner + b2Vec2(inwards.x, 0.0f), corner, corner + b2Vec2(0.0f, inwards.y)}, stroke);
    }
}

void drawMagnetReach(const BodyRecord& record, b2Vec2 center, bool pulls, const DrawStyle& style, float unit,
                     DrawList& list) {
    const BodyUserData& flags = *record.userData;
    if (!(flags.magnetDistance > 0.0f)) {
        return;
    }
    const Rgba red = readableOn({255, 51, 51, 255}, style.background);
    const Stroke stroke{withAlpha(red, pulls ? 1.0f : 0.4f), outlineWidth, 4.0f};
    const Stroke solid{stroke.color, 1.6f};
    Strokes strokes(list, unit);
    strokes.circle(center, flags.magnetDistance, stroke);
    const float length = std::min(12.0f * unit, 0.5f * flags.magnetDistance);
    for (int quarter = 0; quarter < 4; ++quarter) {
        const float direction = b2_pi * (0.25f + 0.5f * static_cast<float>(quarter));
        const b2Vec2 outwards = unitVector(direction);
        const b2Vec2 rim = center + flags.magnetDistance * outwards;
        const b2Vec2 inside = rim - length * outwards;
        strokes.line(inside, rim, solid);
        if (flags.isRepulsive) {
            strokes.arrowHead(rim, direction, 0.5f * length, solid);
        } else {
            strokes.arrowHead(inside, direction + b2_pi, 0.5f * length, solid);
        }
    }
}

} // namespace jostle
