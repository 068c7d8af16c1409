#include "preview/gif_writer.h"

#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <bit>

namespace jostle {

namespace {

constexpr std::uint32_t rgbMask = 0x00FFFFFFU;
constexpr int mostColors = 255; // one more stands for what stays as it was

int append(GifFileType* file, const GifByteType* bytes, int count) {
    static_cast<std::string*>(file->UserData)
        ->append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count));
    return count;
}

struct FreeMap {
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};

/// A palette in the file's form, whose size is a power of two, with room for one more colour.
std::unique_ptr<ColorMapObject, FreeMap> colorMap(std::span<const std::uint32_t> colors) {
    std::array<GifColorType, 256> entries{};
    for (std::size_t i = 0; i < colors.size(); ++i) {
        entries.at(i) = {static_cast<GifByteType>(colors[i] >> 16U), static_cast<GifByteType>(colors[i] >> 8U),
                         static_cast<GifByteType>(colors[i])};
    }
    const std::size_t count = std::max<std::size_t>(2, std::bit_ceil(colors.size() + 1));
    return std::unique_ptr<ColorMapObject, FreeMap>(GifMakeMapObject(static_cast<int>(count), entries.data()));
}

} // namespace

GifWriter::GifWriter(int width, int height) : width_(width), height_(height) {
    int error = 0;
    file_ = EGifOpen(&bytes_, append, &error);
    isGood_ = file_ && writeHeader();
}

GifWriter::~GifWriter() {
    if (file_) {
        int error = 0;
        EGifCloseFile(file_, &error);
    }
}

bool GifWriter::writeHeader() {
    constexpr std::array<GifByteType, 3> forEver{1, 0, 0};
    EGifSetGifVersion(file_, true);
    return EGifPutScreenDesc(file_, width_, height_, 8, 0, nullptr) == GIF_OK &&
           EGifPutExtensionLeader(file_, APPLICATION_EXT_FUNC_CODE) == GIF_OK &&
           EGifPutExtensionBlock(file_, 11, "NETSCAPE2.0") == GIF_OK &&
           EGifPutExtensionBlock(file_, static_cast<int>(forEver.size()), forEver.data()) == GIF_OK &&
           EGifPutExtensionTrailer(file_) == GIF_OK;
}

GifWriter::Area GifWriter::changedArea(std::span<const std::uint32_t> pixels) const {
    if (shown_.empty()) {
        return {0, 0, width_, height_};
    }
    Area area{width_, height_, 0, 0};
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            const std::size_t i =
                static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
            if (((pixels[i] ^ shown_[i]) & rgbMask) != 0) {
                area = {std::min(area.left, x), std::min(area.top, y), std::max(area.right, x + 1), y + 1};
            }
        }
    }
    // A frame has at least one pixel.
    return area.left < area.right ? area : Area{0, 0, 1, 1};
}

bool GifWriter::add(std::span<const std::uint32_t> pixels, int hundredths) {
    const std::size_t count = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    isGood_ = isGood_ && pixels.size() == count;
    if (!isGood_) {
        return false;
    }
    isGood_ = writeFrame(changedArea(pixels), pixels, hundredths);
    shown_.assign(pixels.begin(), pixels.end());
    return isGood_;
}

bool GifWriter::writeFrame(const Area& area, std::span<const std::uint32_t> pixels, int hundredths) {
    const auto each = [&](auto&& use) {
        for (int y = area.top; y < area.bottom; ++y) {
            for (int x = area.left; x < area.right; ++x) {
                const std::size_t i =
                    static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
                use(pixels[i], shown_.empty() || ((pixels[i] ^ shown_[i]) & rgbMask) != 0);
            }
        }
    };
    changed_.clear();
    each([this](std::uint32_t pixel, bool isChanged) {
        if (isChanged) {
            changed_.push_back(pixel);
        }
    });
    palette_.fit(changed_, mostColors);
    const auto unchanged = static_cast<GifPixelType>(palette_.colors().size());
    line_.clear();
    each(
        [&](std::uint32_t pixel, bool isChanged) { line_.push_back(isChanged ? palette_.indexOf(pixel) : unchanged); });

    std::array<GifByteType, 4> control{};
    const GraphicsControlBlock block{DISPOSE_DO_NOT, false, std::clamp(hundredths, 0, 65535), unchanged};
    EGifGCBToExtension(&block, control.data());
    const auto map = colorMap(palette_.colors());
    return map &&
           EGifPutExtension(file_, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(control.size()), control.data()) ==
               GIF_OK &&
           EGifPutImageDesc(file_, area.left, area.top, area.right - area.left, area.bottom - area.top, false,
                            map.get()) == GIF_OK &&
           EGifPutLine(file_, line_.data(), static_cast<int>(line_.size())) == GIF_OK;
}

std::string GifWriter::finish() {
    int error = 0;
    const bool hasFrames = isGood_ && !shown_.empty();
    const bool isClosed = file_ && EGifCloseFile(file_, &error) == GIF_OK;
    file_ = nullptr;
    isGood_ = false;
    return hasFrames && isClosed ? std::move(bytes_) : std::string();
}

} // namespace jostle
