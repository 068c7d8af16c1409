#pragma once

#include <box2d/b2_math.h>

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace jostle {

/// Points that can be asked for one close by. Gives what containsPoint() gives for the same points, without looking at
/// all of them once they are many.
class PointSet {
public:
    /// Adds a point unless one is there already.
    /// @return whether it was added
    bool insert(b2Vec2 point);

    [[nodiscard]] const std::vector<b2Vec2>& points() const { return points_; }

private:
    [[nodiscard]] bool contains(b2Vec2 point) const;
    void index(std::size_t i);

    std::vector<b2Vec2> points_;
    std::unordered_multimap<std::uint64_t, std::size_t> cells_; ///< empty as long as the points are few
};

} // namespace jostle
