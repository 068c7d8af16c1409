#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <span>

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
        // Nearly always the one asked for last, and each name is at one address.
        if (last_.name == Suite::suiteName && last_.version == Suite::suiteVersion)
            return static_cast<const Suite*>(last_.table);
        return static_cast<const Suite*>(acquire(Suite::suiteName, Suite::suiteVersion));
    }

private:
    struct Slot {
        const char* name = nullptr;
        std::int32_t version = 0;
        const void* table = nullptr;
    };

    // Not inline: every call of the host would be many times as long.
    [[gnu::noinline]] const void* acquire(const char* name, std::int32_t version) {
        const auto slots = std::span(slots_.data(), count_);
        auto found = std::find_if(slots.begin(), slots.end(),
                                  [&](const Slot& slot) { return slot.name == name && slot.version == version; });
        if (found == slots.end()) // the same name may stand at another address in another library
            found = std::find_if(slots.begin(), slots.end(), [&](const Slot& slot) {
                return slot.version == version && std::strcmp(slot.name, name) == 0;
            });
        if (found != slots.end()) {
            last_ = {name, version, found->table};
            return found->table;
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
    std::array<Slot, 18> slots_{}; // one for each table of host/suites.h
    std::size_t count_ = 0;
    Slot last_; ///< found last, by the name it was asked for with
};
