// What the main job adds to the steps of the engine.
//
// The job is that of the command line: a Lottie file is read, its bodies are made and played for 600 frames, and the
// keyframes go through the host's suites into a new file. Beside it a second world of the same bodies is stepped alone,
// frame by frame in turns, so that whatever else the machine does falls on both alike. Counted is the processor time
// of this process: of the job all of it from before the file is opened until the result is in its place, of the bare
// world the steps. What it takes to give all back after that is printed beside. Each scene is done several times;
// printed are the medians, the ratio of each round's two, and what is left over the steps for each keyframe. All rounds
// but the first find memory that was touched before, as the files of a batch do; what a round comes to in a process
// that has just begun is printed beside. The memory is the peak of a process that does the job once and no more, and
// beside it how far building and stepping the bare world alone raises that of another; what the first is above the
// second, divided by bodies and frames, has a limit. The engine's own memory depends on the shapes and not on the
// frames, and nothing that the job does could make it less: for compounds of many triangles it is larger than all else.
//
//     solve_benchmark [rounds] [frames] [scene]
//
// Ends with 1 if a scene is over one of the limits, and with 2 if it cannot be measured.

#include "benchmarks/bare_world.h"
#include "benchmarks/measure.h"
#include "benchmarks/solve_scenes.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/host_layer_motion.h"
#include "host/keyframe_writer.h"
#include "host/layer_import.h"
#include "persistence/overrides.h"
#include "simulation/simulation_clock.h"
#include "standalone/commands/heap.h"
#include "standalone/commands/layer_names.h"
#include "standalone/commands/load.h"
#include "standalone/commands/plugin_session.h"
#include "standalone/commands/result.h"
#include "standalone/commands/solve_summary.h"

namespace {

using namespace jostle;
using namespace jostle::standalone;

constexpr double greatestRatio = 1.03;
constexpr double mostNanosecondsPerKey = 100;
constexpr double mostBytesPerBodyAndFrame = 200;

double processMilliseconds() {
    return processorMilliseconds(CLOCK_PROCESS_CPUTIME_ID);
}

/// Milliseconds of one round, and what it came to.
struct Round {
    bool isDone = false;
    double bare = 0;   ///< of the steps alone
    double beside = 0; ///< of all that is not the job: the steps, and making the world for them
    double job = 0;
    double read = 0, simulate = 0, keyframe = 0, save = 0; ///< parts of the job
    double release = 0;                                    ///< of giving all back after it
    std::size_t keys = 0;
    int bodies = 0;
    std::size_t triangles = 0;
    bool isAlike = true; ///< both worlds ended with the same places to the bit
};

/// The job with its world beside it.
class Job {
public:
    enum class Bare { Without, First, Second };

    /// @param bare  whether its world is built before the job's: where a world lies in memory counts for some
    /// hundredths
    Job(const SolveScene& scene, std::string folder, int frames, Bare bare)
        : settings_(scene.settings), folder_(std::move(folder)), frames_(frames), bare_(bare) {}

    Round run() {
        const double start = processMilliseconds();
        round_.isDone = solve(start);
        round_.release = processMilliseconds() - start - round_.beside - round_.job;
        return round_;
    }

    /// Bytes that the bare world takes at most, while it is built and stepped after the import; 0 if that failed.
    double worldBytes() {
        {
            std::optional<LoadedDocument> document = loadDocument(folder_ + "/in.json");
            if (!document)
                return 0;
            DocumentHost host(std::move(document->composition), "in", folder_ + "/in.json", folder_ + "/preferences");
            bool isRead = false;
            const bool isRun = runPlugin(host, [&](const HostContext& context) {
                const ImportReport report = initFromComposition(context, scene_);
                isRead = report.error == A_Err_NONE && set(report);
            });
            if (!isRun || !isRead)
                return 0;
        }
        ::malloc_trim(0); // what the reading took must not be there for the world to take again
        // Lets the peak begin anew.
        if (!(std::ofstream("/proc/self/clear_refs") << "5" << std::flush))
            return 0;
        const double before = peakOfThisProcess();
        BareWorld world(scene_);
        for (int frame = 0; frame < frames_; ++frame)
            world.stepFrame();
        return peakOfThisProcess() - before;
    }

private:
    /// Bytes; 0 if nobody knows.
    static double peakOfThisProcess() {
        std::ifstream status("/proc/self/status");
        for (std::string line; std::getline(status, line);) {
            if (line.rfind("VmHWM:", 0) == 0)
                return 1024.0 * std::strtod(line.c_str() + 6, nullptr);
        }
        return 0;
    }

