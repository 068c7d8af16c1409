#pragma once

#include <memory>

namespace jostle::standalone {

/// A part of a record that few have: it takes a single word until it is written to, and reads as a new one until then.
/// Once there, it keeps its address, also when it is assigned to.
template<class T>
class Rare {
public:
    Rare() = default;
    Rare(const Rare& other) : part_{other.part_ ? std::make_unique<T>(*other.part_) : nullptr} {}
    Rare& operator=(const Rare& other) {
        if (part_ || other.part_)
            own() = *other;
        return *this;
    }
    ~Rare() = default;

    [[nodiscard]] const T& operator*() const {
        static const T none;
        return part_ ? *part_ : none;
    }
    [[nodiscard]] const T* operator->() const { return &**this; }
    /// To be written to.
    [[nodiscard]] T& own() {
        if (!part_)
            part_ = std::make_unique<T>();
        return *part_;
    }

private:
    std::unique_ptr<T> part_;
};

} // namespace jostle::standalone
