#pragma once

#include <string_view>

namespace jostle {

/// Where messages for the user go: a window shows each in a dialog with one button, a command prints it.
class MessageSink {
public:
    virtual ~MessageSink() = default;

    /// Returns once the user has seen it.
    /// @param text  UTF-8; may have several lines
    virtual void inform(std::string_view title, std::string_view text) = 0;
};

/// The title of every message of the system's own.
inline constexpr std::string_view messageTitle = "Jostle";

} // namespace jostle
