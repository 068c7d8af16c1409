#include "preview/draw_style.h"

#include <algorithm>

namespace jostle {

namespace {

std::uint8_t channel(float value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0.0f, 1.0f) * 255.0f + 0.5f);
}

std::uint8_t mixed(std::uint8_t from, std::uint8_t to, float amount) {
    const auto start = static_cast<float>(from);
    return static_cast<std::uint8_t>(start + (static_cast<float>(to) - start) * amount + 0.5f);
}

/// Contrast of two colours from 1 to 21: (lighter + 0.05) / (darker + 0.05), as the Web Content Accessibility
/// Guidelines define it.
float contrast(Rgba a, Rgba b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05f) / (darker + 0.05f);
}

} // namespace

Rgba toRgba(const Rgb& color) {
    return {channel(color[0]), channel(color[1]), channel(color[2]), 255};
}

float luminance(Rgba color) {
    // The curve of sRGB taken as a square, which is near enough and cheap.
    const auto linear = [](std::uint8_t value) {
        const float share = static_cast<float>(value) / 255.0f;
        return share * share;
    };
    return 0.2126f * linear(color.red) + 0.7152f * linear(color.green) + 0.0722f * linear(color.blue);
}

Rgba mix(Rgba from, Rgba to, float amount) {
    return {mixed(from.red, to.red, amount), mixed(from.green, to.green, amount), mixed(from.blue, to.blue, amount),
            from.alpha};
}

Rgba inkOn(Rgba background) {
    const Rgba white{255, 255, 255, 255};
    const Rgba black{0, 0, 0, 255};
    return contrast(white, background) >= contrast(black, background) ? white : black;
}

Rgba readableOn(Rgba color, Rgba background) {
    constexpr float enough = 2.5f;
    constexpr int steps = 10;
    const Rgba ink = inkOn(background);
    for (int step = 0; step < steps; ++step) {
        const Rgba candidate = mix(color, ink, static_cast<float>(step) / float{steps});
        if (contrast(candidate, background) >= enough) {
            return candidate;
        }
    }
    return ink;
}

} // namespace jostle
