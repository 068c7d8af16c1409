// The one file that calls the GLU tessellator.

#include "geometry/tessellate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <deque>
#include <memory>
#include <optional>

#ifdef _WIN32
#include <windows.h>
#endif
#include <GL/glu.h>

#ifndef CALLBACK
#define CALLBACK
#endif

namespace jostle {

namespace {

constexpr std::size_t mostPoints = 32'768;
constexpr std::size_t mostCrossings = 20'000;

/// Steps along loops of edges, a quarter of a second's worth. The library walks along a whole loop at each crossing, at
/// each point that lies on another, and at each corner at which edges begin or end as seen from left to right.
constexpr std::size_t mostSteps = 50'000'000;

using Vertex = std::array<GLdouble, 3>;

/// What the callbacks write to.
struct Output {
    std::deque<Vertex> vertices; ///< the library keeps pointers to them
    std::vector<b2Vec2> corners; ///< three for each triangle
    bool failed = false;
};

void CALLBACK onVertex(void* vertex, void* output) {
    const Vertex& position = *static_cast<Vertex*>(vertex);
    static_cast<Output*>(output)->corners.emplace_back(static_cast<float>(position[0]),
                                                       static_cast<float>(position[1]));
}

void CALLBACK onCombine(GLdouble position[3], void* /*sources*/[4], GLfloat /*weights*/[4], void** vertex,
                        void* output) {
    *vertex = &static_cast<Output*>(output)->vertices.emplace_back(Vertex{position[0], position[1], 0.0});
}

void CALLBACK onError(GLenum /*error*/, void* output) {
    static_cast<Output*>(output)->failed = true;
}

/// That it is there makes the library give plain triangles, no strips and fans.
void CALLBACK onEdgeFlag(GLboolean /*isBoundary*/, void* /*output*/) {}

struct DeleteTessellator {
    void operator()(GLUtesselator* tessellator) const { gluDeleteTess(tessellator); }
};
using Tessellator = std::unique_ptr<GLUtesselator, DeleteTessellator>;

using Callback = void(CALLBACK*)();

Tessellator makeTessellator() {
    Tessellator tessellator(gluNewTess());
    if (tessellator) {
        GLUtesselator* const tess = tessellator.get();
        gluTessProperty(tess, GLU_TESS_WINDING_RULE, GLU_TESS_WINDING_ODD);
        gluTessNormal(tess, 0.0, 0.0, 1.0);
        gluTessCallback(tess, GLU_TESS_VERTEX_DATA, reinterpret_cast<Callback>(onVertex));
        gluTessCallback(tess, GLU_TESS_COMBINE_DATA, reinterpret_cast<Callback>(onCombine));
        gluTessCallback(tess, GLU_TESS_ERROR_DATA, reinterpret_cast<Callback>(onError));
        gluTessCallback(tess, GLU_TESS_EDGE_FLAG_DATA, reinterpret_cast<Callback>(onEdgeFlag));
    }
    return tessellator;
}

/// Distance to which points are rounded for the tessellator, which loses its way among edges of all scales at once, and
/// among such as nearly coincide; it copes well with those that do.
double gridOf(std::span<const Ring> rings) {
    float largest = 0.0f;
    for (const Ring& ring : rings) {
        for (const b2Vec2 p : ring) {
            largest = p.IsValid() ? std::max({largest, std::abs(p.x), std::abs(p.y)}) : largest;
        }
    }
    return largest > 0.0f ? std::ldexp(1.0, std::ilogb(largest) - 22) : 1.0;
}

/// The points of a ring that are finite, without repeats and without spikes that lead out and back on one line.
std::vector<b2Vec2> cleanRing(const Ring& ring, double grid) {
    const auto rounded = [grid](float x) {
        return static_cast<float>(std::round(static_cast<double>(x) / grid) * grid);
    };
    std::vector<b2Vec2> points;
    const auto leadsNowhere = [&](b2Vec2 next) {
        const std::size_t count = points.size();
        return count > 0 && (points.back() == next || (count > 1 && points[count - 2] == next));
    };
    for (const b2Vec2 p : ring) {
        if (!p.IsValid()) {
            continue;
        }
        const b2Vec2 next(rounded(p.x), rounded(p.y));
        if (!leadsNowhere(next)) {
            points.push_back(next);
        } else if (points.back() != next) {
            points.pop_back();
        }
    }
    while (!points.empty() && leadsNowhere(points.front())) {
        points.pop_back();
    }
    return points;
}

/// Looks at pairs of an edge and a point that may lie on it; about a twentieth of a second's worth.
constexpr std::size_t mostTouchPairs = 2'000'000;

/// A point of some ring that lies on an edge, between its ends.
struct Touch {
    std::size_t edge; ///< counted through all rings, by the points from which edges start
    b2Vec2 point;
};

bool isBetween(b2Vec2 a, b2Vec2 b, b2Vec2 point) {
    return point != a && point != b && std::min(a.x, b.x) <= point.x && point.x <= std::max(a.x, b.x) &&
           std::min(a.y, b.y) <= point.y && point.y <= std::max(a.y, b.y) && orientation(a, b, point) == 0.0;
}

/// The points of all rings, from left to right.
std::vector<b2Vec2> sortedPoints(std::span<const Ring> rings) {
    std::vector<b2Vec2> points;
    for (const Ring& ring : rings) {
        points.insert(points.end(), ring.begin(), ring.end());
    }
    std::sort(points.begin(), points.end(), [](b2Vec2 a, b2Vec2 b) { return a.x < b.x || (a.x == b.x && a.y < b.y); });
    return points;
}

/// In the order of edges, and along each; empty if there are too many of them, or too many pairs to look at.
std::vector<Touch> findTouches(std::span<const Ring> rings) {
    std::vector<b2Vec2> points = sortedPoints(rings);
    points.erase(std::unique(points.begin(), points.end()), points.end());
    std::vector<Touch> touches;
    std::size_t edge = 0;
    std::size_t pairs = 0;
    for (const Ring& ring : rings) {
        for (std::size_t i = 0; i < ring.size(); ++i, ++edge) {
            const b2Vec2 a = ring[i];
            const b2Vec2 b = ring[i + 1 < ring.size() ? i + 1 : 0];
            const std::size_t before = touches.size();
            auto at = std::partition_point(points.begin(), points.end(),
                                           [&](b2Vec2 point) { return point.x < std::min(a.x, b.x); });
            for (; at != points.end() && at->x <= std::max(a.x, b.x); ++at) {
                if (++pairs > mostTouchPairs) {
                    return {};
                }
                if (isBetween(a, b, *at)) {
                    touches.push_back({edge, *at});
                }
            }
            if (b.x < a.x || (b.x == a.x && b.y < a.y)) {
                std::reverse(touches.begin() + static_cast<std::ptrdiff_t>(before), touches.end());
            }
        }
    }
    return touches.size() > mostCrossings ? std::vector<Touch>() : touches;
}

/// The same rings with a corner wherever a corner lies on an edge. Where edges run along each other the library can
/// lose its way, but not where they have both ends in common.
std::vector<std::vector<b2Vec2>> splitAtTouches(std::span<const Ring> rings) {
    const std::vector<Touch> touches = findTouches(rings);
    std::vector<std::vector<b2Vec2>> result;
    auto touch = touches.begin();
    std::size_t edge = 0;
    for (const Ring& ring : rings) {
        std::vector<b2Vec2>& points = result.emplace_back();
        for (const b2Vec2 point : ring) {
            points.push_back(point);
            for (; touch != touches.end() && touch->edge == edge; ++touch) {
                points.push_back(touch->point);
            }
            ++edge;
        }
    }
    return result;
}

/// Corners at which an outline turns from left to right or back.
std::size_t countTurns(const Ring& ring) {
    std::size_t turns = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const float before = ring[i > 0 ? i - 1 : ring.size() - 1].x;
        const float after = ring[i + 1 < ring.size() ? i + 1 : 0].x;
        turns += static_cast<std::size_t>((before <= ring[i].x) == (after <= ring[i].x));
    }
    return turns;
}

/// Points where another one lies. The library joins the two like the ends of edges that cross.
std::size_t countRepeats(std::span<const Ring> rings) {
    std::vector<b2Vec2> points = sortedPoints(rings);
    const auto distinct = std::unique(points.begin(), points.end());
    return static_cast<std::size_t>(points.end() - distinct);
}

bool isAffordable(std::span<const Ring> rings) {
    std::size_t points = 0;
    std::size_t turns = 0;
    for (const Ring& ring : rings) {
        points += ring.size();
        turns += countTurns(ring);
    }
    if (points > mostPoints) {
        return false;
    }
    const std::optional<std::size_t> crossings = countCrossings(rings, mostCrossings);
    return crossings && (points + 2 * *crossings) * (turns + *crossings + countRepeats(rings)) <= mostSteps;
}

void run(GLUtesselator* tess, std::span<const std::vector<b2Vec2>> rings, Output& output) {
    gluTessBeginPolygon(tess, &output);
    for (const std::vector<b2Vec2>& ring : rings) {
        gluTessBeginContour(tess);
        for (const b2Vec2 point : ring) {
            Vertex& vertex =
                output.vertices.emplace_back(Vertex{static_cast<double>(point.x), static_cast<double>(point.y), 0.0});
            gluTessVertex(tess, vertex.data(), &vertex);
        }
        gluTessEndContour(tess);
    }
    gluTessEndPolygon(tess);
}

} // namespace

bool tessellate(std::span<const Ring> rings, std::vector<Triangle>& triangles) {
    std::vector<std::vector<b2Vec2>> clean;
    const double grid = gridOf(rings);
    for (const Ring& ring : rings) {
        clean.push_back(cleanRing(ring, grid));
    }
    const std::vector<Ring> cleanRings(clean.begin(), clean.end());
    if (!isAffordable(cleanRings)) {
        return false;
    }
    const Tessellator tessellator = makeTessellator();
    if (!tessellator) {
        return false;
    }
    std::vector<std::vector<b2Vec2>> split = splitAtTouches(cleanRings);
    for (std::vector<b2Vec2>& ring : split) {
        ring = cleanRing(ring, grid); // of an edge that came back on itself in part there may be a spike now
    }
    Output output;
    run(tessellator.get(), split, output);
    if (output.failed) {
        return false;
    }
    for (std::size_t i = 0; i + 2 < output.corners.size(); i += 3) {
        const Triangle triangle{output.corners[i], output.corners[i + 1], output.corners[i + 2]};
        if (orientation(triangle[0], triangle[1], triangle[2]) != 0.0) {
            triangles.push_back(triangle);
        }
    }
    return true;
}

} // namespace jostle
