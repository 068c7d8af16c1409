#include "standalone/commands/message_printer.h"

#include <algorithm>

#include "standalone/commands/refusal.h"

namespace jostle::standalone {

void MessagePrinter::inform(std::string_view, std::string_view text) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (!line.empty()) {
            complain(about_, std::string(line));
        }
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
}

} // namespace jostle::standalone
