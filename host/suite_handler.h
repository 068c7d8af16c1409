#pragma once

#include <array>
#include <cstddef>
#include <cstring>

#include "host/suites.h"

/// Acquires suites when they are first asked for and releases them all when it goes out of scope.
///
/// A function makes one on the stack at its start. `Suite` is a table of host/suites.h.
class AEGP_SuiteHandler {
public:
    explicit AEGP_SuiteHandler(const SPBasicSuite* basic) : basic_(basic) {}

    AEGP_SuiteHandler(const AEGP_SuiteHandler&) = delete;
    AEGP_SuiteHandler& operator=(const AEGP_SuiteHandler&) = delete;

    ~AEGP_SuiteHandler() {
        while (count_ > 0) {
            const Slot& slot = slots_[--count_];
            basic_->ReleaseSuite(slot.name, slot.version);
        }
    }

    /// The table, valid as long as the handler; null if the host does not hand it out.
    template<class Suite>
    [[nodiscard]] const Suite* get() {
        const std::size_t place = kindOf<Suite> - 1; // beyond all as long as it is 0
        if (place >= known_.size())
            return static_cast<const Suite*>(acquire(Suite::suiteName, Suite::suiteVersion));
        if (known_[place] == nullptr)
            known_[place] = acquire(Suite::suiteName, Suite::suiteVersion);
        return static_cast<const Suite*>(known_[place]);
    }

private:
    static constexpr std::size_t suiteCount = 18; // tables of host/suites.h
    static inline std::size_t kinds = 0;          // of tables that anybody asks for
    // From 1 on. Known before the first call of the host, each of which asks for it; 0 where objects are made before
    // main.
    template<class Suite>
    static inline const std::size_t kindOf = ++kinds;

    struct Slot {
        const char* name = nullptr;
        std::int32_t version = 0;
        const void* table = nullptr;
    };

    // Not inline: every call of the host would be many times as long.
    [[gnu::noinline]] const void* acquire(const char* name, std::int32_t version) {
        for (std::size_t i = 0; i < count_; ++i) {
            if (slots_[i].version == version && std::strcmp(slots_[i].name, name) == 0)
                return slots_[i].table;
        }
        if (!basic_ || count_ == slots_.size())
            return nullptr;
        const void* table = nullptr;
        if (basic_->AcquireSuite(name, version, &table) != 0)
            return nullptr;
        if (!table) {
            basic_->ReleaseSuite(name, version);
            return nullptr;
        }
        slots_[count_++] = {name, version, table};
        return table;
    }

    const SPBasicSuite* basic_;
    std::array<Slot, suiteCount> slots_{};
    std::size_t count_ = 0;
    std::array<const void*, suiteCount> known_{}; ///< by the number of their kind; null if not yet asked for
};
