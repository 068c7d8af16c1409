#pragma once

#include "simulation/export_run.h"
#include "simulation/layer_motion.h"
#include "simulation/lost_bodies.h"
#include "simulation/pacer.h"
#include "simulation/scene.h"
#include "simulation/tick_times.h"

#include <box2d/b2_world.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace jostle {

/// Gravity of the ticks that were played while it was captured, in metres per second squared.
struct GravityCapture {
    std::vector<b2Vec2> values; ///< one for each tick
    int startFrame = 0;         ///< frame of the first value
    b2Vec2 firstValue{0.0f, 0.0f};
};

/// Owns the world and advances it, one frame at each tick. Nothing else steps it.
///
/// `tick` is driven from outside, by a timer or a plain loop. The other operations only set flags or rebuild the
/// world from the scene's records. Any edit of a record is to be followed by `refresh`.
///
///     state     isRunning  isPlaying  isSingleStep
///     stopped   false      false      false
///     playing   true       true       false
///     stepping  true       true       true, for one tick
///
/// The records' pointers into the world end with the clock.
class SimulationClock {
public:
    /// @param scene, layers, pacer  must outlive the clock; `StillLayers` and `FreePacer` will do for a bare scene
    SimulationClock(Scene& scene, LayerMotion& layers, Pacer& pacer);

    SimulationClock(const SimulationClock&) = delete;
    SimulationClock& operator=(const SimulationClock&) = delete;

    /// Goes on from where it stands.
    void play();
    /// Stops; world and frame stay.
    void pause();
    /// Lets the next tick be the only one.
    void step();
    /// Rebuilds the world, and stops at frame 0.
    void restart();
    /// Rebuilds the world, and plays from frame 0.
    void playFromStart();
    /// What an edit calls: from the start again, playing on if it was playing.
    void refresh();
    /// Plays from the start, over and over, up to but without the present frame. Does nothing at frame 0.
    void repeat();

    /// Plays from the start and samples the run's range.
    ///
    /// When the end frame has been sampled the clock lets go of the run and stops at the end of that tick; whoever
    /// drives the clock then finds `ExportRun::isComplete` and writes the keyframes. If the clock stops without
    /// that, the range was empty or beyond the last frame that it counts to. Any rebuild meanwhile lets go of the run
    /// too.
    /// @param run  a fresh one, which must live until the clock lets go of it
    void startExport(ExportRun& run);
    /// Lets go of a run, and restarts.
    void cancelExport();

    /// From the next playing tick on, keeps the gravity of each; what was captured before is dropped.
    void startGravityCapture();
    /// Ends that; what was captured stays.
    void stopGravityCapture();

    /// One tick. When not running, it reads gravity and makes the passes that show the present frame, and no more.
    void tick();

    [[nodiscard]] bool isRunning() const { return isRunning_; }
    [[nodiscard]] bool isPlaying() const { return isPlaying_; }
    [[nodiscard]] bool isSingleStep() const { return isSingleStep_; }
    [[nodiscard]] bool isRepeating() const { return isRepeating_; }
    [[nodiscard]] bool isExporting() const { return exportRun_ != nullptr; }
    [[nodiscard]] bool isCapturingGravity() const { return isCapturingGravity_; }
    [[nodiscard]] const GravityCapture& gravityCapture() const { return gravityCapture_; }
    /// Ticks since the last restart.
    [[nodiscard]] int frame() const { return frame_; }
    /// Another one after each rebuild. Without bodies until the first tick or rebuild.
    [[nodiscard]] b2World& world() { return *world_; }
    [[nodiscard]] const b2World& world() const { return *world_; }

private:
    void rebuild();
    void loopIfRepeating();
    void buildIfNeeded();
    void setGravity(const TickTimes& times);
    void paceIfRunning();
    void makeBodyPasses(const TickTimes& times);
    void followLayers();
    void takeSamples();
    void stepWorld(const TickTimes& times);
    void wakeSleepers();
    void endSingleStep();
    void countFrame();
    void pullSprings();

    Scene& scene_;
    LayerMotion& layers_;
    Pacer& pacer_;
    std::unique_ptr<b2World> world_;
    bool worldBuilt_ = false;
    bool isRunning_ = false;
    bool isPlaying_ = false;
    bool isSingleStep_ = false;
    bool isRepeating_ = false;
    int repeatEndFrame_ = 0;
    int frame_ = 0;
    ExportRun* exportRun_ = nullptr;
    bool isCapturingGravity_ = false;
    GravityCapture gravityCapture_;
    double quietUntil_ = -1.0; ///< tick time, in seconds, up to which no body comes or goes
    LostBodies lostBodies_;
    std::vector<std::int32_t> magnets_; ///< of the present tick; kept so that ticks allocate nothing
};

} // namespace jostle
