#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// How much a settings file may hold: far more than settings need, and less than what fills the memory when it is read.
/// The reader refuses more, and so the writer does not write it.
namespace jostle {

/// Larger settings files are refused: 134 snapshots of a thousand bodies fit.
constexpr std::size_t maximumSettingsBytes = std::size_t{128} << 20U;

/// What a text of XML has too much of, as in "more than 1000000 elements"; nothing if it is within the limits.
[[nodiscard]] std::optional<std::string> excessOfText(std::string_view text);

/// The same of so many snapshots, read over a scene of so many bodies.
[[nodiscard]] std::optional<std::string> excessOfSnapshots(std::size_t snapshots, std::size_t bodies);

} // namespace jostle
