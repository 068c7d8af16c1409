#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace jostle {

/// Which samples suffice as keyframes with straight lines between them.
///
/// From each key the line is drawn as far as it goes: the segment is doubled until some sample in between is off it by
/// more than the tolerance, and the reach is then halved in; what comes out is what was checked, sample by sample. This
/// is the greedy form of fitting a polyline within an error bound (Imai and Iri, "Polygonal approximations of a curve",
/// 1988), with distance taken at equal times, as a viewer sees it, and not across the path. It takes O(n log n), and a
/// few keys more than the fewest that would do.
///
/// The first sample is always a key. The last is, unless the value stays within the tolerance after the key before.
///
/// @param samples     n rows of `components` values, one row per frame
/// @param written     the same for the value that a key at each frame would really hold, such as the rounded one
/// @param components  of one sample, at least 1; the distance is Euclidean in them
/// @param tolerance   greatest distance of any sample from the lines between written values; where neighbouring keys
///                    are further off by rounding alone, they are all kept
/// @return indices of rows, rising; empty only if there are no samples
[[nodiscard]] std::vector<std::size_t> reducedKeyIndices(std::span<const double> samples,
                                                         std::span<const double> written, std::size_t components,
                                                         double tolerance);

} // namespace jostle
