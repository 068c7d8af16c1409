// The check sweeps over all points in the order of x, then y, and keeps the edges that the sweep line cuts, sorted
// along it. Each point must lie strictly between the two edges next to it. That suffices: of two edges that cross, with
// the leftmost crossing of all, neither can end, and nothing can be put between them, without a point on the wrong side
// of its neighbour.
//
// A proper polygon can still lead the triangulator astray: it takes three points with a determinant below 1e-12 for
// collinear, and rounds. Where a point comes that close to the line of an edge, it sees a different polygon from the
// one that is there, and follows its own neighbour links into nothing. So the second half of the check compares what it
// would see with the truth: for all corners, for the sweep line's neighbours, and for all pairs with an edge so short
// or a coordinate so fine that this can happen by more than chance.
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
#include <utility>
#include <vector>

namespace jostle {

namespace {

/// Below this the triangulator takes a determinant for zero.
constexpr double triangulatorEpsilon = 1e-12;

/// Lengths in pixels that tell which parts of an outline the triangulator could see wrongly. They grow with the
/// outline, because rounding does.
struct Scales {
    double width;
    double height;
    double grid;     ///< determinants of points on a grid of this size are exact, and zero or large enough
    double tooClose; ///< points closer in x and in y span triangles that are all nothing to the triangulator
    double fine;     ///< shorter edges, and smaller coordinates that are not zero, are compared with all points

