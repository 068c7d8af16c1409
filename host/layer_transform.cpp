#include "host/layer_transform.h"

#include <cmath>

#include <box2d/b2_math.h>

namespace jostle {

double rotationDegrees(const Matrix4& matrix) {
    // The points (1, 0) and (0, 0) through the matrix. In doubles throughout: far from the origin a float would cost
    // thousandths of a degree.
    const auto& m = matrix.m;
    const auto divisor = [](double w) { return w != 0.0 ? w : 1.0; };
    const double tipW = divisor(m[0][3] + m[3][3]);
    const double originW = divisor(m[3][3]);
    double x = (m[0][0] + m[3][0]) / tipW - m[3][0] / originW;
    double y = (m[0][1] + m[3][1]) / tipW - m[3][1] / originW;
    if (originW == tipW) { // without perspective the translation cancels exactly
        x = m[0][0] / originW;
        y = m[0][1] / originW;
    }
    return std::atan2(y, x) * 180.0 / static_cast<double>(b2_pi);
}

WorldScale::WorldScale(HostChain& chain, Layer layer) {
    for (; layer.exists() && !chain.failed(); layer = layer.parent(chain))
        streams_.push_back(layer.stream(chain, AEGP_LayerStream_SCALE));
}

bool WorldScale::isKeyframed() const {
    return !streams_.empty() && streams_.front().keyCount() > 0;
}

AEGP_TwoDVal WorldScale::at(HostChain& chain, A_Time time) const {
    AEGP_TwoDVal scale{1.0, 1.0};
    for (const Stream& stream : streams_) {
        const StreamValue value = stream.valueAt(time, Expressions::Applied);
        if (chain.failed())
            break;
        scale.x *= value.point().x / 100.0;
        scale.y *= value.point().y / 100.0;
    }
    return scale;
}

} // namespace jostle
