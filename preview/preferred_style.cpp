#include "preview/preferred_style.h"

namespace jostle {

namespace {

Rgba toRgba(const ByteColor& color) {
    const auto channel = [](int value) { return static_cast<std::uint8_t>(value); };
    return {channel(color.red), channel(color.green), channel(color.blue), 255};
}

} // namespace

void applyPreferences(const UserPreferences& preferences, DrawStyle& style) {
    style.selectionHighlight = toRgba(preferences.bodySelectionHighlight);
    style.selectionStrokeWidth = static_cast<float>(preferences.selectionStrokeWidth);
    style.staticHighlight = toRgba(preferences.staticBodyHighlight);
    style.joints = {toRgba(preferences.distanceJointColor), toRgba(preferences.pivotJointColor),
                    toRgba(preferences.pistonJointColor), toRgba(preferences.springJointColor)};
    style.selectedJoint = toRgba(preferences.selectedJointColor);
    style.jointStrokeWidth = static_cast<float>(preferences.jointStrokeWidth);
}

} // namespace jostle
