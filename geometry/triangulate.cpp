// The one file that calls poly2tri. The library follows broken links, or never ends, on outlines that are not proper
// polygons, so it is only shown those that pass isProperPolygon().

#include "geometry/triangulate.h"

#include "geometry/outline_check.h"
#include "geometry/polygon_tests.h"
#include "geometry/tessellate.h"

#include <poly2tri/poly2tri.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <deque>
#include <exception>
#include <limits>
#include <memory>

namespace jostle {

namespace {

/// The library calls itself about once for each point, so that its stack sets a limit.
constexpr std::size_t mostPoints = 32'768;

/// Up to here the comparison of all pairs of an outline's edges goes unnoticed.
constexpr std::size_t fewPoints = 100;

double ringArea(const Ring& ring) {
    double twice = 0.0;
    for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
        const double ax = static_cast<double>(ring[i].x) - static_cast<double>(ring[0].x);
        const double ay = static_cast<double>(ring[i].y) - static_cast<double>(ring[0].y);
        const double bx = static_cast<double>(ring[i + 1].x) - static_cast<double>(ring[0].x);
        const double by = static_cast<double>(ring[i + 1].y) - static_cast<double>(ring[0].y);
        twice += ax * by - bx * ay;
    }
    return std::abs(twice) / 2.0;
}

/// Box around a ring, to tell quickly that pointInPolygon() is false. That rounds where edges cross a point's height,
/// so the box has to be a little wider than the ring.
struct Bounds {
    b2Vec2 lower = {std::numeric_limits<float>::max(), std::numeric_limits<float>::max()};
    b2Vec2 upper = {std::numeric_limits<float>::lowest(), std::numeric_limits<float>::lowest()};
    bool isKnown = true; ///< false if not all of the ring is finite

    explicit Bounds(const Ring& ring) {
        for (const b2Vec2 point : ring) {
            lower = b2Min(lower, point);
            upper = b2Max(upper, point);
            isKnown = isKnown && point.IsValid();
        }
        const float slack = 1e-6f * (std::abs(lower.x) + std::abs(upper.x)) + 1e-30f;
        lower.x -= slack;
        upper.x += slack;
    }

    [[nodiscard]] bool mayContain(b2Vec2 point) const {
        return !isKnown || (point.x >= lower.x && point.x <= upper.x && point.y >= lower.y && point.y <= upper.y);
    }
};

/// Closed outlines and which of them lie in which, by their first corners.
class Nesting {
public:
    explicit Nesting(std::span<const ShapeDef> shapes) : isInsideAny_(shapes.size(), false) {
        for (const ShapeDef& shape : shapes) {
            rings_.emplace_back(shape.verts);
            bounds_.emplace_back(rings_.back());
        }
        for (std::size_t i = 0; i < rings_.size(); ++i) {
            // What is no number lies in nothing.
            if (!rings_[i].empty() && !std::isnan(corner(i).x) && !std::isnan(corner(i).y)) {
                fromLeft_.push_back(i);
            }
        }
        fromTop_ = fromLeft_;
        std::sort(fromLeft_.begin(), fromLeft_.end(),
                  [this](std::size_t a, std::size_t b) { return corner(a).x < corner(b).x; });
        std::sort(fromTop_.begin(), fromTop_.end(),
                  [this](std::size_t a, std::size_t b) { return corner(a).y < corner(b).y; });
        for (std::size_t outer = 0; outer < rings_.size(); ++outer) {
            for (const std::size_t inner : candidates(outer)) {
                isInsideAny_[inner] = isInsideAny_[inner] || isInside(inner, outer);
            }
        }
    }

    [[nodiscard]] const Ring& ring(std::size_t i) const { return rings_[i]; }

    [[nodiscard]] bool isInsideAny(std::size_t inner) const { return isInsideAny_[inner]; }

    [[nodiscard]] std::vector<std::size_t> holesOf(std::size_t outer) const {
        std::vector<std::size_t> holeIds;
        for (const std::size_t inner : candidates(outer)) {
            if (isInside(inner, outer)) {
                holeIds.push_back(inner);
            }
        }
        std::sort(holeIds.begin(), holeIds.end());
        return holeIds;
    }

