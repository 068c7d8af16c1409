// Runs one scene of the engine alone: engine_run SCENE FRAMES [SIZE]. Prints the processor time of the stepping thread
// in milliseconds a frame, the largest memory of the process in kilobytes, and the hash of the last frame. Built once
// with our engine and once, as engine_run_plain, with Box2D as it comes; engine_ratios.sh compares the two.

#include "benchmarks/measure.h"
#include "tests/engine/engine_scenes.h"

#include <sys/resource.h>

#include <cinttypes>
#include <cstdio>

int main(int count, char** arguments) {
    const int frames = jostle::argument(count, arguments, 2, 0);
    const int size = jostle::argument(count, arguments, 3, 100);
    const std::unique_ptr<EngineScene> scene = frames > 0 && size > 0 ? makeEngineScene(arguments[1], size) : nullptr;
    if (!scene) {
        std::fputs("usage: engine_run SCENE FRAMES [SIZE]\nSIZE is in hundredths of the full scene.\n", stderr);
        return 2;
    }
    const double start = jostle::processorMilliseconds(CLOCK_THREAD_CPUTIME_ID);
    for (int frame = 0; frame < frames; ++frame) {
        scene->advance();
    }
    const double perFrame = (jostle::processorMilliseconds(CLOCK_THREAD_CPUTIME_ID) - start) / frames;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%.4f %ld %016" PRIx64 "\n", perFrame, usage.ru_maxrss, scene->hash());
    return 0;
}
