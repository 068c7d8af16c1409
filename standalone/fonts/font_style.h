#pragma once

#include <string>
#include <string_view>

namespace jostle::standalone {

/// What the name of a style says of the letters.
struct FontStyle {
    int weight = 400; ///< from 100, thin, to 900, black
    bool slanted = false;
    int width = 100; ///< percent
};

/// The style that a name such as "SemiBold Italic" or "500" means; regular where it says nothing.
[[nodiscard]] FontStyle styleNamed(std::string_view name);

/// A name as it is compared: small ASCII letters, without blanks, hyphens, underscores and quotes.
[[nodiscard]] std::string plainName(std::string_view name);

} // namespace jostle::standalone
