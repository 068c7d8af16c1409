#pragma once

// The compiler includes this file ahead of every other (see CMakeLists.txt), in Box2D and in our code alike: the
// library's two length tolerances are macros with fixed values, and become variables that it reads while it runs.

#include <box2d/b2_common.h>

#undef b2_linearSlop
#undef b2_polygonRadius

/// How far shapes may sink into each other before the solver pushes them apart, in metres. At first 0.005.
extern float b2_linearSlop;

/// Thickness of the skin around polygons, edges and chains, in metres; a shape takes it when it is made. At first
/// 0.01. The library expects it to be twice the slop.
extern float b2_polygonRadius;
