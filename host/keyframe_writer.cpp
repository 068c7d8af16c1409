#include "host/keyframe_writer.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

#include "host/host_time.h"
#include "host/layer_transform.h"
#include "host/shape_offsets.h"
#include "host/undo_group.h"
#include "simulation/keyframe_reduction.h"
#include "simulation/keyframe_thinning.h"

namespace jostle {

namespace {

bool isFinite(float v) {
    return std::isfinite(v);
}
bool isFinite(b2Vec2 v) {
    return std::isfinite(v.x) && std::isfinite(v.y);
}
bool isFinite(AEGP_TwoDVal v) {
    return std::isfinite(v.x) && std::isfinite(v.y);
}

/// Replaces each sample that is no finite number by the one before it, the first ones by the first that is.
/// @return whether any was replaced; with no finite sample at all the list becomes empty
template<class T>
bool mend(std::vector<T>& samples) {
    const auto usable = [](const T& sample) { return isFinite(sample); };
    const auto first = std::find_if(samples.begin(), samples.end(), usable);
    if (first == samples.end()) {
        const bool hadSamples = !samples.empty();
        samples.clear();
        return hadSamples;
    }
    bool mended = first != samples.begin();
    std::fill(samples.begin(), first, *first);
    for (auto sample = first + 1; sample < samples.end(); ++sample) {
        if (!isFinite(*sample)) {
            *sample = *(sample - 1);
            mended = true;
        }
    }
    return mended;
}

bool scalesDiffer(AEGP_TwoDVal a, AEGP_TwoDVal b) {
    const double x = a.x - b.x;
    const double y = a.y - b.y;
    return x * x + y * y > 0.001;
}

/// The world scale of a layer in percent: one entry for each frame of the range if its own scale has keyframes, else
/// the one of time 0.
struct ScaleSamples {
    bool keyframed = false;
    bool flippedOnImport = false; ///< whether x is below 0 at time 0, whatever the range
    std::vector<AEGP_TwoDVal> percent;
};

/// The streams of one layer that are written. With separated dimensions the position is in its followers.
struct LayerStreams {
    Stream position, positionX, positionY;
    Stream rotation;
    Stream anchor;
    Stream scale;
    bool separated = false;
};

class Writer {
public:
    Writer(HostChain& chain, Composition composition, const KeyframeJob& job)
        : chain_(chain),
          composition_(composition),
          job_(job),
          frameDuration_(composition.frameDuration(chain)),
          pixelAspect_(composition.item(chain).pixelAspect(chain)) {}

    /// Reads the scales of all layers, and how shape layers stand. Before anything is written: a child depends on
    /// parents that may be bodies and written before it.
    void readLooks();
    /// @param stance  receives what the layer gets that its body does not have
    /// @return whether some of its samples had to be mended
    bool writeLayer(std::size_t record, WrittenStance& stance);
    void setWorkArea();

private:
    void disableExpressions(const LayerStreams& streams);
    void writePosition(const LayerStreams& streams, bool isStatic);
    void writeScale(const BodyRecord& body, const Stream& stream, ScaleSamples& scale);
    /// Takes what the import folded into the body's place out of a shape layer's contents.
    /// @param matrix  of the layer on import
    /// @return the layer's new anchor point
    [[nodiscard]] b2Vec2 unfoldShapes(const BodyRecord& body, const Layer& layer, const Matrix4& matrix,
                                      b2Vec2 anchor) const;

    /// Replaces whatever a stream holds by one value, or by keyframes.
    /// @param keys  makes the indices of the samples that become keyframes
    /// @param put   writes a sample into a stream value
    template<class T, class Keys, class Put>
    void write(const Stream& stream, const std::vector<T>& samples, bool asOneValue, Keys keys, Put put);

    /// A number as it is handed to the host: rounded to what a file holds of it if keys are left out, so that what is
    /// checked is what will be read.
    [[nodiscard]] double handedOver(double number) const {
        constexpr double perUnit = 1000.0;
        return job_.tolerance > 0 ? std::round(number * perUnit) / perUnit : number;
    }
    [[nodiscard]] double toComposition(float x) const { return handedOver(static_cast<double>(x) / pixelAspect_); }
    /// Which positions become keyframes, or which numbers, with `unit` pixels or degrees to one of the host's.
    [[nodiscard]] std::vector<std::size_t> keysOf(const std::vector<b2Vec2>& positions);
    [[nodiscard]] std::vector<std::size_t> keysOf(const std::vector<float>& numbers, double tolerance, double unit);

