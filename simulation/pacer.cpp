#include "simulation/pacer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>
#include <utility>

namespace jostle {

namespace {

std::int32_t systemMilliseconds() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count();
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(milliseconds));
}

void sleepMilliseconds(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// Right across a wrap of the clock, and negative if it was set back.
std::int32_t difference(std::int32_t later, std::int32_t earlier) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(later) - static_cast<std::uint32_t>(earlier));
}

} // namespace

WallPacer::WallPacer() : WallPacer(systemMilliseconds, sleepMilliseconds) {}

WallPacer::WallPacer(Now now, Sleep sleep) : now_(std::move(now)), sleep_(std::move(sleep)) {}

void WallPacer::pace(double fps, bool isSingleStep) {
    if (lastTickMs_ == 0 || isSingleStep) {
        lastTickMs_ = now_();
    }
    const std::int32_t nowMs = now_();
    auto elapsedMs = static_cast<float>(difference(nowMs, lastTickMs_));
    if (elapsedMs == 0.0f) {
        elapsedMs = 0.001f;
    }
    lastTickMs_ = nowMs; // the wait counts towards the next tick
    rate_ = std::max(0.0f, 1000.0f / elapsedMs);
    const auto fullRate = static_cast<float>(fps);
    if (rate_ > fullRate) {
        sleep_(static_cast<int>(1000.0f / fullRate - elapsedMs));
        rate_ = fullRate;
    }
}

int tickIntervalMs(double fps) {
    constexpr double margin = 1.21;
    return static_cast<int>(std::round(1000.0 / fps) / margin);
}

} // namespace jostle
