#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "standalone/commands/progress.h"

namespace jostle::standalone {

/// What a job came to that ran in a process of its own.
struct JobOutcome {
    bool started = false; ///< false if the program was interrupted before its turn
    int status = -1;      ///< an ExitStatus; -1 if it did not end by itself
    std::string out;      ///< its standard output
    std::string err;      ///< its standard error, and a line if it did not end by itself
};

/// Jobs that have nothing to do with each other.
struct JobList {
    std::size_t count = 0;
    int parallel = 1; ///< how many may run at once, at least 1
    /// Does a job; called in its process, whose standard output and error are kept for `ended`.
    std::function<int(std::size_t job)> work;
    /// Called for each job in their order, whatever the order of their ends, and for those never started too.
    std::function<void(std::size_t job, const JobOutcome& outcome)> ended;
    /// Called several times a second with the number of jobs that have ended. May be empty.
    std::function<void(std::size_t count)> progress;
};

/// Runs each job in a process of its own: the engine and the host keep state for the whole process, and one job that
/// crashes is then the only one to fail. No thread may run meanwhile. An interruption (see interruption.h, to be heeded
/// by the caller) is passed on to the running jobs, which are waited for; the rest is not started.
/// @return whether all were started
bool runJobs(const JobList& jobs);

/// Runs the jobs of a command, one for each file that it makes. Heeds interruptions from then on, and tells how many
/// jobs have ended.
/// @param jobs   without `progress`
/// @param doing  as in "Solving"
void runFileJobs(JobList jobs, std::string_view doing, Progress& progress);

/// How many jobs are worth running at once: one for each processor that this process may use.
[[nodiscard]] int processorCount();

} // namespace jostle::standalone
