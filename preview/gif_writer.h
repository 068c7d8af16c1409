#pragma once

#include "preview/palette.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

struct GifFileType;

namespace jostle {

/// Makes a moving picture (GIF89a) that repeats for ever. Each frame holds only the rectangle that differs from the one
/// before it, with a palette of its own, and is written at once: memory goes with the result and one frame.
class GifWriter {
public:
    /// @param width, height  pixels, 1 to 65535
    GifWriter(int width, int height);
    ~GifWriter();
    GifWriter(const GifWriter&) = delete;
    GifWriter& operator=(const GifWriter&) = delete;

    /// Adds a frame.
    /// @param pixels        0xAARRGGBB, alpha aside, row by row, width times height of them
    /// @param hundredths    of a second that it stays; programs that show it take 0 and 1 for 10
    /// @return whether the encoder took it
    bool add(std::span<const std::uint32_t> pixels, int hundredths);

    /// Ends the picture. Nothing can be added after it.
    /// @return the file's bytes; empty if an `add` failed or there was none
    [[nodiscard]] std::string finish();

private:
    struct Area {
        int left = 0;
        int top = 0;
        int right = 0; ///< past the last column
        int bottom = 0;
    };

    [[nodiscard]] Area changedArea(std::span<const std::uint32_t> pixels) const;
    bool writeHeader();
    bool writeFrame(const Area& area, std::span<const std::uint32_t> pixels, int hundredths);

    int width_;
    int height_;
    std::string bytes_;
    GifFileType* file_ = nullptr;
    bool isGood_ = false;
    std::vector<std::uint32_t> shown_; ///< the last frame; empty before the first
    std::vector<std::uint32_t> changed_;
    std::vector<std::uint8_t> line_;
    Palette palette_;
};

} // namespace jostle
