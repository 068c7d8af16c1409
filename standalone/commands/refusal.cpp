#include "standalone/commands/refusal.h"

#include <cstdio>

#include "standalone/commands/options.h"
#include "standalone/document/printable.h"

namespace jostle::standalone {

void complain(const std::string& about, const std::string& message) {
    std::fprintf(stderr, "jostle: %s: %s\n", printable(about).c_str(), printable(message).c_str());
}

int refuse(const Refusal& refusal) {
    complain(refusal.about, refusal.message);
    return exitWrongUse;
}

int fail(const Refusal& failure) {
    complain(failure.about, failure.message);
    return exitFailed;
}

} // namespace jostle::standalone
