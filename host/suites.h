#pragma once

#include "host/suites_layer.h"
#include "host/suites_project.h"
#include "host/suites_types.h"

/// All that is asked of a compositing host: tables of C functions, acquired by name and version through
/// `SPBasicSuite` (see host/suite_handler.h). Every function returns `A_Err_NONE` or an error, after which its
/// outputs mean nothing, and is called on the host's main thread. Time is composition time unless said otherwise.
///
/// Order of calls in an import:
///  1. active item, its composition, count of layers; open an undo group
///  2. each layer, topmost first: names, object type, flags, 3D switch, video state, size of the source item
///  3. each layer that becomes a body: identifier, size, pixel aspect, duration and frame duration of the
///     composition, in point and duration; whether the rotation of the layer and of its parent varies; the mask
///     parade under the root of its streams, and then masks, text outlines or vectors; layer-to-world matrix at
///     time 0; anchor and scale, and the scales of all its parents; colour of a solid; label
///  4. close the undo group
///
/// Order of calls in an export:
///  1. active item, its composition; in an undo group of its own, a duplicate of the composition
///  2. open an undo group; keep the selection; pixel aspect of the composition
///  3. each body's layer: object type, pixel aspect of its source, parent; keys of the scale stream, world scale;
///     take the parent away; motion blur flag; position (or its two followers), rotation and anchor streams;
///     disable their expressions; clear the offsets of shape groups; for each stream delete the keys from the last
///     to the first, then set one value, or add keys in one batch
///  4. give the selection back, set the work area, close the undo group; a cancelled export runs the host's undo
