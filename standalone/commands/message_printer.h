#pragma once

#include <string>

#include "host/messages.h"

namespace jostle::standalone {

/// Prints what a window would show in a dialog, on standard error.
class MessagePrinter final : public MessageSink {
public:
    /// @param about  what the messages concern, such as the input's name
    explicit MessagePrinter(std::string about) : about_(std::move(about)) {}

    /// A line for each line of the text that is not empty; the title says nothing here.
    void inform(std::string_view title, std::string_view text) override;

private:
    std::string about_;
};

} // namespace jostle::standalone
