#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

namespace jostle::standalone {

/// Prints a JSON object on standard output, in a line of its own: first the texts, then the numbers.
void printJsonLine(std::initializer_list<std::pair<const char*, std::string>> texts,
                   std::initializer_list<std::pair<const char*, std::uint64_t>> numbers);

} // namespace jostle::standalone
