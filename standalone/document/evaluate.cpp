// Values of streams between their keys, and the matrices made of them.
//
// Easing solves a cubic whose ends are (0, 0) and (1, 1) for the share of time and takes its other coordinate as the
// share of the way. Curved ways are walked by length along straight lines between 150 points at even steps of the
// parameter. That is what players show, and keys baked from it have to meet what they showed before; the true curve
// lies within some hundredths of a pixel of it.
#include "standalone/document/evaluate.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace jostle::standalone {

namespace {

constexpr double degrees = std::numbers::pi / 180;

/// Root of a rising function within 0 to 1, by Newton's method kept within a shrinking bracket.
/// @param evaluate  gives the value, less the target, and sets the derivative
template<class Evaluate>
double solveRising(double guess, double tolerance, const Evaluate& evaluate) {
    double low = 0, high = 1, at = guess;
    for (int step = 0; step < 64; ++step) {
        double slope = 0;
        const double excess = evaluate(at, slope);
        if (std::abs(excess) <= tolerance)
            return at;
        (excess > 0 ? high : low) = at;
        const double newton = slope > 0 ? at - excess / slope : -1;
        at = newton > low && newton < high ? newton : (low + high) / 2;
    }
    return at;
}

/// Share of the way at the share `time` of the time, for one pair of handles.
double ease(const KeySegment& segment, std::size_t component, double time) {
    const double x1 = std::clamp(segment.outX[component], 0.0, 1.0);
    const double x2 = std::clamp(segment.inX[component], 0.0, 1.0);
    const double y1 = segment.outY[component], y2 = segment.inY[component];
    if (segment.linear || (segment.outX[component] == y1 && segment.inX[component] == y2))
        return time;
    const double share = solveRising(time, 1e-12, [&](double s, double& slope) {
        const double rest = 1 - s;
        slope = 3 * rest * rest * x1 + 6 * rest * s * (x2 - x1) + 3 * s * s * (1 - x2);
        return 3 * rest * rest * s * x1 + 3 * rest * s * s * x2 + s * s * s - time;
    });
    const double rest = 1 - share;
    return 3 * rest * rest * share * y1 + 3 * rest * share * share * y2 + share * share * share;
}

double lengthOf(const Components& v) {
    return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

double distance(const Components& a, const Components& b) {
    return lengthOf({b[0] - a[0], b[1] - a[1], b[2] - a[2]});
}

/// Cubic by its polynomial: start + c1 t + c2 t^2 + c3 t^3 in each component.
struct Curve {
    Components start, c1, c2, c3;

    Curve(const Components& from, const Components& out, const Components& in, const Components& to)
        : start{from}, c1{}, c2{}, c3{} {
        for (std::size_t c = 0; c < 3; ++c) {
            const double first = out[c], second = to[c] - from[c] + in[c]; // both relative to the start
            c1[c] = 3 * first;
            c2[c] = 3 * (second - 2 * first);
            c3[c] = (to[c] - from[c]) + 3 * (first - second);
        }
    }

    [[nodiscard]] Components at(double t) const {
        Components point{};
        for (std::size_t c = 0; c < 3; ++c)
            point[c] = start[c] + t * (c1[c] + t * (c2[c] + t * c3[c]));
        return point;
    }

    /// Point at a share of the whole length, from 0 to 1.
    [[nodiscard]] Components atLength(double share) const {
        constexpr std::size_t points = 150; // as many as players take
        std::array<double, points> reached{};
        std::array<Components, points> passed{};
        passed[0] = start;
        for (std::size_t i = 1; i < points; ++i) {
            passed[i] = at(static_cast<double>(i) / (points - 1));
            reached[i] = reached[i - 1] + distance(passed[i - 1], passed[i]);
        }
        const double sought = share * reached.back();
        const auto beyond = std::upper_bound(reached.begin() + 1, reached.end() - 1, sought);
        const auto to = static_cast<std::size_t>(beyond - reached.begin());
        const double span = reached[to] - reached[to - 1];
        const double within = span > 0 ? (sought - reached[to - 1]) / span : 0;
        Components point{};
        for (std::size_t c = 0; c < 3; ++c)
            point[c] = passed[to - 1][c] + (passed[to][c] - passed[to - 1][c]) * within;
        return point;
    }
};

/// Whether `offset` leads to a point within a thousandth of a pixel of the line along `way`, which has a length.
bool liesOnLine(const Components& way, const Components& offset) {
    const Components cross{way[1] * offset[2] - way[2] * offset[1], way[2] * offset[0] - way[0] * offset[2],
                           way[0] * offset[1] - way[1] * offset[0]};
    return lengthOf(cross) <= 0.001 * lengthOf(way);
}

Components keyValue(const Stream& stream, std::size_t key) {
    Components value{};
    const auto count = static_cast<std::size_t>(stream.components);
    for (std::size_t c = 0; c < count; ++c)
        value[c] = stream.keys.values[key * count + c];
    return value;
}

/// Index of the last key at or before a frame that is not before the first key.
std::size_t keyBefore(const std::vector<double>& frames, double frame) {
    const auto after = std::upper_bound(frames.begin(), frames.end(), frame);
    return static_cast<std::size_t>(after - frames.begin()) - 1;
}

Components between(const Stream& stream, std::size_t key, double time) {
    const Components start = keyValue(stream, key);
    Components end = keyValue(stream, key + 1);
    const KeySegment* segment = stream.keys.segments.empty() ? nullptr : &stream.keys.segments[key];
    if (segment && segment->hold)
        return start;
    if (segment && segment->hasEnd)
        end = segment->end;
    Components way{};
    for (std::size_t c = 0; c < 3; ++c)
        way[c] = end[c] - start[c];
    if (segment && segment->spatial) {
        const bool straight =
            lengthOf(way) > 0 && liesOnLine(way, segment->outTangent) && liesOnLine(way, segment->inTangent);
        if (!straight) {
            const Curve curve{start, segment->outTangent, segment->inTangent, end};
            return curve.atLength(std::clamp(ease(*segment, 0, time), 0.0, 1.0));
        }
    }
    Components value{};
    for (std::size_t c = 0; c < static_cast<std::size_t>(stream.components); ++c)
        value[c] = start[c] + way[c] * (segment ? ease(*segment, c, time) : time);
    return value;
}

/// Narrows a span of frames around `frame` so that no key of the track lies within it.
void keepOffKeys(const KeyTrack& keys, double frame, double& from, double& to) {
    if (keys.size() < 2)
        return;
    if (frame < keys.frames.front()) {
        to = std::min(to, keys.frames.front());
    } else if (frame > keys.frames.back()) {
        from = std::max(from, keys.frames.back());
    } else {
        const std::size_t key = std::min(keyBefore(keys.frames, frame), keys.size() - 2);
        from = std::max(from, keys.frames[key]);
        to = std::min(to, keys.frames[key + 1]);
    }
}

Matrix4d planar(double m00, double m01, double m10, double m11) {
    Matrix4d matrix;
    matrix.m[0][0] = m00;
    matrix.m[0][1] = m01;
    matrix.m[1][0] = m10;
    matrix.m[1][1] = m11;
    return matrix;
}

Matrix4d rotation(double angleDegrees) {
    const double sine = std::sin(angleDegrees * degrees), cosine = std::cos(angleDegrees * degrees);
    return planar(cosine, sine, -sine, cosine);
}

} // namespace

Matrix4d operator*(const Matrix4d& first, const Matrix4d& second) {
    Matrix4d product;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            double sum = 0;
            for (int i = 0; i < 4; ++i)
                sum += first.m[row][i] * second.m[i][column];
            product.m[row][column] = sum;
        }
    }
    return product;
}

