#include "preview/joint_drawing.h"

#include "preview/strokes.h"

#include <box2d/b2_body.h>
#include <box2d/b2_prismatic_joint.h>
#include <box2d/b2_revolute_joint.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace jostle {

namespace {

/// Draws one joint, in composition pixels.
class JointPen {
public:
    JointPen(const SceneFrame& frame, const JointRecord& joint, const DrawStyle& style, float unit, DrawList& list)
        : scene_(frame.scene),
          joint_(joint),
          a_(placeOf(frame, static_cast<std::size_t>(joint.bodyAId))),
          b_(placeOf(frame, static_cast<std::size_t>(joint.bodyBId))),
          unit_(unit),
          strokes_(list, unit) {
        const auto kind = std::min(static_cast<std::size_t>(joint.type), style.joints.size() - 1);
        const Rgba color = joint.selected ? style.selectedJoint : style.joints.at(kind);
        stroke_ = {readableOn(color, style.background), joint.selected ? 1.7f : style.jointStrokeWidth,
                   joint.selected ? 4.0f : 0.0f, withAlpha(style.background, 0.75f)};
        solid_ = stroke_;
        solid_.dash = 0.0f;
        dotSize_ = joint.selected ? 7.0f : 5.0f;
    }

    void draw() {
        switch (joint_.type) {
        case JointType::Distance:
            return drawDistance();
        case JointType::Pivot:
            return drawPivot();
        case JointType::Piston:
            return drawPiston();
        case JointType::Spring:
            return drawSpring();
        }
    }

private:
    [[nodiscard]] b2Vec2 pixels(const b2Transform& place, b2Vec2 local) const {
        return scene_.worldToPixels(b2Mul(place, local));
    }
    [[nodiscard]] b2Vec2 centerOf(std::int32_t index, const b2Transform& place) const {
        return pixels(place, scene_.bodies[static_cast<std::size_t>(index)].body->GetLocalCenter());
    }

    void drawDistance() {
        const b2Vec2 from = pixels(a_, joint_.anchorA);
        const b2Vec2 to = pixels(b_, joint_.anchorB);
        b2Vec2 across = (to - from).Skew();
        across.Normalize();
        across *= 8.0f * unit_;
        Stroke stroke = stroke_;
        if (joint_.frequency > 0.0f && stroke.dash == 0.0f) {
            stroke.dash = 7.0f;
        }
        strokes_.line(from, to, stroke);
        for (const b2Vec2 end : {from, to}) {
            strokes_.line(end - across, end + across, solid_);
            strokes_.dot(end, dotSize_, solid_);
        }
    }

    void drawPivot() {
        if (!joint_.joint) {
            return;
        }
        const auto& pivot = static_cast<const b2RevoluteJoint&>(*joint_.joint);
        const b2Vec2 anchor = pixels(a_, pivot.GetLocalAnchorA());
        for (const b2Vec2 center : {centerOf(joint_.bodyAId, a_), centerOf(joint_.bodyBId, b_)}) {
            strokes_.line(anchor, center, stroke_);
            strokes_.dot(center, dotSize_ - 1.0f, solid_);
        }
        if (joint_.enableLimit) {
            drawAngleLimits(anchor);
        }
        if (joint_.enableMotor) {
            drawMotor(anchor);
        }
        const float half = 5.5f * unit_;
        Stroke diamond = solid_;
        diamond.width = std::max(solid_.width, 1.5f);
        strokes_.path(
            {anchor + b2Vec2(half, 0), anchor + b2Vec2(0, half), anchor - b2Vec2(half, 0), anchor - b2Vec2(0, half)},
            diamond, true);
    }

    /// Where body B may turn to against body A, from where it stood when the joint was made.
    void drawAngleLimits(b2Vec2 anchor) {
        const BodyRecord& record = scene_.bodies[static_cast<std::size_t>(joint_.bodyAId)];
        const float turned = a_.q.GetAngle() - record.angle;
        const float zero = joint_.userData->directionB + turned;
        const auto [lower, upper] =
            std::minmax({degreesToRadians(joint_.lowerAngle), degreesToRadians(joint_.upperAngle)});
        const float radius = 22.0f * unit_;
        if (upper - lower < 2.0f * b2_pi) {
            strokes_.arc(anchor, radius, zero + lower, zero + upper, solid_);
            for (const float end : {lower, upper}) {
                const b2Vec2 direction = unitVector(zero + end);
                strokes_.line(anchor + 0.75f * radius * direction, anchor + 1.25f * radius * direction, solid_);
            }
        } else {
            strokes_.circle(anchor, radius, solid_);
        }
    }

    /// An arc with an arrow's head, in the direction in which body A is turned.
    void drawMotor(b2Vec2 anchor) {
        const float radius = 14.0f * unit_;
        const float sign = joint_.motorSpeed < 0.0f ? -1.0f : 1.0f;
        const float end = sign * 1.25f * b2_pi;
        strokes_.arc(anchor, radius, 0.0f, end, solid_);
        strokes_.arrowHead(anchor + radius * unitVector(end), end + sign * 0.45f * b2_pi, 6.0f * unit_, solid_);
    }

