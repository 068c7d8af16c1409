#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace jostle::standalone {

/// Takes a text piece by piece, so that a large one need never be in memory as a whole.
class TextSink {
public:
    TextSink() = default;
    TextSink(const TextSink&) = delete;
    TextSink& operator=(const TextSink&) = delete;
    virtual ~TextSink() = default;

    virtual void write(std::string_view piece) = 0;
};

/// Gathers the pieces in a string.
class StringSink : public TextSink {
public:
    void write(std::string_view piece) override { text_ += piece; }
    [[nodiscard]] std::string take() { return std::move(text_); }

private:
    std::string text_;
};

} // namespace jostle::standalone
