#include "standalone/commands/solve_batch.h"

#include <cstdio>
#include <filesystem>
#include <map>
#include <utility>

#include "standalone/commands/guarded.h"
#include "standalone/commands/interruption.h"
#include "standalone/commands/job_messages.h"
#include "standalone/commands/job_runner.h"
#include "standalone/commands/progress.h"
#include "standalone/commands/refusal.h"
#include "standalone/commands/solve.h"
#include "standalone/commands/sweep.h"
#include "standalone/document/printable.h"

namespace jostle::standalone {

namespace {

namespace fs = std::filesystem;

bool namesFolder(const std::string& path) {
    std::error_code error;
    return path.ends_with('/') || fs::is_directory(path, error);
}

std::string inFolder(const std::string& folder, const std::string& input) {
    return (fs::path(folder) / fs::path(input).filename()).string();
}

class Batch {
public:
    Batch(const SolveRequest& request, std::vector<std::string> outputs)
        : request_(request), outputs_(std::move(outputs)), progress_(request.options.progress) {}

    int run() {
        JobList jobs;
        jobs.count = outputs_.size();
        jobs.parallel = request_.jobs.value_or(processorCount());
        jobs.work = [this](std::size_t job) { return solve(job); };
        jobs.ended = [this](std::size_t job, const JobOutcome& outcome) { report(job, outcome); };
        runFileJobs(std::move(jobs), "Solving", progress_);
        summarise();
        return solved_ == outputs_.size() ? exitDone : exitFailed;
    }

private:
    /// In the job's own process.
    int solve(std::size_t job) const {
        SolveOptions options = request_.options;
        options.input = request_.inputs[job];
        options.output = outputs_[job];
        options.progress = ProgressFor::Nobody;
        return runGuarded(options.input, [&] { return runSolve(options); });
    }

    void report(std::size_t job, const JobOutcome& outcome) {
        const std::string& input = request_.inputs[job];
        const std::string lines = namedLines(outcome.err, input);
        const bool isSolved = outcome.status == exitDone;
        solved_ += isSolved ? 1 : 0;
        progress_.hide();
        printLines(lines);
        if (request_.options.json) {
            json_ += json_.empty() ? "\n" : ",\n";
            json_ += "{\"input\":" + jsonString(input) + ",\"solved\":" + (isSolved ? "true" : "false");
            json_ += isSolved ? ",\"result\":" + std::string(withoutLineEnd(outcome.out))
                              : ",\"message\":" + jsonString(reasonOf(outcome, input));
            json_ += "}";
            return;
        }
        std::fputs(outcome.out.c_str(), stdout);
        std::fflush(stdout);
        if (!isSolved) {
            failed_ += (failed_.empty() ? "" : ", ") + printable(input) + (outcome.started ? "" : " (not begun)");
        }
    }

    void summarise() const {
        const std::size_t notSolved = outputs_.size() - solved_;
        if (request_.options.json) {
            std::printf("{\"files\":[%s\n],\"solved\":%zu,\"failed\":%zu,\"interrupted\":%s}\n", json_.c_str(), solved_,
                        notSolved, interrupted() ? "true" : "false");
        } else if (!request_.options.quiet) {
            std::printf("%s%zu of %zu files solved", interrupted() ? "interrupted: " : "", solved_, outputs_.size());
            std::printf(notSolved > 0 ? "; failed: %s\n" : "%s\n", failed_.c_str());
        }
    }

    const SolveRequest& request_;
    std::vector<std::string> outputs_;
    Progress progress_;
    std::size_t solved_ = 0;
    std::string failed_; ///< their names
    std::string json_;   ///< what came of each file
};

int runOne(const SolveRequest& request) {
    SolveOptions options = request.options;
    options.input = request.inputs.front();
    if (options.output && namesFolder(*options.output)) {
        const std::string folder = *options.output;
        options.output = inFolder(folder, options.input);
        std::string chosen;
        if (const std::optional<Refusal> refusal = choosePaths(options, chosen)) {
            return refuse(*refusal);
        }
        if (const std::optional<Refusal> failure = makeFolder(folder)) {
            return fail(*failure);
        }
    }
    return runGuarded(options.input, [&] { return runSolve(options); });
}

} // namespace

std::optional<Refusal> chooseOutputs(const SolveRequest& request, std::vector<std::string>& outputs) {
    if (!request.options.samples.empty()) {
        return Refusal{"--samples", "goes with one input; leave it out, or solve the files one by one"};
    }
    SolveOptions options = request.options;
    std::map<std::string, std::string> inputs; // by identity, as given
    std::map<std::string, std::string> owners; // by identity of the result
    for (const std::string& input : request.inputs) {
        inputs[fileIdentity(input)] = input;
    }
    for (const std::string& input : request.inputs) {
        options.input = input;
        if (request.options.output) {
            if (request.options.output->empty()) {
                return Refusal{"-o", "names no folder"};
            }
            options.output = inFolder(*request.options.output, input);
        }
        std::string output;
        if (std::optional<Refusal> refusal = choosePaths(options, output)) {
            return refusal;
        }
        const std::string identity = fileIdentity(output);
        if (const auto [owner, isNew] = owners.emplace(identity, input); !isNew) {
            return Refusal{output, "would hold the results of both " + owner->second + " and " + input +
                                       "; give them different names, or solve them into different folders"};
        }
        if (const auto other = inputs.find(identity); other != inputs.end() && other->first != fileIdentity(input)) {
            return Refusal{output, "would be overwritten by the result of " + input + ", and is an input itself"};
        }
        outputs.push_back(output);
    }
    return std::nullopt;
}

std::optional<Refusal> makeFolder(const std::string& path) {
    std::error_code error;
    fs::create_directories(path, error);
    std::error_code ignored;
    if (!fs::is_directory(path, ignored)) {
        return Refusal{path, "is no folder and cannot be made one" + (error ? ": " + error.message() : "")};
    }
    return std::nullopt;
}

int runSolveRequest(const SolveRequest& request) {
    if (!request.sweeps.empty()) {
        return runSweep(request);
    }
    if (!request.player.empty()) {
        return refuse({"--player", "goes with --sweep, whose page it is for"});
    }
    if (request.inputs.size() == 1) {
        return runOne(request);
    }
    std::vector<std::string> outputs;
    if (const std::optional<Refusal> refusal = chooseOutputs(request, outputs)) {
        return refuse(*refusal);
    }
    if (request.options.output) {
        if (const std::optional<Refusal> failure = makeFolder(*request.options.output)) {
            return fail(*failure);
        }
    }
    return Batch(request, std::move(outputs)).run();
}

} // namespace jostle::standalone
