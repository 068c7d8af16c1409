#pragma once

#include <optional>
#include <string>
#include <vector>

#include "preview/draw_style.h"
#include "preview/view_transform.h"
#include "simulation/scene.h"
#include "standalone/commands/solve_plan.h"

namespace jostle::standalone {

/// How pictures are to look, as a person says it.
struct PictureOptions {
    std::string size;                ///< WIDTHxHEIGHT or WIDTH, pixels; empty for one that suits the composition
    std::string background = "dark"; ///< dark, light, or RRGGBB with or without #
    std::vector<std::string> show;   ///< more than usual: mesh, boxes, axes
    std::vector<std::string> hide;   ///< less: shapes, joints, bounds, signs
};

/// The same as the preview takes it.
struct PictureLook {
    ViewOptions options;
    DrawStyle style;
    int width = 0;  ///< pixels; 0 for one that suits the composition
    int height = 0; ///< pixels; 0 for one that suits composition and width
};

/// Colours and widths are those of the user's preferences. Not to be called while a host lives.
/// @param look  receives it
/// @return nothing if it is clear; else what is not
[[nodiscard]] std::optional<Refusal> chooseLook(const PictureOptions& options, PictureLook& look);

/// The view of a picture that shows a whole composition, with a small margin.
/// @param longestSide  pixels, where the look leaves the size open
[[nodiscard]] ViewTransform viewOf(const Scene& scene, const PictureLook& look, int longestSide);

} // namespace jostle::standalone
