#include "preview/state_signs.h"

#include "preview/strokes.h"

#include <algorithm>
#include <array>

namespace jostle {

namespace {

/// Draws in a square from (-1, -1) to (1, 1).
class SignPen {
public:
    SignPen(Strokes strokes, b2Vec2 middle, float half, Stroke stroke)
        : strokes_(strokes), middle_(middle), half_(half), stroke_(stroke) {}

    void path(std::initializer_list<b2Vec2> points, bool closed = false) {
        std::array<b2Vec2, 8> placed{};
        const std::size_t count = std::min(points.size(), placed.size());
        std::transform(points.begin(), points.begin() + static_cast<std::ptrdiff_t>(count), placed.begin(),
                       [this](b2Vec2 point) { return at(point); });
        strokes_.path(std::span(placed.data(), count), stroke_, closed);
    }
    void arc(b2Vec2 center, float radius, float from, float to) {
        strokes_.arc(at(center), radius * half_, from, to, stroke_);
    }

private:
    [[nodiscard]] b2Vec2 at(b2Vec2 point) const { return middle_ + half_ * point; }

    Strokes strokes_;
    b2Vec2 middle_;
    float half_;
    Stroke stroke_;
};

void drawGround(SignPen pen) {
    pen.path({{0.0f, -1.0f}, {0.0f, 0.0f}});
    pen.path({{-1.0f, 0.0f}, {1.0f, 0.0f}});
    for (const float x : {-0.7f, 0.0f, 0.7f}) {
        pen.path({{x + 0.25f, 0.0f}, {x - 0.25f, 0.8f}});
    }
}

void drawCrescent(SignPen pen) {
    // Two arcs through the same two points.
    pen.arc({0.0f, 0.0f}, 1.0f, 0.25f * b2_pi, 1.75f * b2_pi);
    pen.arc({0.7071f, 0.0f}, 0.7071f, 0.5f * b2_pi, 1.5f * b2_pi);
}

void drawClock(SignPen pen) {
    pen.arc({0.0f, 0.0f}, 1.0f, 0.0f, 2.0f * b2_pi);
    pen.path({{0.0f, -0.65f}, {0.0f, 0.0f}, {0.45f, 0.3f}});
}

} // namespace

void drawStateSign(BodyState state, const PlacedBody& placed, Rgba fill, const DrawStyle& style, float unit,
                   DrawList& list) {
    constexpr float leastSize = 12.0f; // of the body, picture pixels
    constexpr float largest = 7.0f;    // half of the sign, picture pixels
    const b2Vec2 size = placed.high - placed.low;
    const float room = std::min(size.x, size.y);
    if (state == BodyState::Live || !(room >= leastSize * unit)) {
        return;
    }
    const Rgba ground = mix(style.background, fill, static_cast<float>(fill.alpha) / 255.0f);
    const Rgba ink = inkOn(ground);
    const Rgba paper = inkOn(ink);
    const bool takesPart = state != BodyState::OutOfTime && state != BodyState::Dead;
    const Stroke stroke{withAlpha(ink, takesPart ? 0.85f : 0.55f), 1.3f, 0.0f,
                        withAlpha(paper, takesPart ? 0.25f : 0.1f)};
    SignPen pen(Strokes(list, unit), placed.middle(), std::min(largest * unit, 0.3f * room), stroke);
    switch (state) {
    case BodyState::Static:
        return drawGround(pen);
    case BodyState::Dormant:
        return drawCrescent(pen);
    case BodyState::Led:
        return pen.path({{0.0f, -1.0f}, {1.0f, 0.0f}, {0.0f, 1.0f}, {-1.0f, 0.0f}}, true);
    case BodyState::Dead:
        pen.path({{-0.8f, -0.8f}, {0.8f, 0.8f}});
        return pen.path({{-0.8f, 0.8f}, {0.8f, -0.8f}});
    case BodyState::OutOfTime:
        return drawClock(pen);
    case BodyState::Live:
        break;
    }
}

} // namespace jostle
