#include "standalone/lottie/number_text.h"

#include <charconv>

namespace jostle::standalone {

char* printShortest(char* at, double value) {
    if (value == 0)
        value = 0; // without its sign
    return std::to_chars(at, at + numberTextRoom, value, std::chars_format::fixed).ptr;
}

char* printLargeThousandths(char* at, double value) {
    const double scaled = value * 1000;
    if (!(std::abs(scaled) < 9e15))
        return printShortest(at, value); // numbers this large have few or no decimals left
    const auto thousandths = static_cast<std::int64_t>(scaled + std::copysign(0.5, scaled));
    if (thousandths < 0)
        *at++ = '-';
    const std::int64_t magnitude = std::abs(thousandths);
    at = std::to_chars(at, at + numberTextRoom - 5, magnitude / 1000).ptr;
    return threeDigits.printRest(at, static_cast<std::uint32_t>(magnitude % 1000));
}

void appendShortest(std::string& out, double value) {
    char room[numberTextRoom];
    out.append(room, static_cast<std::size_t>(printShortest(room, value) - room));
}

} // namespace jostle::standalone
