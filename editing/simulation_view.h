#pragma once

#include "editing/frame_samples.h"
#include "editing/selection_model.h"
#include "editing/window_pacer.h"
#include "simulation/layer_motion.h"
#include "simulation/scene.h"
#include "simulation/simulation_clock.h"

#include <QObject>
#include <QTimer>

#include <optional>
#include <span>

namespace jostle {

/// The front desk of a window's simulation: owns the scene, its clock with the timer that drives it, and what is
/// selected, and hands on what is asked of them.
///
/// What a window shows is either the clock's own frame or, after `showFrame`, an earlier one from the samples. To go
/// on from such a frame the clock catches up with it first, some ticks in each turn of the event loop, so that the
/// motion is the same as without the look back.
class SimulationView final : public QObject {
    Q_OBJECT

public:
    /// Builds the world at frame 0.
    /// @param layers  must outlive the view
    /// @param pacer   holds the playing clock to real time; by itself on the system's clock
    SimulationView(Scene scene, LayerMotion& layers, WallPacer pacer = {}, QObject* parent = nullptr);

    [[nodiscard]] const Scene& scene() const { return scene_; }
    /// For edits, each of which is to be followed by `refreshSimulation`.
    [[nodiscard]] Scene& scene() { return scene_; }
    [[nodiscard]] SelectionModel& selection() { return selection_; }
    [[nodiscard]] const FrameSamples& samples() const { return samples_; }

    /// Lets the timer call `updatePhysics` from now on.
    void start();

    /// Goes on from the frame that is shown.
    void play();
    void pause();
    /// One frame on from the one that is shown.
    void step();
    /// Stops at frame 0, with a new world.
    void restartSimulation();
    void playFromStart();
    /// What an edit calls: the samples are of no more use, and the simulation starts over, playing on if it was.
    void refreshSimulation();
    /// Plays from the start, over and over, up to but without the frame that is shown. Does nothing at frame 0.
    void repeat();
    /// Pauses, and shows a frame: at once if it has been simulated, else when the clock has come to it.
    /// @param frame  brought within what the clock counts to
    void showFrame(int frame);

    /// Whether the frames go on by themselves, or will once the clock has caught up.
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] bool isRepeating() const;
    [[nodiscard]] int repeatEndFrame() const { return repeatEndFrame_; }
    /// Whether the clock is on its way to a frame, unseen or seen in passing.
    [[nodiscard]] bool isCatchingUp() const { return catchUp_.has_value(); }
    /// The frame that is shown.
    [[nodiscard]] int frame() const { return scrubbedFrame_.value_or(clock_.frame()); }
    /// Where the bodies stand on that frame, one for each record; empty if they stand so in the world.
    [[nodiscard]] std::span<const BodySample> shownSamples() const;

public slots:
    /// One turn of the clock, or as many ticks towards a frame as a turn of the event loop may take.
    void updatePhysics();

signals:
    /// Something that is drawn has changed.
    void pictureChanged();
    void frameChanged(int frame);
    /// Playing, repeating or catching up began or ended.
    void transportChanged();
    /// On every other playing tick.
    /// @param rate  frames per second
    void rateChanged(float rate);

private:
    enum class Then { Stay, Play, Repeat };
    struct CatchUp {
        int frame;
        Then then;
    };
    struct Told {
        int frame = 0;
        bool playing = false;
        bool repeating = false;
        bool catchingUp = false;
    };

    void stop();
    void beginAgain();
    void goTo(int frame, Then then);
    void catchUpForATurn();
    void endCatchUp();
    void runTick();
    void tell();
    void setTimerInterval();

    Scene scene_;
    WindowPacer pacer_;
    SimulationClock clock_;
    SelectionModel selection_;
    FrameSamples samples_;
    QTimer timer_;
    std::optional<int> scrubbedFrame_; ///< of the samples, shown in place of the clock's
    std::optional<CatchUp> catchUp_;
    int repeatEndFrame_ = 0;
    bool isUnbroken_ = true; ///< the clock came to its frame as playing from the start does
    bool wasRunning_ = true; ///< the last tick ran, so that the next one has something new to show
    Told told_;
};

} // namespace jostle
