#pragma once

#include <memory>
#include <optional>
#include <string>

#include "preview/gif_writer.h"
#include "preview/scene_drawing.h"
#include "standalone/pictures/picture_look.h"

#include <QImage>

namespace jostle::standalone {

/// One frame of a scene as a picture.
/// @param frame  that its world stands at
/// @return the bytes of a PNG file; empty if there is no memory for it
[[nodiscard]] std::string stillPicture(const Scene& scene, int frame, const PictureLook& look);

/// The smallest number of frames from one picture to the next for which programs that show a GIF keep its pace: it
/// counts in hundredths of a second, and one alone is taken for ten.
[[nodiscard]] int leastInterval(double fps);

enum class PictureKind { Still, Moving };

/// What a file's extension asks for: .png or .gif, in capitals or small; nothing if it is another.
[[nodiscard]] std::optional<PictureKind> pictureKind(const std::string& path);

/// Frames of a scene as they come, as a moving picture.
class Film {
public:
    /// @param interval  in frames, from one picture to the next; 0 for the least that a GIF can show
    Film(const PictureLook& look, int interval) : look_(look), interval_(interval) {}

    /// Takes a frame, unless it lies between two pictures.
    /// @param frame  that the scene's world stands at, one after the other
    void add(const Scene& scene, int frame);

    [[nodiscard]] int pictures() const { return pictures_; }
    /// Whether no frame was ever offered.
    [[nodiscard]] bool isEmpty() const { return !writer_; }

    /// @return the bytes of a GIF file; empty if nothing was taken or it could not be encoded
    [[nodiscard]] std::string finish();

private:
    void start(const Scene& scene, int frame);

    PictureLook look_;
    int interval_;
    int firstFrame_ = 0;
    int pictures_ = 0;
    ViewTransform view_;
    SceneDrawing sceneDrawing_;
    Drawing drawing_;
    QImage image_;
    std::unique_ptr<GifWriter> writer_;
};

} // namespace jostle::standalone
