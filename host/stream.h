#pragma once

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/chain.h"

namespace jostle {

/// Whether a stream's value is what the host shows, or the value under its expression.
enum class Expressions : A_Boolean { Applied = 0, Ignored = 1 };

/// The host's own name of a kind of stream, ASCII and never translated. Empty if the host gave none.
class MatchName {
public:
    MatchName() = default;
    explicit MatchName(const std::array<A_char, AEGP_MAX_STREAM_MATCH_NAME_SIZE>& text) : text_(text) {
        text_.back() = '\0';
    }

    operator std::string_view() const { return text_.data(); }
    friend bool operator==(const MatchName& name, std::string_view text) { return std::string_view(name) == text; }

private:
    std::array<A_char, AEGP_MAX_STREAM_MATCH_NAME_SIZE> text_{};
};

/// A stream's value as the host handed it out. Disposed of at the end of its life.
class StreamValue {
public:
    StreamValue() = default;
    StreamValue(HostChain& chain, const AEGP_StreamValue2& record) : chain_(&chain), record_(record) {}
    StreamValue(StreamValue&& other) noexcept;
    StreamValue& operator=(StreamValue&& other) noexcept;
    ~StreamValue();

    /// Whether the host gave it.
    [[nodiscard]] bool exists() const { return chain_ != nullptr; }

    /// First component; zero, unless the host gave the value.
    [[nodiscard]] double number() const { return record_.val.one_d; }
    /// First two components; zero, unless the host gave the value.
    [[nodiscard]] AEGP_TwoDVal point() const { return record_.val.two_d; }
    /// Of a colour's stream.
    [[nodiscard]] AEGP_ColorVal color() const { return record_.val.color; }
    /// Of a mask's or a path's outline; null, unless the host gave the value. Borrowed from this object.
    [[nodiscard]] AEGP_MaskOutlineValH outline() const { return record_.val.mask; }

    /// Replaces one component, and keeps whatever else the value holds.
    void setNumber(double number) { record_.val.one_d = number; }
    /// Replaces the first two components, and keeps whatever else the value holds.
    void setPoint(AEGP_TwoDVal point) { record_.val.two_d = point; }

    [[nodiscard]] const AEGP_StreamValue2& record() const { return record_; }

private:
    void dispose();

    HostChain* chain_ = nullptr; ///< null if there is nothing to dispose of
    AEGP_StreamValue2 record_{};
};

/// A reference to one property of a layer, or to a group of them. Disposed of at the end of its life.
///
/// Adding, removing or reordering streams may invalidate it. All times are composition times. After the chain has
/// failed questions are answered with zero, false or nothing, and changes are not made.
class Stream {
public:
    Stream() = default;
    Stream(HostChain& chain, AEGP_StreamRefH handle) : chain_(&chain), handle_(handle) {}
    Stream(Stream&& other) noexcept;
    Stream& operator=(Stream&& other) noexcept;
    ~Stream();

    [[nodiscard]] bool exists() const { return handle_ != nullptr; }
    [[nodiscard]] AEGP_StreamRefH handle() const { return handle_; }

    [[nodiscard]] StreamValue valueAt(A_Time time, Expressions expressions) const;
    [[nodiscard]] int keyCount() const;
    [[nodiscard]] A_Time keyTime(int index) const;
    /// Whether keyframes or an expression change it.
    [[nodiscard]] bool isTimeVarying() const;
    [[nodiscard]] bool isExpressionEnabled() const;

    void disableExpression() const;
    void deleteKeys() const;
    /// For a stream without keyframes.
    void setValue(const StreamValue& value) const;

    /// Whether this stream's dimensions are keyed each on its own, through `follower`.
    [[nodiscard]] bool hasSeparatedDimensions() const;
    /// @param dimension  0 x, 1 y
    [[nodiscard]] Stream follower(A_short dimension) const;

    /// The child of that match name, or none: a missing one is no error.
    [[nodiscard]] Stream child(const char* matchName) const;
    [[nodiscard]] int childCount() const;
    [[nodiscard]] Stream childAt(int index) const;
    [[nodiscard]] MatchName matchName() const;
    /// What the user sees.
    [[nodiscard]] std::u16string shownName() const;
    /// Whether it has children rather than a value.
    [[nodiscard]] bool isGroup() const;

    /// Takes a child of an indexed group out of it, such as a mask.
    void remove() const;
    /// Leaves the reference to somebody else, who disposes of it.
    [[nodiscard]] AEGP_StreamRefH release() { return std::exchange(handle_, nullptr); }

private:
    void dispose();

    HostChain* chain_ = nullptr;
    AEGP_StreamRefH handle_ = nullptr;
};

/// A child of a group of streams, with its match name.
struct NamedStream {
    Stream stream;
    MatchName matchName;
};

/// The children of a group, in order; those that the host gave until the chain failed.
[[nodiscard]] std::vector<NamedStream> childrenOf(const Stream& group);

/// Keyframes that are added to a stream all at once. Without `commit` they are discarded at the end of its life.
class KeyframeBatch {
public:
    KeyframeBatch(HostChain& chain, const Stream& stream);
    ~KeyframeBatch() { end(false); }
    KeyframeBatch(const KeyframeBatch&) = delete;
    KeyframeBatch& operator=(const KeyframeBatch&) = delete;

    /// Between the keys nothing else may be asked of the chain.
    /// @param time  composition time; a batch has one key at a time
    void add(A_Time time, const StreamValue& value) {
        if (handle_ == nullptr)
            return;
        A_long index = 0;
        A_Err error = add_(handle_, AEGP_LTimeMode_CompTime, &time, &index);
        if (error == A_Err_NONE)
            error = set_(handle_, index, &value.record());
        if (error != A_Err_NONE)
            giveUp(error);
    }
    /// Makes the keys appear, unless the chain has failed meanwhile.
    void commit() { end(!chain_->failed()); }

private:
    void giveUp(A_Err error);
    void end(bool commit);

    HostChain* chain_;
    AEGP_AddKeyframesInfoH handle_ = nullptr;
    decltype(AEGP_KeyframeSuite4::AEGP_AddKeyframes) add_;
    decltype(AEGP_KeyframeSuite4::AEGP_SetAddKeyframe) set_;
};

} // namespace jostle
