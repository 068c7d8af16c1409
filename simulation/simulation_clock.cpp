#include "simulation/simulation_clock.h"

#include "simulation/body_behaviours.h"
#include "simulation/gravity.h"
#include "simulation/joints.h"
#include "simulation/magnetism.h"
#include "simulation/world_builder.h"

#include <algorithm>
#include <limits>

namespace jostle {

namespace {

constexpr int lastFrame = 100000; // ends a run that nobody stopped
constexpr int velocityIterations = 10;
constexpr int positionIterations = 10;

} // namespace

SimulationClock::SimulationClock(Scene& scene, LayerMotion& layers, Pacer& pacer)
    : scene_(scene), layers_(layers), pacer_(pacer), world_(createWorld()) {}

// The order is part of what the system does: each line sees what those above it left. What a window shows of a tick
// (the frame's number, counts, the picture) it reads from the clock and the world when the tick is over.
void SimulationClock::tick() {
    loopIfRepeating();
    const TickTimes times = tickTimes(scene_, frame_);
    buildIfNeeded();
    setGravity(times);
    paceIfRunning();
    makeBodyPasses(times);
    if (isRunning_) {
        followLayers();
        takeSamples();
        stepWorld(times);
        endSingleStep();
        countFrame();
    }
    pullSprings();
}

void SimulationClock::loopIfRepeating() {
    if (isRepeating_ && frame_ >= repeatEndFrame_) {
        playFromStart();
    }
}

void SimulationClock::buildIfNeeded() {
    if (!worldBuilt_) {
        rebuild();
    }
}

void SimulationClock::setGravity(const TickTimes& times) {
    const b2Vec2 gravity = currentGravity(scene_.globals, layers_, times.simTime);
    world_->SetGravity(gravity);
    if (!isRunning_ || !isPlaying_ || !isCapturingGravity_) {
        return;
    }
    gravityCapture_.values.push_back(gravity);
    if (gravityCapture_.values.size() == 1) {
        gravityCapture_.startFrame = frame_;
        gravityCapture_.firstValue = gravity;
    }
}

void SimulationClock::paceIfRunning() {
    if (isRunning_) {
        pacer_.pace(scene_.fps, isSingleStep_);
    }
}

// In the order of the world's body list, which is the reverse of the records'. Without magnets and sleepers there is
// nothing to do until some body comes or goes.
void SimulationClock::makeBodyPasses(const TickTimes& times) {
    const bool magnetsPull = isRunning_ && scene_.hasMagnets;
    if (!magnetsPull && !scene_.hasDormant && times.tickTime < quietUntil_) {
        return;
    }
    magnets_.clear();
    if (magnetsPull) {
        findMagnets(scene_, times, magnets_);
    }
    quietUntil_ = std::numeric_limits<double>::infinity();
    for (std::int32_t i = scene_.bodyCount() - 1; i >= 0; --i) {
        BodyRecord& record = scene_.bodies[static_cast<std::size_t>(i)];
        applyInAndOut(scene_.preferences, record, times);
        if (!magnets_.empty()) {
            applyMagnets(scene_, i, magnets_);
        }
        applyGravityScale(record);
        quietUntil_ = std::min(quietUntil_, nextChange(record, times));
    }
}

void SimulationClock::followLayers() {
    if (scene_.hasKinematic || scene_.hasAEmatic) {
        for (std::int32_t i = scene_.bodyCount() - 1; i >= 0; --i) {
            followLayer(scene_, i, frame_, layers_);
        }
    }
}

// Before the step, so that the first sample is the state on entering the start frame. The tick in which the run is
// completed goes on to its end, and is the last one.
void SimulationClock::takeSamples() {
    if (!exportRun_ || !exportRun_->contains(frame_)) {
        return;
    }
    exportRun_->sample(frame_, scene_);
    if (exportRun_->isComplete()) {
        exportRun_ = nullptr;
        isRunning_ = false;
        isPlaying_ = false;
    }
}

// The library drops all forces after each step, so that those of magnets and springs act during the first one only.
void SimulationClock::stepWorld(const TickTimes& times) {
    const int steps = scene_.globals.stepsPerFrame;
    for (int i = 0; i < steps; ++i) {
        const auto stepTime = static_cast<float>(times.stepTime / steps);
        tuneFrequencies(scene_, stepTime);
        lostBodies_.remember(*world_);
        world_->Step(stepTime, velocityIterations, positionIterations);
        lostBodies_.recover(*world_);
        wakeSleepers();
    }
}

void SimulationClock::wakeSleepers() {
    if (scene_.hasDormant) {
        for (auto record = scene_.bodies.rbegin(); record != scene_.bodies.rend(); ++record) {
            wakeDormant(scene_, *record);
        }
    }
}

void SimulationClock::endSingleStep() {
    if (isSingleStep_) {
        pause();
    }
}

// On purpose: a run that reaches the limit restarts and is then counted on, so that it stops at frame 1 with the
// world of frame 0.
void SimulationClock::countFrame() {
    if (frame_ >= lastFrame) {
        restart();
    } else if (exportRun_ && frame_ > exportRun_->endFrame()) {
        exportRun_ = nullptr;
        isRunning_ = false;
        isPlaying_ = false;
    }
    ++frame_;
}

void SimulationClock::pullSprings() {
    if (isPlaying_) {
        applySprings(scene_);
    }
}

void SimulationClock::rebuild() {
    world_ = createWorld();
    buildWorld(scene_, *world_);
    worldBuilt_ = true;
    quietUntil_ = -1.0;
    exportRun_ = nullptr; // its samples would be of two worlds
}

void SimulationClock::play() {
    isRepeating_ = false;
    isRunning_ = true;
    isPlaying_ = true;
}

void SimulationClock::pause() {
    isRunning_ = false;
    isPlaying_ = false;
    isSingleStep_ = false;
    isRepeating_ = false;
}

void SimulationClock::step() {
    play();
    isSingleStep_ = true;
}

void SimulationClock::restart() {
    rebuild();
    frame_ = 0;
    pause();
}

void SimulationClock::playFromStart() {
    rebuild();
    frame_ = 0;
    isRunning_ = true;
    isPlaying_ = true;
}

void SimulationClock::refresh() {
    if (isPlaying_) {
        playFromStart();
    } else {
        restart();
    }
}

void SimulationClock::repeat() {
    if (frame_ > 0 && !exportRun_) {
        isRepeating_ = true;
        repeatEndFrame_ = frame_;
        playFromStart();
    }
}

void SimulationClock::startGravityCapture() {
    isCapturingGravity_ = true;
    gravityCapture_ = {};
}

void SimulationClock::stopGravityCapture() {
    isCapturingGravity_ = false;
}

void SimulationClock::startExport(ExportRun& run) {
    isRepeating_ = false;
    isSingleStep_ = false;
    playFromStart();
    exportRun_ = &run;
}

void SimulationClock::cancelExport() {
    restart();
}

} // namespace jostle
