#pragma once

#include <string>
#include <vector>

namespace jostle::standalone {

/// One result as it is shown.
struct SweepCell {
    std::string file;    ///< its name, beside the page
    std::string caption; ///< the values that made it
    std::string text;    ///< the result itself, JSON; empty if it failed or is only linked
    std::string failure; ///< why there is none; empty if there is
};

struct SweepPage {
    std::string title;
    std::string player;      ///< path or address of the player's script, as seen from the page
    std::size_t columns = 0; ///< 0 for as many as fit
    std::vector<SweepCell> cells;
};

/// An HTML page that plays results side by side in step, with the player's script and nothing else from outside: the
/// results are inside the page, since browsers do not let a page from a disk read the files beside it. Those that are
/// only linked are read from there, which takes a web server.
[[nodiscard]] std::string sweepPageText(const SweepPage& page);

/// The player's script on the network.
extern const char* const networkPlayer;

} // namespace jostle::standalone