    explicit Scales(std::span<const b2Vec2> points) {
        b2Vec2 lower = points.front();
        b2Vec2 upper = points.front();
        for (const b2Vec2 point : points) {
            lower = b2Min(lower, point);
            upper = b2Max(upper, point);
        }
        width = static_cast<double>(upper.x) - static_cast<double>(lower.x);
        height = static_cast<double>(upper.y) - static_cast<double>(lower.y);
        const int size = std::ilogb(std::max(width, height)) + 1; // all of it is shorter than 2 to this power
        grid = std::ldexp(1.0, std::max(-19, size - 26));
        tooClose = std::ldexp(1.0, std::max(-12, size - 24));
        fine = std::ldexp(1.0, std::max(-10, size - 22));
    }
};

/// Larger outlines are left to the tessellator, in pixels.
constexpr double largestSize = 0x1p24;

/// How many such comparisons an outline may cost before it is left to the tessellator.
constexpr std::size_t mostComparisons = 4'000'000;

/// Pairs of edges that a count of crossings looks at; about half a second's worth.
constexpr std::size_t mostPairs = 20'000'000;

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

/// Whether the triangulator sees on which side of the line a b the point lies, or that it lies on it.
bool isSeenRight(b2Vec2 a, b2Vec2 b, b2Vec2 point) {
    const Determinant d = determinant(a, b, point);
    // It may start from any of the three points, and each rounds in its own way.
    if (std::abs(d.value) > 4.0 * (triangulatorEpsilon + d.error)) {
        return true;
    }
    return orientation(a, b, point) == 0.0 && std::abs(d.value) < triangulatorEpsilon &&
           std::abs(determinant(b, point, a).value) < triangulatorEpsilon &&
           std::abs(determinant(point, a, b).value) < triangulatorEpsilon;
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
        return std::all_of(order.begin(), order.end(), [this](std::uint32_t point) { return pass(point); }) &&
               isWithinReach(order);
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

    [[nodiscard]] bool isPlain(std::uint32_t edge, b2Vec2 point) const {
        return isSeenRight(points_[edge], points_[next_[edge]], point);
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
        if ((above != cut_.end() && !(side(*above, position) < 0.0 && isPlain(*above, position))) ||
            (at != cut_.begin() && !isPlain(*(at - 1), position)) ||
            !isSeenRight(points_[in], points_[next_[point]], position)) {
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

    /// Whether the triangulator sees the polygon that is there.
    ///
    /// @param order  the points from small x to large
    [[nodiscard]] bool isWithinReach(std::span<const std::uint32_t> order) const {
        const Scales scales(points_);
        if (std::max(scales.width, scales.height) > largestSize ||
            std::min(scales.width, scales.height) < scales.tooClose) {
            return false;
        }
        return isCoarse(scales.grid) ||
               (hasDistinctColumns(order) && isSpacious(scales.tooClose) && finePartsAreSeenRight(scales.fine));
    }

    [[nodiscard]] bool isCoarse(double grid) const {
        const auto isOnGrid = [grid](float x) {
            const double steps = static_cast<double>(x) / grid;
            return steps == std::floor(steps);
        };
        return std::all_of(points_.begin(), points_.end(), [&](b2Vec2 p) { return isOnGrid(p.x) && isOnGrid(p.y); });
    }

    /// Whether no three columns of points are so close that the triangulator takes them for one; it copes with two.
    [[nodiscard]] bool hasDistinctColumns(std::span<const std::uint32_t> order) const {
        double beforeLast = -std::numeric_limits<double>::infinity();
        double last = beforeLast;
        for (const std::uint32_t i : order) {
            const double column = static_cast<double>(points_[i].x);
            if (column != last) {
                if (column - beforeLast < 4.0 * triangulatorEpsilon) {
                    return false;
                }
                beforeLast = last;
                last = column;
            }
        }
        return true;
    }

    /// Whether no two points are closer than this in both x and y. Points are sorted into cells of that size, so that
    /// columns and rows of any length cost no more than others.
    [[nodiscard]] bool isSpacious(double tooClose) const {
        using Cell = std::pair<double, double>;
        std::vector<std::pair<Cell, std::uint32_t>> cells;
        for (std::uint32_t i = 0; i < points_.size(); ++i) {
            cells.push_back({{std::floor(static_cast<double>(points_[i].x) / tooClose),
                              std::floor(static_cast<double>(points_[i].y) / tooClose)},
                             i});
        }
        std::sort(cells.begin(), cells.end());
        const auto areClose = [&](b2Vec2 a, b2Vec2 b) {
            return std::abs(static_cast<double>(a.x) - static_cast<double>(b.x)) < tooClose &&
                   std::abs(static_cast<double>(a.y) - static_cast<double>(b.y)) < tooClose;
        };
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const auto& [cell, point] = cells[i];
            if (i > 0 && cells[i - 1].first == cell) {
                return false;
            }
            // Each pair of cells side by side is looked at once.
            for (const auto& [dx, dy] : {Cell{0, 1}, Cell{1, -1}, Cell{1, 0}, Cell{1, 1}}) {
                const Cell neighbour = {cell.first + dx, cell.second + dy};
                const auto other = std::lower_bound(cells.begin(), cells.end(), std::pair(neighbour, 0u));
                if (other != cells.end() && other->first == neighbour &&
                    areClose(points_[point], points_[other->second])) {
                    return false;
                }
            }
        }
        return true;
    }

    [[nodiscard]] bool finePartsAreSeenRight(double fine) const {
        const auto isFine = [fine](b2Vec2 v) {
            return (v.x != 0.0f && std::abs(static_cast<double>(v.x)) < fine) ||
                   (v.y != 0.0f && std::abs(static_cast<double>(v.y)) < fine);
        };
        const auto isShort = [fine](b2Vec2 a, b2Vec2 b) {
            return std::hypot(static_cast<double>(a.x) - static_cast<double>(b.x),
                              static_cast<double>(a.y) - static_cast<double>(b.y)) < fine;
        };
        std::vector<std::uint32_t> fineEdges;
        std::vector<std::uint32_t> finePoints;
        for (std::uint32_t i = 0; i < points_.size(); ++i) {
            const b2Vec2 from = points_[i];
            const b2Vec2 to = points_[next_[i]];
            if (isFine(from)) {
                finePoints.push_back(i);
            }
            if (isFine(from) || isFine(to) || isShort(from, to)) {
                fineEdges.push_back(i);
            }
        }
        if ((fineEdges.size() + finePoints.size()) * points_.size() > mostComparisons) {
            return false;
        }
        for (std::uint32_t i = 0; i < points_.size(); ++i) {
            const auto isSeenFrom = [this](std::uint32_t edge, std::uint32_t point) {
                return point == edge || point == next_[edge] || isPlain(edge, points_[point]);
            };
            if (!std::all_of(fineEdges.begin(), fineEdges.end(), [&](auto edge) { return isSeenFrom(edge, i); }) ||
                !std::all_of(finePoints.begin(), finePoints.end(), [&](auto point) { return isSeenFrom(i, point); })) {
                return false;
            }
        }
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