    /// Marks the holes that lie in another of the same outline with all of their corners.
    void findIslands(std::span<const std::size_t> holeIds, std::span<bool> isIsland) const {
        for (const std::size_t other : holeIds) {
            for (const std::size_t hole : candidates(other)) {
                const auto at = std::lower_bound(holeIds.begin(), holeIds.end(), hole);
                if (at == holeIds.end() || *at != hole) {
                    continue;
                }
                bool& mark = isIsland[static_cast<std::size_t>(at - holeIds.begin())];
                mark = mark || (isInside(hole, other) && isAllInside(hole, other));
            }
        }
    }

private:
    using Outlines = std::span<const std::size_t>;

    [[nodiscard]] b2Vec2 corner(std::size_t i) const { return rings_[i].front(); }

    /// The part of a list in order of a coordinate of the first corners where that is within limits.
    [[nodiscard]] Outlines within(const std::vector<std::size_t>& order, float b2Vec2::*axis, float least,
                                  float greatest) const {
        const auto first =
            std::partition_point(order.begin(), order.end(), [&](std::size_t i) { return corner(i).*axis < least; });
        const auto last =
            std::partition_point(first, order.end(), [&](std::size_t i) { return corner(i).*axis <= greatest; });
        return {first, last};
    }

    /// All outlines that may lie in one: those with their first corners in the column or, if these are fewer, in the
    /// row of its box. Lines of a text share a column, its words a row.
    [[nodiscard]] Outlines candidates(std::size_t outer) const {
        const Bounds& bounds = bounds_[outer];
        if (!bounds.isKnown) {
            return fromLeft_;
        }
        const Outlines column = within(fromLeft_, &b2Vec2::x, bounds.lower.x, bounds.upper.x);
        const Outlines row = within(fromTop_, &b2Vec2::y, bounds.lower.y, bounds.upper.y);
        return column.size() <= row.size() ? column : row;
    }

    [[nodiscard]] bool isInside(std::size_t inner, std::size_t outer) const {
        return inner != outer && contains(outer, rings_[inner].front());
    }

    [[nodiscard]] bool isAllInside(std::size_t inner, std::size_t outer) const {
        return std::all_of(rings_[inner].begin(), rings_[inner].end(),
                           [&](b2Vec2 corner) { return contains(outer, corner); });
    }

    [[nodiscard]] bool contains(std::size_t outer, b2Vec2 point) const {
        return bounds_[outer].mayContain(point) && pointInPolygon(point, rings_[outer]);
    }

    std::vector<Ring> rings_;
    std::vector<Bounds> bounds_;
    std::vector<std::size_t> fromLeft_; ///< outlines in the order of their first corners' x
    std::vector<std::size_t> fromTop_;  ///< the same by y
    std::vector<bool> isInsideAny_;
};

/// Whether two edges of a ring cross, as isSelfIntersecting() tells; of many points, whether they are known to be a
/// proper polygon, as only rounding could make the comparison of all pairs say anything else.
bool crossesItself(const Ring& ring, bool isProper) {
    if (ring.size() > fewPoints && isProper) {
        return false;
    }
    return ring.size() > mostPoints || isSelfIntersecting(ring);
}

/// A point of the library that knows what it stands for.
struct RoundedPoint : p2t::Point {
    RoundedPoint(b2Vec2 rounded, b2Vec2 given)
        : p2t::Point(static_cast<double>(rounded.x), static_cast<double>(rounded.y)), original(given) {}

    b2Vec2 original;
};

/// The library's view of some rings.
class Polylines {
public:
    Polylines(std::span<const Ring> rings, std::span<const Ring> rounded) {
        for (std::size_t ring = 0; ring < rings.size(); ++ring) {
            std::vector<p2t::Point*>& polyline = polylines_.emplace_back();
            polyline.reserve(rings[ring].size());
            for (std::size_t i = 0; i < rings[ring].size(); ++i) {
                polyline.push_back(&points_.emplace_back(rounded[ring][i], rings[ring][i]));
            }
        }
    }

