#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace jostle::standalone {

/// Takes a text piece by piece and hands it on in blocks, so that a large one need never be in memory as a whole.
class TextSink {
public:
    /// @param blockBytes  what is gathered before it is handed on; above 0
    explicit TextSink(std::size_t blockBytes)
        : size_(blockBytes), capacity_(blockBytes + std::min(blockBytes, mostBeyond)) {}
    TextSink(const TextSink&) = delete;
    TextSink& operator=(const TextSink&) = delete;
    virtual ~TextSink() = default;

    void write(std::string_view piece) {
        if (piece.empty())
            return;
        while (piece.size() > capacity_ - used_ || !block_) {
            const std::size_t part = block_ ? capacity_ - used_ : 0;
            if (part > 0)
                std::memcpy(block_.get() + used_, piece.data(), part);
            used_ += part;
            piece.remove_prefix(part);
            makeRoom(std::min(piece.size(), size_ / 2));
        }
        std::memcpy(block_.get() + used_, piece.data(), piece.size());
        used_ += piece.size();
    }

    /// Where at least so many characters may be put, until `take`.
    [[nodiscard]] char* room(std::size_t most) {
        if (!block_ || capacity_ - used_ < most)
            makeRoom(most);
        return block_.get() + used_;
    }
    /// Behind the room that there is; it may be more than was asked for.
    [[nodiscard]] const char* roomEnd() const { return block_.get() + capacity_; }
    /// @param end  behind what was put into the room
    void take(const char* end) { used_ = static_cast<std::size_t>(end - block_.get()); }

protected:
    /// Receives the text, in order.
    virtual void drain(std::string_view block) = 0;

    /// Hands on what was gathered; to be called at the end.
    void flush() {
        if (used_ > 0)
            drain({block_.get(), std::exchange(used_, 0)});
    }
    /// Drops what was gathered.
    void forget() { used_ = 0; }

private:
    static constexpr std::size_t mostBeyond = 16384; ///< bytes

    // Blocks of just their size are handed on, as long as there is one: a file that grows by other pieces costs up to
    // twice as much.
    void makeRoom(std::size_t most) {
        const std::size_t whole = used_ - used_ % size_;
        if (whole > 0) {
            drain({block_.get(), whole});
            std::memmove(block_.get(), block_.get() + whole, used_ - whole);
            used_ -= whole;
        }
        if (block_ && capacity_ - used_ >= most)
            return;
        while (capacity_ - used_ < most)
            capacity_ *= 2;
        std::unique_ptr<char[]> larger(new char[capacity_]); // not cleared: that would touch it all
        if (used_ > 0)
            std::memcpy(larger.get(), block_.get(), used_);
        block_ = std::move(larger);
    }

    std::unique_ptr<char[]> block_;
    std::size_t size_;     ///< of what is handed on, but for the end
    std::size_t capacity_; ///< of the block: what goes beyond that size waits for the next one
    std::size_t used_ = 0;
};

/// Gathers the text in a string.
class StringSink : public TextSink {
public:
    StringSink() : TextSink(4096) {}
    /// All of it; only once.
    [[nodiscard]] std::string text() {
        flush();
        return std::move(text_);
    }

private:
    void drain(std::string_view block) override { text_ += block; }

    std::string text_;
};

} // namespace jostle::standalone
