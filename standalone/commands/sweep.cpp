#include "standalone/commands/sweep.h"

#include <cstdio>
#include <filesystem>
#include <utility>

#include "persistence/target_file.h"
#include "standalone/commands/guarded.h"
#include "standalone/commands/interruption.h"
#include "standalone/commands/job_messages.h"
#include "standalone/commands/job_runner.h"
#include "standalone/commands/progress.h"
#include "standalone/commands/refusal.h"
#include "standalone/commands/solve.h"
#include "standalone/commands/solve_batch.h"
#include "standalone/commands/sweep_grid.h"
#include "standalone/commands/sweep_page.h"
#include "standalone/document/printable.h"

namespace jostle::standalone {

namespace {

namespace fs = std::filesystem;

/// A path as it may stand in an address.
std::string addressOf(const std::string& path) {
    constexpr std::string_view plain = "/-._~";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                             plain.find(c) != std::string_view::npos;
        text += isPlain ? std::string(1, c) : std::string{'%', digits[byte >> 4u], digits[byte & 15u]};
    }
    return text;
}

class Sweep {
public:
    explicit Sweep(const SolveRequest& request)
        : request_(request), folder_(request.options.output.value_or("")), progress_(request.options.progress) {}

    int run();

private:
    [[nodiscard]] std::optional<Refusal> refusal();
    [[nodiscard]] std::optional<Refusal> readAxes();
    /// Whether the input can be read and takes all values, in a process of its own.
    [[nodiscard]] int tryValues() const;
    [[nodiscard]] int solve(std::size_t job) const;
    void report(std::size_t job, const JobOutcome& outcome);
    [[nodiscard]] bool writeIndex();
    [[nodiscard]] std::string indexText() const;
    [[nodiscard]] SweepPage page() const;
    void summarise(bool isIndexed) const;

    [[nodiscard]] std::string nameOf(std::size_t job) const { return sweepFileName(axes_, job); }
    [[nodiscard]] std::string pathOf(const std::string& name) const { return (fs::path(folder_) / name).string(); }
    /// The values of a combination, as in "gravity.magnitude=5, floor.friction=0.2".
    [[nodiscard]] std::string captionOf(std::size_t job) const;
    [[nodiscard]] SolveOptions optionsOf() const;

    /// What came of one combination.
    struct Result {
        bool solved = false;
        std::string summary; ///< JSON
        std::string message; ///< why it failed
    };

