#include "standalone/pictures/film.h"

#include <QBuffer>
#include <QByteArray>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "preview/image_painter.h"

namespace jostle::standalone {

namespace {

constexpr int stillSide = 960; // pixels
constexpr int filmSide = 640;

/// Hundredths of a second from the start to a frame.
int hundredthsAt(int frame, double fps) {
    return static_cast<int>(std::lround(std::min(100.0 * frame / fps, 1.0e9)));
}

} // namespace

std::string stillPicture(const Scene& scene, int frame, const PictureLook& look) {
    const ViewTransform view = viewOf(scene, look, stillSide);
    SceneDrawing sceneDrawing;
    Drawing drawing;
    sceneDrawing.draw({scene, {}, frame}, look.options, look.style, view, drawing);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    const QImage image = paintedImage(drawing, view);
    const bool isSaved = !image.isNull() && buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "PNG");
    return isSaved ? bytes.toStdString() : std::string();
}

int leastInterval(double fps) {
    constexpr double fastest = 50.0; // pictures per second
    return static_cast<int>(std::clamp(std::ceil(fps / fastest), 1.0, 1000.0));
}

std::optional<PictureKind> pictureKind(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    for (char& c : extension) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    if (extension == ".png") {
        return PictureKind::Still;
    }
    return extension == ".gif" ? std::optional(PictureKind::Moving) : std::nullopt;
}

void Film::start(const Scene& scene, int frame) {
    firstFrame_ = frame;
    interval_ = interval_ > 0 ? interval_ : leastInterval(scene.fps);
    view_ = viewOf(scene, look_, filmSide);
    image_ = QImage(static_cast<int>(view_.width), static_cast<int>(view_.height), QImage::Format_RGB32);
    writer_ = std::make_unique<GifWriter>(image_.width(), image_.height());
}

void Film::add(const Scene& scene, int frame) {
    if (!writer_) {
        start(scene, frame);
    }
    const int since = frame - firstFrame_;
    if (since % interval_ != 0 || image_.isNull()) {
        return;
    }
    sceneDrawing_.draw({scene, {}, frame}, look_.options, look_.style, view_, drawing_);
    paintImage(drawing_, view_, image_);
    // Rows of this format have no gaps.
    const auto* const pixels = reinterpret_cast<const std::uint32_t*>(image_.constBits());
    const auto count = static_cast<std::size_t>(image_.width()) * static_cast<std::size_t>(image_.height());
    const int stay = hundredthsAt(since + interval_, scene.fps) - hundredthsAt(since, scene.fps);
    pictures_ += writer_->add({pixels, count}, stay) ? 1 : 0;
}

std::string Film::finish() {
    return writer_ ? writer_->finish() : std::string();
}

} // namespace jostle::standalone
