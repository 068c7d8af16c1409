// The check sweeps over all points in the order of x, then y, and keeps the edges that the sweep line cuts, sorted
// along it. Each point must lie strictly between the two edges next to it. That suffices: of two edges that cross, with
// the leftmost crossing of all, neither can end, and nothing can be put between them, without a point on the wrong side
// of its neighbour.
//
// A proper polygon can still lead the triangulator astray: it takes three points with a determinant below 1e-12 for
// collinear, and rounds. On a grid that is neither too fine nor too coarse for 64 bits it does neither, and sees the
// polygon that is there.
//
// Source: M. I. Shamos, D. Hoey, "Geometric intersection problems", 17th Symposium on Foundations of Computer Science
// (1976), 208-215; exact signs after J. R. Shewchuk, "Adaptive precision floating-point arithmetic and fast robust
// geometric predicates", Discrete & Computational Geometry 18 (1997), 305-363.

#include "geometry/outline_check.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace jostle {

namespace {

/// Power of two of the finest grid on which no determinant but zero is below the triangulator's 1e-12.
constexpr int finestGrid = -19;

/// Pairs of edges that a count of crossings looks at; about a tenth of a second's worth.
constexpr std::size_t mostPairs = 5'000'000;

/// Difference of the two products in the determinant of the triangle a, b, point, in 64 bits.
struct Determinant {
    double value;
    double error; ///< bound on the rounding in `value`: Shewchuk's is a little over three times half a last place
};

Determinant determinant(b2Vec2 a, b2Vec2 b, b2Vec2 point) {
    const double ax = static_cast<double>(a.x);
    const double ay = static_cast<double>(a.y);
    const double left = (static_cast<double>(b.x) - ax) * (static_cast<double>(point.y) - ay);
    const double right = (static_cast<double>(b.y) - ay) * (static_cast<double>(point.x) - ax);
    return {left - right, 4e-16 * (std::abs(left) + std::abs(right))};
}

/// The sum of six doubles, with an exact sign: partial sums are kept as terms that do not overlap.
double exactSum(const std::array<double, 6>& summands) {
    std::array<double, 6> terms{};
    std::size_t count = 0;
    for (double value : summands) {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const double sum = value + terms[i];
            const double part = sum - value;
            const double error = (value - (sum - part)) + (terms[i] - part);
            if (error != 0.0) {
                terms[kept++] = error;
            }
            value = sum;
        }
        terms[kept++] = value;
        count = kept;
    }
    double total = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        total += terms[i]; // rising in size, so the last and largest decides the sign
    }
    return total;
}

class Sweep {
public:
    explicit Sweep(std::span<const Ring> rings) {
        for (const Ring& ring : rings) {
            const auto first = static_cast<std::uint32_t>(points_.size());
            const auto count = static_cast<std::uint32_t>(ring.size());
            points_.insert(points_.end(), ring.begin(), ring.end());
            for (std::uint32_t i = 0; i < count; ++i) {
                next_.push_back(first + (i + 1 < count ? i + 1 : 0));
                previous_.push_back(first + (i > 0 ? i - 1 : count - 1));
            }
            ends_.push_back(first + count);
        }
    }

    bool isProper() {
        std::vector<std::uint32_t> order(points_.size());
        for (std::uint32_t i = 0; i < order.size(); ++i) {
            order[i] = i;
        }
        std::sort(order.begin(), order.end(), [this](std::uint32_t a, std::uint32_t b) { return isBefore(a, b); });
        for (std::size_t i = 1; i < order.size(); ++i) {
            if (points_[order[i - 1]] == points_[order[i]]) {
                return false;
            }
        }
        return std::all_of(order.begin(), order.end(), [this](std::uint32_t point) { return pass(point); });
    }

private:
    [[nodiscard]] bool isBefore(std::uint32_t a, std::uint32_t b) const {
        return points_[a].x < points_[b].x || (points_[a].x == points_[b].x && points_[a].y < points_[b].y);
    }

    // An edge is known by the point that it starts from in its ring.
    [[nodiscard]] double side(std::uint32_t edge, b2Vec2 point) const {
        const std::uint32_t other = next_[edge];
        return isBefore(edge, other) ? orientation(points_[edge], points_[other], point)
                                     : orientation(points_[other], points_[edge], point);
    }

    [[nodiscard]] bool isOutline(std::uint32_t point) const { return point < ends_.front(); }

