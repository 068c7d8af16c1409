#include "simulation/simulation_clock.h"

#include "simulation/body_behaviours.h"
#include "simulation/gravity.h"
#include "simulation/world_builder.h"

namespace jostle {

namespace {

constexpr int lastFrame = 100000; // ends a run that nobody stopped
constexpr int velocityIterations = 10;
constexpr int positionIterations = 10;

} // namespace

SimulationClock::SimulationClock(Scene& scene, LayerMotion& layers, Pacer& pacer)
    : scene_(scene), layers_(layers), pacer_(pacer), world_(createWorld()) {}

void SimulationClock::tick() {
    loopIfRepeating();
    const TickTimes times = tickTimes(scene_, frame_);
    buildIfNeeded();
    world_->SetGravity(currentGravity(scene_.globals, layers_, times.simTime));
    paceIfRunning();
    makeBodyPasses(times);
    if (!isRunning_) {
        return;
    }
    followLayers();
    takeSamples();
    stepWorld(times);
    endSingleStep();
    countFrame();
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

void SimulationClock::paceIfRunning() {
    if (isRunning_) {
        pacer_.pace(scene_.fps, isSingleStep_);
    }
}

// In the order of the world's body list, which is the reverse of the records'.
void SimulationClock::makeBodyPasses(const TickTimes& times) {
    for (auto record = scene_.bodies.rbegin(); record != scene_.bodies.rend(); ++record) {
        applyInAndOut(scene_.preferences, *record, times);
        applyGravityScale(*record);
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

void SimulationClock::stepWorld(const TickTimes& times) {
    const int steps = scene_.globals.stepsPerFrame;
    for (int i = 0; i < steps; ++i) {
        world_->Step(static_cast<float>(times.stepTime / steps), velocityIterations, positionIterations);
        if (scene_.hasDormant) {
            for (auto record = scene_.bodies.rbegin(); record != scene_.bodies.rend(); ++record) {
                wakeDormant(scene_, *record);
            }
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
        isRunning_ = false;
        isPlaying_ = false;
    }
    ++frame_;
}

void SimulationClock::rebuild() {
    world_ = createWorld();
    for (BodyRecord& record : scene_.bodies) {
        record.userData->outOfTime = record.type == BodyType::Dead || record.inPoint > 0;
    }
    buildWorld(scene_, *world_);
    worldBuilt_ = true;
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
}

void SimulationClock::step() {
    play();
    isSingleStep_ = true;
}

void SimulationClock::restart() {
    rebuild();
    frame_ = 0;
    isRepeating_ = false;
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
    if (frame_ > 0) {
        isRepeating_ = true;
        repeatEndFrame_ = frame_;
        playFromStart();
    }
}

void SimulationClock::startExport(ExportRun& run) {
    isRepeating_ = false;
    isSingleStep_ = false;
    exportRun_ = &run;
    playFromStart();
}

void SimulationClock::cancelExport() {
    exportRun_ = nullptr;
    restart();
}

} // namespace jostle
