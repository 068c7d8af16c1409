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
    // As a rule all are, and of hundreds of thousands that is seen soonest without a branch for each.
    unsigned odd = 0;
    for (const T& sample : samples)
        odd |= usable(sample) ? 0U : 1U;
    if (odd == 0)
        return false;
    const auto first = std::find_if(samples.begin(), samples.end(), usable);
    if (first == samples.end()) {
        samples.clear();
        return true;
    }
    std::fill(samples.begin(), first, *first);
    for (auto sample = first + 1; sample < samples.end(); ++sample) {
        if (!isFinite(*sample))
            *sample = *(sample - 1);
    }
    return true;
}

/// Pixels or degrees in one of the host's units. Most are 1, and a division takes longer than all else of a key.
double inUnits(float number, double unit) {
    return unit == 1.0 ? static_cast<double>(number) : static_cast<double>(number) / unit;
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

    /// Replaces whatever a stream holds by one value, or by keyframes where the samples change.
    /// @param put  writes a sample into a stream value
    template<class T, class Differ, class Put>
    void write(const Stream& stream, const std::vector<T>& samples, bool asOneValue, Differ differ, Put put);
    /// The same for positions and single numbers, reduced if the job says so.
    /// @param unit  pixels or degrees to one of the host's units, in x and y or in the number
    void writePoints(const Stream& stream, const std::vector<b2Vec2>& points, bool asOneValue, AEGP_TwoDVal unit);
    void writeNumbers(const Stream& stream, const std::vector<float>& numbers, bool asOneValue, double unit,
                      double tolerance);
    /// Keyframes that straight lines between them need.
    /// @param put  writes a point in the host's units into a stream value
    template<class Put>
    void writeReduced(const Stream& stream, std::span<const b2Vec2> samples, AEGP_TwoDVal unit, double tolerance,
                      Put put);

    HostChain& chain_;
    Composition composition_;
    const KeyframeJob& job_;
    A_Time frameDuration_;
    double pixelAspect_;
    std::vector<ScaleSamples> scales_;   ///< by record
    std::vector<Matrix4> shapeMatrices_; ///< by record; of shape layers, at time 0

    // Of the layer at hand, kept between layers for their memory.
    ExportResult samples_;
    std::vector<float> coordinates_;
    std::vector<b2Vec2> onAxis_; ///< numbers as points
    std::vector<std::size_t> keyframes_;
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

template<class T, class Differ, class Put>
void Writer::write(const Stream& stream, const std::vector<T>& samples, bool asOneValue, Differ differ, Put put) {
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
    for (const std::size_t i : keyframeIndices(std::span<const T>(samples), differ, keyframes_)) {
        put(value, samples[i]);
        batch.add(timeOfFrame(frameDuration_, job_.startFrame + static_cast<int>(i)), value);
    }
    batch.commit();
}

template<class Put>
void Writer::writeReduced(const Stream& stream, std::span<const b2Vec2> samples, AEGP_TwoDVal unit, double tolerance,
                          Put put) {
    // What a file holds of a number, so that what was checked is what will be read.
    constexpr double perUnit = 1000.0;
    const auto inHost = [](double number, double size) { return std::round(number / size * perUnit) / perUnit; };
    stream.deleteKeys();
    StreamValue value = stream.valueAt(timeOfFrame(frameDuration_, job_.startFrame), Expressions::Ignored);
    KeyframeBatch batch(chain_, stream);
    for (const ReducedKey& key : reducedKeys(samples, {unit.x / perUnit, unit.y / perUnit}, tolerance)) {
        put(value, AEGP_TwoDVal{inHost(key.value[0], unit.x), inHost(key.value[1], unit.y)});
        batch.add(timeOfFrame(frameDuration_, job_.startFrame + static_cast<int>(key.index)), value);
    }
    batch.commit();
}

void Writer::writePoints(const Stream& stream, const std::vector<b2Vec2>& points, bool asOneValue, AEGP_TwoDVal unit) {
    if (job_.tolerance > 0 && !asOneValue && !points.empty()) {
        writeReduced(stream, points, unit, job_.tolerance,
                     [](StreamValue& value, AEGP_TwoDVal point) { value.setPoint(point); });
        return;
    }
    const auto differ = [](b2Vec2 a, b2Vec2 b) { return vectorsDiffer(a, b); }; // not by its address: to be inlined
    write(stream, points, asOneValue, differ, [&](StreamValue& value, b2Vec2 sample) {
        value.setPoint({inUnits(sample.x, unit.x), inUnits(sample.y, unit.y)});
    });
}

void Writer::writeNumbers(const Stream& stream, const std::vector<float>& numbers, bool asOneValue, double unit,
                          double tolerance) {
    if (tolerance > 0 && !asOneValue && !numbers.empty()) {
        onAxis_.clear();
        for (const float number : numbers)
            onAxis_.emplace_back(number, 0.0f);
        writeReduced(stream, onAxis_, {unit, 1.0}, tolerance,
                     [](StreamValue& value, AEGP_TwoDVal point) { value.setNumber(point.x); });
        return;
    }
    const auto differ = [](float a, float b) { return floatsDiffer(a, b); };
    write(stream, numbers, asOneValue, differ,
          [&](StreamValue& value, float sample) { value.setNumber(inUnits(sample, unit)); });
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
        writePoints(streams.position, samples_.positions, isStatic, {pixelAspect_, 1.0});
        return;
    }
    const auto take = [&](float b2Vec2::*coordinate) {
        coordinates_.clear();
        for (const b2Vec2& position : samples_.positions)
            coordinates_.push_back(position.*coordinate);
    };
    // Each coordinate may be off by as much as leaves the distance within the tolerance.
    const double tolerance = job_.tolerance / std::sqrt(2.0);
    take(&b2Vec2::x);
    writeNumbers(streams.positionX, coordinates_, isStatic, pixelAspect_, tolerance);
    take(&b2Vec2::y);
    writeNumbers(streams.positionY, coordinates_, isStatic, 1.0, tolerance);
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
        write(stream, scale.percent, !scale.keyframed, scalesDiffer,
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
    job_.samplesOf(job_.scene.bodies.size() - 1 - record, samples_);
    stance = {samples_.layerAnchor, 0.0f};
    if (!isDead) {
        mended = mend(samples_.positions) || mended;
        mended = mend(samples_.rotations) || mended;
        if (body.isShapeLayer) {
            const Matrix4& matrix = shapeMatrices_[record];
            stance.anchor = unfoldShapes(body, layer, matrix, stance.anchor);
            // The body of a free path has the layer's rotation in its vertices and starts at 0 degrees; the picture has
            // it in the layer's stream, and would spring back to upright with the body's angles alone.
            stance.turn = body.isPath ? static_cast<float>(rotationDegrees(matrix)) : 0.0f;
            for (float& degrees : samples_.rotations)
                degrees += stance.turn;
        }
        writePosition(streams, isStatic);
        writeNumbers(streams.rotation, samples_.rotations, isStatic, 1.0, job_.tolerance);
        write(streams.anchor, std::vector<b2Vec2>{stance.anchor}, true, vectorsDiffer,
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
    return composition.exists() && job.samplesOf && job.endFrame >= job.startFrame &&
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