Components valueAt(const Stream& stream, double frame) {
    const KeyTrack& keys = stream.keys;
    if (keys.empty())
        return stream.value;
    if (!(frame > keys.frames.front()))
        return keyValue(stream, 0);
    if (frame >= keys.frames.back())
        return keyValue(stream, keys.size() - 1);
    const std::size_t key = keyBefore(keys.frames, frame);
    const double begin = keys.frames[key];
    return between(stream, key, (frame - begin) / (keys.frames[key + 1] - begin));
}

PathValue valueAt(const PathStream& path, double frame) {
    if (path.frames.empty())
        return path.value;
    if (!(frame > path.frames.front()) && path.frames.front() != frame)
        return path.values.front();
    if (frame >= path.frames.back())
        return path.values.back();
    const std::size_t key = keyBefore(path.frames, frame);
    const PathValue &from = path.values[key], &to = path.values[key + 1];
    const KeySegment* segment = path.segments.empty() ? nullptr : &path.segments[key];
    if (from.vertices.size() != to.vertices.size() || (segment && segment->hold))
        return from;
    const double time = (frame - path.frames[key]) / (path.frames[key + 1] - path.frames[key]);
    const double share = segment ? ease(*segment, 0, time) : time;
    PathValue value = from;
    for (std::size_t i = 0; i < value.vertices.size(); ++i) {
        for (double PathVertex::*number :
             {&PathVertex::x, &PathVertex::y, &PathVertex::inX, &PathVertex::inY, &PathVertex::outX, &PathVertex::outY})
            value.vertices[i].*number += (to.vertices[i].*number - from.vertices[i].*number) * share;
    }
    return value;
}

