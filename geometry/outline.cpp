#include "geometry/outline.h"

#include "geometry/point_set.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace jostle {

namespace {

/// Handles up to this length, in pixels, count as no curve.
constexpr float straightTolerance = 0.5f;

/// Far above what a panel offers, and low enough that a damaged file cannot fill the memory.
constexpr int mostSubdivisions = 1000;

bool isWithin(b2Vec2 v, float tolerance) {
    return std::abs(v.x) <= tolerance && std::abs(v.y) <= tolerance;
}

/// The vertices and handles of an outline, of equal count; of a closed one with the first again at the end.
struct Walk {
    std::vector<b2Vec2> verts;
    std::vector<b2Vec2> in;
    std::vector<b2Vec2> out;

    explicit Walk(const ShapeDef& shapeDef)
        : verts(shapeDef.verts), in(shapeDef.inTangents), out(shapeDef.outTangents) {
        in.resize(verts.size(), b2Vec2_zero);
        out.resize(verts.size(), b2Vec2_zero);
        if (shapeDef.closed && !verts.empty()) {
            for (std::vector<b2Vec2>* list : {&verts, &in, &out}) {
                list->push_back(b2Vec2(list->front()));
            }
        }
    }
};

b2Vec2 meanOf(std::span<const b2Vec2> verts) {
    b2Vec2 sum = b2Vec2_zero;
    for (const b2Vec2 vert : verts) {
        sum += vert;
    }
    return verts.empty() ? sum : (1.0f / static_cast<float>(verts.size())) * sum;
}

} // namespace

b2Vec2 cubicPoint(const b2Vec2 (&ctrlPts)[4], float t) {
    const b2Vec2 c = 3.0f * (ctrlPts[1] - ctrlPts[0]);
    const b2Vec2 b = 3.0f * (ctrlPts[2] - ctrlPts[1]) - c;
    const b2Vec2 a = ctrlPts[3] - ctrlPts[0] - c - b;
    // a t^3 + b t^2 + c t + P0
    return (t * t * t) * a + (t * t) * b + t * c + ctrlPts[0];
}

bool containsPoint(b2Vec2 point, std::span<const b2Vec2> verts) {
    return std::any_of(verts.begin(), verts.end(), [point](b2Vec2 vert) {
        return std::abs(vert.x - point.x) < 0.0001f && std::abs(vert.y - point.y) < 0.0001f;
    });
}

void removeDuplicates(ShapeDef& shapeDef) {
    PointSet kept;
    for (const b2Vec2 vert : shapeDef.verts) {
        kept.insert(vert);
    }
    shapeDef.verts = kept.points();
}

void flatten(ShapeDef& shapeDef, int subdivisions) {
    if (subdivisions == 2) {
        return;
    }
    const Walk walk(shapeDef);
    const std::size_t count = walk.verts.size();
    subdivisions = std::clamp(subdivisions, 0, mostSubdivisions);
    if (count == 2) {
        ++subdivisions; // a lone segment gets a midpoint
    }
    const float step = 1.0f / static_cast<float>(subdivisions - 1);

    std::vector<b2Vec2> emitted;
    for (std::size_t i = 0; i + 1 < count; ++i) {
        if (isWithin(walk.out[i], straightTolerance) && isWithin(walk.in[i + 1], straightTolerance)) {
            emitted.push_back(walk.verts[i]);
            continue;
        }
        const b2Vec2 ctrlPts[4] = {walk.verts[i], walk.verts[i] + walk.out[i], walk.verts[i + 1] + walk.in[i + 1],
                                   walk.verts[i + 1]};
        for (int k = 0; k <= subdivisions - 2; ++k) {
            emitted.push_back(cubicPoint(ctrlPts, static_cast<float>(k) * step));
        }
    }
    if (!shapeDef.closed && count >= 2) {
        emitted.push_back(walk.verts.back());
    }
    shapeDef.verts = std::move(emitted);
    removeDuplicates(shapeDef);
}