    bool solve(double start) {
        std::optional<LoadedDocument> document = loadDocument(folder_ + "/in.json");
        if (!document)
            return false;
        DocumentHost host(std::move(document->composition), "in", folder_ + "/in.json", folder_ + "/preferences");
        bool isBaked = false;
        TargetFile target;
        const bool isRun = runPlugin(host, [&](const HostContext& context) {
            const ImportReport report = initFromComposition(context, scene_);
            isBaked = report.error == A_Err_NONE && set(report) && !target.open(folder_ + "/out.json");
            round_.read = processMilliseconds() - start;
            isBaked = isBaked && simulate(context) && bake(context);
        });
        const double saving = processMilliseconds();
        if (!isRun || !isBaked || !host.balance().allReturned())
            return false;
        if (writeResult(*document, host, folder_ + "/out.json", target) || target.commit())
            return false;
        const double end = processMilliseconds();
        round_.save = end - saving;
        round_.job = end - start - round_.beside;
        round_.keys = bakedKeyCount(host.outcome());
        round_.bodies = scene_.bodyCount();
        round_.triangles = static_cast<std::size_t>(piecesOf(scene_.bodies.front()).triangles);
        return true;
    }

    bool set(const ImportReport& report) {
        const std::vector<NamedLayer> layers = namedLayers(report);
        return std::all_of(settings_.begin(), settings_.end(), [&](const std::string& text) {
            const std::optional<SettingOverride> setting = parseOverride(text);
            return setting && !applyOverride(*setting, scene_, layers);
        });
    }

    /// Runs something that is no part of the job.
    template<class Work>
    double beside(Work work) {
        const double start = processMilliseconds();
        work();
        const double time = processMilliseconds() - start;
        round_.beside += time;
        return time;
    }

    bool simulate(const HostContext& context) {
        std::optional<BareWorld> bare;
        if (bare_ == Bare::First)
            beside([&] { bare.emplace(scene_); });
        const double start = processMilliseconds();
        const double before = round_.beside;
        HostLayerMotion motion(context);
        FreePacer pacer;
        SimulationClock clock(scene_, motion, pacer);
        exportRun_.emplace(0, frames_ - 1);
        clock.startExport(*exportRun_);
        if (bare_ == Bare::Second)
            beside([&] { bare.emplace(scene_); });
        while (clock.isRunning()) {
            // In turns, as the first of the two finds a colder cache.
            const bool bareFirst = clock.frame() % 2 == 0;
            if (bare && bareFirst)
                round_.bare += beside([&] { bare->stepFrame(); });
            clock.tick();
            if (bare && !bareFirst)
                round_.bare += beside([&] { bare->stepFrame(); });
        }
        round_.simulate = processMilliseconds() - start - (round_.beside - before);
        if (bare)
            beside([&] {
                round_.isAlike = isAlike(bare->scene());
                bare.reset();
            });
        return exportRun_->isComplete();
    }

    [[nodiscard]] bool isAlike(const Scene& other) const {
        return std::equal(scene_.bodies.begin(), scene_.bodies.end(), other.bodies.begin(), other.bodies.end(),
                          [](const BodyRecord& a, const BodyRecord& b) {
                              return a.body->GetPosition() == b.body->GetPosition() &&
                                     a.body->GetAngle() == b.body->GetAngle();
                          });
    }

    bool bake(const HostContext& context) {
        const double start = processMilliseconds();
        HostChain chain(context);
        const jostle::Composition composition = duplicateActiveComposition(chain);
        const auto samplesOf = [&](std::size_t k, ExportResult& samples) { exportRun_->take(k, samples); };
        const KeyframeJob job{scene_, samplesOf, 0, frames_ - 1, false};
        const WriteReport written = writeKeyframes(chain, composition, job, {});
        round_.keyframe = processMilliseconds() - start;
        return written.outcome == WriteOutcome::Done;
    }

    const std::vector<std::string>& settings_;
    std::string folder_;
    int frames_;
    Bare bare_;
    Scene scene_;
    std::optional<ExportRun> exportRun_;
    Round round_;
};

/// The folder of one scene, with its file in it; gone at the end.
class SceneFolder {
public:
    explicit SceneFolder(const SolveScene& scene) {
        std::string pattern = (std::filesystem::temp_directory_path() / "jostle-benchmark-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            return;
        path_ = pattern;
        std::ofstream(path_ + "/in.json", std::ios::binary) << scene.lottie;
    }
    ~SceneFolder() {
        std::error_code error;
        if (!path_.empty())
            std::filesystem::remove_all(path_, error);
    }
    SceneFolder(const SceneFolder&) = delete;
    SceneFolder& operator=(const SceneFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }

private:
    std::string path_;
};

/// What `work` gives, done in a process of its own; nothing if that failed.
/// @param peak  receives the greatest memory of that process, in bytes
template<class Work>
auto inProcess(Work work, double* peak = nullptr) -> std::optional<decltype(work())> {
    using Result = decltype(work());
    static_assert(std::is_trivially_copyable_v<Result>);
    int ends[2];
    if (::pipe(ends) != 0)
        return std::nullopt;
    Result result{};
    const pid_t child = ::fork();
    if (child == 0) {
        result = work();
        ::_exit(::write(ends[1], &result, sizeof result) == sizeof result ? 0 : 1);
    }
    ::close(ends[1]);
    const bool isRead = child > 0 && ::read(ends[0], &result, sizeof result) == sizeof result;
    ::close(ends[0]);
    int status = 0;
    rusage usage{};
    if (child <= 0 || ::wait4(child, &status, 0, &usage) != child || status != 0 || !isRead)
        return std::nullopt;
    if (peak != nullptr)
        *peak = 1024.0 * static_cast<double>(usage.ru_maxrss);
    return result;
}

struct Measured {
    std::vector<Round> rounds;
    Round fresh;      ///< in a process that has just begun
    double peak = 0;  ///< bytes
    double world = 0; ///< of these, what the engine's world takes alone

