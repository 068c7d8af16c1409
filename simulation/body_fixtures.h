#pragma once

#include "simulation/scene.h"

#include <box2d/b2_body.h>

namespace jostle {

/// Makes the fixtures of a record's body from its outlines, then its mass, and counts the triangles for `isDenseMesh`.
///
/// Circles, boxes and closed polygons of up to 8 corners are taken as they are; an open path becomes a box of
/// `openShapeLineWidth` along each of its segments, and moves the centre of mass to the body's origin if no other piece
/// comes after it. Pieces that are too small, flat or not finite are skipped in silence, which can leave a body without
/// a fixture.
void createFixtures(BodyRecord& record);

/// Gives a record's body another type, and the mass that its shapes have now, about their true centre.
void changeType(const BodyRecord& record, b2BodyType type);

} // namespace jostle