    const SolveRequest& request_;
    std::string folder_;
    Progress progress_;
    std::vector<SweepAxis> axes_;
    std::vector<Result> results_;
    std::size_t solved_ = 0;
};

std::optional<Refusal> Sweep::readAxes() {
    for (const std::string& text : request_.sweeps) {
        std::variant<SweepAxis, std::string> read = parseSweep(text);
        if (const auto* error = std::get_if<std::string>(&read)) {
            return Refusal{"--sweep " + text, *error};
        }
        axes_.push_back(std::move(std::get<SweepAxis>(read)));
        for (std::size_t i = 0; i + 1 < axes_.size(); ++i) {
            if (axes_[i].key == axes_.back().key) {
                return Refusal{"--sweep " + text, "sweeps what another --sweep does"};
            }
        }
    }
    if (sweepSize(axes_) > mostSweepResults) {
        return Refusal{"--sweep", "makes more than " + std::to_string(mostSweepResults) +
                                      " results in all; take larger steps or fewer settings"};
    }
    return std::nullopt;
}

std::optional<Refusal> Sweep::refusal() {
    if (request_.inputs.size() != 1) {
        return Refusal{"--sweep", "goes with one input"};
    }
    if (folder_.empty()) {
        return Refusal{"--sweep", "needs -o FOLDER for its results"};
    }
    if (!request_.options.samples.empty()) {
        return Refusal{"--samples", "does not go with --sweep; solve with --set and one value"};
    }
    std::error_code error;
    if (!request_.player.empty() && !fs::is_regular_file(request_.player, error)) {
        return Refusal{"--player " + request_.player, "is no file; give the script lottie.min.js of a lottie-web"};
    }
    return readAxes();
}

SolveOptions Sweep::optionsOf() const {
    SolveOptions options = request_.options;
    options.input = request_.inputs.front();
    options.progress = ProgressFor::Nobody;
    return options;
}

int Sweep::tryValues() const {
    SolveOptions options = optionsOf();
    options.output = pathOf(nameOf(0));
    for (const SweepAxis& axis : axes_) {
        for (const std::string& value : axis.values) {
            options.trials.push_back(axis.key + "=" + value);
        }
    }
    int status = exitFailed;
    JobList trial;
    trial.count = 1;
    trial.work = [&](std::size_t) { return runGuarded(options.input, [&] { return runSolve(options); }); };
    trial.ended = [&](std::size_t, const JobOutcome& outcome) {
        status = outcome.status >= 0 ? outcome.status : exitFailed;
        printLines(outcome.err);
    };
    runJobs(trial);
    return status;
}

int Sweep::solve(std::size_t job) const {
    SolveOptions options = optionsOf();
    options.output = pathOf(nameOf(job));
    options.quiet = true; // what there is to say of the input has been said
    options.json = true;
    const std::vector<std::string> values = sweepValues(axes_, job);
    for (std::size_t i = 0; i < axes_.size(); ++i) {
        options.sets.push_back(axes_[i].key + "=" + values[i]);
    }
    return runGuarded(options.input, [&] { return runSolve(options); });
}

void Sweep::report(std::size_t job, const JobOutcome& outcome) {
    const std::string name = nameOf(job);
    progress_.hide();
    printLines(namedLines(outcome.err, name));
    Result& result = results_[job];
    result.solved = outcome.status == exitDone;
    solved_ += result.solved ? 1 : 0;
    result.summary = withoutLineEnd(outcome.out);
    result.message = reasonOf(outcome, request_.inputs.front());
}

std::string Sweep::captionOf(std::size_t job) const {
    const std::vector<std::string> values = sweepValues(axes_, job);
    std::string caption;
    for (std::size_t i = 0; i < axes_.size(); ++i) {
        caption += (i == 0 ? "" : ", ") + axes_[i].key + "=" + values[i];
    }
    return caption;
}

std::string Sweep::indexText() const {
    std::string text = "{\"input\":" + jsonString(request_.inputs.front()) + ",\"sweep\":[";
    for (const SweepAxis& axis : axes_) {
        text += std::string(&axis == axes_.data() ? "" : ",") + "{\"key\":" + jsonString(axis.key) + ",\"values\":[";
        for (const std::string& value : axis.values) {
            text += (&value == axis.values.data() ? "" : ",") + value;
        }
        text += "]}";
    }
    text += "],\"results\":[";
    for (std::size_t job = 0; job < results_.size(); ++job) {
        const Result& result = results_[job];
        const std::vector<std::string> values = sweepValues(axes_, job);
        text += std::string(job == 0 ? "\n" : ",\n") + "{\"file\":" + jsonString(nameOf(job)) + ",\"values\":{";
        for (std::size_t i = 0; i < axes_.size(); ++i) {
            text += (i == 0 ? "" : ",") + jsonString(axes_[i].key) + ":" + values[i];
        }
        text += std::string("},\"solved\":") + (result.solved ? "true" : "false");
        text += result.solved ? ",\"result\":" + result.summary : ",\"message\":" + jsonString(result.message);
        text += "}";
    }
    return text + "\n],\"solved\":" + std::to_string(solved_) +
           ",\"failed\":" + std::to_string(results_.size() - solved_) + "}\n";
}

SweepPage Sweep::page() const {
    // As much as a browser reads without trouble.
    constexpr std::size_t mostInside = 64u << 20u;
    SweepPage page;
    page.title = "Sweep of " + fs::path(request_.inputs.front()).filename().string();
    page.player = networkPlayer;
    if (!request_.player.empty()) {
        std::error_code error;
        const fs::path relative = fs::proximate(request_.player, folder_, error);
        page.player = addressOf(error ? request_.player : relative.generic_string());
    }
    page.columns = axes_.size() > 1 ? axes_.back().values.size() : 0;
    std::size_t size = 0;
    for (std::size_t job = 0; job < results_.size(); ++job) {
        SweepCell cell{nameOf(job), captionOf(job), {}, {}};
        if (results_[job].solved) {
            FileText file = readFile(pathOf(cell.file), mostInside - size);
            size += file.text.size();
            cell.text = std::move(file.text);
        } else {
            cell.failure = results_[job].message.empty() ? "failed" : results_[job].message;
        }
        page.cells.push_back(std::move(cell));
    }
    return page;
}

bool Sweep::writeIndex() {
    const std::pair<const char*, std::string> files[] = {{"sweep.json", indexText()},
                                                         {"sweep.html", sweepPageText(page())}};
    for (const auto& [name, text] : files) {
        const std::string path = pathOf(name);
        TargetFile target;
        std::optional<std::string> error = target.open(path);
        error = error ? error : target.commit(text);
        if (error) {
            complain(path, *error);
            return false;
        }
    }
    return true;
}

void Sweep::summarise(bool isIndexed) const {
    if (request_.options.json) {
        std::fputs(indexText().c_str(), stdout);
    } else if (!request_.options.quiet) {
        std::printf("%s%zu of %zu results of %s made in %s", interrupted() ? "interrupted: " : "", solved_,
                    results_.size(), printable(request_.inputs.front()).c_str(), printable(folder_).c_str());
        std::printf(isIndexed ? "; open %s to see them side by side\n" : "\n", printable(pathOf("sweep.html")).c_str());
    }
}

int Sweep::run() {
    if (const std::optional<Refusal> refused = refusal()) {
        return refuse(*refused);
    }
    if (const int status = tryValues(); status != exitDone) {
        return status;
    }
    if (const std::optional<Refusal> failure = makeFolder(folder_)) {
        return fail(*failure);
    }
    results_.resize(sweepSize(axes_));
    JobList jobs;
    jobs.count = results_.size();
    jobs.parallel = request_.jobs.value_or(processorCount());
    jobs.work = [this](std::size_t job) { return solve(job); };
    jobs.ended = [this](std::size_t job, const JobOutcome& outcome) { report(job, outcome); };
    runFileJobs(std::move(jobs), "Sweeping", progress_);
    // After an interruption too, unless all is still as it was: what is made wants to be found.
    const bool isIndexed = (solved_ > 0 || !interrupted()) && writeIndex();
    summarise(isIndexed);
    return isIndexed && solved_ == results_.size() ? exitDone : exitFailed;
}

} // namespace

int runSweep(const SolveRequest& request) {
    return Sweep(request).run();
}

} // namespace jostle::standalone
