#pragma once

#include <memory>
#include <utility>

namespace jostle {

/// A value on the heap whose address stays the same while its owner is moved about.
///
/// The world's bodies point at such values, which belong to records in a vector. A copy owns a value of its own.
/// Assigning a copy keeps the address; assigning by a move takes over the other's value together with its address, and
/// ends the one that was held. Never empty, but for one that was moved from, which may only be assigned to or
/// destroyed.
template<class T>
class Owned {
public:
    Owned() : value_(std::make_unique<T>()) {}
    Owned(const Owned& other) : value_(std::make_unique<T>(*other)) {}
    Owned(Owned&&) noexcept = default;
    Owned& operator=(const Owned& other) {
        if (value_) {
            *value_ = *other;
        } else {
            value_ = std::make_unique<T>(*other);
        }
        return *this;
    }
    Owned& operator=(Owned&&) noexcept = default;
    ~Owned() = default;

    T& operator*() const { return *value_; }
    T* operator->() const { return value_.get(); }
    [[nodiscard]] T* get() const { return value_.get(); }

private:
    std::unique_ptr<T> value_;
};

} // namespace jostle
