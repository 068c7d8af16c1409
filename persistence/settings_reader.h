#pragma once

#include <string_view>

#include "host/messages.h"
#include "persistence/layer_access.h"
#include "persistence/quick_preset.h"
#include "simulation/scene.h"

namespace jostle {

/// How a load ended. All but the last leave joints, snapshots and bodies as they were.
enum class LoadResult {
    Unreadable,     ///< no such file, no XML, or beyond the limits of settings_limits.h; nothing was changed
    NotSettings,    ///< another kind of XML; nothing was changed
    GlobalsMissing, ///< a global section is missing; those before it hold
    BodiesMissing,  ///< no body in the file; its global values hold
    NoBodyMatched,  ///< no layer of the scene is in it; global values are at their defaults. To be told by nobody
    Complete,       ///< the caller restarts the simulation from frame 0 and clears the undo stack
};

/// What settings are read into.
struct SettingsTarget {
    Scene& scene;
    SnapshotStrip& snapshots;
    LayerAccess layers;
};

/// Lays a settings file over a scene whose bodies are there already.
///
/// Bodies are matched by the identifiers of their layers; what the file does not name stays as it is. A matched body
/// takes the defaults of what its element lacks. Global values go through the panels' sliders. Joints and snapshots are
/// replaced. The world must be rebuilt afterwards.
/// @param text       what the file holds
/// @param shownPath  how messages call the file
/// @param messages   is told what is wrong; may be null
LoadResult readSettings(std::string_view text, std::string_view shownPath, const SettingsTarget& target,
                        MessageSink* messages);

/// What is wrong with a settings file that is not there, or is no XML.
constexpr std::string_view isUnreadable = "cannot be found or its format is not supported";

/// Tells what is wrong with a settings file.
/// @param what      as in "is a directory"
/// @param messages  may be null
void reportFile(std::string_view shownPath, std::string_view what, MessageSink* messages);

} // namespace jostle
