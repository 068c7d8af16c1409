#include "standalone/commands/progress.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include <unistd.h>

namespace jostle::standalone {

namespace {

constexpr long long never = std::numeric_limits<long long>::max();

double secondsBetween(std::chrono::steady_clock::time_point from, std::chrono::steady_clock::time_point to) {
    return std::chrono::duration<double>(to - from).count();
}

/// A duration as people say it, as in "9 s" or "3 min 20 s".
std::string durationText(double seconds) {
    const auto whole = static_cast<long long>(std::min(seconds, 1e9) + 0.5);
    if (whole < 60) {
        return std::to_string(whole) + " s";
    }
    if (whole < 3600) {
        return std::to_string(whole / 60) + " min " + std::to_string(whole % 60) + " s";
    }
    return std::to_string(whole / 3600) + " h " + std::to_string(whole / 60 % 60) + " min";
}

/// Hundredths without a locale's decimal sign, as in "12.5" or "0.07".
std::string hundredthsText(double number) {
    const auto hundredths = static_cast<long long>(std::min(number, 1e12) * 100 + 0.5);
    std::string text = std::to_string(hundredths / 100);
    if (const long long rest = hundredths % 100; rest != 0) {
        text += rest < 10 ? ".0" : ".";
        text += std::to_string(rest % 10 == 0 ? rest / 10 : rest);
    }
    return text;
}

} // namespace

Progress::Progress(ProgressFor whom)
    : whom_(whom), terminal_(whom == ProgressFor::People && ::isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
    abandon();
}

void Progress::begin(std::string_view name, long long total, std::string_view unit) {
    name_ = name;
    unit_ = unit;
    total_ = total;
    done_ = 0;
    stepsApart_ = 1;
    active_ = whom_ != ProgressFor::Nobody;
    nextLook_ = active_ ? 1 : never;
    started_ = looked_ = told_ = Clock::now();
    if (active_ && whom_ == ProgressFor::Machines) {
        tellMachines(0, false);
    }
}

void Progress::updateNow(long long done) {
    done_ = done;
    look();
}

void Progress::look() {
    if (!active_) {
        nextLook_ = never;
        return;
    }
    // So many steps at once that looks come some tens of milliseconds apart, and not so many that the line would stand
    // still for long if the steps became slow.
    constexpr double tooSoon = 0.02;
    constexpr double tooLate = 0.1;
    constexpr long long mostSteps = 64;
    const Clock::time_point now = Clock::now();
    const double apart = secondsBetween(looked_, now);
    stepsApart_ = apart > tooLate ? 1 : apart < tooSoon ? std::min(2 * stepsApart_, mostSteps) : stepsApart_;
    looked_ = now;
    nextLook_ = done_ + stepsApart_;
    const double secondsBetweenLines = terminal_ ? 0.1 : whom_ == ProgressFor::Machines ? 1.0 : 5.0;
    if ((terminal_ && !shown_ && done_ > 0 && apart > tooSoon) || secondsBetween(told_, now) >= secondsBetweenLines) {
        tell(now, false);
    }
}

void Progress::hide() {
    if (shown_) {
        std::fputs("\r\033[K", stderr);
        std::fflush(stderr);
        shown_ = false;
    }
}

void Progress::end() {
    if (active_) {
        hide();
        tell(Clock::now(), true);
        active_ = false;
    }
}

void Progress::abandon() {
    hide();
    active_ = false;
}

void Progress::tell(Clock::time_point now, bool ended) {
    told_ = now;
    const double seconds = secondsBetween(started_, now);
    if (whom_ == ProgressFor::Machines) {
        tellMachines(seconds, ended);
    } else {
        tellPeople(seconds, ended);
    }
}

void Progress::tellPeople(double seconds, bool ended) {
    std::string line = name_ + "..." + std::to_string(done_) + "/" + std::to_string(total_) + " " + unit_;
    if (!ended) {
        const double rate = static_cast<double>(done_) / std::max(seconds, 1e-6);
        line += ", " + std::to_string(total_ > 0 ? 100 * done_ / total_ : 100) + " %";
        if (done_ > 0) {
            line += ", " + (rate < 10 ? hundredthsText(rate) : std::to_string(static_cast<long long>(rate + 0.5))) +
                    " " + unit_ + "/s, " + durationText(static_cast<double>(total_ - done_) / rate) + " left";
        }
    }
    hide();
    shown_ = terminal_ && !ended;
    std::fprintf(stderr, "%s%s", line.c_str(), shown_ ? "" : "\n");
    std::fflush(stderr);
}

void Progress::tellMachines(double seconds, bool ended) const {
    const bool known = done_ > 0 && seconds > 0;
    const double rate = known ? static_cast<double>(done_) / seconds : 0;
    const std::string left = ended   ? "0"
                             : known ? hundredthsText(static_cast<double>(total_ - done_) / rate)
                                     : std::string("null");
    const long long percent = total_ > 0 ? 100 * done_ / total_ : 100;
    // Names and units are our own words, with nothing to escape.
    std::fprintf(stderr,
                 R"({"event":"progress","phase":"%s","done":%lld,"total":%lld,"unit":"%s","percent":%lld,)"
                 R"("perSecond":%s,"secondsLeft":%s})"
                 "\n",
                 name_.c_str(), done_, total_, unit_.c_str(), percent, known ? hundredthsText(rate).c_str() : "null",
                 left.c_str());
    std::fflush(stderr);
}

} // namespace jostle::standalone