    HostChain& chain_;
    Composition composition_;
    const KeyframeJob& job_;
    A_Time frameDuration_;
    double pixelAspect_;
    std::vector<ScaleSamples> scales_;   ///< by record
    std::vector<Matrix4> shapeMatrices_; ///< by record; of shape layers, at time 0

    // Samples of the layer at hand, kept between layers for their memory.
    std::vector<b2Vec2> positions_;
    std::vector<float> coordinates_;
    std::vector<float> rotations_;
    std::vector<double> exact_;   ///< samples, component by component
    std::vector<double> written_; ///< what a key would hold of each
};

void Writer::readLooks() {
    scales_.resize(job_.scene.bodies.size());
    shapeMatrices_.resize(job_.scene.bodies.size());
    for (std::size_t record = 0; record < scales_.size() && !chain_.failed(); ++record) {
        const Layer layer = composition_.layer(chain_, job_.scene.layerIndices[record]);
        if (job_.scene.bodies[record].isShapeLayer)
            shapeMatrices_[record] = layer.toWorld(chain_, sampleTime);
        const WorldScale worldScale(chain_, layer);
        ScaleSamples& samples = scales_[record];
        const auto percentAt = [&](A_Time time) {
            const AEGP_TwoDVal scale = worldScale.at(chain_, time);
            return AEGP_TwoDVal{scale.x * 100.0, scale.y * 100.0};
        };
        const AEGP_TwoDVal onImport = percentAt(sampleTime);
        samples.flippedOnImport = onImport.x < 0.0;
        samples.keyframed = worldScale.isKeyframed();
        if (!samples.keyframed)
            samples.percent.push_back(onImport);
        for (int frame = job_.startFrame; samples.keyframed && frame <= job_.endFrame && !chain_.failed(); ++frame)
            samples.percent.push_back(percentAt(timeOfFrame(frameDuration_, frame)));
    }
}

std::vector<std::size_t> Writer::keysOf(const std::vector<b2Vec2>& positions) {
    if (job_.tolerance <= 0)
        return keyframeIndices(std::span<const b2Vec2>(positions), vectorsDiffer);
    exact_.clear();
    written_.clear();
    for (const b2Vec2& position : positions) {
        const auto y = static_cast<double>(position.y);
        exact_.insert(exact_.end(), {static_cast<double>(position.x), y});
        written_.insert(written_.end(), {toComposition(position.x) * pixelAspect_, handedOver(y)});
    }
    return reducedKeyIndices(exact_, written_, 2, job_.tolerance);
}

std::vector<std::size_t> Writer::keysOf(const std::vector<float>& numbers, double tolerance, double unit) {
    if (tolerance <= 0)
        return keyframeIndices(std::span<const float>(numbers), floatsDiffer);
    exact_.assign(numbers.begin(), numbers.end());
    written_.clear();
    for (const double number : exact_)
        written_.push_back(handedOver(number / unit) * unit);
    return reducedKeyIndices(exact_, written_, 1, tolerance);
}

template<class T, class Keys, class Put>
void Writer::write(const Stream& stream, const std::vector<T>& samples, bool asOneValue, Keys keys, Put put) {
    if (samples.empty())
        return;
    stream.deleteKeys();
    // Without keys the stream has one value for all times, which all keys start from.
    StreamValue value = stream.valueAt(timeOfFrame(frameDuration_, job_.startFrame), Expressions::Ignored);
    if (asOneValue) {
        put(value, samples.front());
        stream.setValue(value);
        return;
    }
    KeyframeBatch batch(chain_, stream);
    for (const std::size_t i : keys()) {
        put(value, samples[i]);
        batch.add(timeOfFrame(frameDuration_, job_.startFrame + static_cast<int>(i)), value);
    }
    batch.commit();
}

void Writer::disableExpressions(const LayerStreams& streams) {
    if (streams.separated) {
        streams.positionX.disableExpression();
        streams.positionY.disableExpression();
    } else {
        streams.position.disableExpression();
    }
    streams.rotation.disableExpression();
    streams.anchor.disableExpression();
    streams.scale.disableExpression();
}

void Writer::writePosition(const LayerStreams& streams, bool isStatic) {
    if (!streams.separated) {
        write(
            streams.position, positions_, isStatic, [this] { return keysOf(positions_); },
            [this](StreamValue& value, b2Vec2 sample) {
                value.setPoint({toComposition(sample.x), handedOver(static_cast<double>(sample.y))});
            });
        return;
    }
    const auto take = [&](float b2Vec2::*coordinate) {
        coordinates_.clear();
        for (const b2Vec2& position : positions_)
            coordinates_.push_back(position.*coordinate);
    };
    // Each coordinate may be off by as much as leaves the distance within the tolerance.
    const double tolerance = job_.tolerance / std::sqrt(2.0);
    take(&b2Vec2::x);
    write(
        streams.positionX, coordinates_, isStatic, [&] { return keysOf(coordinates_, tolerance, pixelAspect_); },
        [this](StreamValue& value, float sample) { value.setNumber(toComposition(sample)); });
    take(&b2Vec2::y);
    write(
        streams.positionY, coordinates_, isStatic, [&] { return keysOf(coordinates_, tolerance, 1.0); },
        [this](StreamValue& value, float sample) { value.setNumber(handedOver(static_cast<double>(sample))); });
}

void Writer::writeScale(const BodyRecord& body, const Stream& stream, ScaleSamples& scale) {
    if (scale.percent.empty())
        return;
    if (body.type != BodyType::Dead) {
        // The written rotation goes on from that of the layer's x axis on import, and holds a half turn if that axis
        // was flipped then. With both axes turned over once more the layer keeps its look.
        if (scale.flippedOnImport) {
            for (AEGP_TwoDVal& percent : scale.percent)
                percent = {-percent.x, -percent.y};
        }
        write(
            stream, scale.percent, !scale.keyframed,
            [&] { return keyframeIndices(std::span<const AEGP_TwoDVal>(scale.percent), scalesDiffer); },
            [](StreamValue& value, AEGP_TwoDVal percent) { value.setPoint(percent); });
        return;
    }
    // A dead layer keeps its keyframes, and the signs that the host gave its scale when the parent was taken away.
    if (scale.keyframed)
        return;
    StreamValue value = stream.valueAt(sampleTime, Expressions::Ignored);
    const AEGP_TwoDVal present = value.point();
    value.setPoint(
        {std::copysign(scale.percent.front().x, present.x), std::copysign(scale.percent.front().y, present.y)});
    stream.setValue(value);
}

b2Vec2 Writer::unfoldShapes(const BodyRecord& body, const Layer& layer, const Matrix4& matrix, b2Vec2 anchor) const {
    const ShapeOffsets offsets(chain_, layer);
    const b2Vec2 pixels = job_.scene.worldToPixels(body.importPosition);
    const AEGP_TwoDVal place{static_cast<double>(pixels.x) / pixelAspect_, static_cast<double>(pixels.y)};
    if (offsets.areInPlace(matrix, place, {static_cast<double>(anchor.x), static_cast<double>(anchor.y)})) {
        offsets.clear();
        return anchor;
    }
    // Several elements, each with an offset of its own: without one of them the picture would fall apart. The offsets
    // stay, and the layer turns about the same point of its picture.
    const std::optional<AEGP_TwoDVal> point = layerPointAt(matrix, place);
    return point ? b2Vec2(static_cast<float>(point->x), static_cast<float>(point->y)) : anchor;
}

bool Writer::writeLayer(std::size_t record, WrittenStance& stance) {
    const BodyRecord& body = job_.scene.bodies[record];
    const ExportResult& result = job_.results[job_.results.size() - 1 - record];
    const bool isStatic = body.type == BodyType::Static;
    const bool isDead = body.type == BodyType::Dead;

    const Layer layer = composition_.layer(chain_, job_.scene.layerIndices[record]);
    if (layer.parent(chain_).exists())
        layer.clearParent(chain_);
    if (job_.enableMotionBlur && !isStatic && !isDead)
        layer.setFlag(chain_, AEGP_LayerFlag_MOTION_BLUR, true);

    LayerStreams streams;
    streams.position = layer.stream(chain_, AEGP_LayerStream_POSITION);
    streams.separated = streams.position.hasSeparatedDimensions();
    if (streams.separated) {
        streams.positionX = streams.position.follower(0);
        streams.positionY = streams.position.follower(1);
    }
    streams.rotation = layer.stream(chain_, AEGP_LayerStream_ROTATION);
    streams.anchor = layer.stream(chain_, AEGP_LayerStream_ANCHORPOINT);
    streams.scale = layer.stream(chain_, AEGP_LayerStream_SCALE);
    disableExpressions(streams);

    bool mended = mend(scales_[record].percent);
    stance = {result.layerAnchor, 0.0f};
    if (!isDead) {
        positions_.assign(result.positions.begin(), result.positions.end());
        rotations_.assign(result.rotations.begin(), result.rotations.end());
        mended = mend(positions_) || mended;
        mended = mend(rotations_) || mended;
        if (body.isShapeLayer) {
            const Matrix4& matrix = shapeMatrices_[record];
            stance.anchor = unfoldShapes(body, layer, matrix, stance.anchor);
            // The body of a free path has the layer's rotation in its vertices and starts at 0 degrees; the picture has
            // it in the layer's stream, and would spring back to upright with the body's angles alone.
            stance.turn = body.isPath ? static_cast<float>(rotationDegrees(matrix)) : 0.0f;
            for (float& degrees : rotations_)
                degrees += stance.turn;
        }
        writePosition(streams, isStatic);
        write(
            streams.rotation, rotations_, isStatic, [this] { return keysOf(rotations_, job_.tolerance, 1.0); },
            [this](StreamValue& value, float degrees) { value.setNumber(handedOver(static_cast<double>(degrees))); });
        write(
            streams.anchor, std::vector<b2Vec2>{stance.anchor}, true, [] { return std::vector<std::size_t>(); },
            [](StreamValue& value, b2Vec2 point) {
                value.setPoint({static_cast<double>(point.x), static_cast<double>(point.y)});
            });
        // The written rotation is whole: turning along the path must not be added to it.
        if (!isStatic && (layer.flags(chain_) & AEGP_LayerFlag_AUTO_ORIENT_ROTATION) != 0)
            layer.trySetFlag(chain_, AEGP_LayerFlag_AUTO_ORIENT_ROTATION, false);
    }
    writeScale(body, streams.scale, scales_[record]);
    return mended;
}

void Writer::setWorkArea() {
    composition_.setWorkArea(chain_, timeOfFrame(frameDuration_, job_.startFrame),
                             timeOfFrame(frameDuration_, job_.endFrame - job_.startFrame + 1));
}

bool isConsistent(const Composition& composition, const KeyframeJob& job) {
    return composition.exists() && job.endFrame >= job.startFrame && job.results.size() == job.scene.bodies.size() &&
           job.scene.layerIndices.size() == job.scene.bodies.size();
}

} // namespace

Composition duplicateActiveComposition(HostChain& chain) {
    const Composition active = activeComposition(chain);
    if (!active.exists())
        return {};
    const UndoGroup group(chain, "Jostle - Duplicate Comp");
    return active.duplicate(chain);
}

WriteReport writeKeyframes(HostChain& chain, Composition composition, const KeyframeJob& job,
                           const WriteProgress& progress) {
    WriteReport report;
    if (!isConsistent(composition, job))
        chain.fail(A_Err_PARAMETER);
    UndoGroup group(chain, "Jostle");
    {
        const Selection selection(chain, composition.handle());
        Writer writer(chain, composition, job);
        if (!chain.failed())
            writer.readLooks();
        const int total = job.scene.bodyCount();
        report.stances.resize(job.scene.bodies.size());
        for (int done = 1; done <= total && !chain.failed(); ++done) {
            const auto record = static_cast<std::size_t>(total - done);
            const bool mended = writer.writeLayer(record, report.stances[record]);
            if (chain.failed())
                break;
            report.layersWritten = done;
            report.layersMended += mended ? 1 : 0;
            if (progress && !progress(done, total)) {
                report.outcome = WriteOutcome::Cancelled;
                break;
            }
        }
        if (report.outcome != WriteOutcome::Cancelled) {
            selection.giveBackTo(composition.handle());
            if (!chain.failed())
                writer.setWorkArea();
        }
    }
    group.close();
    if (report.outcome == WriteOutcome::Cancelled)
        chain.call<&AEGP_CommandSuite1::AEGP_DoCommand>(AEGP_Command{hostCommandUndo});
    else if (!chain.failed())
        report.outcome = WriteOutcome::Done;
    report.error = chain.code();
    return report;
}

} // namespace jostle
