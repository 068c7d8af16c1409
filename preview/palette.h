#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace jostle {

/// A few colours for many, by median cut: all colours begin in one box, and the box whose colours differ most is cut in
/// two, over and over. Equal pixels give equal palettes.
/// Source: P. Heckbert, "Color image quantization for frame buffer display", Computer Graphics 16 (1982), 297-307.
class Palette {
public:
    Palette();

    /// Finds the colours for some pixels.
    /// @param pixels  0xAARRGGBB, alpha aside
    /// @param most    number of colours, at least 1
    void fit(std::span<const std::uint32_t> pixels, std::size_t most);

    /// 0x00RRGGBB, at least one.
    [[nodiscard]] std::span<const std::uint32_t> colors() const { return colors_; }
    /// The place in `colors` for one of the pixels that were given to `fit`.
    [[nodiscard]] std::uint8_t indexOf(std::uint32_t pixel) const { return indices_[cellOf(pixel)]; }

private:
    /// All pixels whose channels agree in their first five bits.
    struct Cell {
        std::uint64_t count = 0;
        std::array<std::uint64_t, 3> sums{}; ///< of the channels
    };
    /// Used cells from `first` to before `end`.
    struct Box {
        std::size_t first = 0;
        std::size_t end = 0;
        std::uint64_t weight = 0; ///< how much is won by cutting it
        int channel = 0;          ///< along which to cut
    };

    static std::size_t cellOf(std::uint32_t pixel);
    void measure(Box& box) const;
    void cutBoxes(std::size_t most);
    [[nodiscard]] std::uint32_t mean(const Box& box) const;

    std::vector<Cell> cells_;
    std::vector<std::uint16_t> used_;
    std::vector<std::uint8_t> indices_; ///< by cell
    std::vector<Box> boxes_;
    std::vector<std::uint32_t> colors_;
};

} // namespace jostle
