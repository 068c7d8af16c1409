#include "simulation/keyframe_reduction.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace jostle {

namespace {

using Point = std::array<double, 2>;

constexpr std::size_t corners = 16;

/// Direction number i of 32, with those of even numbers through a disc's corners and of odd ones across its edges. From
/// a table, since libraries differ in the last digit of a sine.
Point direction(std::size_t i) {
    constexpr std::array<double, 9> cosines{1.0,
                                            0.98078528040323044913,
                                            0.92387953251128675613,
                                            0.83146961230254523708,
                                            0.70710678118654752440,
                                            0.55557023301960222474,
                                            0.38268343236508977173,
                                            0.19509032201612826785,
                                            0.0};
    const std::size_t quarter = i / 8;
    const double along = cosines[i % 8];
    const double across = cosines[8 - i % 8];
    switch (quarter % 4) {
    case 0:
        return {along, across};
    case 1:
        return {-across, along};
    case 2:
        return {-along, -across};
    default:
        return {across, -along};
    }
}

/// A convex area of the plane.
class Area {
public:
    /// Keeps what lies in a disc too. @return whether anything does
    bool cutToDisc(Point centre, double radius) {
        if (points_.empty()) {
            for (std::size_t i = 0; i < corners; ++i) {
                const Point towards = direction(2 * i);
                points_.push_back({centre[0] + radius * towards[0], centre[1] + radius * towards[1]});
            }
            return true;
        }
        const double apothem = radius * direction(1)[0];
        for (std::size_t i = 0; i < corners && !points_.empty(); ++i) {
            const Point normal = direction(2 * i + 1);
            cut(normal, normal[0] * centre[0] + normal[1] * centre[1] + apothem);
        }
        return !points_.empty();
    }

    /// Some point well inside; there must be one.
    [[nodiscard]] Point middle() const {
        Point sum{};
        for (const Point& point : points_) {
            sum[0] += point[0];
            sum[1] += point[1];
        }
        const auto count = static_cast<double>(points_.size());
        return {sum[0] / count, sum[1] / count};
    }

private:
    /// Keeps the points p with normal * p <= limit (Sutherland and Hodgman, 1974).
    void cut(Point normal, double limit) {
        kept_.clear();
        for (std::size_t i = 0; i < points_.size(); ++i) {
            const Point& a = points_[i];
            const Point& b = points_[(i + 1) % points_.size()];
            const double aBeyond = normal[0] * a[0] + normal[1] * a[1] - limit;
            const double bBeyond = normal[0] * b[0] + normal[1] * b[1] - limit;
            if (aBeyond <= 0)
                kept_.push_back(a);
            if ((aBeyond <= 0) != (bBeyond <= 0)) {
                const double way = aBeyond / (aBeyond - bBeyond);
                kept_.push_back({a[0] + (b[0] - a[0]) * way, a[1] + (b[1] - a[1]) * way});
            }
        }
        std::swap(points_, kept_);
    }

    std::vector<Point> points_;
    std::vector<Point> kept_; ///< kept for its memory
};

class Reducer {
public:
    Reducer(std::span<const b2Vec2> samples, Point grid, double tolerance)
        : samples_(samples),
          grid_(grid),
          tolerance_(tolerance),
          // So that rounding the end of a line does not take it out of the tolerance.
          radius_(std::max(0.0, tolerance - 0.51 * std::hypot(grid[0], grid[1]))) {}

    [[nodiscard]] std::vector<ReducedKey> keys() const {
        std::vector<ReducedKey> keys;
        if (samples_.empty())
            return keys;
        keys.push_back(onSample(0));
        while (keys.back().index + 1 < samples_.size() && !stays(keys.back()))
            keys.push_back(after(keys.back()));
        return keys;
    }

private:
    [[nodiscard]] Point sample(std::size_t i) const {
        return {static_cast<double>(samples_[i].x), static_cast<double>(samples_[i].y)};
    }
    [[nodiscard]] ReducedKey rounded(std::size_t index, Point value) const {
        for (std::size_t c = 0; c < 2; ++c) {
            if (grid_[c] > 0)
                value[c] = std::round(value[c] / grid_[c]) * grid_[c];
        }
        return {index, value};
    }
    [[nodiscard]] ReducedKey onSample(std::size_t index) const { return rounded(index, sample(index)); }

    [[nodiscard]] bool isNear(Point value, std::size_t i) const {
        const Point at = sample(i);
        const double x = value[0] - at[0];
        const double y = value[1] - at[1];
        return x * x + y * y <= tolerance_ * tolerance_;
    }

    /// Whether a key may stand for all samples after it.
    [[nodiscard]] bool stays(const ReducedKey& key) const {
        for (std::size_t i = key.index + 1; i < samples_.size(); ++i) {
            if (!isNear(key.value, i))
                return false;
        }
        return true;
    }

    [[nodiscard]] bool lineHolds(const ReducedKey& from, const ReducedKey& to) const {
        const auto frames = static_cast<double>(to.index - from.index);
        for (std::size_t i = from.index + 1; i <= to.index; ++i) {
            const double way = static_cast<double>(i - from.index) / frames;
            if (!isNear({from.value[0] + (to.value[0] - from.value[0]) * way,
                         from.value[1] + (to.value[1] - from.value[1]) * way},
                        i))
                return false;
        }
        return true;
    }

    [[nodiscard]] ReducedKey after(const ReducedKey& from) const {
        std::size_t last = from.index;
        Point velocity{}; // per frame; of a line that holds up to `last`
        Area velocities;
        for (std::size_t i = from.index + 1; i < samples_.size(); ++i) {
            const auto frames = static_cast<double>(i - from.index);
            const Point at = sample(i);
            if (!velocities.cutToDisc({(at[0] - from.value[0]) / frames, (at[1] - from.value[1]) / frames},
                                      radius_ / frames))
                break;
            velocity = velocities.middle();
            last = i;
        }
        // The line holds but for the last digits of the calculation.
        for (std::size_t reach = last - from.index; reach > 1; reach /= 2) {
            const std::size_t index = from.index + reach;
            const auto frames = static_cast<double>(reach);
            const ReducedKey exact = onSample(index);
            if (lineHolds(from, exact))
                return exact;
            const ReducedKey free =
                rounded(index, {from.value[0] + velocity[0] * frames, from.value[1] + velocity[1] * frames});
            if (lineHolds(from, free))
                return free;
        }
        return onSample(from.index + 1);
    }

    std::span<const b2Vec2> samples_;
    Point grid_;
    double tolerance_;
    double radius_;
};

} // namespace

std::vector<ReducedKey> reducedKeys(std::span<const b2Vec2> samples, std::array<double, 2> grid, double tolerance) {
    return Reducer(samples, grid, tolerance).keys();
}

} // namespace jostle
