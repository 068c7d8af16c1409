// Prints hashes of a scene at several tolerances and frames, for tests/engine/same_bits.cmake, which compares what two
// builds of the engine print.

#include "tests/engine/engine_scenes.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

int printHashes(const std::string& name, int size, const std::vector<int>& frames) {
    for (const float slop : {0.005f, 0.001f, 0.02f}) {
        b2_linearSlop = slop;
        b2_polygonRadius = 2.0f * slop;
        const std::unique_ptr<EngineScene> scene = makeEngineScene(name, size);
        if (!scene) {
            std::fprintf(stderr, "scene_hashes: no scene is called %s\n", name.c_str());
            return 1;
        }
        int frame = 0;
        for (const int end : frames) {
            for (; frame < end; ++frame) {
                scene->advance();
            }
            std::printf("%s slop %d um frame %d: %016" PRIx64 "\n", name.c_str(), static_cast<int>(slop * 1e6f + 0.5f),
                        frame, scene->hash());
        }
    }
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    if (count < 4) {
        std::fputs("usage: scene_hashes SCENE SIZE FRAME...\n"
                   "SIZE is in hundredths of the full scene; frames rise. Scenes:",
                   stderr);
        for (const std::string_view name : engineSceneNames()) {
            std::fprintf(stderr, " %.*s", static_cast<int>(name.size()), name.data());
        }
        std::fputc('\n', stderr);
        return 2;
    }
    std::vector<int> frames;
    for (int i = 3; i < count; ++i) {
        frames.push_back(std::atoi(arguments[i]));
    }
    return printHashes(arguments[1], std::atoi(arguments[2]), frames);
}
