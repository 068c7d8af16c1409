#include "simulation/collision_shape.h"

#include <algorithm>
#include <cmath>

namespace jostle {

namespace {

/// Metres from the body's origin. Masses and inertias grow with the second and fourth power of it.
constexpr float farthestVertex = 1.0e4f;

bool isWithinReach(b2Vec2 v) {
    return std::abs(v.x) <= farthestVertex && std::abs(v.y) <= farthestVertex; // false for what is not a number
}

/// Area, positive where the vertices run the library's way, and area times centroid relative to the first vertex.
struct AreaMoment {
    float area = 0.0f;
    b2Vec2 moment{0.0f, 0.0f};
};

AreaMoment areaMoment(std::span<const b2Vec2> vertices) {
    AreaMoment sum;
    for (std::size_t i = 1; i + 1 < vertices.size(); ++i) {
        const b2Vec2 a = vertices[i] - vertices[0];
        const b2Vec2 b = vertices[i + 1] - vertices[0];
        const float triangle = 0.5f * b2Cross(a, b);
        sum.area += triangle;
        sum.moment += (triangle / 3.0f) * (a + b);
    }
    return sum;
}

/// The margin is for the library's own sum of the area, which may differ in the last bits.
bool isEnough(float area) {
    return area > 1.001f * b2_epsilon;
}

bool hasEdges(std::span<const b2Vec2> vertices) {
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const b2Vec2 edge = vertices[(i + 1) % vertices.size()] - vertices[i];
        if (!(edge.LengthSquared() > b2_epsilon * b2_epsilon)) {
            return false;
        }
    }
    return true;
}

float circleArea(float radius) {
    return radius > 0.0f ? b2_pi * radius * radius : 0.0f;
}

void scalePolygon(b2PolygonShape& polygon, b2Vec2 pivot, float ratioX, float ratioY) {
    const auto scaled = [&](b2Vec2 v) {
        return b2Vec2(pivot.x + (v.x - pivot.x) * ratioX, pivot.y + (v.y - pivot.y) * ratioY);
    };
    const std::span vertices(polygon.m_vertices, static_cast<std::size_t>(polygon.m_count));
    if (!std::all_of(vertices.begin(), vertices.end(), [&](b2Vec2 v) { return isWithinReach(scaled(v)); })) {
        return;
    }
    const bool isMirrored = (ratioX < 0.0f) != (ratioY < 0.0f);
    const float sign = isMirrored ? -1.0f : 1.0f;
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        vertices[i] = scaled(vertices[i]);
        // A normal scales with the inverse of the ratios: n' = (nx / rx, ny / ry), here times |rx ry|.
        b2Vec2 normal(sign * polygon.m_normals[i].x * ratioY, sign * polygon.m_normals[i].y * ratioX);
        if (normal.Normalize() > 0.0f) {
            polygon.m_normals[i] = normal;
        }
    }
    if (isMirrored) {
        // So that the vertices still run the library's way. The last edge, back to the first vertex, stays the last.
        std::reverse(vertices.begin(), vertices.end());
        std::reverse(polygon.m_normals, polygon.m_normals + vertices.size() - 1);
    }
    polygon.m_centroid = scaled(polygon.m_centroid);
}

} // namespace

bool fillPolygon(std::span<const b2Vec2> vertices, b2PolygonShape& polygon) {
    const std::size_t count = vertices.size();
    if (count < 3 || count > b2_maxPolygonVertices || !std::all_of(vertices.begin(), vertices.end(), isWithinReach)) {
        return false;
    }
    const AreaMoment moment = areaMoment(vertices);
    if (!hasEdges(vertices) || !isEnough(std::abs(moment.area))) {
        return false;
    }
    polygon.m_count = static_cast<int32>(count);
    std::copy(vertices.begin(), vertices.end(), polygon.m_vertices);
    if (moment.area < 0.0f) {
        std::reverse(polygon.m_vertices, polygon.m_vertices + count);
    }
    for (std::size_t i = 0; i < count; ++i) {
        const b2Vec2 edge = polygon.m_vertices[(i + 1) % count] - polygon.m_vertices[i];
        b2Vec2 normal = b2Cross(edge, 1.0f);
        normal.Normalize();
        polygon.m_normals[i] = normal;
    }
    polygon.m_centroid = vertices[0] + (1.0f / moment.area) * moment.moment;
    return true;
}

bool fillCircle(b2Vec2 center, float radius, b2CircleShape& circle) {
    if (!isWithinReach(center) || !(radius <= farthestVertex) || !isEnough(circleArea(radius))) {
        return false;
    }
    circle.m_p = center;
    circle.m_radius = radius;
    return true;
}

bool canHaveMass(const b2Shape& shape) {
    if (shape.GetType() == b2Shape::e_circle) {
        return isEnough(circleArea(shape.m_radius));
    }
    const auto& polygon = static_cast<const b2PolygonShape&>(shape);
    return isEnough(areaMoment({polygon.m_vertices, static_cast<std::size_t>(polygon.m_count)}).area);
}

void scaleShape(b2Shape& shape, b2Vec2 pivot, float ratioX, float ratioY) {
    if (shape.GetType() != b2Shape::e_circle) {
        scalePolygon(static_cast<b2PolygonShape&>(shape), pivot, ratioX, ratioY);
    } else if (shape.m_radius * std::abs(ratioX) <= farthestVertex) {
        shape.m_radius *= std::abs(ratioX);
    }
}

} // namespace jostle
