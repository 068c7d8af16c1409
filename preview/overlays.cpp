#include "preview/overlays.h"

#include "preview/strokes.h"
#include "simulation/numbers.h"

#include <box2d/b2_body.h>

#include <algorithm>
#include <cmath>

namespace jostle {

namespace {

b2Vec2 gravityHalf(const GlobalProperties& globals) {
    return 0.5f * polarVector(static_cast<float>(globals.magnitude), static_cast<float>(globals.direction));
}

/// p + a t^2 + v t for t from 0 to 8 s.
void drawFlight(const Scene& scene, b2Vec2 start, b2Vec2 velocity, const Stroke& stroke, DrawList& list) {
    constexpr int steps = 1600;
    constexpr float seconds = 0.005f;
    const b2Vec2 acceleration = gravityHalf(scene.globals);
    b2Vec2 last = scene.worldToPixels(start);
    for (int i = 1; i < steps; ++i) {
        const float t = static_cast<float>(i) * seconds;
        const b2Vec2 next = scene.worldToPixels(start + t * t * acceleration + t * velocity);
        list.line(last, next, stroke.color, stroke.width);
        last = next;
    }
}

} // namespace

void drawRubberBand(const Scene& scene, b2Vec2 start, b2Vec2 end, Drawing& drawing) {
    constexpr Rgba fill{255, 255, 255, 29}; // 0.115
    constexpr Rgba border{120, 120, 120, 255};
    const b2Vec2 low = scene.worldToPixels(b2Min(start, end));
    const b2Vec2 high = scene.worldToPixels(b2Max(start, end));
    const b2Vec2 corners[] = {low, {high.x, low.y}, high, {low.x, high.y}};
    drawing.overlays.triangle(corners[0], corners[1], corners[2], fill);
    drawing.overlays.triangle(corners[0], corners[2], corners[3], fill);
    Strokes(drawing.overlays, 1.0f).path(corners, {border, 1.0f}, true);
}

void drawGravityTool(double magnitude, double directionDegrees, double gravityScale, const DrawStyle& style,
                     const ViewTransform& view, Drawing& drawing) {
    const auto width = static_cast<float>(view.width);
    const auto height = static_cast<float>(view.height);
    const b2Vec2 middle(width / 2.0f, height / 2.0f);
    const auto radius = static_cast<float>(std::abs(magnitude) * gravityScale);
    const Rgba ink = inkOn(style.background);
    const Stroke cross{ink, 1.1f};
    const Stroke circle{{128, 128, 128, 255}, 1.1f, 4.0f};
    const Stroke arrow{ink, 2.0f, 0.0f, withAlpha(style.background, 0.75f)};
    Strokes strokes(drawing.view, 1.0f);
    strokes.line({0.0f, middle.y}, {width, middle.y}, cross);
    strokes.line({middle.x, 0.0f}, {middle.x, height}, cross);
    if (radius > 0.0f) {
        const float direction =
            degreesToRadians(static_cast<float>(directionDegrees)) + (magnitude < 0.0 ? b2_pi : 0.0f);
        const b2Vec2 tip = middle + radius * unitVector(direction);
        strokes.circle(middle, radius, circle);
        strokes.line(middle, tip, arrow);
        strokes.arrowHead(tip, direction, std::min(12.0f, radius), arrow);
    }
}

void drawVelocityTool(const Scene& scene, double velocityScale, const DrawStyle& style, Drawing& drawing) {
    const Stroke flight{inkOn(style.background), 1.0f};
    const Stroke handle{readableOn({77, 230, 77, 255}, style.background), 2.0f};
    const Stroke center{inkOn(style.background), 1.0f};
    Strokes strokes(drawing.overlays, 1.0f);
    bool isFirst = true;
    for (const BodyRecord& record : scene.bodies) {
        if (!record.userData->selected || !record.body) {
            continue;
        }
        const b2Vec2 start = record.body->GetWorldCenter();
        const b2Vec2 velocity = polarVector(record.linearVelocityMagnitude, record.linearVelocityDirection);
        drawFlight(scene, start, velocity, flight, drawing.overlays);
        if (isFirst) {
            const b2Vec2 from = scene.worldToPixels(start);
            const b2Vec2 to = scene.worldToPixels(start + static_cast<float>(1.0 / velocityScale) * velocity);
            strokes.line(from, to, handle);
            strokes.dot(from, 5.0f, center);
            strokes.dot(to, 5.0f, handle);
        }
        isFirst = false;
    }
}

void drawTrail(std::span<const b2Vec2> path, Rgba color, const DrawStyle& style, Drawing& drawing) {
    constexpr float faintest = 0.1f;
    const Rgba line = readableOn(color, style.background);
    for (std::size_t i = 1; i < path.size(); ++i) {
        if (path[i - 1].IsValid() && path[i].IsValid()) {
            const float age = static_cast<float>(i) / static_cast<float>(path.size());
            drawing.overlays.line(path[i - 1], path[i], withAlpha(line, faintest + (1.0f - faintest) * age), 1.5f);
        }
    }
}

} // namespace jostle
