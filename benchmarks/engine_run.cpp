// Runs one scene of the engine alone: engine_run SCENE FRAMES [SIZE]. Prints the processor time of the stepping thread
// in milliseconds a frame, the largest memory of the process in kilobytes, and the hash of the last frame. Built once
// with our engine and once, as engine_run_plain, with Box2D as it comes; engine_ratios.sh compares the two.

#include "tests/engine/engine_scenes.h"

#include <sys/resource.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

/// Processor time of this thread, in milliseconds.
double processorTime() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

} // namespace

int main(int count, char** arguments) {
    const int frames = count > 2 ? std::atoi(arguments[2]) : 0;
    const std::unique_ptr<EngineScene> scene =
        count > 2 ? makeEngineScene(arguments[1], count > 3 ? std::atoi(arguments[3]) : 100) : nullptr;
    if (!scene || frames < 1) {
        std::fputs("usage: engine_run SCENE FRAMES [SIZE]\nSIZE is in hundredths of the full scene.\n", stderr);
        return 2;
    }
    const double start = processorTime();
    for (int frame = 0; frame < frames; ++frame) {
        scene->advance();
    }
    const double perFrame = (processorTime() - start) / frames;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%.4f %ld %016" PRIx64 "\n", perFrame, usage.ru_maxrss, scene->hash());
    return 0;
}
