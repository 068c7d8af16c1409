#include "standalone/lottie/text_outlines.h"

namespace jostle::standalone {

TextOutlines readTextOutlines(const JsonValue&, const JsonValue&, double) {
    return {};
}

} // namespace jostle::standalone
