#include "editing/simulation_view.h"

#include <QElapsedTimer>

#include <algorithm>
#include <utility>

namespace jostle {

namespace {

constexpr int lastFrame = 99999;  // the clock starts over at the one after it
constexpr int catchUpTurnMs = 20; // long enough to get on, short enough to answer the pointer

bool hasSprings(const Scene& scene) {
    return std::any_of(scene.joints.begin(), scene.joints.end(),
                       [](const JointRecord& joint) { return joint.type == JointType::Spring; });
}

} // namespace

SimulationView::SimulationView(Scene scene, LayerMotion& layers, WallPacer pacer, QObject* parent)
    : QObject(parent),
      scene_(std::move(scene)),
      pacer_(std::move(pacer)),
      clock_(scene_, layers, pacer_),
      selection_(scene_) {
    timer_.setTimerType(Qt::PreciseTimer);
    // Counted from the end of a tick: a timer that keeps its own beat would make up for what the pacer waits off.
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, [this] {
        updatePhysics();
        timer_.start();
    });
    connect(&selection_, &SelectionModel::changed, this, &SimulationView::pictureChanged);
    beginAgain();
}

void SimulationView::start() {
    setTimerInterval();
    timer_.start();
}

void SimulationView::setTimerInterval() {
    timer_.setInterval(catchUp_ ? 0 : tickIntervalMs(scene_.fps));
}

std::span<const BodySample> SimulationView::shownSamples() const {
    return scrubbedFrame_ ? samples_.at(*scrubbedFrame_) : std::span<const BodySample>();
}

bool SimulationView::isPlaying() const {
    return catchUp_ ? catchUp_->then != Then::Stay : clock_.isPlaying() && !clock_.isSingleStep();
}

bool SimulationView::isRepeating() const {
    return catchUp_ ? catchUp_->then == Then::Repeat : clock_.isRepeating();
}

void SimulationView::play() {
    if (catchUp_) {
        catchUp_->then = Then::Play;
    } else if (scrubbedFrame_) {
        goTo(*scrubbedFrame_, Then::Play);
    } else {
        clock_.play();
    }
    tell();
}

void SimulationView::pause() {
    stop();
    tell();
}

void SimulationView::step() {
    if (catchUp_ || scrubbedFrame_) {
        showFrame(frame() + 1);
        return;
    }
    clock_.step();
    tell();
}

void SimulationView::restartSimulation() {
    stop();
    beginAgain();
    tell();
}

void SimulationView::playFromStart() {
    restartSimulation();
    clock_.play();
    tell();
}

void SimulationView::refreshSimulation() {
    const bool playsOn = isPlaying();
    samples_.clear();
    restartSimulation();
    if (playsOn) {
        play();
    }
    emit pictureChanged();
}

void SimulationView::repeat() {
    const int endFrame = frame();
    if (endFrame == 0) {
        return;
    }
    repeatEndFrame_ = endFrame;
    if (catchUp_ || scrubbedFrame_) {
        goTo(endFrame, Then::Repeat);
    } else {
        clock_.repeat();
    }
    tell();
}

void SimulationView::showFrame(int frame) {
    frame = std::clamp(frame, 0, lastFrame);
    stop();
    scrubbedFrame_.reset();
    if (frame != clock_.frame() || !isUnbroken_) {
        if (samples_.contains(frame)) {
            scrubbedFrame_ = frame;
        } else {
            goTo(frame, Then::Stay);
        }
    }
    emit pictureChanged();
    tell();
}

void SimulationView::stop() {
    clock_.pause();
    catchUp_.reset();
    setTimerInterval();
}

void SimulationView::beginAgain() {
    clock_.restart();
    scrubbedFrame_.reset();
    isUnbroken_ = true;
    wasRunning_ = true;
    samples_.add(0, scene_);
}

// A frame that is shown from the samples stays in view meanwhile.
void SimulationView::goTo(int frame, Then then) {
    if (frame < clock_.frame() || !isUnbroken_) {
        const std::optional<int> shown = scrubbedFrame_;
        beginAgain();
        scrubbedFrame_ = shown;
    }
    catchUp_ = CatchUp{frame, then};
    setTimerInterval();
}

void SimulationView::updatePhysics() {
    if (catchUp_) {
        catchUpForATurn();
    } else {
        const bool runs = clock_.isRunning();
        const int shown = clock_.frame();
        runTick();
        if (runs && shown % 2 == 0) {
            emit rateChanged(pacer_.rate());
        }
        if (runs || wasRunning_) {
            emit pictureChanged();
        }
        wasRunning_ = runs;
    }
    tell();
}

// The clock plays rather than steps: a single step leaves out the pull of springs.
void SimulationView::catchUpForATurn() {
    QElapsedTimer turn;
    turn.start();
    pacer_.setHeld(false);
    clock_.play();
    while (clock_.frame() < catchUp_->frame && turn.elapsed() < catchUpTurnMs) {
        runTick();
    }
    clock_.pause();
    pacer_.setHeld(true);
    if (clock_.frame() >= catchUp_->frame) {
        endCatchUp();
    }
    emit pictureChanged();
}

void SimulationView::endCatchUp() {
    const Then then = catchUp_->then;
    catchUp_.reset();
    scrubbedFrame_.reset();
    wasRunning_ = true;
    setTimerInterval();
    if (then == Then::Play) {
        clock_.play();
    } else if (then == Then::Repeat) {
        clock_.repeat();
    }
}

void SimulationView::runTick() {
    const int before = clock_.frame();
    const bool runs = clock_.isRunning();
    const bool isAlone = clock_.isSingleStep();
    clock_.tick();
    if (!runs) {
        return;
    }
    if (clock_.frame() <= before) {
        isUnbroken_ = clock_.isRepeating(); // else it came to the last frame and counted on from a new world
    }
    if (isUnbroken_) {
        samples_.add(clock_.frame(), scene_);
    }
    // Springs pull only when the clock plays on, so that what follows a single step is another motion.
    if (isAlone && hasSprings(scene_)) {
        isUnbroken_ = false;
    }
}

void SimulationView::tell() {
    const Told now{frame(), isPlaying(), isRepeating(), isCatchingUp()};
    const Told before = std::exchange(told_, now);
    if (now.frame != before.frame) {
        emit frameChanged(now.frame);
    }
    if (now.playing != before.playing || now.repeating != before.repeating || now.catchingUp != before.catchingUp) {
        emit transportChanged();
    }
}

} // namespace jostle
