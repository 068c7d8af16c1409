// What the tick adds to the steps that it makes.
//
// Each scene is built twice from the same records. One copy is played by the clock; the other's world is stepped by
// itself, with the same gravity, the same spring forces and as many steps a frame. The two run frame by frame in turns,
// so that whatever else the machine does falls on both alike, and every frame counts the processor time of this thread.
// Rounds are alike to the bit, so that each frame keeps the least time of all rounds. Printed are the medians over the
// frames, their ratio, the ratio of the sums, and the time that the clock takes to build its world anew.
//
//     tick_benchmark [rounds] [frames]

#include "simulation/joints.h"
#include "simulation/simulation_clock.h"
#include "simulation/world_builder.h"
#include "tests/support/scenes.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <ctime>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace jostle;

double threadMicroseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return 1e6 * static_cast<double>(time.tv_sec) + 1e-3 * static_cast<double>(time.tv_nsec);
}

template<class Work>
double timed(Work work) {
    const double start = threadMicroseconds();
    work();
    return threadMicroseconds() - start;
}

/// The engine alone: what nobody could do without.
class BareWorld {
public:
    explicit BareWorld(Scene scene) : scene_(std::move(scene)), world_(createWorld()) { buildWorld(scene_, *world_); }

    void stepFrame() {
        const int steps = scene_.globals.stepsPerFrame;
        const auto stepTime = static_cast<float>(1.0 / scene_.fps / steps);
        for (int i = 0; i < steps; ++i) {
            world_->Step(stepTime, 10, 10);
        }
        applySprings(scene_);
    }

private:
    Scene scene_;
    std::unique_ptr<b2World> world_;
};

struct FrameTimes {
    std::vector<double> tick; ///< microseconds of each frame
    std::vector<double> bare;
};

void keepLeast(std::vector<double>& least, std::size_t frame, double time) {
    if (frame == least.size()) {
        least.push_back(time);
    } else {
        least[frame] = std::min(least[frame], time);
    }
}

/// A clock with all it needs.
struct Played {
    explicit Played(Scene s) : scene(std::move(s)), clock(scene, layers, pacer) { clock.playFromStart(); }
    Scene scene;
    StillLayers layers;
    FreePacer pacer;
    SimulationClock clock;
};

void runRound(const Scene& scene, int frames, bool tickFirst, FrameTimes& times) {
    // Built in turns too: where a world lies in memory counts for a few hundredths.
    std::optional<BareWorld> bare;
    if (!tickFirst) {
        bare.emplace(scene);
    }
    Played played(scene);
    if (tickFirst) {
        bare.emplace(scene);
    }
    for (int i = 0; i < frames; ++i) {
        const auto frame = static_cast<std::size_t>(i);
        const auto tick = [&] { keepLeast(times.tick, frame, timed([&] { played.clock.tick(); })); };
        const auto step = [&] { keepLeast(times.bare, frame, timed([&] { bare->stepFrame(); })); };
        // In turns, as the first of the two finds a colder cache.
        if ((i % 2 == 0) == tickFirst) {
            tick();
            step();
        } else {
            step();
            tick();
        }
    }
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double sum(const std::vector<double>& values) {
    double total = 0;
    for (const double value : values) {
        total += value;
    }
    return total;
}

/// Microseconds to throw a world away and build the next one, in a playing clock.
double rebuildTime(const Scene& scene) {
    Played played(scene);
    std::vector<double> times;
    for (int i = 0; i < 9; ++i) {
        times.push_back(timed([&] { played.clock.playFromStart(); }));
    }
    return median(times);
}

void compare(const char* name, const Scene& scene, int rounds, int frames) {
    FrameTimes times;
    for (int i = 0; i < rounds; ++i) {
        runRound(scene, frames, i % 2 == 0, times);
    }
    const double tick = median(times.tick);
    const double bare = median(times.bare);
    std::printf("%-8s %12.1f %12.1f %9.4f %9.4f %12.1f\n", name, tick, bare, tick / bare,
                sum(times.tick) / sum(times.bare), rebuildTime(scene));
    std::fflush(stdout);
}

int argument(int argc, char** argv, int index, int otherwise) {
    int value = otherwise;
    if (index < argc) {
        const std::string_view text = argv[index];
        (void)std::from_chars(text.data(), text.data() + text.size(), value);
    }
    return std::max(value, 1);
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = argument(argc, argv, 1, 5);
    const int frames = argument(argc, argv, 2, 120);
    std::printf("%-8s %12s %12s %9s %9s %12s\n", "scene", "tick us", "bare us", "median", "total", "rebuild us");
    compare("pyramid", boxPyramid(), rounds, frames);
    compare("stars", starsInBowl(), rounds, std::min(frames, 120));
    compare("circles", circlesInBox(), rounds, frames);
    compare("chain", chainOfPivots(), rounds, frames);
    compare("rebuild", starsInBowl(300), 1, 2);
}
