#pragma once

#include <string>
#include <string_view>

#include "host/chain.h"
#include "host/messages.h"
#include "persistence/settings_reader.h"

namespace jostle {

/// Reads a settings file and lays it over a scene; see readSettings.
/// @param path      UTF-8
/// @param remember  keep the path of a file that was read to its end as the most recent one, in the host's store
LoadResult loadSettings(const HostContext& context, const std::string& path, bool remember,
                        const SettingsTarget& target, MessageSink* messages);

/// Writes the setup to a file, whole or not at all: beside it first, flushed, then renamed over it. One that is beyond
/// the limits of settings_limits.h, so that it could not be read, is not written.
/// @param path  UTF-8
/// @param key   of the host's store, under which to remember the path of a file that was written; null for none
/// @return whether it was written; if not, the messages say why, and a file that stood there is as it was
bool saveSettings(const HostContext& context, const std::string& path, const char* key, const Scene& scene,
                  const SnapshotStrip& snapshots, MessageSink* messages);

/// Where settings are kept from one run to the next.
[[nodiscard]] std::string autoSavePath(std::string_view homeFolder);

/// On quitting: saves the setup to autoSavePath, and whether to load it at the next start.
void autoSaveSettings(const HostContext& context, std::string_view homeFolder, bool loadNextTime, const Scene& scene,
                      const SnapshotStrip& snapshots, MessageSink* messages);

/// At the start: loads what was saved on quitting, if the user wants that.
/// @return whether the user does; if not, the view is to be fitted to its window
bool autoLoadSettings(const HostContext& context, const SettingsTarget& target, MessageSink* messages);

} // namespace jostle
