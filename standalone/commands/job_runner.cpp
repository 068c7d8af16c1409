#include "standalone/commands/job_runner.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <map>
#include <thread>
#include <utility>
#include <vector>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

#include "standalone/commands/interruption.h"

namespace jostle::standalone {

namespace {

/// The reading end of a pipe.
struct Reader {
    int descriptor = -1;

    /// Takes what is there. Closes at the end of it.
    void drainInto(std::string& text) {
        std::array<char, 65536> buffer{};
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            ::close(std::exchange(descriptor, -1));
        }
    }
};

struct RunningJob {
    pid_t process = 0;
    Reader out;
    Reader err;
};

/// The two ends of a pipe, closed with it unless given away.
class Pipe {
public:
    Pipe() {
        if (::pipe(ends_.data()) != 0) {
            ends_ = {-1, -1};
        }
    }
    ~Pipe() {
        for (const int end : ends_) {
            if (end >= 0) {
                ::close(end);
            }
        }
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    [[nodiscard]] bool isOpen() const { return ends_[0] >= 0; }
    [[nodiscard]] int writing() const { return ends_[1]; }
    [[nodiscard]] int giveReading() { return std::exchange(ends_[0], -1); }

private:
    std::array<int, 2> ends_{};
};

class Runner {
public:
    explicit Runner(const JobList& jobs) : jobs_(jobs), outcomes_(jobs.count), isOver_(jobs.count, false) {}

    bool run() {
        while (!running_.empty() || (next_ < jobs_.count && !interrupted())) {
            if (interrupted()) {
                passOn();
            } else {
                startSome();
            }
            collect();
            reportInOrder(false);
            if (jobs_.progress) {
                jobs_.progress(overCount_);
            }
        }
        reportInOrder(true);
        return next_ == jobs_.count;
    }

private:
    void startSome() {
        while (next_ < jobs_.count && running_.size() < static_cast<std::size_t>(jobs_.parallel)) {
            const std::size_t job = next_;
            if (const int error = start(job); error != 0) {
                if (!running_.empty()) {
                    return; // a later try may find what was lacking
                }
                outcomes_[job].err = std::string("jostle: no process can be started: ") + std::strerror(error) + "\n";
                finish(job);
            }
            ++next_;
        }
    }

    /// @return 0, or an error number
    int start(std::size_t job) {
        // What waits in our buffers would be written by the job once more.
        std::fflush(nullptr);
        Pipe out;
        Pipe err;
        if (!out.isOpen() || !err.isOpen()) {
            return errno;
        }
        // A signal between the fork and its handling by the job would be lost.
        sigset_t all;
        sigset_t before;
        sigfillset(&all);
        sigprocmask(SIG_SETMASK, &all, &before);
        const pid_t parent = ::getpid();
        const pid_t process = ::fork();
        if (process == 0) {
            forgetInterruptions();
            sigprocmask(SIG_SETMASK, &before, nullptr);
            becomeJob(job, parent, out, err);
        }
        const int error = errno;
        sigprocmask(SIG_SETMASK, &before, nullptr);
        if (process < 0) {
            return error;
        }
        outcomes_[job].started = true;
        running_[job] = {process, {out.giveReading()}, {err.giveReading()}};
        return 0;
    }

    [[noreturn]] void becomeJob(std::size_t job, [[maybe_unused]] pid_t parent, const Pipe& out, const Pipe& err) {
#ifdef __linux__
        // Nobody would read what it says, so it need not outlive us.
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (::getppid() != parent) {
            ::_exit(1);
        }
#endif
        ::dup2(out.writing(), STDOUT_FILENO);
        ::dup2(err.writing(), STDERR_FILENO);
        ::close(out.writing());
        ::close(err.writing());
        const int status = jobs_.work(job);
        const bool told = std::fflush(stdout) == 0;
        ::_exit(status == 0 && !told ? 1 : status); // our own files and locks are not the job's to clean up
    }

    /// Asks all running jobs to end, once.
    void passOn() {
        if (!std::exchange(passedOn_, true)) {
            for (const auto& [job, running] : running_) {
                ::kill(running.process, SIGTERM);
            }
        }
    }

    /// Waits a moment for something to read or an end.
    void collect() {
        constexpr int milliseconds = 100;
        std::vector<pollfd> waitedFor;
        for (const auto& [job, running] : running_) {
            for (const Reader* reader : {&running.out, &running.err}) {
                waitedFor.push_back({reader->descriptor, POLLIN, 0}); // those below 0 are passed over
            }
        }
        if (::poll(waitedFor.data(), static_cast<nfds_t>(waitedFor.size()), milliseconds) <= 0) {
            return;
        }
        auto state = waitedFor.begin();
        for (auto at = running_.begin(); at != running_.end();) {
            auto& [job, running] = *at;
            JobOutcome& outcome = outcomes_[job];
            if ((state++)->revents != 0) {
                running.out.drainInto(outcome.out);
            }
            if ((state++)->revents != 0) {
                running.err.drainInto(outcome.err);
            }
            if (running.out.descriptor >= 0 || running.err.descriptor >= 0) {
                ++at;
                continue;
            }
            waitFor(running.process, outcome);
            finish(job);
            at = running_.erase(at);
        }
    }

    static void waitFor(pid_t process, JobOutcome& outcome) {
        int status = 0;
        while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
        }
        if (WIFEXITED(status)) {
            outcome.status = WEXITSTATUS(status);
        } else if (interrupted()) {
            outcome.err += "jostle: interrupted; nothing was written\n";
        } else {
            outcome.err += "jostle: its process was ended by signal " +
                           std::to_string(WIFSIGNALED(status) ? WTERMSIG(status) : 0) + "; nothing was written\n";
        }
    }

    void finish(std::size_t job) {
        isOver_[job] = true;
        ++overCount_;
    }

    /// @param all  also those that are not over and never will be
    void reportInOrder(bool all) {
        for (; reported_ < jobs_.count && (all || isOver_[reported_]); ++reported_) {
            jobs_.ended(reported_, outcomes_[reported_]);
            outcomes_[reported_] = {}; // it may be long
        }
    }

    const JobList& jobs_;
    std::vector<JobOutcome> outcomes_;
    std::vector<bool> isOver_;
    std::map<std::size_t, RunningJob> running_;
    std::size_t next_ = 0;      ///< to be started
    std::size_t reported_ = 0;  ///< all before it were
    std::size_t overCount_ = 0; ///< number of those over
    bool passedOn_ = false;     ///< the interruption was, to the jobs
};

} // namespace

bool runJobs(const JobList& jobs) {
    return Runner(jobs).run();
}

void runFileJobs(JobList jobs, std::string_view doing, Progress& progress) {
    heedInterruptions();
    progress.begin(doing, static_cast<long long>(jobs.count), "files");
    jobs.progress = [&progress](std::size_t count) { progress.updateNow(static_cast<long long>(count)); };
    (void)runJobs(jobs);
    if (interrupted()) {
        progress.abandon();
    } else {
        progress.end();
    }
}

int processorCount() {
    return static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
}

} // namespace jostle::standalone
