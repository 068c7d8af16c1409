#include "preview/scene_drawing.h"

#include "preview/body_drawing.h"
#include "preview/joint_drawing.h"
#include "preview/strokes.h"

#include <box2d/b2_body.h>

namespace jostle {

namespace {

/// The two axes at a body's centre of mass, 0.4 m long each.
void drawAxes(b2Vec2 center, b2Rot turn, const DrawStyle& style, float unit, DrawList& list) {
    constexpr float length = 0.4f * pixelsPerMetre;
    Strokes strokes(list, unit);
    const Rgba casing = withAlpha(style.background, 0.6f);
    const Stroke x{readableOn({230, 60, 40, 255}, style.background), 1.5f, 0.0f, casing};
    const Stroke y{readableOn({70, 210, 120, 255}, style.background), 1.5f, 0.0f, casing};
    const float angle = turn.GetAngle();
    for (const auto& [stroke, direction] : {std::pair(&x, angle), std::pair(&y, angle + b2_pi / 2.0f)}) {
        const b2Vec2 tip = center + length * unitVector(direction);
        strokes.line(center, tip, *stroke);
        strokes.arrowHead(tip, direction, length / 2.5f, *stroke);
    }
    strokes.dot(center, 4.0f, x);
}

void drawRectangle(b2Vec2 low, b2Vec2 high, const Stroke& stroke, float unit, DrawList& list) {
    Strokes(list, unit).path({low, {high.x, low.y}, high, {low.x, high.y}}, stroke, true);
}

} // namespace

void SceneDrawing::drawBodies(const SceneFrame& frame, const ViewOptions& options, const DrawStyle& style, float unit,
                              Drawing& drawing) {
    const Rgba boxColor = withAlpha(inkOn(style.background), 0.5f);
    // The first record is the topmost layer.
    for (std::size_t i = frame.scene.bodies.size(); i-- > 0;) {
        const BodyRecord& record = frame.scene.bodies[i];
        if (!record.body) {
            continue;
        }
        const b2Transform place = placeOf(frame, i);
        const PlacedBody& placed = shapes_.place(frame.scene, i, place);
        const BodyState state = bodyState(record, isOutOfTime(frame, i), sampleOf(frame, i).isDormant);
        const b2Vec2 center = frame.scene.worldToPixels(b2Mul(place, record.body->GetLocalCenter()));
        if (!placed.isEmpty() && options.shapes) {
            drawBody(record, state, placed, options, style, unit, drawing.shapes);
            if (record.userData->selected) {
                drawSelectionCorners(placed, style, unit, drawing.overlays);
            }
        }
        if (options.shapes && record.userData->isMagnet) {
            const bool pulls = state != BodyState::Dead && state != BodyState::OutOfTime;
            drawMagnetReach(record, center, pulls, style, unit, drawing.overlays);
        }
        if (!placed.isEmpty() && options.boundingBox) {
            drawRectangle(placed.low, placed.high, {boxColor, 1.0f, 3.0f}, unit, drawing.overlays);
        }
        if (options.localAxes) {
            drawAxes(center, place.q, style, unit, drawing.overlays);
        }
    }
}

void SceneDrawing::draw(const SceneFrame& frame, const ViewOptions& options, const DrawStyle& style,
                        const ViewTransform& view, Drawing& drawing) {
    drawing.clear();
    drawing.background = style.background;
    const auto unit = static_cast<float>(1.0 / view.scale());
    if (options.shapes || options.boundingBox || options.localAxes) {
        drawBodies(frame, options, style, unit, drawing);
    }
    if (options.joints) {
        drawJoints(frame, style, unit, drawing.overlays);
    }
    if (options.compBounds) {
        const b2Vec2 size(static_cast<float>(frame.scene.compWidth), static_cast<float>(frame.scene.compHeight));
        drawRectangle({0.0f, 0.0f}, size, {readableOn(style.compBounds, style.background), 1.0f}, unit,
                      drawing.overlays);
    }
    if (options.joints && options.aematicLinks) {
        drawAEmaticLinks(frame, style, unit, drawing.overlays);
    }
}

} // namespace jostle
