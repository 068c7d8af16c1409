#include "standalone/lottie/number_text.h"

namespace jostle::standalone {

char* printShortest(char* at, double value) {
    if (value == 0)
        value = 0; // without its sign
    return std::to_chars(at, at + numberTextRoom, value, std::chars_format::fixed).ptr;
}

void appendShortest(std::string& out, double value) {
    char room[numberTextRoom];
    out.append(room, static_cast<std::size_t>(printShortest(room, value) - room));
}

} // namespace jostle::standalone