    [[nodiscard]] const std::vector<std::vector<p2t::Point*>>& all() const { return polylines_; }

private:
    std::deque<RoundedPoint> points_; // whose addresses stay
    std::vector<std::vector<p2t::Point*>> polylines_;
};

/// Whether triangles fill the area between an outline and its holes; holes within holes count for nothing.
bool fillsArea(std::span<const Triangle> triangles, std::span<const Ring> rings, std::span<const bool> isIsland) {
    double expected = ringArea(rings[0]);
    for (std::size_t i = 1; i < rings.size(); ++i) {
        expected -= isIsland[i - 1] ? 0.0 : ringArea(rings[i]);
    }
    double filled = 0.0;
    for (const Triangle& triangle : triangles) {
        filled += ringArea(triangle);
    }
    return std::abs(filled - expected) <= 1e-5 * ringArea(rings[0]);
}

/// Appends the triangles of a proper polygon; false, and nothing appended, if the library gives up or errs.
///
/// @param rounded  the same rings by roundForTriangulation(), which only the library sees
bool triangulateProper(std::span<const Ring> rings, std::span<const Ring> rounded, std::span<const bool> isIsland,
                       std::vector<Triangle>& triangles) {
    const std::size_t before = triangles.size();
    try {
        const Polylines polylines(rings, rounded);
        p2t::CDT cdt(polylines.all().front());
        for (std::size_t i = 1; i < polylines.all().size(); ++i) {
            cdt.AddHole(polylines.all()[i]);
        }
        cdt.Triangulate();
        const auto corner = [](p2t::Triangle& triangle, int i) {
            return static_cast<const RoundedPoint*>(triangle.GetPoint(i))->original;
        };
        const std::vector<p2t::Triangle*> found = cdt.GetTriangles();
        triangles.resize(before + found.size());
        std::transform(found.begin(), found.end(), triangles.begin() + static_cast<std::ptrdiff_t>(before),
                       [&](p2t::Triangle* t) {
                           return Triangle{corner(*t, 0), corner(*t, 1), corner(*t, 2)};
                       });
    } catch (const std::exception&) {
        // The library throws where points lie on constrained edges.
    }
    if (fillsArea({triangles.begin() + static_cast<std::ptrdiff_t>(before), triangles.end()}, rings, isIsland)) {
        return true;
    }
    triangles.resize(before);
    return false;
}

enum class Outcome { Proper, Tessellated, Failed };

/// @param rings  an outline and its holes
Outcome triangulateRings(std::span<const Ring> rings, std::span<const bool> isIsland,
                         std::vector<Triangle>& triangles) {
    std::size_t count = 0;
    for (const Ring& ring : rings) {
        count += ring.size();
    }
    if (count <= mostPoints) {
        const std::vector<std::vector<b2Vec2>> points = roundForTriangulation(rings);
        const std::vector<Ring> rounded(points.begin(), points.end());
        if (isProperPolygon(rounded) && triangulateProper(rings, rounded, isIsland, triangles)) {
            return Outcome::Proper;
        }
    }
    // Odd winding would fill an island, which gets no surface whichever library is at work.
    std::vector<Ring> withoutIslands = {rings[0]};
    for (std::size_t i = 1; i < rings.size(); ++i) {
        if (!isIsland[i - 1]) {
            withoutIslands.push_back(rings[i]);
        }
    }
    const std::size_t before = triangles.size();
    return tessellate(withoutIslands, triangles) && triangles.size() > before ? Outcome::Tessellated : Outcome::Failed;
}

} // namespace

bool triangulate(std::span<const ShapeDef> closedShapes, std::vector<Triangle>& triangles) {
    const Nesting nesting(closedShapes);
    std::vector<bool> tabuIds(closedShapes.size(), false); // outlines that have served as holes
    std::vector<bool> isProper(closedShapes.size(), false);
    bool failed = false;
    for (std::size_t i = 0; i < closedShapes.size(); ++i) {
        // On purpose: one corner decides, so two outlines with their first corners in each other both go without.
        if (nesting.ring(i).empty() || tabuIds[i] || nesting.isInsideAny(i)) {
            continue;
        }
        const std::vector<std::size_t> holeIds = nesting.holesOf(i);
        std::vector<Ring> rings = {nesting.ring(i)};
        const auto isIsland = std::make_unique<bool[]>(holeIds.size());
        for (std::size_t hole = 0; hole < holeIds.size(); ++hole) {
            tabuIds[holeIds[hole]] = true;
            rings.push_back(nesting.ring(holeIds[hole]));
        }
        nesting.findIslands(holeIds, {isIsland.get(), holeIds.size()});
        const Outcome outcome = triangulateRings(rings, {isIsland.get(), holeIds.size()}, triangles);
        failed = failed || outcome == Outcome::Failed;
        if (outcome == Outcome::Proper) {
            isProper[i] = true;
            for (const std::size_t hole : holeIds) {
                isProper[hole] = true;
            }
        }
    }
    for (std::size_t i = 0; i < closedShapes.size(); ++i) {
        failed = failed || crossesItself(nesting.ring(i), isProper[i]);
    }
    return failed;
}

} // namespace jostle