Components positionAt(const Transform& transform, double frame) {
    if (!transform.separated)
        return valueAt(transform.position, frame);
    return {valueAt(transform.dimensions->x, frame)[0], valueAt(transform.dimensions->y, frame)[0],
            valueAt(transform.dimensions->z, frame)[0]};
}

double travelDirection(const Transform& transform, double frame) {
    const KeyTrack& first = transform.separated ? transform.dimensions->x.keys : transform.position.keys;
    const KeyTrack& second = transform.separated ? transform.dimensions->y.keys : transform.position.keys;
    const KeyTrack& any = first.size() > 1 ? first : second;
    if (any.size() < 2)
        return 0;
    double begin = any.frames.front(), end = any.frames.back();
    for (const KeyTrack* keys : {&first, &second}) {
        if (keys->size() > 1) {
            begin = std::min(begin, keys->frames.front());
            end = std::max(end, keys->frames.back());
        }
    }
    const double at = std::clamp(frame, begin, end);
    // Central difference over a hundredth of a frame, one-sided at the ends of a segment.
    double from = std::max(at - 0.005, begin), to = std::min(at + 0.005, end);
    // Where the way has a corner at a key, players still look back.
    const double side = at > begin ? std::nextafter(at, begin) : at;
    keepOffKeys(first, side, from, to);
    keepOffKeys(second, side, from, to);
    const Components before = positionAt(transform, from);
    // A key's own frame shows the value that the next segment starts with.
    const Components after = positionAt(transform, std::nextafter(to, from));
    return std::atan2(after[1] - before[1], after[0] - before[0]) / degrees;
}

Matrix4d localMatrix(const Layer& layer, double frame) {
    const Transform& transform = layer.transform;
    const Components anchor = valueAt(transform.anchor, frame);
    const Components scale = valueAt(transform.scale, frame);
    const Components position = positionAt(transform, frame);
    const double skew = valueAt(transform.skew, frame)[0];

    Matrix4d matrix = planar(scale[0] / 100, 0, 0, scale[1] / 100);
    if (skew != 0) {
        const double axis = valueAt(transform.skewAxis, frame)[0];
        matrix = matrix * (rotation(axis) * planar(1, 0, -std::tan(skew * degrees), 1) * rotation(-axis));
    }
    const double travel = layer.autoOrient ? travelDirection(transform, frame) : 0;
    matrix = matrix * rotation(valueAt(transform.rotation, frame)[0] + travel);
    for (int column = 0; column < 2; ++column) {
        matrix.m[3][column] = position[static_cast<std::size_t>(column)] - anchor[0] * matrix.m[0][column] -
                              anchor[1] * matrix.m[1][column];
    }
    return matrix;
}

Matrix4d worldMatrix(const Layer& layer, double frame) {
    Matrix4d matrix = localMatrix(layer, frame);
    for (const Layer* parent = layer.parent; parent; parent = parent->parent)
        matrix = matrix * localMatrix(*parent, frame);
    return matrix;
}

} // namespace jostle::standalone
