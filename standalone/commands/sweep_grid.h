#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace jostle::standalone {

/// One setting with the values that it is to take.
struct SweepAxis {
    std::string key;                 ///< as in `--set`
    std::vector<std::string> values; ///< plain decimals, as few digits as it takes
};

/// More results than anybody will look at.
constexpr std::size_t mostSweepResults = 1000;

/// Reads KEY=A:B:STEP: the values A, A + STEP and so on up to B, exact to the last of up to nine decimals.
/// @return the axis, or what is wrong with the text
[[nodiscard]] std::variant<SweepAxis, std::string> parseSweep(std::string_view text);

/// Number of combinations, or more than mostSweepResults if there are more.
[[nodiscard]] std::size_t sweepSize(std::span<const SweepAxis> axes);

/// The value of each axis in one combination; the last axis changes fastest.
/// @param index  below sweepSize
[[nodiscard]] std::vector<std::string> sweepValues(std::span<const SweepAxis> axes, std::size_t index);

/// A name for the result of a combination, such as "gravity.magnitude=5_all.friction=0.2.json", that any file system
/// takes: of names that would be too long all are numbered instead.
[[nodiscard]] std::string sweepFileName(std::span<const SweepAxis> axes, std::size_t index);

} // namespace jostle::standalone
