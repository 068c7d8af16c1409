#pragma once

#include <cstddef>
#include <string>

#include "host/chain.h"

namespace jostle {

/// A text that the host allocated. Gives the memory back at the end of its life.
class HostString {
public:
    explicit HostString(HostChain& chain) : chain_(&chain) {}
    ~HostString();
    HostString(const HostString&) = delete;
    HostString& operator=(const HostString&) = delete;

    /// Where a call of the host puts its handle. To be used once.
    [[nodiscard]] AEGP_MemHandle* out() { return &handle_; }

    /// The text as UTF-8; empty without a handle, or once the chain has failed. Ends at the first NUL or at the end of
    /// the handle's memory, whichever comes first.
    [[nodiscard]] std::string text() const;
    /// As `text`, but as the host has it.
    [[nodiscard]] std::u16string units() const;

private:
    HostChain* chain_;
    AEGP_MemHandle handle_ = nullptr;
};

/// UTF-16 as UTF-8; unpaired surrogates become U+FFFD.
[[nodiscard]] std::string utf8From(const A_UTF16Char* units, std::size_t count);

} // namespace jostle
