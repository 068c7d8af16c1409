// How long a frame's draw list takes: 1000 bodies of 10 triangles each, turning, so that every corner is placed anew.
//
// Prints the median and the greatest processor time of one list over the frames, how many allocations the frames after
// the first made, and what the list holds; then the same with all view options on, and the time to paint the first
// into an image.
//
//     draw_benchmark [frames]
//
// Ends with 1 if the median is over the limit or a warm frame allocates, and with 2 if there are too few frames.

#include "benchmarks/measure.h"
#include "preview/image_painter.h"
#include "preview/scene_drawing.h"
#include "simulation/simulation_clock.h"
#include "tests/support/scenes.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <utility>
#include <vector>

namespace {

std::atomic<long> allocations{0};

} // namespace

void* operator new(std::size_t size) {
    ++allocations;
    if (void* const memory = std::malloc(size > 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using namespace jostle;

constexpr double greatestMedian = 2000.0; // microseconds
constexpr int leastFrames = 20;

double threadMicroseconds() {
    return 1e3 * processorMilliseconds(CLOCK_THREAD_CPUTIME_ID);
}

/// A star of five rays in ten triangles about its middle.
std::vector<ShapeDef> starOfTen() {
    std::vector<b2Vec2> rim;
    for (int i = 0; i < 10; ++i) {
        const float angle = b2_pi * static_cast<float>(i) / 5.0f;
        const float reach = i % 2 == 0 ? 0.2f : 0.1f;
        rim.push_back({reach * std::cos(angle), reach * std::sin(angle)});
    }
    std::vector<ShapeDef> triangles;
    for (std::size_t i = 0; i < rim.size(); ++i) {
        triangles.push_back(outlineShape({{0, 0}, rim[i], rim[(i + 1) % rim.size()]}, true));
    }
    return triangles;
}

/// Stars that turn where they are, all kinds of bodies among them.
Scene turningStars() {
    constexpr int count = 1000;
    constexpr int columns = 40;
    Scene scene = weightlessScene();
    for (int i = 0; i < count; ++i) {
        const auto column = static_cast<float>(i % columns);
        const auto row = static_cast<float>(i / columns);
        const BodyType type = i % 20 == 0 ? BodyType::Static : i % 20 == 1 ? BodyType::Dormant : BodyType::Dynamic;
        BodyRecord& star = addBody(scene, {0.45f * (column - 19.5f), 0.4f * (row - 12.0f)}, starOfTen(), type);
        star.angularVelocity = 1.0f;
        const float share = static_cast<float>(i) / float{count};
        star.userData->color = {share, 1.0f - share, 0.5f};
        star.userData->selected = i % 50 == 5;
    }
    return scene;
}

struct Result {
    double median = 0.0; ///< microseconds
    double greatest = 0.0;
    long allocations = 0; ///< in all frames but the first
};

Result measure(Scene& scene, const ViewOptions& options, int frames, Drawing& drawing, ViewTransform& view) {
    StillLayers layers;
    FreePacer pacer;
    SimulationClock clock(scene, layers, pacer);
    SceneDrawing sceneDrawing;
    std::vector<double> times;
    Result result;
    clock.playFromStart();
    for (int frame = -1; frame < frames; ++frame) {
        clock.tick();
        const long before = allocations;
        const double start = threadMicroseconds();
        sceneDrawing.draw({scene, {}, clock.frame()}, options, DrawStyle(), view, drawing);
        const double time = threadMicroseconds() - start;
        const long made = allocations - before;
        if (frame >= 0) {
            times.push_back(time);
            result.allocations += made;
        }
    }
    result.greatest = *std::max_element(times.begin(), times.end());
    result.median = median(std::move(times));
    return result;
}

void print(const char* name, const Result& result, const Drawing& drawing) {
    std::printf("%-22s median %7.1f us, greatest %7.1f us, %ld allocations; %zu triangles, %zu lines, %zu points\n",
                name, result.median, result.greatest, result.allocations,
                (drawing.shapes.triangles.size() + drawing.overlays.triangles.size()) / 3,
                drawing.shapes.lines.size() + drawing.overlays.lines.size(),
                drawing.shapes.points.size() + drawing.overlays.points.size());
}

} // namespace

int main(int argc, char** argv) {
    const int frames = argument(argc, argv, 1, 300);
    if (frames < leastFrames) {
        std::fprintf(stderr, "draw_benchmark: give at least %d frames\n", leastFrames);
        return 2;
    }
    Scene scene = turningStars();
    ViewTransform view;
    view.zoomToFit();
    Drawing drawing;
    ViewOptions all;
    all.mesh = all.boundingBox = all.localAxes = true;
    print("with all view options", measure(scene, all, frames, drawing, view), drawing);
    Drawing usual;
    const Result result = measure(scene, ViewOptions(), frames, usual, view);
    print("as usual", result, usual);
    QImage image(static_cast<int>(view.width), static_cast<int>(view.height), QImage::Format_RGB32);
    const double start = threadMicroseconds();
    paintImage(usual, view, image);
    std::printf("%-22s %.1f ms at %d x %d\n", "into an image", 1e-3 * (threadMicroseconds() - start), image.width(),
                image.height());
    const bool isGood = result.median <= greatestMedian && result.allocations == 0;
    std::printf("%s: at most %.0f us and no allocation are wanted\n", isGood ? "good" : "BAD", greatestMedian);
    return isGood ? 0 : 1;
}
