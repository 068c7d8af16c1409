#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace jostle::standalone {

/// Entries behind opaque handles of one family.
///
/// A handle is a number (family, generation, place), never an address: one that was given back, or that belongs to
/// another family, is recognised without reading through it.
template<class Entry, class Handle>
class HandleTable {
public:
    /// @param family  1 to 255, different for each table of a host
    explicit HandleTable(std::uint8_t family) : family_(family) {}

    Handle add(Entry entry) {
        std::size_t place = count_;
        if (free_.empty()) {
            if (place % pageSize == 0)
                pages_.push_back(std::make_unique<Slot[]>(pageSize));
            ++count_;
        } else {
            place = free_.back();
            free_.pop_back();
        }
        Slot& slot = slotAt(place);
        slot.entry.emplace(std::move(entry));
        return reinterpret_cast<Handle>(code(place, slot));
    }

    /// The entry, at an address that holds until it is removed; null for a handle that is not out.
    [[nodiscard]] Entry* find(Handle handle) {
        // Calls come in rows for the same thing.
        return handle == lastHandle_ && lastEntry_ != nullptr ? lastEntry_ : findAnother(handle);
    }

    /// Whether the handle is of this family and was given back.
    [[nodiscard]] bool wasOut(Handle handle) const {
        const auto asked = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(handle));
        const std::size_t place = static_cast<std::size_t>((asked & 0xFFFFFFFFu) >> 4) - 1;
        return place < count_ && (asked >> 56) == family_ &&
               (!slotAt(place).entry || code(place, slotAt(place)) != asked);
    }

    /// @param handle  one that `find` knows
    void remove(Handle handle) {
        const auto wanted = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(handle));
        const std::size_t place = static_cast<std::size_t>((wanted & 0xFFFFFFFFu) >> 4) - 1;
        lastEntry_ = nullptr;
        Slot& slot = slotAt(place);
        slot.entry.reset();
        ++slot.generation;
        free_.push_back(place);
    }

    /// Number of entries that are out.
    [[nodiscard]] std::size_t size() const { return count_ - free_.size(); }

private:
    struct Slot {
        std::optional<Entry> entry;
        std::uint32_t generation = 0;
    };

    static constexpr std::size_t pageSize = 16; // a power of two: a place is found without a division

    [[nodiscard]] Slot& slotAt(std::size_t place) const { return pages_[place / pageSize][place % pageSize]; }

    // Out of line, to keep the calls in rows short.
    [[nodiscard, gnu::noinline]] Entry* findAnother(Handle handle) {
        const auto wanted = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(handle));
        const std::size_t place = static_cast<std::size_t>((wanted & 0xFFFFFFFFu) >> 4) - 1;
        if (place >= count_)
            return nullptr;
        Slot& slot = slotAt(place);
        if (!slot.entry || code(place, slot) != wanted)
            return nullptr;
        lastHandle_ = handle;
        lastEntry_ = &*slot.entry;
        return lastEntry_;
    }

    [[nodiscard]] std::uint64_t code(std::size_t place, const Slot& slot) const {
        return (static_cast<std::uint64_t>(family_) << 56) |
               (static_cast<std::uint64_t>(slot.generation & 0xFFFFFFu) << 32) |
               (static_cast<std::uint64_t>(place + 1) << 4);
    }

    std::uint8_t family_;
    std::vector<std::unique_ptr<Slot[]>> pages_; ///< so that entries keep their addresses
    std::size_t count_ = 0;                      ///< places that were ever taken
    std::vector<std::size_t> free_;
    Handle lastHandle_{};        ///< found last
    Entry* lastEntry_ = nullptr; ///< its entry; null if it may be gone
};

} // namespace jostle::standalone
