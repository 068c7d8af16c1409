#pragma once

#include "preview/draw_list.h"
#include "simulation/color.h"
#include "simulation/joint_record.h"

#include <array>

namespace jostle {

/// Colours and widths of the preview: the drawing preferences, with their defaults, and the background.
struct DrawStyle {
    Rgba background{38, 38, 38, 255};
    Rgba compBounds{128, 128, 128, 255};
    Rgba selectionHighlight{191, 140, 0, 255}; ///< outline of selected bodies
    Rgba staticHighlight{217, 46, 207, 255};   ///< outline of static bodies
    float selectionStrokeWidth = 2.0f;         ///< picture pixels
    /// By `JointType`: distance, pivot, piston, spring.
    std::array<Rgba, 4> joints{Rgba{255, 255, 0, 255}, Rgba{84, 255, 84, 255}, Rgba{204, 214, 211, 255},
                               Rgba{84, 84, 255, 255}};
    Rgba selectedJoint{255, 0, 0, 255};
    float jointStrokeWidth = 1.0f; ///< picture pixels

    friend bool operator==(const DrawStyle&, const DrawStyle&) = default;
};

/// What the view options menu turns on and off.
struct ViewOptions {
    bool shapes = true;
    bool mesh = false;        ///< the pieces that bodies consist of
    bool boundingBox = false; ///< of each body
    bool localAxes = false;   ///< at the centre of mass
    bool joints = true;
    bool compBounds = true;
    bool aematicLinks = true; ///< with `joints` only; no entry in the menu
    bool stateSigns =
        true; ///< small signs in bodies that are static, dormant, dead or led by their layer; with `shapes` only
};

/// Red, green and blue from 0 to 1, opaque. Values beyond are brought within.
[[nodiscard]] Rgba toRgba(const Rgb& color);
/// How bright a colour is seen, from 0 to 1, its alpha aside.
[[nodiscard]] float luminance(Rgba color);
/// Between two colours, with the opacity of the first.
/// @param amount  0 gives the first, 1 the second
[[nodiscard]] Rgba mix(Rgba from, Rgba to, float amount);
/// A colour that stands out from a background: the colour itself if it does, else moved towards white or black.
[[nodiscard]] Rgba readableOn(Rgba color, Rgba background);
/// White on a dark background, black on a light one.
[[nodiscard]] Rgba inkOn(Rgba background);

} // namespace jostle
