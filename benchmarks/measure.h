#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <ctime>
#include <string_view>
#include <vector>

/// What several benchmarks need to measure and to be started.
namespace jostle {

/// Processor time so far, in milliseconds.
/// @param clock  CLOCK_PROCESS_CPUTIME_ID or CLOCK_THREAD_CPUTIME_ID
[[nodiscard]] inline double processorMilliseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
}

/// The middle of some values, of which there is one at least; the upper of two middles.
[[nodiscard]] inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// An argument of the command line that is a whole number.
/// @return `otherwise` if there are not so many arguments; 0 if it is no whole number
[[nodiscard]] inline int argument(int argc, char** argv, int index, int otherwise) {
    int value = otherwise;
    if (index < argc) {
        const std::string_view text = argv[index];
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        value = error == std::errc{} && end == text.data() + text.size() ? value : 0;
    }
    return value;
}

} // namespace jostle
