#include "standalone/commands/progress.h"

#include <algorithm>
#include <cstdio>

#include <unistd.h>

namespace jostle::standalone {

namespace {

double secondsBetween(std::chrono::steady_clock::time_point from, std::chrono::steady_clock::time_point to) {
    return std::chrono::duration<double>(to - from).count();
}

} // namespace

Progress::Progress(bool quiet) : quiet_(quiet), terminal_(::isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
    abandon();
}

void Progress::begin(std::string_view name, long long total, std::string_view unit) {
    name_ = name;
    unit_ = unit;
    total_ = total;
    done_ = 0;
    active_ = !quiet_;
    started_ = std::chrono::steady_clock::now();
    drawn_ = started_;
}

void Progress::update(long long done) {
    done_ = done;
    if (!active_ || !terminal_) {
        return;
    }
    constexpr double secondsBetweenDrawings = 0.1;
    const auto now = std::chrono::steady_clock::now();
    if (secondsBetween(drawn_, now) >= secondsBetweenDrawings) {
        drawn_ = now;
        draw(done, secondsBetween(started_, now));
    }
}

void Progress::end() {
    if (!active_) {
        return;
    }
    active_ = false;
    if (terminal_) {
        clearLine();
    }
    std::fprintf(stderr, "%s%lld/%lld %s\n", name_.c_str(), done_, total_, unit_.c_str());
}

void Progress::abandon() {
    if (active_ && terminal_) {
        clearLine();
    }
    active_ = false;
}

void Progress::draw(long long done, double seconds) {
    const double rate = static_cast<double>(done) / std::max(seconds, 1e-6);
    const double left = rate > 0 ? static_cast<double>(total_ - done) / rate : 0;
    const long long percent = total_ > 0 ? 100 * done / total_ : 100;
    clearLine();
    std::fprintf(stderr, "%s%lld/%lld %s, %lld %%, %.0f %s/s, %.0f s left", name_.c_str(), done, total_, unit_.c_str(),
                 percent, rate, unit_.c_str(), left);
    std::fflush(stderr);
}

void Progress::clearLine() const {
    std::fputs("\r\033[K", stderr);
}

} // namespace jostle::standalone
