// What the tick adds to the steps that it makes.
//
// Each scene is built twice from the same records. One copy is played by the clock; the other's world is stepped by
// itself, with the same gravity and as many steps a frame. Springs are forces that the tick adds: the bare world gets
// the same ones, so that both move alike to the bit, but outside the time that is taken. The two run frame by frame in
// turns, so that whatever else the machine does falls on both alike, and every frame counts the processor time of this
// thread. Rounds are alike, so that each frame keeps the least time of all rounds. Printed are the medians over the
// frames, their ratio, the ratio of the sums, which is held against the limit, and the time that the clock takes to
// build its world anew, which may be that of two bare steps.
//
//     tick_benchmark [rounds] [frames]
//
// Ends with 1 if a scene is over the limit, and with 2 if there are too few rounds or frames to tell.

#include "benchmarks/bare_world.h"
#include "benchmarks/measure.h"
#include "simulation/joints.h"
#include "simulation/simulation_clock.h"
#include "tests/support/scenes.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <utility>
#include <vector>

namespace {

using namespace jostle;

constexpr double greatestRatio = 1.03;
constexpr int leastRounds = 5;
constexpr int leastFrames = 20;

double threadMicroseconds() {
    return 1e3 * processorMilliseconds(CLOCK_THREAD_CPUTIME_ID);
}

template<class Work>
double timed(Work work) {
    const double start = threadMicroseconds();
    work();
    return threadMicroseconds() - start;
}

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
        const auto step = [&] {
            keepLeast(times.bare, frame, timed([&] { bare->stepFrame(); }));
            applySprings(bare->scene());
        };
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

/// @return whether the tick stays within the limit
bool compare(const char* name, const Scene& scene, int rounds, int frames) {
    FrameTimes times;
    for (int i = 0; i < rounds; ++i) {
        runRound(scene, frames, i % 2 == 0, times);
    }
    const double tick = median(times.tick);
    const double bare = median(times.bare);
    const double ratio = sum(times.tick) / sum(times.bare);
    const bool isWithin = ratio <= greatestRatio;
    std::printf("%-8s %12.1f %12.1f %9.4f %9.4f %12.1f  %s\n", name, tick, bare, tick / bare, ratio, rebuildTime(scene),
                isWithin ? "within" : "OVER");
    std::fflush(stdout);
    return isWithin;
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = argument(argc, argv, 1, leastRounds);
    const int frames = argument(argc, argv, 2, 120);
    if (rounds < leastRounds || frames < leastFrames) {
        std::fprintf(stderr, "usage: tick_benchmark [rounds, at least %d] [frames, at least %d]\n", leastRounds,
                     leastFrames);
        return 2;
    }
    std::printf("%-8s %12s %12s %9s %9s %12s  limit of total %.2f\n", "scene", "tick us", "bare us", "median", "total",
                "rebuild us", greatestRatio);
    bool isWithin = compare("pyramid", boxPyramid(), rounds, frames);
    isWithin = compare("stars", starsInBowl(), rounds, frames) && isWithin;
    isWithin = compare("circles", circlesInBox(), rounds, frames) && isWithin;
    isWithin = compare("chain", chainOfPivots(), rounds, frames) && isWithin;
    FrameTimes large;
    runRound(starsInBowl(300), 10, true, large);
    std::printf("300 stars: rebuild %.1f us, two bare steps %.1f us\n", rebuildTime(starsInBowl(300)),
                median(large.bare));
    return isWithin ? 0 : 1;
}
