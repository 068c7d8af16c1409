#include "standalone/commands/guarded.h"

#include <new>

#include "standalone/commands/options.h"
#include "standalone/commands/refusal.h"

namespace jostle::standalone {

int runGuarded(const std::string& about, const std::function<int()>& command) {
    try {
        return command();
    } catch (const std::bad_alloc&) {
        complain(about, "there is not enough memory for it; nothing was written. Solve fewer frames at a time");
        return exitFailed;
    }
}

} // namespace jostle::standalone
