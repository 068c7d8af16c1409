#include "preview/strokes.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace jostle {

namespace {

constexpr float casingWidth = 1.5f; // picture pixels on either side

} // namespace

b2Vec2 unitVector(float radians) {
    return {std::cos(radians), std::sin(radians)};
}

// A dash begins at each even multiple of the dash's length.
void Strokes::run(b2Vec2 from, b2Vec2 to, const Stroke& stroke, float& run) {
    if (stroke.dash <= 0.0f) {
        list_.line(from, to, stroke.color, stroke.width);
        return;
    }
    constexpr float mostDashes = 400.0f;
    const b2Vec2 along = to - from;
    const float length = along.Length();
    if (!(length > 0.0f) || !std::isfinite(length)) {
        return;
    }
    // Far beyond the picture's edge nobody counts them.
    const float dash = std::max(stroke.dash * unit_, length / mostDashes);
    const float phase = std::fmod(run, 2.0f * dash);
    for (float start = -phase; start < length; start += 2.0f * dash) {
        const float first = std::max(start, 0.0f);
        const float last = std::min(start + dash, length);
        if (last > first) {
            list_.line(from + (first / length) * along, from + (last / length) * along, stroke.color, stroke.width);
        }
    }
    run = phase + length;
}

void Strokes::line(b2Vec2 from, b2Vec2 to, const Stroke& stroke) {
    path({from, to}, stroke);
}

void Strokes::path(std::span<const b2Vec2> points, const Stroke& stroke, bool closed) {
    const std::size_t count = points.size();
    const std::size_t segments = closed || count == 0 ? count : count - 1;
    if (stroke.casing.alpha > 0) {
        for (std::size_t i = 0; i < segments; ++i) {
            list_.line(points[i], points[(i + 1) % count], stroke.casing, stroke.width + 2.0f * casingWidth);
        }
    }
    float dashed = 0.0f;
    for (std::size_t i = 0; i < segments; ++i) {
        this->run(points[i], points[(i + 1) % count], stroke, dashed);
    }
}

void Strokes::circle(b2Vec2 center, float radius, const Stroke& stroke) {
    arc(center, radius, 0.0f, 2.0f * b2_pi, stroke);
}

void Strokes::arc(b2Vec2 center, float radius, float from, float to, const Stroke& stroke) {
    constexpr int most = 96;
    std::array<b2Vec2, most + 1> points{};
    // A corner every 4 picture pixels, as long as the array lasts.
    const float pixels = radius / unit_ * std::abs(to - from);
    const int segments = std::clamp(static_cast<int>(std::min(pixels / 4.0f, float{most})), 8, most);
    for (int i = 0; i <= segments; ++i) {
        const float share = static_cast<float>(i) / static_cast<float>(segments);
        points.at(static_cast<std::size_t>(i)) = center + radius * unitVector(from + (to - from) * share);
    }
    path(std::span(points.data(), static_cast<std::size_t>(segments) + 1), stroke);
}

void Strokes::dot(b2Vec2 at, float size, const Stroke& stroke) {
    if (stroke.casing.alpha > 0) {
        list_.point(at, stroke.casing, size + 2.0f * casingWidth);
    }
    list_.point(at, stroke.color, size);
}

void Strokes::arrowHead(b2Vec2 tip, float direction, float length, const Stroke& stroke) {
    constexpr float spread = 0.3927f; // radians
    path({tip - length * unitVector(direction + spread), tip, tip - length * unitVector(direction - spread)}, stroke);
}

} // namespace jostle
