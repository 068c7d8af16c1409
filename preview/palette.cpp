#include "preview/palette.h"

#include <algorithm>

namespace jostle {

namespace {

constexpr unsigned bits = 5; // of each channel that tell cells apart
constexpr std::size_t cellCount = std::size_t{1} << (3 * bits);

std::uint32_t channelOf(std::uint32_t pixel, int channel) {
    return (pixel >> (16U - 8U * static_cast<unsigned>(channel))) & 0xFFU;
}

/// The channel's bits in a cell's number.
std::uint32_t levelOf(std::uint16_t cell, int channel) {
    return (std::uint32_t{cell} >> (2 * bits - bits * static_cast<unsigned>(channel))) & ((1U << bits) - 1U);
}

} // namespace

Palette::Palette() : cells_(cellCount), indices_(cellCount) {}

std::size_t Palette::cellOf(std::uint32_t pixel) {
    std::size_t cell = 0;
    for (int channel = 0; channel < 3; ++channel) {
        cell = cell << bits | channelOf(pixel, channel) >> (8U - bits);
    }
    return cell;
}

void Palette::fit(std::span<const std::uint32_t> pixels, std::size_t most) {
    for (const std::uint16_t cell : used_) {
        cells_[cell] = {};
    }
    used_.clear();
    for (const std::uint32_t pixel : pixels) {
        const std::size_t index = cellOf(pixel);
        Cell& cell = cells_[index];
        if (cell.count++ == 0) {
            used_.push_back(static_cast<std::uint16_t>(index));
        }
        for (int channel = 0; channel < 3; ++channel) {
            cell.sums.at(static_cast<std::size_t>(channel)) += channelOf(pixel, channel);
        }
    }
    std::sort(used_.begin(), used_.end());
    cutBoxes(std::clamp<std::size_t>(most, 1, 256));
    colors_.clear();
    for (const Box& box : boxes_) {
        for (std::size_t i = box.first; i < box.end; ++i) {
            indices_[used_[i]] = static_cast<std::uint8_t>(colors_.size());
        }
        colors_.push_back(mean(box));
    }
}

// The spread of a channel, squared, for each of its pixels: large areas are worth more than single pixels.
void Palette::measure(Box& box) const {
    std::uint64_t count = 0;
    for (std::size_t i = box.first; i < box.end; ++i) {
        count += cells_[used_[i]].count;
    }
    std::uint32_t widest = 0;
    for (int channel = 0; channel < 3; ++channel) {
        const auto [low, high] = std::minmax_element(
            used_.begin() + static_cast<std::ptrdiff_t>(box.first),
            used_.begin() + static_cast<std::ptrdiff_t>(box.end),
            [channel](std::uint16_t a, std::uint16_t b) { return levelOf(a, channel) < levelOf(b, channel); });
        const std::uint32_t spread = box.first < box.end ? levelOf(*high, channel) - levelOf(*low, channel) : 0;
        if (spread > widest) {
            widest = spread;
            box.channel = channel;
        }
    }
    box.weight = count * widest * widest;
}

void Palette::cutBoxes(std::size_t most) {
    boxes_.assign(1, Box{0, used_.size()});
    measure(boxes_.front());
    while (boxes_.size() < most) {
        const auto widest = std::max_element(boxes_.begin(), boxes_.end(),
                                             [](const Box& a, const Box& b) { return a.weight < b.weight; });
        if (widest->weight == 0) {
            break;
        }
        Box lower = *widest;
        const auto begin = used_.begin() + static_cast<std::ptrdiff_t>(lower.first);
        const auto end = used_.begin() + static_cast<std::ptrdiff_t>(lower.end);
        std::sort(begin, end, [channel = lower.channel](std::uint16_t a, std::uint16_t b) {
            return std::pair(levelOf(a, channel), a) < std::pair(levelOf(b, channel), b);
        });
        std::uint64_t count = 0;
        std::for_each(begin, end, [&](std::uint16_t cell) { count += cells_[cell].count; });
        // After the cell in which the median lies, but leaving one for the upper box.
        std::size_t cut = lower.first;
        for (std::uint64_t before = 0; cut + 1 < lower.end && (cut == lower.first || 2 * before < count); ++cut) {
            before += cells_[used_[cut]].count;
        }
        Box upper{cut, lower.end};
        lower.end = cut;
        measure(lower);
        measure(upper);
        *widest = lower;
        boxes_.push_back(upper);
    }
}

std::uint32_t Palette::mean(const Box& box) const {
    Cell sum;
    for (std::size_t i = box.first; i < box.end; ++i) {
        const Cell& cell = cells_[used_[i]];
        sum.count += cell.count;
        for (std::size_t channel = 0; channel < sum.sums.size(); ++channel) {
            sum.sums.at(channel) += cell.sums.at(channel);
        }
    }
    std::uint32_t color = 0;
    for (const std::uint64_t channel : sum.sums) {
        color = color << 8U | (sum.count == 0 ? 0U : static_cast<std::uint32_t>((channel + sum.count / 2) / sum.count));
    }
    return color;
}

} // namespace jostle
