// Do the two painters show the same? painter_check [--light] [--to FOLDER] [--frames A,B,C] FILE [SETTINGS.xml]..., on
// a display with OpenGL (xvfb-run).
//
// Shows each Lottie file, with the settings file that follows it if one does, in the preview of the window: once with
// OpenGL and once with the image painter. Prints for each frame (0, 30 and 90 unless others are given) the mean
// difference of all channels in percent, and how many pixels are far off. With --to both pictures are kept there.
// Ends with 1 if a mean difference is over the limit, and with 2 if a file cannot be read or there is no OpenGL.

#include "host/host_layer_motion.h"
#include "host/layer_import.h"
#include "preview/preview_widget.h"
#include "standalone/commands/load.h"
#include "standalone/commands/settings_input.h"
#include "standalone/suites/document_host.h"
#include "tests/support/picture_difference.h"

#include <QApplication>
#include <QLabel>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace jostle;
namespace fs = std::filesystem;

constexpr double greatestDifference = 0.02;
constexpr int farOff = 64; // of 255, in some channel

struct Wanted {
    std::vector<std::pair<std::string, std::string>> files; ///< with their settings
    QStringList frames{"0", "30", "90"};
    std::string folder;
    bool light = false;
};

Wanted wantedBy(const QStringList& arguments) {
    Wanted wanted;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == "--light") {
            wanted.light = true;
        } else if (argument == "--to" && i + 1 < arguments.size()) {
            wanted.folder = arguments[++i].toStdString();
        } else if (argument == "--frames" && i + 1 < arguments.size()) {
            wanted.frames = arguments[++i].split(',');
        } else if (argument.endsWith(".xml") && !wanted.files.empty()) {
            wanted.files.back().second = argument.toStdString();
        } else {
            wanted.files.emplace_back(argument.toStdString(), "");
        }
    }
    return wanted;
}

int farOffPixels(const QImage& a, const QImage& b) {
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            count += std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                               std::abs(qBlue(p) - qBlue(q))}) > farOff
                         ? 1
                         : 0;
        }
    }
    return count;
}

/// A scene in two previews.
class Pair {
public:
    Pair(Scene scene, LayerMotion& layers, bool light) : simulation_(std::move(scene), layers) {
        for (const auto painter : {PreviewWidget::Painter::WhatWorks, PreviewWidget::Painter::Image}) {
            auto& preview = *previews_.emplace_back(std::make_unique<PreviewWidget>(simulation_, painter));
            preview.resize(960, 540);
            preview.show();
            DrawStyle style = preview.style();
            style.background = light ? Rgba{244, 244, 244, 255} : style.background;
            preview.setStyle(style);
            for (auto* const note : preview.findChildren<QLabel*>()) {
                note->hide();
            }
        }
        QApplication::processEvents();
        simulation_.selection().setBodies({0});
    }
    [[nodiscard]] bool usesOpenGl() const { return previews_.front()->usesOpenGl(); }
    [[nodiscard]] std::pair<QImage, QImage> at(int frame) {
        simulation_.showFrame(frame);
        while (simulation_.isCatchingUp()) {
            simulation_.updatePhysics();
        }
        const auto picture = [](PreviewWidget& preview) {
            preview.zoomToFit();
            return preview.grab().toImage().convertToFormat(QImage::Format_RGB32);
        };
        return {picture(*previews_.front()), picture(*previews_.back())};
    }

private:
    SimulationView simulation_;
    std::vector<std::unique_ptr<PreviewWidget>> previews_;
};

/// @return exit status
int check(const std::string& file, const std::string& settings, const Wanted& wanted) {
    std::optional<standalone::LoadedDocument> document = standalone::loadDocument(file);
    if (!document) {
        return 2;
    }
    const std::string name = fs::path(file).stem().string();
    standalone::DocumentHost host(std::move(document->composition), name, file);
    const HostContext context{host.basic(), host.pluginId()};
    Scene scene;
    const ImportReport report = initFromComposition(context, scene);
    SnapshotStrip unused;
    const SettingsTarget target{scene, unused, standalone::layerAccess(context, scene, report, nullptr)};
    if (report.error != A_Err_NONE ||
        (!settings.empty() && !standalone::applySettingsFile(context, settings, target, false))) {
        return 2;
    }
    const int bodies = scene.bodyCount();
    HostLayerMotion motion(context);
    Pair pair(std::move(scene), motion, wanted.light);
    if (!pair.usesOpenGl()) {
        std::fprintf(stderr, "painter_check: this display has no OpenGL\n");
        return 2;
    }
    bool isGood = true;
    for (const QString& frame : wanted.frames) {
        const auto [card, image] = pair.at(frame.toInt());
        const double mean = test::difference(card, image);
        isGood = isGood && mean <= greatestDifference;
        std::printf("%-45s %3d bodies, frame %3d: mean %.3f %%, %5d pixels far off\n", name.c_str(), bodies,
                    frame.toInt(), 100.0 * mean, farOffPixels(card, image));
        if (!wanted.folder.empty()) {
            const std::string start = (fs::path(wanted.folder) / (name + "-" + frame.toStdString())).string();
            card.save(QString::fromStdString(start + "-opengl.png"));
            image.save(QString::fromStdString(start + "-image.png"));
        }
    }
    return isGood ? 0 : 1;
}

} // namespace

int main(int count, char** arguments) {
    const QApplication application(count, arguments);
    const Wanted wanted = wantedBy(QApplication::arguments());
    int status = wanted.files.empty() ? 2 : 0;
    for (const auto& [file, settings] : wanted.files) {
        status = std::max(status, check(file, settings, wanted));
    }
    return status;
}
