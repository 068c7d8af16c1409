#include "geometry/point_set.h"

#include "geometry/outline.h"

#include <bit>
#include <cmath>

namespace jostle {

namespace {

/// Up to here a scan is faster than an index.
constexpr std::size_t mostScanned = 64;

/// Wider than twice containsPoint()'s reach, so that what is in reach is in a neighbouring cell at the farthest.
constexpr double cellsPerPixel = 4096.0;

double cellOf(float x) {
    return std::floor(static_cast<double>(x) * cellsPerPixel);
}

std::uint64_t keyOf(double column, double row) {
    // Adding zero makes one of the two zeros, which differ in their bits.
    return std::bit_cast<std::uint64_t>(column + 0.0) * 0x9e3779b97f4a7c15u + std::bit_cast<std::uint64_t>(row + 0.0);
}

} // namespace

bool PointSet::insert(b2Vec2 point) {
    if (contains(point)) {
        return false;
    }
    points_.push_back(point);
    if (points_.size() == mostScanned) {
        for (std::size_t i = 0; i < points_.size(); ++i) {
            index(i);
        }
    } else if (points_.size() > mostScanned) {
        index(points_.size() - 1);
    }
    return true;
}

bool PointSet::contains(b2Vec2 point) const {
    if (points_.size() < mostScanned) {
        return containsPoint(point, points_);
    }
    for (int dx = -1; dx <= 1; ++dx) {
        for (int dy = -1; dy <= 1; ++dy) {
            const auto [begin, end] = cells_.equal_range(keyOf(cellOf(point.x) + dx, cellOf(point.y) + dy));
            for (auto it = begin; it != end; ++it) {
                if (containsPoint(point, {&points_[it->second], 1})) {
                    return true;
                }
            }
        }
    }
    return false;
}

void PointSet::index(std::size_t i) {
    // What is not finite is close to nothing, and would crowd one cell.
    if (points_[i].IsValid()) {
        cells_.emplace(keyOf(cellOf(points_[i].x), cellOf(points_[i].y)), i);
    }
}

} // namespace jostle
