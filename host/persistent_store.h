#pragma once

#include <cstdint>
#include <string>

#include "host/chain.h"

namespace jostle {

/// The host's store of values that outlive a run, as far as our section of it. Calls of a chain that has failed do
/// nothing: reads give the default then.
class PersistentStore {
public:
    static constexpr const char* section = "QF Jostle 2";
    /// Bytes of a text that can be read, with its terminator; a longer one reads as empty.
    static constexpr std::size_t longestText = 260;

    explicit PersistentStore(HostChain& chain);

    /// @return the value; the default without one. Either way the store stays as it is
    [[nodiscard]] std::int32_t read(const char* key, std::int32_t byDefault);
    [[nodiscard]] double read(const char* key, double byDefault);
    [[nodiscard]] std::string read(const char* key, const std::string& byDefault);

    void write(const char* key, std::int32_t value);
    /// Six decimals are kept.
    void write(const char* key, double value);
    void write(const char* key, const std::string& value);

private:
    [[nodiscard]] bool has(const char* key);

    HostChain& chain_;
    AEGP_PersistentBlobH blob_ = nullptr;
};

} // namespace jostle