    /// Moves the sweep line past a point; false if the point is where none may be.
    bool pass(std::uint32_t point) {
        const std::uint32_t in = previous_[point]; // the edge that leads to the point
        const std::uint32_t out = point;
        const bool inEnds = isBefore(in, point);
        const bool outEnds = isBefore(next_[point], point);
        const std::size_t ending = static_cast<std::size_t>(inEnds) + static_cast<std::size_t>(outEnds);
        const b2Vec2 position = points_[point];
        const auto at = std::partition_point(cut_.begin(), cut_.end(), [&](std::uint32_t edge) {
            return edge != in && edge != out && side(edge, position) > 0.0;
        });

        // The point's own edges come first from here, then one that must be above it.
        if (static_cast<std::size_t>(cut_.end() - at) < ending) {
            return false;
        }
        for (std::size_t i = 0; i < ending; ++i) {
            const std::uint32_t edge = at[static_cast<std::ptrdiff_t>(i)];
            if (!((edge == in && inEnds) || (edge == out && outEnds))) {
                return false;
            }
        }
        const auto above = at + static_cast<std::ptrdiff_t>(ending);
        if (above != cut_.end() && side(*above, position) >= 0.0) {
            return false;
        }
        if (ending == 1) {
            *at = inEnds ? out : in;
            return true;
        }
        const double turn = orientation(position, points_[in], points_[next_[point]]);
        if (turn == 0.0) {
            return false; // a spike that leads back along itself
        }
        if (ending == 2) {
            cut_.erase(at, at + 2);
            return true;
        }
        if (!isOutline(point) &&
            std::count_if(cut_.begin(), at, [this](auto edge) { return isOutline(edge); }) % 2 == 0) {
            return false;
        }
        const std::array<std::uint32_t, 2> starting = {turn > 0.0 ? in : out, turn > 0.0 ? out : in};
        cut_.insert(at, starting.begin(), starting.end());
        return true;
    }

    std::vector<b2Vec2> points_;
    std::vector<std::uint32_t> next_;
    std::vector<std::uint32_t> previous_;
    std::vector<std::uint32_t> ends_; ///< of each ring, the index past its last point
    std::vector<std::uint32_t> cut_;  ///< edges under the sweep line, from small y to large
};

struct Span {
    b2Vec2 left;
    b2Vec2 right;
};

bool mayCross(const Span& a, const Span& b) {
    return std::max(a.left.y, a.right.y) >= std::min(b.left.y, b.right.y) &&
           std::max(b.left.y, b.right.y) >= std::min(a.left.y, a.right.y);
}

bool cross(const Span& a, const Span& b) {
    return orientation(a.left, a.right, b.left) * orientation(a.left, a.right, b.right) < 0.0 &&
           orientation(b.left, b.right, a.left) * orientation(b.left, b.right, a.right) < 0.0;
}

} // namespace

double orientation(b2Vec2 a, b2Vec2 b, b2Vec2 point) {
    const Determinant d = determinant(a, b, point);
    if (std::abs(d.value) >= d.error) {
        return d.value;
    }
    const double ax = static_cast<double>(a.x), ay = static_cast<double>(a.y);
    const double bx = static_cast<double>(b.x), by = static_cast<double>(b.y);
    const double px = static_cast<double>(point.x), py = static_cast<double>(point.y);
    // Products of two floats are exact in 64 bits.
    return exactSum({bx * py, -(bx * ay), -(ax * py), -(by * px), by * ax, ay * px});
}

std::vector<std::vector<b2Vec2>> roundForTriangulation(std::span<const Ring> rings) {
    b2Vec2 lower(std::numeric_limits<float>::max(), std::numeric_limits<float>::max());
    b2Vec2 upper = -lower;
    for (const Ring& ring : rings) {
        for (const b2Vec2 point : ring) {
            lower = b2Min(lower, point);
            upper = b2Max(upper, point);
        }
    }
    const double size = std::max(static_cast<double>(upper.x) - static_cast<double>(lower.x),
                                 static_cast<double>(upper.y) - static_cast<double>(lower.y));
    // Differences have 26 bits, their products 52. Determinants are no smaller than the square of the grid.
    const bool isKnown = size > 0.0 && std::isfinite(size);
    const double grid = std::ldexp(1.0, isKnown ? std::max(finestGrid, std::ilogb(size) + 1 - 26) : finestGrid);
    const auto rounded = [grid](float x) {
        return static_cast<float>(std::nearbyint(static_cast<double>(x) / grid) * grid);
    };
    std::vector<std::vector<b2Vec2>> result;
    for (const Ring& ring : rings) {
        std::vector<b2Vec2>& points = result.emplace_back();
        points.reserve(ring.size());
        for (const b2Vec2 point : ring) {
            points.emplace_back(rounded(point.x), rounded(point.y));
        }
    }
    return result;
}

bool isProperPolygon(std::span<const Ring> rings) {
    for (const Ring& ring : rings) {
        if (ring.size() < 3 || !std::all_of(ring.begin(), ring.end(), [](b2Vec2 p) { return p.IsValid(); })) {
            return false;
        }
    }
    return !rings.empty() && Sweep(rings).isProper();
}

std::optional<std::size_t> countCrossings(std::span<const Ring> rings, std::size_t limit) {
    std::vector<Span> edges;
    for (const Ring& ring : rings) {
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const b2Vec2 a = ring[i];
            const b2Vec2 b = ring[i + 1 < ring.size() ? i + 1 : 0];
            edges.push_back(a.x < b.x ? Span{a, b} : Span{b, a});
        }
    }
    std::sort(edges.begin(), edges.end(), [](const Span& a, const Span& b) { return a.left.x < b.left.x; });
    std::size_t crossings = 0;
    std::size_t comparisons = 0;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        for (std::size_t j = i + 1; j < edges.size() && edges[j].left.x <= edges[i].right.x; ++j) {
            if (mayCross(edges[i], edges[j])) {
                ++comparisons;
                crossings += static_cast<std::size_t>(cross(edges[i], edges[j]));
            }
        }
        if (crossings > limit || comparisons > mostPairs) {
            return std::nullopt;
        }
    }
    return crossings;
}

} // namespace jostle
