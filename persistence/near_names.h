#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace jostle {

/// Whether two texts are equal but for the case of ASCII letters.
[[nodiscard]] bool equalWithoutCase(std::string_view a, std::string_view b);

/// The names that a mistyped one may have meant, nearest first, at most three.
///
/// Near is an edit distance of at most a third of the name's length plus one, and below the length, without regard to
/// case, or the one
/// being the beginning of the other.
/// Source: V. I. Levenshtein, "Binary codes capable of correcting deletions, insertions and reversals", Soviet
/// Physics Doklady 10 (1966), 707-710.
[[nodiscard]] std::vector<std::string> nearNames(std::string_view name, std::span<const std::string> candidates);

} // namespace jostle
