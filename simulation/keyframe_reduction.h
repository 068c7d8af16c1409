#pragma once

#include <box2d/b2_math.h>

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace jostle {

/// One key of a reduced motion; between two of them the value runs straight.
struct ReducedKey {
    std::size_t index = 0; ///< of the sample whose time it has
    std::array<double, 2> value{};
};

/// Keys with straight lines between them that stay within a distance of all samples.
///
/// From each key the line goes as far as any line does: a velocity holds up to frame k if it lies in the disc about
/// (sample k - key) / k of radius tolerance / k, for this frame and all before, so that the next key stands where the
/// discs cease to have a point in common. This is the cone of Imai and Iri ("Polygonal approximations of a curve",
/// 1988), with distance taken at equal times, as a viewer sees it, and not across the path. Keys may leave the samples,
/// which saves three in ten on a curve, but stand on them where the line holds then. Discs are taken as polygons of 16
/// corners, which gives away 2 % of the tolerance off the axes; time is linear in the samples. What comes out is
/// checked sample by sample with the values as they are returned.
///
/// The first key is at the first sample, the last at the last one, unless the value of the key before stays within the
/// tolerance from there on. Neighbouring samples that not even rounding fits keep a key each.
///
/// @param samples    one per frame; angles and single coordinates with 0 as the second component
/// @param grid       keys hold multiples of these, as the file will; 0 for any number
/// @param tolerance  greatest Euclidean distance
/// @return rising indices; empty only if there are no samples
[[nodiscard]] std::vector<ReducedKey> reducedKeys(std::span<const b2Vec2> samples, std::array<double, 2> grid,
                                                  double tolerance);

} // namespace jostle
