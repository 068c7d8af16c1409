#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace jostle::standalone {

/// A vector that takes a single word while it has no elements. Most streams of a document rest, and each would hold
/// several vectors for nothing.
template<class T>
class LeanVector {
    using Items = std::vector<T>;

public:
    using value_type = T;
    using iterator = typename Items::iterator;
    using const_iterator = typename Items::const_iterator;

    LeanVector() = default;
    LeanVector(Items items) : items_{items.empty() ? nullptr : std::make_unique<Items>(std::move(items))} {}
    LeanVector(std::initializer_list<T> items) : LeanVector(Items(items)) {}
    LeanVector(const LeanVector& other) : LeanVector(other.items()) {}
    LeanVector(LeanVector&&) noexcept = default;
    LeanVector& operator=(const LeanVector& other) { return *this = LeanVector(other); }
    LeanVector& operator=(LeanVector&&) noexcept = default;
    ~LeanVector() = default;

    /// The elements as a vector; an empty one if there are none.
    [[nodiscard]] const Items& items() const {
        static const Items none;
        return items_ ? *items_ : none;
    }
    operator const Items&() const { return items(); }

    [[nodiscard]] bool empty() const { return !items_ || items_->empty(); }
    [[nodiscard]] std::size_t size() const { return items_ ? items_->size() : 0; }
    [[nodiscard]] iterator begin() { return items_ ? items_->begin() : iterator{}; }
    [[nodiscard]] iterator end() { return items_ ? items_->end() : iterator{}; }
    [[nodiscard]] const_iterator begin() const { return items_ ? items_->cbegin() : const_iterator{}; }
    [[nodiscard]] const_iterator end() const { return items_ ? items_->cend() : const_iterator{}; }
    [[nodiscard]] T* data() { return items_ ? items_->data() : nullptr; }
    [[nodiscard]] const T* data() const { return items_ ? items_->data() : nullptr; }

    // As those of a vector, so not without elements.
    [[nodiscard]] T& operator[](std::size_t index) { return (*items_)[index]; }
    [[nodiscard]] const T& operator[](std::size_t index) const { return (*items_)[index]; }
    [[nodiscard]] T& front() { return items_->front(); }
    [[nodiscard]] const T& front() const { return items_->front(); }
    [[nodiscard]] T& back() { return items_->back(); }
    [[nodiscard]] const T& back() const { return items_->back(); }
    void pop_back() { items_->pop_back(); }

    void clear() { items_.reset(); }
    void reserve(std::size_t count) { count > 0 ? own().reserve(count) : void(); }
    template<class... Arguments>
    void resize(std::size_t count, Arguments&&... arguments) {
        own().resize(count, std::forward<Arguments>(arguments)...);
    }
    template<class... Arguments>
    void assign(Arguments&&... arguments) {
        own().assign(std::forward<Arguments>(arguments)...);
    }
    void assign(std::initializer_list<T> items) { own() = items; }
    void push_back(T item) { own().push_back(std::move(item)); }
    template<class... Arguments>
    T& emplace_back(Arguments&&... arguments) {
        return own().emplace_back(std::forward<Arguments>(arguments)...);
    }
    template<class... Arguments>
    iterator insert(const_iterator at, Arguments&&... arguments) {
        const auto place = items_ ? at - items_->cbegin() : 0;
        return own().insert(items_->cbegin() + place, std::forward<Arguments>(arguments)...);
    }
    iterator insert(const_iterator at, std::initializer_list<T> items) {
        return insert(at, items.begin(), items.end());
    }
    iterator erase(const_iterator at) { return items_->erase(at); }
    iterator erase(const_iterator from, const_iterator to) { return items_ ? items_->erase(from, to) : iterator{}; }

    friend bool operator==(const LeanVector& a, const LeanVector& b) { return a.items() == b.items(); }

private:
    [[nodiscard]] Items& own() {
        if (!items_)
            items_ = std::make_unique<Items>();
        return *items_;
    }

    std::unique_ptr<Items> items_;
};

} // namespace jostle::standalone
