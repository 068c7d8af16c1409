#include "simulation/keyframe_reduction.h"

#include <algorithm>

namespace jostle {

namespace {

class Reducer {
public:
    Reducer(std::span<const double> samples, std::span<const double> written, std::size_t components, double tolerance)
        : samples_(samples), written_(written), components_(components), limit_(tolerance * tolerance) {}

    [[nodiscard]] std::size_t count() const { return samples_.size() / components_; }

    /// The furthest index to which a line from the key at `from` was found to hold; `from` is not the last.
    [[nodiscard]] std::size_t reachFrom(std::size_t from) const {
        const std::size_t most = count() - 1 - from;
        std::size_t holds = 1;
        std::size_t fails = most + 1;
        while (holds < most) {
            const std::size_t length = std::min(2 * holds, most);
            if (!lineHolds(from, from + length)) {
                fails = length;
                break;
            }
            holds = length;
        }
        while (fails - holds > 1) {
            const std::size_t length = holds + (fails - holds) / 2;
            (lineHolds(from, from + length) ? holds : fails) = length;
        }
        return from + holds;
    }

    /// Whether the value of the key at `from` may stand for all samples after it.
    [[nodiscard]] bool staysFrom(std::size_t from) const {
        for (std::size_t i = from + 1; i < count(); ++i) {
            if (!isNear(from, from, 0.0, i))
                return false;
        }
        return true;
    }

private:
    [[nodiscard]] bool lineHolds(std::size_t from, std::size_t to) const {
        const auto length = static_cast<double>(to - from);
        for (std::size_t i = from + 1; i < to; ++i) {
            if (!isNear(from, to, static_cast<double>(i - from) / length, i))
                return false;
        }
        return isNear(to, to, 0.0, to);
    }

    /// Whether sample i is within the limit of the point at that fraction of the way between two keys.
    [[nodiscard]] bool isNear(std::size_t from, std::size_t to, double fraction, std::size_t i) const {
        double squared = 0;
        for (std::size_t c = 0; c < components_; ++c) {
            const double begin = written_[from * components_ + c];
            const double value = begin + (written_[to * components_ + c] - begin) * fraction;
            const double off = value - samples_[i * components_ + c];
            squared += off * off;
        }
        return squared <= limit_;
    }

    std::span<const double> samples_;
    std::span<const double> written_;
    std::size_t components_;
    double limit_; ///< on the squared distance
};

} // namespace

std::vector<std::size_t> reducedKeyIndices(std::span<const double> samples, std::span<const double> written,
                                           std::size_t components, double tolerance) {
    const Reducer reducer(samples, written, components, tolerance);
    std::vector<std::size_t> indices;
    if (reducer.count() == 0)
        return indices;
    indices.push_back(0);
    while (indices.back() + 1 < reducer.count()) {
        if (reducer.staysFrom(indices.back()))
            break;
        indices.push_back(reducer.reachFrom(indices.back()));
    }
    return indices;
}

} // namespace jostle
