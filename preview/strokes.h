#pragma once

#include "preview/draw_list.h"

#include <box2d/b2_math.h>

#include <initializer_list>
#include <span>

namespace jostle {

/// The vector of length 1 at an angle in radians.
[[nodiscard]] b2Vec2 unitVector(float radians);

/// How a stroke looks.
struct Stroke {
    static constexpr Rgba none{0, 0, 0, 0};

    Rgba color;
    float width = 1.0f; ///< picture pixels
    float dash = 0.0f;  ///< length of dashes and of gaps, picture pixels; 0: solid
    Rgba casing = none; ///< a border of one and a half pixels on either side, under the stroke
};

/// Adds strokes to a draw list whose unit is not the picture's pixel.
class Strokes {
public:
    /// @param unit  units of the list in one picture pixel
    Strokes(DrawList& list, float unit) : list_(list), unit_(unit) {}

    void line(b2Vec2 from, b2Vec2 to, const Stroke& stroke);
    /// A row of points joined by lines; dashes run on around its corners.
    void path(std::span<const b2Vec2> points, const Stroke& stroke, bool closed = false);
    void path(std::initializer_list<b2Vec2> points, const Stroke& stroke, bool closed = false) {
        path(std::span(points.begin(), points.size()), stroke, closed);
    }
    /// @param radius  in units of the list
    void circle(b2Vec2 center, float radius, const Stroke& stroke);
    /// From an angle to another, in radians, whichever is larger.
    void arc(b2Vec2 center, float radius, float from, float to, const Stroke& stroke);
    /// A dot with the casing of a stroke.
    void dot(b2Vec2 at, float size, const Stroke& stroke);
    /// The two strokes of an arrow's head.
    /// @param length  of each, in units of the list
    void arrowHead(b2Vec2 tip, float direction, float length, const Stroke& stroke);

    /// One part of a dashed line without casing.
    /// @param run  how far the pattern has come, in units of the list; goes on by the part's length
    void run(b2Vec2 from, b2Vec2 to, const Stroke& stroke, float& run);

private:
    DrawList& list_;
    float unit_;
};

} // namespace jostle