    template<class Value>
    [[nodiscard]] double middle(Value value) const {
        std::vector<double> values;
        for (const Round& round : rounds)
            values.push_back(value(round));
        return median(values);
    }
};

bool print(const char* name, const Measured& measured, int frames, bool isSmall) {
    const Round& last = measured.rounds.back();
    const double bare = measured.middle([](const Round& r) { return r.bare; });
    const double job = measured.middle([](const Round& r) { return r.job; });
    const double ratio = measured.middle([](const Round& r) { return r.job / r.bare; });
    const double key =
        measured.middle([](const Round& r) { return 1e6 * (r.job - r.bare) / static_cast<double>(r.keys); });
    const double bytes = (measured.peak - measured.world) / (static_cast<double>(last.bodies) * frames);
    const bool isWithin =
        (isSmall ? key <= mostNanosecondsPerKey : ratio <= greatestRatio) && bytes <= mostBytesPerBodyAndFrame;
    const bool isAlike =
        std::all_of(measured.rounds.begin(), measured.rounds.end(), [](const Round& r) { return r.isAlike; });
    std::printf("%-10s %6d %9zu %9.1f %9.1f %7.4f %8.1f %8.1f  %s\n", name, last.bodies, last.keys, bare, job, ratio,
                key, bytes,
                !isAlike   ? "NOT THE SAME MOTION"
                : isWithin ? "within"
                           : "OVER");
    std::printf(
        "%-10s read %.1f, simulate %.1f, keyframe %.1f, save %.1f, then give back %.1f ms; in a fresh process %.4f; "
        "first body %zu triangles; peak %.1f MB, world alone %.1f MB\n",
        "", measured.middle([](const Round& r) { return r.read; }),
        measured.middle([](const Round& r) { return r.simulate; }),
        measured.middle([](const Round& r) { return r.keyframe; }),
        measured.middle([](const Round& r) { return r.save; }),
        measured.middle([](const Round& r) { return r.release; }), measured.fresh.job / measured.fresh.bare,
        last.triangles, measured.peak / 1048576, measured.world / 1048576);
    std::fflush(stdout);
    return isWithin && isAlike;
}

/// @return the exit status
int measure(const SolveScene& scene, int rounds, int frames, bool isSmall) {
    const SceneFolder folder(scene);
    Measured measured;
    const auto round = [&](Job::Bare bare) {
        std::error_code error;
        std::filesystem::remove(folder.path() + "/out.json", error); // throwing it away is no part of the job
        return Job(scene, folder.path(), frames, bare).run();
    };
    const std::optional<Round> alone = inProcess([&] { return round(Job::Bare::Without); }, &measured.peak);
    measured.world =
        inProcess([&] { return Job(scene, folder.path(), frames, Job::Bare::Without).worldBytes(); }).value_or(0);
    measured.fresh = inProcess([&] { return round(Job::Bare::First); }).value_or(Round{});
    for (int i = 0; i < rounds && alone && alone->isDone && measured.fresh.isDone; ++i) {
        measured.rounds.push_back(round(i % 2 == 0 ? Job::Bare::First : Job::Bare::Second));
        if (!measured.rounds.back().isDone)
            break;
    }
    if (measured.rounds.size() < static_cast<std::size_t>(rounds) || !measured.rounds.back().isDone) {
        std::fprintf(stderr, "solve_benchmark: %s: the job failed\n", scene.name);
        return 2;
    }
    return print(scene.name, measured, frames, isSmall) ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = argument(argc, argv, 1, 5);
    const int frames = argument(argc, argv, 2, 600);
    if (rounds < 1 || frames < 2) {
        std::fprintf(stderr, "usage: solve_benchmark [rounds] [frames, at least 2] [scene]\n");
        return 2;
    }
    keepFreedMemory();
    std::printf("limits: ratio %.2f; of the restless scene %.0f ns a key instead; %.0f bytes a body and frame "
                "over the world's\n",
                greatestRatio, mostNanosecondsPerKey, mostBytesPerBodyAndFrame);
    std::printf("%-10s %6s %9s %9s %9s %7s %8s %8s\n", "scene", "bodies", "keys", "bare ms", "job ms", "ratio",
                "ns/key", "bytes");
    const std::string_view only = argc > 3 ? argv[3] : "";
    int status = 0;
    const auto measureScene = [&](std::string_view name, auto make, int bodies, bool isSmall) {
        if (only.empty() || only == name)
            status = std::max(status, measure(make(bodies, frames), rounds, frames, isSmall));
    };
    measureScene("restless", restlessToSolve, 100, true);
    measureScene("circles", circlesToSolve, 1000, false);
    measureScene("boxes", boxesToSolve, 500, false);
    measureScene("compounds", compoundsToSolve, 200, false);
    return status;
}
