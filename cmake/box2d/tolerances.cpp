// tolerances.h, which declares these, is included by the compiler.

float b2_linearSlop = 0.005f;
float b2_polygonRadius = 0.01f;