bool matchesCircle(const ShapeDef& shapeDef, float& radiusOut) {
    constexpr float tolerance = 0.01f;
    const std::vector<b2Vec2>& v = shapeDef.verts;
    if (v.size() != 4) {
        return false;
    }
    const float d1 = b2Distance(v[0], v[2]);
    const float d2 = b2Distance(v[1], v[3]);
    if (!(std::abs(d1 - d2) < tolerance)) {
        return false;
    }
    radiusOut = d1 / 2.0f;
    if (shapeDef.inTangents.size() != 4 || shapeDef.outTangents.size() != 4) {
        return false;
    }
    const float k = radiusOut * 0.5522848f;
    // On purpose: a circle that starts at another vertex, or runs the other way, is none here.
    const b2Vec2 in[4] = {{k, 0}, {0, -k}, {-k, 0}, {0, k}};
    for (std::size_t i = 0; i < 4; ++i) {
        if (!isWithin(shapeDef.inTangents[i] - in[i], tolerance) ||
            !isWithin(shapeDef.outTangents[i] + in[i], tolerance)) {
            return false;
        }
    }
    return true;
}

bool matchesBox(const ShapeDef& shapeDef) {
    constexpr float tolerance = 0.001f;
    const std::vector<b2Vec2>& v = shapeDef.verts;
    const auto isShort = [](b2Vec2 handle) { return isWithin(handle, tolerance); };
    if (v.size() != 4 || !std::all_of(shapeDef.inTangents.begin(), shapeDef.inTangents.end(), isShort) ||
        !std::all_of(shapeDef.outTangents.begin(), shapeDef.outTangents.end(), isShort)) {
        return false;
    }
    const b2Vec2 offset = 0.5f * (v[0] + v[2]) - 0.5f * (v[1] + v[3]);
    if (!(std::abs(offset.x) < tolerance && std::abs(offset.y) < tolerance)) {
        return false;
    }
    const auto slope = [](b2Vec2 from, b2Vec2 to) {
        const float run = to.x - from.x;
        return (to.y - from.y) / (run == 0.0f ? tolerance : run);
    };
    const float s1 = slope(v[0], v[1]);
    const float s2 = slope(v[1], v[2]);
    // On purpose: one-sided. Only a long edge toward positive y is steep enough, so that small upright rectangles, and
    // those wound the other way, are triangulated like any other outline.
    return std::abs(s1 * s2 + 1.0f) < tolerance || (s1 == 0.0f && s2 > 9999.0f) || (s2 == 0.0f && s1 > 9999.0f);
}

b2Vec2 rotateAround(b2Vec2 point, b2Vec2 centre, float angleRadians) {
    const float c = std::cos(angleRadians);
    const float s = std::sin(angleRadians);
    const b2Vec2 d = point - centre;
    return {centre.x + c * d.x - s * d.y, centre.y + s * d.x + c * d.y};
}

b2Vec2 shapeCentroid(std::span<const b2Vec2> verts, bool open) {
    if (verts.size() == 2) {
        return 0.5f * (verts[0] + verts[1]);
    }
    if (open) {
        return meanOf(verts);
    }
    // Far from the origin the triangles are large and nearly cancel out: 32 bits would be off by whole pixels.
    double area = 0.0;
    double sumX = 0.0;
    double sumY = 0.0;
    for (std::size_t i = 0; i < verts.size(); ++i) {
        const b2Vec2 p2 = verts[i];
        const b2Vec2 p3 = verts[i + 1 < verts.size() ? i + 1 : 0];
        const double x2 = static_cast<double>(p2.x);
        const double y2 = static_cast<double>(p2.y);
        const double x3 = static_cast<double>(p3.x);
        const double y3 = static_cast<double>(p3.y);
        const double triangleArea = 0.5 * (x2 * y3 - y2 * x3);
        area += triangleArea;
        sumX += triangleArea * (x2 + x3) / 3.0;
        sumY += triangleArea * (y2 + y3) / 3.0;
    }
    return area == 0.0 ? meanOf(verts) : b2Vec2(static_cast<float>(sumX / area), static_cast<float>(sumY / area));
}

} // namespace jostle
