#include "host/host_string.h"

#include <algorithm>

namespace jostle {

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void append(std::string& text, char32_t point) {
    const auto tail = [&](int shift) { text += static_cast<char>(0x80 | ((point >> shift) & 0x3F)); };
    if (point < 0x80) {
        text += static_cast<char>(point);
    } else if (point < 0x800) {
        text += static_cast<char>(0xC0 | (point >> 6));
        tail(0);
    } else if (point < 0x10000) {
        text += static_cast<char>(0xE0 | (point >> 12));
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | (point >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

} // namespace

HostString::~HostString() {
    if (handle_ != nullptr)
        chain_->dispose<&AEGP_MemorySuite1::AEGP_FreeMemHandle>(handle_);
}

std::u16string HostString::units() const {
    AEGP_MemSize bytes = 0;
    void* memory = nullptr;
    if (handle_ == nullptr || !chain_->call<&AEGP_MemorySuite1::AEGP_GetMemHandleSize>(handle_, &bytes) ||
        !chain_->call<&AEGP_MemorySuite1::AEGP_LockMemHandle>(handle_, &memory))
        return {};
    std::u16string units;
    if (memory != nullptr) {
        const auto* first = static_cast<const A_UTF16Char*>(memory);
        units.assign(first, std::find(first, first + bytes / sizeof(A_UTF16Char), A_UTF16Char{0}));
    }
    chain_->dispose<&AEGP_MemorySuite1::AEGP_UnlockMemHandle>(handle_);
    return units;
}

std::string HostString::text() const {
    const std::u16string content = units();
    return utf8From(content.data(), content.size());
}

std::string utf8From(const A_UTF16Char* units, std::size_t count) {
    std::string text;
    text.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        char32_t point = units[i];
        if (isHighSurrogate(point) && i + 1 < count && isLowSurrogate(units[i + 1]))
            point = 0x10000 + ((point - 0xD800) << 10) + (units[++i] - char32_t{0xDC00});
        else if (isHighSurrogate(point) || isLowSurrogate(point))
            point = replacement;
        append(text, point);
    }
    return text;
}

} // namespace jostle