    /// A cylinder from body B, and a rod with a head in it from body A; the axis as a thin line through the anchor with
    /// bars at the limits.
    void drawPiston() {
        const b2Vec2 from = centerOf(joint_.bodyAId, a_);
        const b2Vec2 to = centerOf(joint_.bodyBId, b_);
        drawAxis();
        b2Vec2 along = to - from;
        const float length = along.Normalize();
        if (!(length > 0.0f)) {
            strokes_.dot(from, dotSize_, solid_);
            return;
        }
        const b2Vec2 across = std::min(6.0f * unit_, 0.2f * length) * along.Skew();
        const auto at = [&](float share) { return from + share * length * along; };
        strokes_.line(at(0.0f), at(0.6f), stroke_);
        strokes_.path({at(0.45f) + across, at(0.85f) + across, at(0.85f) - across, at(0.45f) - across}, solid_, true);
        strokes_.line(at(0.6f) - 0.75f * across, at(0.6f) + 0.75f * across, solid_);
        strokes_.line(at(0.85f), at(1.0f), stroke_);
        strokes_.dot(from, dotSize_, solid_);
        strokes_.dot(to, dotSize_, solid_);
    }

    void drawAxis() {
        if (!joint_.joint) {
            return;
        }
        const auto& piston = static_cast<const b2PrismaticJoint&>(*joint_.joint);
        const b2Vec2 anchor = pixels(a_, piston.GetLocalAnchorA());
        const b2Vec2 axis = b2Mul(a_.q, piston.GetLocalAxisA());
        Stroke thin = solid_;
        thin.color = withAlpha(thin.color, 0.7f);
        thin.casing = Stroke::none;
        thin.dash = 3.0f;
        const float reach = 26.0f * unit_;
        if (!joint_.enableLimit) {
            strokes_.line(anchor - reach * axis, anchor + reach * axis, thin);
            return;
        }
        const b2Vec2 ends[] = {anchor + pixelsPerMetre * piston.GetLowerLimit() * axis,
                               anchor + pixelsPerMetre * piston.GetUpperLimit() * axis};
        strokes_.line(ends[0], ends[1], thin);
        thin.dash = 0.0f;
        for (const b2Vec2 end : ends) {
            strokes_.line(end - 6.0f * unit_ * axis.Skew(), end + 6.0f * unit_ * axis.Skew(), thin);
        }
    }

    /// A straight piece at both ends and eight turns between them.
    void drawSpring() {
        constexpr std::size_t turns = 8;
        const b2Vec2 from = pixels(a_, joint_.anchorA);
        const b2Vec2 to = pixels(b_, joint_.anchorB);
        b2Vec2 across = (to - from).Skew();
        const float length = across.Normalize();
        across *= std::min(6.0f * unit_, 0.2f * length);
        const auto at = [&](float share) { return from + share * (to - from); };
        std::array<b2Vec2, 2 * turns + 4> points{};
        points.front() = from;
        points[1] = at(0.15f);
        for (std::size_t i = 0; i < 2 * turns; ++i) {
            const float share = 0.15f + 0.7f * (static_cast<float>(i) + 0.5f) / float{2 * turns};
            points.at(i + 2) = at(share) + (i % 2 == 0 ? 1.0f : -1.0f) * across;
        }
        points[2 * turns + 2] = at(0.85f);
        points.back() = to;
        strokes_.path(points, stroke_);
        strokes_.dot(from, dotSize_, solid_);
        strokes_.dot(to, dotSize_, solid_);
    }

    const Scene& scene_;
    const JointRecord& joint_;
    b2Transform a_;
    b2Transform b_;
    float unit_;
    Strokes strokes_;
    Stroke stroke_;
    Stroke solid_; ///< the same without dashes
    float dotSize_ = 5.0f;
};

bool hasBody(const Scene& scene, std::int32_t index) {
    return scene.bodies[static_cast<std::size_t>(index)].body != nullptr;
}

} // namespace

void drawJoints(const SceneFrame& frame, const DrawStyle& style, float unit, DrawList& list) {
    for (const JointRecord& joint : frame.scene.joints) {
        if (frame.scene.joinsTwoBodies(joint) && hasBody(frame.scene, joint.bodyAId) &&
            hasBody(frame.scene, joint.bodyBId)) {
            JointPen(frame, joint, style, unit, list).draw();
        }
    }
}

void drawAEmaticLinks(const SceneFrame& frame, const DrawStyle& style, float unit, DrawList& list) {
    const Rgba casing = withAlpha(style.background, 0.75f);
    const Stroke link{readableOn({230, 230, 230, 255}, style.background), 1.1f, 0.0f, casing};
    const Stroke held{readableOn({242, 217, 0, 255}, style.background), 1.1f, 0.0f, casing};
    const Stroke pulling{readableOn({181, 56, 56, 255}, style.background), 1.6f, 0.0f, casing};
    Strokes strokes(list, unit);
    for (std::size_t i = 0; i < frame.scene.bodies.size(); ++i) {
        const BodyRecord& record = frame.scene.bodies[i];
        if (!record.body || !record.aematicJoint) {
            continue;
        }
        const b2Vec2 local = record.body->GetLocalPoint(record.aematicJoint->GetAnchorB());
        const b2Vec2 anchor = frame.scene.worldToPixels(b2Mul(placeOf(frame, i), local));
        const b2Vec2 target = frame.scene.worldToPixels(sampleOf(frame, i).pull);
        strokes.line(anchor, target, link);
        strokes.dot(anchor, 5.0f, held);
        strokes.dot(target, 5.0f, pulling);
        strokes.circle(target, 6.0f * unit, pulling);
    }
}

} // namespace jostle
